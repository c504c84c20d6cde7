// The bytes of a copy: holes, sources that change during the copy, and how often the copy asks its
// caller whether to go on.
#include "host/posix/posix_copy_data.h"

#include <fcntl.h>
#include <unistd.h>

#include "host/posix/posix_descriptor.h"
#include "tests/host/posix/posix_test.h"

namespace morvex::posix {
namespace {

using namespace posix_test;

constexpr std::uint64_t kMega = 1u << 20;

// The parameter: whether the system's own copy call may be used.
class PosixCopyDataTest : public PosixTest, public ::testing::WithParamInterface<bool> {
 protected:
  void SetUp() override {
    PosixTest::SetUp();
    in_ = folder_ / "in";
    out_ = folder_ / "out";
  }

  ErrorNumber Copy(const KeepGoing& keep_going = {}) {
    const Descriptor from = OpenAt(AT_FDCWD, in_.c_str(), O_RDONLY);
    const Descriptor to = OpenAt(AT_FDCWD, out_.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    struct stat status {};
    EXPECT_EQ(fstat(from.Get(), &status), 0);
    return CopyData(from.Get(), to.Get(), status, keep_going, GetParam());
  }

  // Creates a file of `size` bytes that is one hole except for "data" at the given offsets.
  void MakeSparse(std::uint64_t size, const std::vector<std::uint64_t>& places) {
    const Descriptor file = OpenAt(AT_FDCWD, in_.c_str(), O_RDWR | O_CREAT | O_TRUNC, 0600);
    ASSERT_EQ(ftruncate(file.Get(), static_cast<off_t>(size)), 0);
    for (const std::uint64_t place : places) ASSERT_EQ(WriteAllAt(file.Get(), place, "data"), 0);
  }

  static std::uint64_t DiskUse(const std::string& path) {
    return static_cast<std::uint64_t>(StatusOf(path).st_blocks) * 512;
  }
  bool KeepsHoles() {
    MakeSparse(4 * kMega, {});
    return DiskUse(in_) < kMega;
  }

  std::string in_;
  std::string out_;
};

std::string WayName(const ::testing::TestParamInfo<bool>& way) {
  return way.param ? "InKernel" : "ThroughMemory";
}

INSTANTIATE_TEST_SUITE_P(EveryWay, PosixCopyDataTest, ::testing::Bool(), WayName);

TEST_P(PosixCopyDataTest, HolesStayHoles) {
  if (!KeepsHoles()) GTEST_SKIP() << "the file system of the temporary folder keeps no holes";
  const std::vector<std::vector<std::uint64_t>> layouts = {
      {}, {0}, {10 * kMega + 3}, {32 * kMega - 4}, {0, 9 * kMega, 20 * kMega, 32 * kMega - 4}};
  for (const auto& places : layouts) {
    MakeSparse(32 * kMega, places);
    ASSERT_EQ(Copy(), ErrorNumber::kNone);
    EXPECT_EQ(StatusOf(out_).st_size, StatusOf(in_).st_size);
    EXPECT_TRUE(Content(out_) == Content(in_)) << places.size();
    EXPECT_LT(DiskUse(out_), 2 * kMega);
  }
}

TEST_P(PosixCopyDataTest, AHoleAsLongAsADiskTakesNoTime) {
  if (!KeepsHoles()) GTEST_SKIP() << "the file system of the temporary folder keeps no holes";
  MakeSparse(std::uint64_t{1} << 40, {std::uint64_t{1} << 39});
  ASSERT_EQ(Copy(), ErrorNumber::kNone);
  EXPECT_EQ(StatusOf(out_).st_size, off_t{1} << 40);
  const Descriptor copy = OpenAt(AT_FDCWD, out_.c_str(), O_RDONLY);
  char data[4] = {};
  EXPECT_EQ(ReadAllAt(copy.Get(), std::uint64_t{1} << 39, data, 4).done, 4u);
  EXPECT_EQ(std::string(data, 4), "data");
}

TEST_P(PosixCopyDataTest, AHoleAtTheEndIsNoReasonToGrowPastTheLimit) {
  if (!KeepsHoles()) GTEST_SKIP() << "the file system of the temporary folder keeps no holes";
  MakeSparse(4 * kMega, {0});
  const FileSizeLimit limit(2 * kMega);
  EXPECT_EQ(Copy(), ErrorNumber::kDiskFull);
}

TEST_P(PosixCopyDataTest, AGrowingSourceIsCopiedUpToItsFirstSize) {
  const std::string bytes = Pattern(20 * kMega);
  Put(in_, bytes);
  int asked = 0;
  const KeepGoing grow = [&] {
    ++asked;
    EXPECT_EQ(files_.AppendToFile(in_, std::string(kMega, 'g')), ErrorNumber::kNone);
    return true;
  };
  ASSERT_EQ(Copy(grow), ErrorNumber::kNone);
  EXPECT_GE(asked, 2);
  EXPECT_TRUE(Content(out_) == bytes);
}

TEST_P(PosixCopyDataTest, AShrinkingSourceIsCopiedUpToItsNewEnd) {
  const std::string bytes = Pattern(20 * kMega);
  Put(in_, bytes);
  const KeepGoing shrink = [&] { return truncate(in_.c_str(), 9 * kMega + 5) == 0; };
  ASSERT_EQ(Copy(shrink), ErrorNumber::kNone);
  EXPECT_TRUE(Content(out_) == bytes.substr(0, 9 * kMega + 5));
}

TEST_P(PosixCopyDataTest, ASourceCutOffBehindTheCopyEndsIt) {
  const std::string bytes = Pattern(20 * kMega);
  Put(in_, bytes);
  const KeepGoing empty = [&] { return truncate(in_.c_str(), 0) == 0; };
  ASSERT_EQ(Copy(empty), ErrorNumber::kNone);
  const std::string copy = Content(out_);
  EXPECT_EQ(copy.size(), GetParam() ? 8 * kMega : kMega);
  EXPECT_TRUE(copy == bytes.substr(0, copy.size()));
}

TEST_P(PosixCopyDataTest, AShrinkingSourceWithHolesEndsTheCopyToo) {
  if (!KeepsHoles()) GTEST_SKIP() << "the file system of the temporary folder keeps no holes";
  const std::string bytes = Pattern(10 * kMega);
  Put(in_, bytes);
  ASSERT_EQ(truncate(in_.c_str(), 64 * kMega), 0);
  const KeepGoing shrink = [&] { return truncate(in_.c_str(), 9 * kMega) == 0; };
  ASSERT_EQ(Copy(shrink), ErrorNumber::kNone);
  EXPECT_TRUE(Content(out_) == bytes.substr(0, 9 * kMega));
}

TEST_P(PosixCopyDataTest, AsksBetweenThePiecesOnly) {
  int asked = 0;
  const KeepGoing count = [&] {
    ++asked;
    return true;
  };
  Put(in_, Pattern(kMega));
  ASSERT_EQ(Copy(count), ErrorNumber::kNone);
  EXPECT_EQ(asked, 0);
  Put(in_, Pattern(kMega + 1));
  ASSERT_EQ(Copy(count), ErrorNumber::kNone);
  EXPECT_EQ(asked, GetParam() ? 0 : 1);
  asked = 0;
  Put(in_, Pattern(24 * kMega));
  ASSERT_EQ(Copy(count), ErrorNumber::kNone);
  EXPECT_EQ(asked, GetParam() ? 2 : 23);
}

TEST_P(PosixCopyDataTest, ManyShortPiecesAskNoMoreOftenThanLongOnes) {
  if (!KeepsHoles()) GTEST_SKIP() << "the file system of the temporary folder keeps no holes";
  std::vector<std::uint64_t> places;
  for (std::uint64_t place = 0; place < 512; ++place) places.push_back(place * 16 * 1024);
  MakeSparse(8 * kMega, places);
  int asked = 0;
  const KeepGoing count = [&] {
    ++asked;
    return true;
  };
  ASSERT_EQ(Copy(count), ErrorNumber::kNone);
  EXPECT_LE(asked, 8);
  EXPECT_TRUE(Content(out_) == Content(in_));
}

TEST_P(PosixCopyDataTest, AFileOfAnotherKindOfFileSystemIsCopied) {
  // The file claims a size of one page but has fewer bytes, and the system's own copy call does not
  // work on it.
  in_ = "/sys/kernel/mm/transparent_hugepage/enabled";
  if (access(in_.c_str(), R_OK) != 0) GTEST_SKIP() << "no such attribute here";
  ASSERT_EQ(Copy(), ErrorNumber::kNone);
  EXPECT_TRUE(Content(out_) == Content(in_));
  EXPECT_FALSE(Content(out_).empty());
}

}  // namespace
}  // namespace morvex::posix
