// Claims on work files. Several file services of one process compete like several processes.
#include "host/posix/posix_claim.h"

#include <sys/file.h>
#include <sys/wait.h>

#include <filesystem>
#include <thread>

#include "host/posix/posix_copy.h"
#include "tests/host/posix/posix_test.h"

namespace morvex {
namespace {

namespace fs = std::filesystem;
using namespace posix_test;

class PosixClaimTest : public PosixTest {
 protected:
  void SetUp() override {
    PosixTest::SetUp();
    path_ = folder_ / "tijdel.enc";
  }
  // Creates a work file with these bytes through `files` and closes it.
  std::unique_ptr<WorkFile> Make(FileService& files, const std::string& bytes) {
    Result<std::unique_ptr<WorkFile>> file = files.CreateWorkFile(path_, 0600);
    EXPECT_TRUE(file) << static_cast<int>(file.error);
    if (!file) return nullptr;
    EXPECT_EQ(file.value->WriteAt(0, bytes), ErrorNumber::kNone);
    EXPECT_EQ(file.value->Close(), ErrorNumber::kNone);
    return std::move(file.value);
  }

  std::string path_;
  PosixFileService other_;
};

TEST_F(PosixClaimTest, AFileThatIsBeingWrittenIsNotDeletedByAnother) {
  auto file = files_.CreateWorkFile(path_, 0400);
  ASSERT_TRUE(file);
  EXPECT_EQ(other_.DeleteFile(path_), ErrorNumber::kFileAlreadyOpen);
  EXPECT_TRUE(IsThere(path_));
}

TEST_F(PosixClaimTest, AFinishedFileIsNotDeletedByAnotherBeforeItIsMoved) {
  const auto mine = Make(files_, "mine");
  EXPECT_EQ(other_.DeleteFile(path_), ErrorNumber::kFileAlreadyOpen);
  EXPECT_EQ(files_.DeleteFile(path_), ErrorNumber::kFileAlreadyOpen);
  EXPECT_EQ(other_.CreateWorkFile(path_, 0600).error, ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(mine->MoveToFreeName(folder_ / "copy"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "copy"), "mine");
  const auto theirs = Make(other_, "theirs");
  EXPECT_EQ(Content(path_), "theirs");
}

TEST_F(PosixClaimTest, TheOneWhoMadeItMayDiscardIt) {
  EXPECT_EQ(Make(files_, "mine")->Discard(), ErrorNumber::kNone);
  EXPECT_FALSE(IsThere(path_));
}

TEST_F(PosixClaimTest, AFileMayBeDiscardedBeforeItIsClosed) {
  auto file = files_.CreateWorkFile(path_, 0600);
  ASSERT_TRUE(file);
  EXPECT_EQ(file.value->WriteAt(0, Pattern(2'000'000)), ErrorNumber::kNone);
  EXPECT_EQ(file.value->Discard(), ErrorNumber::kNone);
  EXPECT_FALSE(IsThere(path_));
}

TEST_F(PosixClaimTest, AnAbandonedFileStaysAndIsAnyones) {
  Make(files_, "mine");
  EXPECT_EQ(Content(path_), "mine");
  EXPECT_EQ(other_.DeleteFile(path_), ErrorNumber::kNone);
}

TEST_F(PosixClaimTest, AMoveEndsTheClaimAndTheCopyIsAnyones) {
  Put(folder_ / "copy", "old");
  const auto mine = Make(files_, "mine");
  EXPECT_EQ(mine->MoveTo(folder_ / "copy", {}), ErrorNumber::kNone);
  EXPECT_EQ(other_.DeleteFile(folder_ / "copy"), ErrorNumber::kNone);
}

TEST_F(PosixClaimTest, AFailedMoveKeepsTheClaimAndMayBeRepeated) {
  Put(folder_ / "copy", "old");
  const auto mine = Make(files_, "mine");
  EXPECT_EQ(mine->MoveTo(folder_ / "none/copy", {}), ErrorNumber::kPathNotFound);
  EXPECT_EQ(mine->MoveToFreeName(folder_ / "copy"), ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(other_.DeleteFile(path_), ErrorNumber::kFileAlreadyOpen);
  EXPECT_EQ(Content(folder_ / "copy"), "old");
  EXPECT_EQ(mine->MoveTo(folder_ / "copy", {}), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "copy"), "mine");
}

TEST_F(PosixClaimTest, AMoveToAnotherDeviceTakesTheClaimedFileAndDeletesIt) {
  const auto elsewhere = FolderOnOtherDevice(folder_.Path());
  if (!elsewhere) GTEST_SKIP() << "no second file system to write to";
  const TempFolder far(*elsewhere);
  const auto mine = Make(files_, "mine");
  EXPECT_EQ(mine->MoveTo(far / "copy", {}), ErrorNumber::kNone);
  EXPECT_EQ(Content(far / "copy"), "mine");
  EXPECT_FALSE(IsThere(path_));
  Make(other_, "theirs");
}

TEST_F(PosixClaimTest, ACopyOfTheClaimedFileHoldsItsBytes) {
  const auto mine = Make(files_, "mine");
  EXPECT_EQ(mine->CopyTo(folder_ / "copy"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "copy"), "mine");
  EXPECT_EQ(other_.DeleteFile(path_), ErrorNumber::kFileAlreadyOpen);
}

TEST_F(PosixClaimTest, AFileThatItsOwnerMayNotReadIsCopiedAndMovedByItsMaker) {
  const OrdinaryUser user(folder_.Path());
  auto file = files_.CreateWorkFile(path_, 0040);
  ASSERT_TRUE(file);
  EXPECT_EQ(file.value->WriteAt(0, "mine"), ErrorNumber::kNone);
  EXPECT_EQ(file.value->Close(), ErrorNumber::kNone);
  EXPECT_EQ(file.value->CopyTo(folder_ / "copy"), ErrorNumber::kNone);
  EXPECT_EQ(StatusOf(folder_ / "copy").st_size, 4);
  EXPECT_EQ(file.value->MoveToFreeName(folder_ / "moved"), ErrorNumber::kNone);
  EXPECT_EQ(StatusOf(folder_ / "moved").st_mode & 07777, 0040u);
}

TEST_F(PosixClaimTest, TheFileOfAProcessThatWasKilledIsAStaleWorkFile) {
  const pid_t child = fork();
  if (child == 0) {
    PosixFileService files;
    const auto file = files.CreateWorkFile(path_, 0600);
    if (!file) _exit(1);
    kill(getpid(), SIGKILL);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
  ASSERT_TRUE(IsThere(path_));
  EXPECT_EQ(files_.DeleteFile(path_), ErrorNumber::kNone);
}

TEST_F(PosixClaimTest, LinksPipesAndForbiddenFilesAreDeletedWithoutBeingOpened) {
  fs::create_symlink("nowhere", folder_ / "link");
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  Put(folder_ / "forbidden", "x");
  ASSERT_EQ(chmod((folder_ / "forbidden").c_str(), 0), 0);
  const OrdinaryUser user(folder_.Path());
  for (const char* name : {"link", "pipe", "forbidden"}) {
    EXPECT_EQ(files_.DeleteFile(folder_ / name), ErrorNumber::kNone) << name;
    EXPECT_FALSE(IsThere(folder_ / name)) << name;
  }
}

TEST_F(PosixClaimTest, APartialCopyOfAnotherIsLeftAloneAndTheCopyFails) {
  Put(folder_ / "file", "text");
  const auto half = Make(other_, "somebody's half");  // a partial copy has the work file's name
  const posix::CopyWays named{false, true};
  EXPECT_EQ(posix::CopyWholeFile(folder_ / "file", folder_ / "copy", {}, named),
            ErrorNumber::kFileAlreadyOpen);
  EXPECT_EQ(Content(path_), "somebody's half");
  EXPECT_FALSE(IsThere(folder_ / "copy"));
}

TEST_F(PosixClaimTest, ManyAtATimeNeverMoveWhatIsNotTheirs) {
  constexpr int kThreads = 4;
  constexpr int kRounds = 400;
  std::vector<std::thread> threads;
  std::vector<int> wrong(kThreads, 0);
  std::vector<int> made(kThreads, 0);
  for (int number = 0; number < kThreads; ++number) {
    threads.emplace_back([&, number] {
      PosixFileService files;
      const auto own = static_cast<std::size_t>(number);
      const std::string text(1 + own * 1000, static_cast<char>('a' + number));
      const std::string copy = folder_ / ("copy" + std::to_string(number));
      while (made[own] < kRounds) {
        auto file = files.CreateWorkFile(path_, 0600);
        if (!file) {
          files.DeleteFile(path_);
          continue;
        }
        if (file.value->WriteAt(0, text) != ErrorNumber::kNone) ++wrong[own];
        if (file.value->Close() != ErrorNumber::kNone) ++wrong[own];
        if (file.value->MoveTo(copy, {}) != ErrorNumber::kNone) ++wrong[own];
        if (Content(copy) != text) ++wrong[own];
        ++made[own];
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, std::vector<int>(kThreads, 0));
}

}  // namespace
}  // namespace morvex
