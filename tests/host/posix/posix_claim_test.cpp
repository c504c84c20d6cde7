// Claims on files that are being made, between several file services as between several processes.
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
  // Makes the file in one service, ready to be moved.
  void Make(FileService& files, const std::string& bytes) {
    auto file = files.CreateFile(path_, 0600);
    ASSERT_TRUE(file) << static_cast<int>(file.error);
    ASSERT_EQ(file.value->WriteAt(0, bytes), ErrorNumber::kNone);
    ASSERT_EQ(file.value->Close(), ErrorNumber::kNone);
  }

  std::string path_;
  PosixFileService other_;
};

TEST_F(PosixClaimTest, AFileThatIsBeingWrittenIsNotDeletedByAnother) {
  auto file = files_.CreateFile(path_, 0400);
  ASSERT_TRUE(file);
  EXPECT_EQ(other_.DeleteFile(path_), ErrorNumber::kFileAlreadyOpen);
  EXPECT_TRUE(IsThere(path_));
}

TEST_F(PosixClaimTest, AFinishedFileIsNotDeletedByAnotherBeforeItIsMoved) {
  Make(files_, "mine");
  EXPECT_EQ(other_.DeleteFile(path_), ErrorNumber::kFileAlreadyOpen);
  EXPECT_EQ(other_.CreateFile(path_, 0600).error, ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(files_.MoveToFreeName(path_, folder_ / "copy"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "copy"), "mine");
  Make(other_, "theirs");
  EXPECT_EQ(Content(path_), "theirs");
}

TEST_F(PosixClaimTest, TheOneWhoMadeItMayDeleteIt) {
  Make(files_, "mine");
  EXPECT_EQ(files_.DeleteFile(path_), ErrorNumber::kNone);
  EXPECT_FALSE(IsThere(path_));
}

TEST_F(PosixClaimTest, AMoveEndsTheClaimAndTheCopyIsAnyones) {
  Put(folder_ / "copy", "old");
  Make(files_, "mine");
  EXPECT_EQ(files_.MoveFile(path_, folder_ / "copy", {}), ErrorNumber::kNone);
  EXPECT_EQ(other_.DeleteFile(folder_ / "copy"), ErrorNumber::kNone);
}

TEST_F(PosixClaimTest, AMoveToAnotherDeviceTakesTheClaimedFileAndDeletesIt) {
  const auto elsewhere = FolderOnOtherDevice(folder_.Path());
  if (!elsewhere) GTEST_SKIP() << "no second file system to write to";
  const TempFolder far(*elsewhere);
  Make(files_, "mine");
  EXPECT_EQ(files_.MoveFile(path_, far / "copy", {}), ErrorNumber::kNone);
  EXPECT_EQ(Content(far / "copy"), "mine");
  EXPECT_FALSE(IsThere(path_));
  Make(other_, "theirs");
}

TEST_F(PosixClaimTest, ACopyOfTheClaimedFileHoldsItsBytes) {
  Make(files_, "mine");
  EXPECT_EQ(files_.CopyFile(path_, folder_ / "copy", {}), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "copy"), "mine");
  EXPECT_EQ(other_.DeleteFile(path_), ErrorNumber::kFileAlreadyOpen);
}

TEST_F(PosixClaimTest, TheFileOfAProcessThatWasKilledIsALeftOver) {
  const pid_t child = fork();
  if (child == 0) {
    PosixFileService files;
    const auto file = files.CreateFile(path_, 0600);
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
  Make(other_, "somebody's half");  // by the name that a copy is filled under
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
        auto file = files.CreateFile(path_, 0600);
        if (!file) {
          files.DeleteFile(path_);
          continue;
        }
        if (file.value->WriteAt(0, text) != ErrorNumber::kNone) ++wrong[own];
        if (file.value->Close() != ErrorNumber::kNone) ++wrong[own];
        if (files.MoveFile(path_, copy, {}) != ErrorNumber::kNone) ++wrong[own];
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
