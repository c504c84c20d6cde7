// Transfers in pieces, ownership of open files, and opening without blocking.
#include "host/posix/posix_descriptor.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <limits>
#include <vector>

#include "tests/host/posix/posix_test.h"

namespace morvex::posix {
namespace {

using posix_test::Content;
using posix_test::PosixTest;
using posix_test::Put;

// Stands in for read or write: each call returns the next of the given results.
class Steps {
 public:
  struct Step {
    ssize_t moved;
    int code;
  };
  explicit Steps(std::vector<Step> steps) : steps_(std::move(steps)) {}

  ssize_t operator()(std::size_t done, std::size_t left) {
    if (next_ == steps_.size()) {
      ADD_FAILURE() << "one call too many";
      return 0;
    }
    seen_.emplace_back(done, left);
    errno = steps_[next_].code;
    return steps_[next_++].moved;
  }

  const std::vector<std::pair<std::size_t, std::size_t>>& Seen() const { return seen_; }

 private:
  std::vector<Step> steps_;
  std::size_t next_ = 0;
  std::vector<std::pair<std::size_t, std::size_t>> seen_;
};

TEST(PosixTransferTest, PiecesAddUp) {
  Steps steps({{3, 0}, {1, 0}, {6, 0}});
  const Transfer transfer = TransferAll(10, ENOSPC, std::ref(steps));
  EXPECT_EQ(transfer.done, 10u);
  EXPECT_EQ(transfer.code, 0);
  const std::vector<std::pair<std::size_t, std::size_t>> expected = {{0, 10}, {3, 7}, {4, 6}};
  EXPECT_EQ(steps.Seen(), expected);
}

TEST(PosixTransferTest, ASignalDoesNotEndIt) {
  Steps steps({{-1, EINTR}, {2, 0}, {-1, EINTR}, {-1, EINTR}, {2, 0}});
  const Transfer transfer = TransferAll(4, ENOSPC, std::ref(steps));
  EXPECT_EQ(transfer.done, 4u);
  EXPECT_EQ(transfer.code, 0);
}

TEST(PosixTransferTest, AnErrorEndsItWithItsCode) {
  Steps steps({{3, 0}, {-1, EIO}});
  const Transfer transfer = TransferAll(10, ENOSPC, std::ref(steps));
  EXPECT_EQ(transfer.done, 3u);
  EXPECT_EQ(transfer.code, EIO);
}

TEST(PosixTransferTest, AStepThatMovesNothingEndsIt) {
  Steps writes({{3, 0}, {0, 0}});
  EXPECT_EQ(TransferAll(10, ENOSPC, std::ref(writes)).code, ENOSPC);
  Steps reads({{3, 0}, {0, EINTR}});
  const Transfer read = TransferAll(10, 0, std::ref(reads));
  EXPECT_EQ(read.code, 0);
  EXPECT_EQ(read.done, 3u);
}

TEST(PosixTransferTest, NothingToDoTakesNoStep) {
  Steps steps({});
  EXPECT_EQ(TransferAll(0, ENOSPC, std::ref(steps)).code, 0);
  EXPECT_TRUE(steps.Seen().empty());
}

class PosixDescriptorTest : public PosixTest {};

bool IsOpenNumber(int number) { return fcntl(number, F_GETFD) >= 0; }

TEST_F(PosixDescriptorTest, ClosesWhatItOwnsAndHandsItOver) {
  Descriptor first = OpenAt(AT_FDCWD, "/dev/null", O_RDONLY);
  ASSERT_TRUE(first.IsOpen());
  const int number = first.Get();
  EXPECT_EQ(fcntl(number, F_GETFD), FD_CLOEXEC);
  {
    Descriptor second = std::move(first);
    EXPECT_EQ(second.Get(), number);
    Descriptor third;
    third = std::move(second);
    EXPECT_TRUE(IsOpenNumber(number));
  }
  EXPECT_FALSE(IsOpenNumber(number));
}

TEST_F(PosixDescriptorTest, CloseGivesTheCodeAndClosesOnce) {
  Descriptor file = OpenAt(AT_FDCWD, "/dev/null", O_RDONLY);
  ASSERT_TRUE(file.IsOpen());
  ASSERT_EQ(close(file.Get()), 0);
  EXPECT_EQ(file.Close(), EBADF);
  EXPECT_FALSE(file.IsOpen());
  EXPECT_EQ(file.Close(), 0);
}

TEST_F(PosixDescriptorTest, ReadingStopsAtTheEnd) {
  Put(folder_ / "file", "0123456789");
  Descriptor file = OpenAt(AT_FDCWD, (folder_ / "file").c_str(), O_RDONLY);
  char into[20] = {};
  EXPECT_EQ(ReadAllAt(file.Get(), 4, into, sizeof into).done, 6u);
  EXPECT_EQ(std::string(into, 6), "456789");
  EXPECT_EQ(ReadAllAt(file.Get(), 10, into, sizeof into).done, 0u);
  const std::uint64_t far = std::numeric_limits<std::uint64_t>::max();
  for (const std::uint64_t offset : {far, far / 2, far / 2 + 1}) {
    const Transfer read = ReadAllAt(file.Get(), offset, into, sizeof into);
    EXPECT_EQ(read.done, 0u) << offset;
    EXPECT_EQ(read.code, 0) << offset;
  }
}

TEST_F(PosixDescriptorTest, WritingWhereNoFileReachesIsAFullDisk) {
  Descriptor file = OpenAt(AT_FDCWD, (folder_ / "file").c_str(), O_WRONLY | O_CREAT, 0600);
  const std::uint64_t far = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ(WriteAllAt(file.Get(), far, "x"), EFBIG);
  EXPECT_EQ(WriteAllAt(file.Get(), far / 2, "x"), EFBIG);
  EXPECT_EQ(Content(folder_ / "file"), "");
}

TEST_F(PosixDescriptorTest, AFullDeviceIsAFullDisk) {
  Descriptor device = OpenAt(AT_FDCWD, "/dev/full", O_WRONLY);
  if (!device.IsOpen()) GTEST_SKIP() << "no /dev/full here";
  EXPECT_EQ(WriteAll(device.Get(), "x").code, ENOSPC);
}

TEST_F(PosixDescriptorTest, APlaceNeedsAFolderAndAName) {
  Put(folder_ / "file", "");
  EXPECT_EQ(OpenPlace(folder_ / "none/name").error, ErrorNumber::kPathNotFound);
  EXPECT_EQ(OpenPlace(folder_ / "file/name").error, ErrorNumber::kPathNotFound);
  for (const char* ending : {"name/", ".", ".."}) {
    EXPECT_EQ(OpenPlace(folder_ / ending).error, ErrorNumber::kPathNotFound) << ending;
  }
  const Result<Place> place = OpenPlace(folder_ / "name");
  ASSERT_TRUE(place);
  EXPECT_EQ(place.value.name, "name");
  EXPECT_EQ(faccessat(place.value.folder.Get(), "file", F_OK, 0), 0);
}

// Starts a process that holds a lease on the file. The system ends the process that holds the lease
// when another process opens the file. Returns -1 if the file system grants no lease.
pid_t StartLeaseHolder(const std::string& path) {
  int ready[2] = {};
  if (pipe(ready) != 0) return -1;
  const pid_t child = fork();
  if (child == 0) {
    const int file = open(path.c_str(), O_RDWR);
    const char result = file >= 0 && fcntl(file, F_SETLEASE, F_WRLCK) == 0 ? 'y' : 'n';
    const bool told = write(ready[1], &result, 1) == 1;
    while (told && result == 'y') pause();  // until the lease's signal ends the process
    _exit(0);
  }
  char result = 'n';
  const bool held = read(ready[0], &result, 1) == 1 && result == 'y';
  close(ready[0]);
  close(ready[1]);
  if (child > 0 && !held) waitpid(child, nullptr, 0);
  return held ? child : -1;
}

TEST_F(PosixDescriptorTest, WaitsForAnotherProcessToGiveItsLeaseBack) {
  Put(folder_ / "file", "leased");
  const pid_t holder = StartLeaseHolder(folder_ / "file");
  if (holder < 0) GTEST_SKIP() << "the file system of the temporary folder grants no leases";
  const Result<Descriptor> file = OpenOrdinary(folder_ / "file", O_RDONLY, Missing::kFile);
  EXPECT_EQ(file.error, ErrorNumber::kNone);
  int status = 0;
  ASSERT_EQ(waitpid(holder, &status, 0), holder);
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGIO);
}

}  // namespace
}  // namespace morvex::posix
