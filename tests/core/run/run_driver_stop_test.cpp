// Folder runs that end early: a stop request, a full disk.
#include <gtest/gtest.h>

#include "tests/core/run/run_program.h"

namespace morvex::test {
namespace {

class GoStopTest : public ::testing::Test {
 protected:
  GoStopTest() {
    test_.files.AddFile("/s/1.txt", "aca");
    test_.files.AddFile("/s/2.txt", "aca");
    test_.files.AddFile("/s/sub/3.txt", "aca");
    test_.files.AddFile("/s/sub/4.txt", "aca");
  }
  // Adds a long file, or puts it in the place of the file at `path`. The folder lists it last.
  void MakeLong(const std::string& path) { test_.files.AddFile(path, kLongText); }
  // Clicks Exit once `files` files have been begun.
  void ExitAfter(std::int64_t files) {
    test_.OnEveryYield([this, files] {
      if (program_.run.FilesDone == files && !program_.Beeindigd) cmdExit_Click(program_);
    });
  }
  // Clicks Exit in the middle of the long file.
  void ExitInMidFile() {
    test_.OnEveryYield([this] {
      if (program_.run.FileOffset > 0) cmdExit_Click(program_);
    });
  }
  // Expects that the run counts as stopped, that neither the log nor the labels show a result, and
  // that the controls stay disabled.
  void ExpectNoEnd() {
    EXPECT_EQ(program_.run.end, RunEnd::kStopped);
    EXPECT_EQ(test_.window().lblTijd.caption.get(), "");
    EXPECT_EQ(test_.window().lblPercentage.caption.get().find("Done !"), std::string::npos);
    for (const std::string& line : test_.LogMessages()) EXPECT_FALSE(line.starts_with("gemorv"));
    EXPECT_FALSE(test_.window().cmdAnonymize.enabled);
    EXPECT_FALSE(test_.source_box().enabled);
    EXPECT_FALSE(test_.window().cmdGo.enabled);
    EXPECT_FALSE(program_.frmOpties.chkLoggen.enabled);
    EXPECT_FALSE(program_.run.working);
  }

  RunProgram test_;
  Program& program_ = test_.program;
};

TEST_F(GoStopTest, ExitInThePrepassEndsTheProgram) {
  ExitAfter(1);
  test_.ArmAndGo();
  ExpectNoEnd();
  EXPECT_TRUE(HasEnded(program_));
  EXPECT_FALSE(test_.files.Has("/t/2.txt"));
  EXPECT_FALSE(test_.files.Has("/t/sub"));
}

TEST_F(GoStopTest, ExitInTheWalkEndsTheProgram) {
  ExitAfter(3);
  test_.ArmAndGo();
  ExpectNoEnd();
  EXPECT_TRUE(HasEnded(program_));
  EXPECT_TRUE(test_.files.Has("/t/2.txt"));
  EXPECT_FALSE(test_.files.Has("/t/sub/4.txt"));
}

TEST_F(GoStopTest, ExitInTheMiddleOfAFileLeavesAPartialCopyAndTheTemporaryFile) {
  MakeLong("/s/1.txt");
  test_.files.AddFile("/s/5.txt", "aca");
  ExitInMidFile();
  test_.ArmAndGo();
  ExpectNoEnd();
  const std::string& partial = test_.files.Bytes("/t/1.txt");
  EXPECT_GT(partial.size(), 0u);
  EXPECT_LT(partial.size(), kLongResult.size());
  EXPECT_TRUE(kLongResult.starts_with(partial));
  EXPECT_EQ(test_.files.Bytes("/s/tijdel.enc"), partial);
  EXPECT_EQ(test_.files.Bytes("/s/1.txt"), kLongText);
  EXPECT_FALSE(test_.files.Has("/t/5.txt"));
}

TEST_F(GoStopTest, ExitInTheMiddleOfAFileBelowLeavesItsTemporaryFileThere) {
  MakeLong("/s/sub/3.txt");
  test_.files.AddFile("/s/sub/5.txt", "aca");
  ExitInMidFile();
  test_.ArmAndGo();
  ExpectNoEnd();
  EXPECT_LT(test_.files.Bytes("/t/sub/3.txt").size(), kLongResult.size());
  EXPECT_TRUE(test_.files.Has("/s/sub/tijdel.enc"));
  EXPECT_FALSE(test_.files.Has("/t/sub/5.txt"));
}

TEST_F(GoStopTest, TheNextRunRemovesWhatAStopLeftInTheSource) {
  MakeLong("/s/1.txt");
  ExitInMidFile();
  test_.ArmAndGo();
  ASSERT_TRUE(test_.files.Has("/s/tijdel.enc"));
  // The program starts anew, with the same files.
  FakeSystem system = test_.system;
  ScriptedUser user;
  Program next({test_.files, system, user});
  StartUp(next);
  cmdAnonymize_Click(next);
  cmdGo_Click(next);
  EXPECT_EQ(next.run.end, RunEnd::kFinished);
  EXPECT_FALSE(test_.files.Has("/s/tijdel.enc"));
  EXPECT_TRUE(test_.files.Bytes("/t/1.txt") == kLongResult);
}

TEST_F(GoStopTest, AfterTheStopNoLineReachesTheLog) {
  // The stop request comes at the yield after the second file's first log line, before the file's
  // error lines are written.
  test_.files.fail = FailOn("MoveTo", "/t/2.txt", ErrorNumber::kPermissionDenied);
  test_.OnEveryYield([&] {
    if (test_.LogMessages().size() == 3) cmdExit_Click(program_);
  });
  test_.ArmAndGo();
  EXPECT_EQ(program_.run.end, RunEnd::kStopped);
  EXPECT_EQ(test_.LogMessages().size(), 3u) << "header, first and second file";
}

TEST_F(GoStopTest, ADiskFullInThePrepassClosesTheWindows) {
  ASSERT_TRUE(program_.frmReplacements.loaded);
  const UnloadOrder order(program_);
  test_.files.fail = FailOn("MoveTo", "/t/1.txt", ErrorNumber::kDiskFull);
  test_.ArmAndGo();
  ExpectNoEnd();
  EXPECT_TRUE(HasEnded(program_));
  EXPECT_EQ(order.names, (std::vector<std::string>{"main", "options", "editor"}));
  EXPECT_FALSE(test_.window().visible);
  EXPECT_EQ(test_.files.Below("/t"), std::vector<std::string>{});
}

TEST_F(GoStopTest, ADiskFullInTheWalkReturnsAtOnceWithTheWindowsOpen) {
  test_.files.fail = FailOn("MoveTo", "/t/sub/3.txt", ErrorNumber::kDiskFull);
  test_.ArmAndGo();
  ExpectNoEnd();
  EXPECT_FALSE(HasEnded(program_));
  EXPECT_TRUE(test_.window().visible);
  EXPECT_EQ(test_.window().mouse_pointer, MousePointer::kHourglass);
  EXPECT_FALSE(test_.files.Has("/t/sub/4.txt"));
}

TEST_F(GoStopTest, AFileNamedLikeTheTemporaryOneInTheRootFolderIsLeftAlone) {
  test_.files.AddFile("/tijdel.enc", "someone's");
  test_.files.fail = FailOn("MoveTo", "/t/1.txt", ErrorNumber::kDiskFull);
  test_.ArmAndGo();
  EXPECT_EQ(test_.files.Bytes("/tijdel.enc"), "someone's");
}

TEST_F(GoStopTest, ClosingTheMainWindowStopsTheRunLikeExit) {
  test_.OnEveryYield([&] {
    if (program_.run.FilesDone == 1 && !program_.Beeindigd) frmMorvex_Close(program_);
  });
  test_.ArmAndGo();
  ExpectNoEnd();
  EXPECT_TRUE(HasEnded(program_));
  EXPECT_FALSE(test_.files.Has("/t/2.txt"));
}

TEST_F(GoStopTest, ExitWhileTheSizeIsAddedUpStopsTheRunBeforeTheFirstFile) {
  ExitAfter(0);
  test_.ArmAndGo();
  ExpectNoEnd();
  EXPECT_EQ(test_.files.Below("/t"), std::vector<std::string>{});
}

TEST_F(GoStopTest, ExitDuringTheCopyOfAFileThatIsNotSelectedLeavesNoPartOfIt) {
  test_.files.AddFile("/s/0.bin", "aca");
  test_.OnEveryYield([&] {
    // Clicks Exit after 1.txt and 2.txt are done and before the copy of 0.bin ends.
    if (program_.run.FilesDone == 2 && program_.run.BytesBefore == 6) cmdExit_Click(program_);
  });
  test_.ArmAndGo();
  EXPECT_EQ(program_.run.end, RunEnd::kStopped);
  EXPECT_FALSE(test_.files.Has("/t/0.bin"));
  EXPECT_EQ(program_.run.failed_files, 0);
}

}  // namespace
}  // namespace morvex::test
