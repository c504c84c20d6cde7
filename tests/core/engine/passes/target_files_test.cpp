// What is reported about a target that already contained files.
#include "core/engine/passes/target_files.h"

#include "tests/core/engine/folder_program.h"
#include "tests/core/run/run_program.h"

namespace morvex::test {
namespace {

class TargetFilesTest : public ::testing::Test {
 protected:
  TargetFilesTest() {
    test_.files.AddFile("/s/a.txt", "a");
    test_.files.AddFile("/s/sub/b.doc", "b");
  }
  const RunState& RunAndTell() {
    test_.ArmAndGo();
    return test_.program.run;
  }

  RunProgram test_;
};

TEST_F(TargetFilesTest, AnEmptyTargetIsNotGoneThrough) {
  int listed = 0;
  test_.files.fail = [&](const std::string& call, const std::string& path) {
    if (call == "ListFolder" && path.starts_with("/t")) ++listed;
    return ErrorNumber::kNone;
  };
  EXPECT_EQ(RunAndTell().other_files, 0);
  EXPECT_EQ(listed, 1);
  EXPECT_EQ(test_.program.frmMorvex.lblNote.caption.get(), "");
}

TEST_F(TargetFilesTest, FilesThatTheRunDidNotWriteAreCountedAndShown) {
  test_.files.AddFile("/t/a.txt", "an older copy");
  test_.files.AddFile("/t/old.txt", "Anna");
  test_.files.AddFile("/t/sub/older.txt", "Anna");
  test_.files.AddFile("/t/elsewhere/oldest.txt", "Anna");
  EXPECT_EQ(RunAndTell().other_files, 3);
  EXPECT_EQ(test_.program.frmMorvex.lblNote.caption.get(),
            "3 files in the target are not of this run.");
}

TEST_F(TargetFilesTest, ARunOverItsOwnCopiesLeavesNothingElse) {
  RunAndTell();
  EXPECT_EQ(RunAndTell().other_files, 0);
  EXPECT_EQ(RunAndTell().copies, 2);
}

TEST_F(TargetFilesTest, LinksCountAndAreNotFollowed) {
  test_.files.AddFile("/elsewhere/c.txt", "c");
  test_.files.AddLink("/t/way", "/elsewhere");
  test_.files.AddLink("/t/gone", "/nowhere");
  EXPECT_EQ(RunAndTell().other_files, 2);
}

TEST_F(TargetFilesTest, ACopyThatFailedLeavesTheOlderOneToBeTold) {
  test_.files.AddFile("/t/a.txt", "Anna");
  test_.files.fail = FailOn("OpenForReading", "/s/a.txt", ErrorNumber::kPermissionDenied);
  EXPECT_EQ(RunAndTell().other_files, 1);
}

TEST_F(TargetFilesTest, ATargetThatCannotBeGoneThroughIsToldWithTheError) {
  test_.files.AddFile("/t/elsewhere/oldest.txt", "Anna");
  test_.files.fail = FailOn("ListFolder", "/t/elsewhere", ErrorNumber::kPermissionDenied);
  EXPECT_EQ(RunAndTell().other_files_error, ErrorNumber::kPermissionDenied);
  EXPECT_NE(test_.program.frmMorvex.lblNote.caption.get().find("Error 70: Permission denied"),
            std::string::npos);
}

TEST_F(TargetFilesTest, ATargetThatCouldNotBeListedBeforeIsGoneThroughAfterwards) {
  bool asked = false;
  test_.files.AddFile("/t/old.txt", "Anna");
  test_.files.fail = [&](const std::string& call, const std::string& path) {
    const bool first = call == "ListFolder" && path == "/t" && !asked;
    asked = asked || first;
    return first ? ErrorNumber::kDeviceIo : ErrorNumber::kNone;
  };
  EXPECT_EQ(RunAndTell().other_files, 1);
}

TEST_F(TargetFilesTest, TheNextRunClearsTheNote) {
  test_.files.AddFile("/t/old.txt", "Anna");
  RunAndTell();
  Text1_Change(test_.program, kTargetBox, "/t2");
  test_.files.AddFolder("/t2");
  EXPECT_EQ(RunAndTell().other_files, 0);
  EXPECT_EQ(test_.program.frmMorvex.lblNote.caption.get(), "");
}

TEST_F(TargetFilesTest, AStoppedRunCountsNothing) {
  test_.files.AddFile("/t/old.txt", "Anna");
  test_.OnEveryYield([this] { test_.program.Beeindigd = true; });
  EXPECT_EQ(RunAndTell().other_files, 0);
  EXPECT_EQ(test_.program.frmMorvex.lblNote.caption.get(), "");
}

}  // namespace
}  // namespace morvex::test
