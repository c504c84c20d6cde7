// Paths longer than PATH_MAX, which the system does not accept in one call.
#include "host/posix/posix_calls.h"

#include <limits.h>

#include "tests/host/posix/posix_test.h"

namespace morvex {
namespace {

using namespace posix_test;

class PosixCallsTest : public PosixTest {
 protected:
  // Creates folders called `name` inside each other until the path is longer than 2 * PATH_MAX
  // bytes. Returns the path.
  std::string MakeDeep(const std::string& name) {
    std::string path = folder_.Path();
    while (path.size() <= 2 * PATH_MAX) {
      path += "/" + name;
      EXPECT_EQ(files_.CreateFolder(path), ErrorNumber::kNone);
    }
    return path;
  }
};

TEST_F(PosixCallsTest, EveryCallOfTheServiceWorksBeyondThem) {
  for (const std::string& name : {std::string("d"), std::string(255, 'n'), std::string(100, 'x')}) {
    const std::string deep = MakeDeep(name);
    const std::string file = deep + "/file";
    auto made = files_.CreateWorkFile(file, 0640);
    ASSERT_TRUE(made);
    ASSERT_EQ(made.value->WriteAt(0, "text"), ErrorNumber::kNone);
    ASSERT_EQ(made.value->Close(), ErrorNumber::kNone);

    const Result<FileInfo> found = files_.LookUpFile(file);
    ASSERT_TRUE(found);
    EXPECT_EQ(found.value.size, 4u);
    EXPECT_EQ(found.value.permissions, 0640u);
    EXPECT_EQ(found.value.path, file);
    EXPECT_TRUE(files_.LookUpFolder(deep));
    EXPECT_EQ(files_.LookUpFile(deep + "/none").error, ErrorNumber::kFileNotFound);
    EXPECT_EQ(files_.LookUpFile(file + "/x").error, ErrorNumber::kPathNotFound);
    EXPECT_EQ(files_.LookUpFolder(folder_ / "none" + deep).error, ErrorNumber::kPathNotFound);

    EXPECT_EQ(made.value->MoveToFreeName(deep + "/moved"), ErrorNumber::kNone);
    EXPECT_EQ(files_.CopyFile(deep + "/moved", deep + "/copy", {}), ErrorNumber::kNone);
    EXPECT_EQ(files_.MoveFile(deep + "/moved", deep + "/copy", {}), ErrorNumber::kNone);
    EXPECT_EQ(files_.AppendToFile(deep + "/copy", " more"), ErrorNumber::kNone);
    auto input = files_.OpenForReading(deep + "/copy");
    ASSERT_TRUE(input);
    char text[20] = {};
    EXPECT_EQ(input.value->ReadAt(0, text, sizeof text).value, 9u);
    EXPECT_STREQ(text, "text more");
    const auto listing = files_.ListFolder(deep);
    ASSERT_TRUE(listing);
    ASSERT_EQ(listing.value.size(), 1u);
    EXPECT_EQ(listing.value[0].name, "copy");
    EXPECT_EQ(files_.DeleteFile(deep + "/copy"), ErrorNumber::kNone);
    EXPECT_EQ(files_.DeleteFile(deep + "/copy"), ErrorNumber::kFileNotFound);
  }
}

TEST_F(PosixCallsTest, PathsAroundTheBorderLeadToTheSamePlace) {
  std::string path = folder_.Path() + "/d";
  ASSERT_EQ(files_.CreateFolder(path), ErrorNumber::kNone);
  Put(path + "/file", "text");
  // Repeated separators give the path any length that the test needs.
  for (std::size_t length = PATH_MAX - 20; length < PATH_MAX + 20; ++length) {
    const std::string start = folder_.Path();
    const std::string filler(length - start.size() - 6, '/');
    EXPECT_TRUE(files_.LookUpFile(start + filler + "d/file")) << length;
    EXPECT_TRUE(files_.LookUpFolder(start + "/d" + filler)) << length;
    EXPECT_FALSE(files_.LookUpFile(start + filler + "d/fil")) << length;
  }
}

TEST_F(PosixCallsTest, ANameThatIsTooLongStaysABadOne) {
  EXPECT_EQ(files_.LookUpFile(folder_ / std::string(PATH_MAX + 10, 'n')).error,
            ErrorNumber::kBadFileName);
  EXPECT_EQ(files_.LookUpFile(std::string(2 * PATH_MAX, 'n')).error, ErrorNumber::kBadFileName);
}

}  // namespace
}  // namespace morvex
