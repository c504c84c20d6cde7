// Paths: splitting, the absolute form, and the ends of chains of links.
#include "host/posix/posix_paths.h"

#include <unistd.h>

#include <filesystem>

#include "tests/host/posix/posix_test.h"

namespace morvex::posix {
namespace {

namespace fs = std::filesystem;
using posix_test::kNulName;
using posix_test::kTooLongName;
using posix_test::PosixTest;
using posix_test::Put;

TEST(PosixSplitTest, FolderAndName) {
  struct Case {
    const char* path;
    const char* folder;
    const char* name;
  };
  const Case cases[] = {
      {"name", ".", "name"},      {"/name", "/", "name"},    {"folder/name", "folder", "name"},
      {"/a/b/c", "/a/b", "c"},    {"a//b", "a", "b"},        {"//name", "/", "name"},
      {"a///b//c", "a///b", "c"}, {"folder/", "folder", ""}, {"/", "/", ""},
      {"///", "/", ""},           {".", ".", "."},           {"a/..", "a", ".."},
  };
  for (const Case& tried : cases) {
    const PathParts parts = SplitPath(tried.path);
    EXPECT_EQ(parts.folder, tried.folder) << tried.path;
    EXPECT_EQ(parts.name, tried.name) << tried.path;
  }
}

TEST(PosixCheckPathTest, RefusesWhatIsNoPath) {
  EXPECT_EQ(CheckPath("", Missing::kFile), ErrorNumber::kFileNotFound);
  EXPECT_EQ(CheckPath("", Missing::kPath), ErrorNumber::kPathNotFound);
  EXPECT_EQ(CheckPath(kNulName, Missing::kFile), ErrorNumber::kBadFileName);
  EXPECT_EQ(CheckPath(std::string(1, '\0'), Missing::kPath), ErrorNumber::kBadFileName);
  EXPECT_EQ(CheckPath("name", Missing::kFile), ErrorNumber::kNone);
}

class PosixPathsTest : public PosixTest {
 protected:
  void SetUp() override {
    PosixTest::SetUp();
    before_ = fs::current_path();
    fs::create_directories(folder_ / "a/b/c");
    fs::create_directories(folder_ / "other");
    Put(folder_ / "a/file", "");
    fs::create_directory_symlink(folder_ / "a/b", folder_ / "other/link");
    fs::create_directory_symlink("/", folder_ / "rootlink");
    fs::current_path(folder_.Path());
  }
  void TearDown() override { fs::current_path(before_); }

  void ExpectAbsolute(const std::string& path, const std::string& expected) {
    const Result<std::string> absolute = AbsolutePath(path);
    ASSERT_TRUE(absolute) << path;
    EXPECT_EQ(absolute.value, expected) << path;
  }

 private:
  fs::path before_;
};

TEST_F(PosixPathsTest, RelativePathsStartInTheCurrentFolder) {
  ExpectAbsolute("a/file", folder_ / "a/file");
  ExpectAbsolute(".", folder_.Path());
  ExpectAbsolute("./a/./b/.", folder_ / "a/b");
  fs::current_path("/");
  ExpectAbsolute("dev", "/dev");
  ExpectAbsolute(".", "/");
}

TEST_F(PosixPathsTest, SeparatorsAreReducedToThoseBetweenNames) {
  ExpectAbsolute(folder_ / "a//b///c", folder_ / "a/b/c");
  ExpectAbsolute(folder_ / "a/b/", folder_ / "a/b");
  ExpectAbsolute(folder_ / "a/b///", folder_ / "a/b");
  ExpectAbsolute("//dev", "/dev");
  ExpectAbsolute("/", "/");
  ExpectAbsolute("///", "/");
}

TEST_F(PosixPathsTest, TwoDotsTakeANameOff) {
  ExpectAbsolute("a/b/..", folder_ / "a");
  ExpectAbsolute("a/b/../../other", folder_ / "other");
  ExpectAbsolute("a/..", folder_.Path());
  ExpectAbsolute("/..", "/");
  ExpectAbsolute("/../../dev", "/dev");
}

TEST_F(PosixPathsTest, NamesThatBeginWithDotsAreNames) {
  fs::create_directories(folder_ / "..a/.b/...");
  for (const char* path : {"..a", "..a/.b", "..a/.b/..."}) {
    ExpectAbsolute(folder_ / path, folder_ / path);
    ExpectAbsolute(folder_ / path + "/", folder_ / path);
    ExpectAbsolute(folder_ / path + "/..", fs::path(folder_ / path).parent_path());
  }
  ExpectAbsolute("/", "/");
  ExpectAbsolute("/.", "/");
  ExpectAbsolute("/dev/..", "/");
}

TEST_F(PosixPathsTest, LinksKeepTheirNames) {
  ExpectAbsolute("other/link", folder_ / "other/link");
  ExpectAbsolute("other/link/c", folder_ / "other/link/c");
  ExpectAbsolute("other/link/", folder_ / "other/link");
  ExpectAbsolute("other/link/c/..", folder_ / "other/link");
}

TEST_F(PosixPathsTest, TwoDotsBehindALinkLeaveItsTarget) {
  ExpectAbsolute("other/link/..", folder_ / "a");
  ExpectAbsolute("other/link/../file", folder_ / "a/file");
  ExpectAbsolute("other/link/c/../../file", folder_ / "a/file");
  ExpectAbsolute("rootlink/..", "/");
  ExpectAbsolute("rootlink/../dev", "/dev");
}

TEST_F(PosixPathsTest, TwoDotsBehindNothingLeadNowhere) {
  EXPECT_EQ(AbsolutePath("none/..").error, ErrorNumber::kPathNotFound);
  fs::create_directory_symlink("nowhere", "broken");
  EXPECT_EQ(AbsolutePath("broken/..").error, ErrorNumber::kPathNotFound);
}

TEST_F(PosixPathsTest, ADeletedCurrentFolderIsAnError) {
  fs::create_directory("gone");
  fs::current_path("gone");
  fs::remove(folder_ / "gone");
  EXPECT_EQ(AbsolutePath("x").error, ErrorNumber::kPathNotFound);
}

TEST_F(PosixPathsTest, ALinkIsReadWhole) {
  const std::string target =
      std::string(200, 'x') + "/" + std::string(200, 'y') + "/" + std::string(110, 'z');
  fs::create_symlink(target, "long");
  fs::create_symlink(std::string(256, 'q'), "exact");
  EXPECT_EQ(ReadLink("long").value, target);
  EXPECT_EQ(ReadLink("exact").value, std::string(256, 'q'));
  EXPECT_EQ(ReadLink("none").error, ErrorNumber::kFileNotFound);
}

TEST_F(PosixPathsTest, ChainsOfLinksAreFollowedToTheirEnd) {
  fs::create_symlink("a/file", "one");
  fs::create_symlink("../one", "other/two");
  fs::create_symlink(folder_ / "other/two", "three");
  EXPECT_EQ(FollowLinks("a/file").value, "a/file");
  EXPECT_EQ(FollowLinks("one").value, "./a/file");
  EXPECT_TRUE(fs::equivalent(FollowLinks("three").value, folder_ / "a/file"));
}

TEST_F(PosixPathsTest, AChainMayEndWhereNothingIs) {
  fs::create_symlink("../fresh", "a/dangling");
  EXPECT_EQ(FollowLinks(folder_ / "a/dangling").value, folder_ / "a/../fresh");
  EXPECT_EQ(FollowLinks("nothing").value, "nothing");
}

TEST_F(PosixPathsTest, AChainWithoutAnEndIsRefused) {
  fs::create_symlink("tail", "head");
  fs::create_symlink("head", "tail");
  EXPECT_EQ(FollowLinks("head").error, ErrorNumber::kPathFileAccess);
  EXPECT_EQ(FollowLinks(kTooLongName).error, ErrorNumber::kBadFileName);
}

}  // namespace
}  // namespace morvex::posix
