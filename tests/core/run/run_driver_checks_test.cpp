// Making the program ready for a run, and what Go checks before any file is handled.
#include <gtest/gtest.h>

#include "tests/core/run/run_program.h"

namespace morvex::test {
namespace {

const ShownMessage kCreate = {"Target folder doesn't exist. Create?", MessageButtons::kYesNo,
                              MessageIcon::kNone};

ShownMessage Notice(const std::string& text) {
  return {text, MessageButtons::kOk, MessageIcon::kNone};
}

std::string Header(const std::string& date) {
  return "-------------------------" + date + "-------------------------";
}

TEST(Anonymize, NotesTheMomentAndClearsTheTime) {
  RunProgram test;
  test.system.now += std::chrono::nanoseconds(123456789);
  test.program.run.elapsed = {125, 2, 5};
  test.program.run.RunStarted = true;
  test.Arm();
  EXPECT_EQ(test.program.run.ArmedAt, test.system.now);
  EXPECT_EQ(test.program.run.elapsed.elapsed, 0);
  EXPECT_EQ(test.program.run.elapsed.minutes, 0);
  EXPECT_EQ(test.program.run.elapsed.seconds, 0);
  EXPECT_FALSE(test.program.run.RunStarted);
}

TEST(Anonymize, ReadiesGoAndLocksThePaths) {
  RunProgram test;
  test.window().cmdGo.visible = false;
  test.Arm();
  test.ExpectArmed();
}

TEST(Anonymize, WritesTheSettingsFile) {
  RunProgram test;
  test.files.DeleteFile("/program/Init.dat");
  test.Arm();
  EXPECT_EQ(test.files.Bytes("/program/Init.dat"), SettingsText("/s", "/t"));
}

TEST(Anonymize, IsNotHeldUpByASettingsFileThatCannotBeWritten) {
  RunProgram test;
  test.files.fail = FailOn("ReplaceFile", "Init.dat", ErrorNumber::kPermissionDenied);
  test.Arm();
  test.ExpectArmed();
  EXPECT_TRUE(test.user.messages.empty());
}

TEST(Anonymize, LogsNothing) {
  RunProgram test;
  test.Arm();
  EXPECT_FALSE(test.files.Has("/program/Morvex.log"));
}

TEST(GoHeader, StandsBetweenTwiceTwentyFiveDashes) {
  RunProgram test("/none", "/t");
  test.system.short_date = "21-11-2026";
  test.ArmAndGo();
  EXPECT_EQ(test.LogMessages(), std::vector<std::string>{Header("21-11-2026")});
}

TEST(GoHeader, WithLoggingOffThereIsNoLineNotEvenThis) {
  RunProgram test("/none", "/t", false);
  test.ArmAndGo();
  EXPECT_FALSE(test.files.Has("/program/Morvex.log"));
  EXPECT_FALSE(test.program.run.LoggingOn);
}

TEST(GoHeader, OnlyACheckedBoxSwitchesLoggingOn) {
  RunProgram test("/none", "/t");
  ASSERT_TRUE(test.program.frmOpties.chkLoggen.SetValue(2));
  test.ArmAndGo();
  EXPECT_FALSE(test.program.run.LoggingOn);
  EXPECT_FALSE(test.files.Has("/program/Morvex.log"));
}

TEST(GoStart, ResetsTheCountersAndTheColour) {
  RunProgram test;
  RunState& run = test.program.run;
  run.FilesDone = run.FilesSkipped = run.HitsTotal = run.BytesTotal = run.BytesBefore = 99;
  run.failed_files = run.passed_over_files = 99;
  test.source_box().colour = Colour::kRed;
  test.ArmAndGo();
  for (const std::int64_t count : {run.FilesDone, run.FilesSkipped, run.HitsTotal, run.BytesTotal,
                                   run.BytesBefore, run.failed_files, run.passed_over_files}) {
    EXPECT_EQ(count, 0);
  }
  EXPECT_EQ(test.source_box().colour, Colour::kBlack);
  EXPECT_TRUE(run.RunStarted);
}

TEST(GoStart, TheResultTailStaysEmpty) {
  RunProgram test;
  test.files.AddFile("/s/a.txt", "a");
  test.ArmAndGo();
  EXPECT_EQ(test.program.run.ResultTail, "");
}

class SourceMissingTest : public ::testing::Test {
 protected:
  SourceMissingTest() { test_.ArmAndGo(); }
  RunProgram test_{"/none", "/t"};
};

TEST_F(SourceMissingTest, TellsThePathAndThatItDoesNotExist) {
  EXPECT_EQ(test_.user.messages,
            std::vector<ShownMessage>{Notice("/none\r\nSource folder doesn't exist.")});
}

TEST_F(SourceMissingTest, MarksTheSourceBoxAndGivesItTheFocus) {
  EXPECT_EQ(test_.source_box().colour, Colour::kRed);
  EXPECT_EQ(test_.window().focus.get(), &test_.source_box());
}

TEST_F(SourceMissingTest, LeavesTheWindowIdleWithTheIdleCaptionOnGo) {
  EXPECT_EQ(test_.window().cmdGo.caption.get(), ">----------->");
  EXPECT_TRUE(test_.window().cmdAnonymize.enabled);
  EXPECT_TRUE(test_.source_box().enabled);
  EXPECT_TRUE(test_.target_box().enabled);
  EXPECT_EQ(test_.window().mouse_pointer, MousePointer::kDefault);
  EXPECT_FALSE(test_.window().ProgressBar1.visible);
}

TEST_F(SourceMissingTest, LeavesGoDisabledAsInEveryIdleState) {
  EXPECT_FALSE(test_.window().cmdGo.enabled);
}

TEST_F(SourceMissingTest, TheSourceIsBlackAgainAsSoonAsItIsCorrected) {
  Text1_Change(test_.program, kSourceBox, "/s");
  EXPECT_EQ(test_.source_box().colour, Colour::kBlack);
}

TEST_F(SourceMissingTest, LeavesTheLoggingBoxDisabled) {
  EXPECT_FALSE(test_.program.frmOpties.chkLoggen.enabled);
}

TEST_F(SourceMissingTest, TheLoggingBoxStaysDisabledUntilAFolderRunIsCompleted) {
  Text1_Change(test_.program, kSourceBox, "/s");
  test_.Arm();
  EXPECT_FALSE(test_.program.frmOpties.chkLoggen.enabled) << "arming again is not enough";
  test_.Go();
  EXPECT_EQ(test_.program.run.end, RunEnd::kFinished);
  EXPECT_TRUE(test_.program.frmOpties.chkLoggen.enabled);
}

TEST_F(SourceMissingTest, IsNoRun) {
  EXPECT_EQ(test_.program.run.end, RunEnd::kCouldNotRun);
  EXPECT_EQ(test_.files.Below("/t"), std::vector<std::string>{});
}

TEST_F(SourceMissingTest, TheNextGoPaintsTheBoxBlackAgain) {
  Text1_Change(test_.program, kSourceBox, "/s");
  test_.ArmAndGo();
  EXPECT_EQ(test_.source_box().colour, Colour::kBlack);
  EXPECT_EQ(test_.program.run.end, RunEnd::kFinished);
}

class TargetMissingTest : public ::testing::Test {
 protected:
  TargetMissingTest() {
    test_.files.AddFile("/s/a.txt", "a");
    test_.Arm();
  }
  RunProgram test_{"/s", "/new/target"};
};

TEST_F(TargetMissingTest, TheQuestionStandsAloneAndTheBoxIsRedMeanwhile) {
  std::vector<Colour> colours;
  test_.window().changes.on_change = [&] { colours.push_back(test_.target_box().colour); };
  test_.Go();
  EXPECT_EQ(test_.user.messages, std::vector<ShownMessage>{kCreate});
  EXPECT_NE(std::find(colours.begin(), colours.end(), Colour::kRed), colours.end());
}

TEST_F(TargetMissingTest, AfterANoAChangedPathCanBeArmedAgain) {
  test_.user.answers = {Answer::kNo};
  test_.Go();
  Text1_Change(test_.program, kTargetBox, "/t");
  EXPECT_FALSE(test_.window().cmdGo.enabled);
  EXPECT_TRUE(test_.window().cmdAnonymize.enabled) << "Exit alone would be left";
  test_.ArmAndGo();
  EXPECT_EQ(test_.program.run.end, RunEnd::kFinished);
}

TEST_F(TargetMissingTest, OnYesAFolderThatCannotBeMadeLeavesTheFocusOnItsBox) {
  test_.user.answers = {Answer::kYes};
  test_.files.fail = FailOn("CreateFolder", "/new/target", ErrorNumber::kPermissionDenied);
  test_.Go();
  EXPECT_EQ(test_.window().focus.get(), &test_.target_box());
}

TEST_F(TargetMissingTest, OnNoTheTargetBoxIsBlackAgainAndHasTheFocus) {
  test_.user.answers = {Answer::kNo};
  test_.Go();
  EXPECT_EQ(test_.target_box().colour, Colour::kBlack);
  EXPECT_EQ(test_.window().focus.get(), &test_.target_box());
  EXPECT_FALSE(test_.files.Has("/new"));
}

TEST_F(TargetMissingTest, OnNoGoStaysAsItWasAndThePathsAreFree) {
  test_.window().cmdExit.enabled = false;
  test_.user.answers = {Answer::kNo};
  test_.Go();
  EXPECT_TRUE(test_.window().cmdGo.enabled);
  EXPECT_EQ(test_.window().cmdGo.caption.get(), "GO !");
  EXPECT_FALSE(test_.window().cmdAnonymize.enabled);
  EXPECT_TRUE(test_.window().cmdExit.enabled);
  EXPECT_TRUE(test_.source_box().enabled);
  EXPECT_TRUE(test_.target_box().enabled);
  EXPECT_EQ(test_.window().mouse_pointer, MousePointer::kDefault);
  EXPECT_FALSE(test_.program.frmOpties.chkLoggen.enabled);
  EXPECT_EQ(test_.program.run.end, RunEnd::kCouldNotRun);
}

TEST_F(TargetMissingTest, AfterANoTheLoggingBoxStaysDisabledUntilAFolderRunIsCompleted) {
  test_.user.answers = {Answer::kNo, Answer::kYes};
  test_.Go();
  test_.Arm();
  EXPECT_FALSE(test_.program.frmOpties.chkLoggen.enabled) << "arming again is not enough";
  test_.Go();
  EXPECT_EQ(test_.program.run.end, RunEnd::kFinished);
  EXPECT_TRUE(test_.program.frmOpties.chkLoggen.enabled);
}

TEST_F(TargetMissingTest, OnYesItIsMadeWithItsParentsAndTheRunGoesOn) {
  test_.user.answers = {Answer::kYes};
  test_.Go();
  EXPECT_EQ(test_.files.Bytes("/new/target/a.txt"), "b");
  EXPECT_EQ(test_.target_box().colour, Colour::kBlack);
  EXPECT_EQ(test_.program.run.end, RunEnd::kFinished);
  test_.ExpectIdle();
}

TEST_F(TargetMissingTest, OnYesAFolderThatCannotBeMadeIsToldWithItsPath) {
  test_.user.answers = {Answer::kYes};
  test_.files.fail = FailOn("CreateFolder", "/new/target", ErrorNumber::kPermissionDenied);
  test_.Go();
  EXPECT_EQ(
      test_.user.messages,
      (std::vector<ShownMessage>{kCreate, Notice("/new/target\r\nCan't create target folder.")}));
  EXPECT_EQ(test_.target_box().colour, Colour::kRed);
}

TEST_F(TargetMissingTest, OnYesAFolderThatCannotBeMadeEndsIdleWithoutARun) {
  test_.user.answers = {Answer::kYes};
  test_.files.fail = FailOn("CreateFolder", "/new/target", ErrorNumber::kPermissionDenied);
  test_.Go();
  test_.ExpectIdle();
  EXPECT_FALSE(test_.program.frmOpties.chkLoggen.enabled);
  EXPECT_EQ(test_.program.run.end, RunEnd::kCouldNotRun);
  EXPECT_EQ(test_.program.run.FilesDone, 0);
  // The log has nothing but its header.
  EXPECT_EQ(test_.LogMessages(), std::vector<std::string>{Header("11/21/26")});
}

TEST_F(TargetMissingTest, AFileInTheTargetsPlaceCannotBeMadeAFolder) {
  test_.files.AddFile("/new/target", "a file");
  test_.user.answers = {Answer::kYes};
  test_.Go();
  EXPECT_EQ(test_.user.messages.back(), Notice("/new/target\r\nCan't create target folder."));
  EXPECT_EQ(test_.files.Bytes("/new/target"), "a file");
}

// What the window shows while a message about a path is open. The path turns red just before the
// message opens, and the labels are noted when it turns red.
class BehindAMessageTest : public ::testing::Test {
 protected:
  BehindAMessageTest() { test_.files.AddFile("/s/a.txt", "a"); }
  // Finishes a run, calls Go once more, and notes the labels when this second Go turns a path red.
  void GoAfterARun(const std::string& source, const std::string& target) {
    test_.ArmAndGo();
    ASSERT_EQ(test_.window().lblPercentage.caption.get(), "Hits: 1\r\nDone !");
    Text1_Change(test_.program, kSourceBox, source);
    Text1_Change(test_.program, kTargetBox, target);
    test_.Arm();
    test_.window().changes.on_change = [this, was_red = false]() mutable {
      const MainForm& window = test_.window();
      const bool is_red =
          test_.source_box().colour == Colour::kRed || test_.target_box().colour == Colour::kRed;
      if (is_red && !was_red) {
        bars_.push_back(window.ProgressBar1.visible);
        texts_.push_back(window.lblFiles.caption.get() + window.lblTotalFiles.caption.get() +
                         window.lblTijd.caption.get() + window.lblPercentage.caption.get());
        values_.push_back(window.ProgressBar1.value());
      }
      was_red = is_red;
    };
    test_.Go();
    test_.window().changes.on_change = nullptr;
  }

  RunProgram test_;
  std::vector<bool> bars_;
  std::vector<std::string> texts_;
  std::vector<std::int64_t> values_;
};

TEST_F(BehindAMessageTest, OfAMissingSourceNoBarAndNoFormerResultIsShown) {
  GoAfterARun("/none", "/t");
  EXPECT_EQ(bars_, std::vector<bool>{false});
  EXPECT_EQ(texts_, std::vector<std::string>{""});
  EXPECT_EQ(values_, std::vector<std::int64_t>{0});
}

TEST_F(BehindAMessageTest, OfAMissingTargetNoBarAndNoFormerResultIsShown) {
  test_.user.answers = {Answer::kYes};
  test_.files.fail = FailOn("CreateFolder", "/new", ErrorNumber::kPermissionDenied);
  GoAfterARun("/s", "/new");
  ASSERT_EQ(test_.user.messages.size(), 2u) << "the question, then that it cannot be made";
  EXPECT_EQ(bars_, (std::vector<bool>{false, false}));
  EXPECT_EQ(texts_, (std::vector<std::string>{"", ""}));
}

TEST(GoEmptySource, GoesOnToTheCheckOfTheTarget) {
  RunProgram test("", "/none");
  test.ArmAndGo();
  EXPECT_EQ(test.user.messages, std::vector<ShownMessage>{kCreate});
}

TEST(GoEmptySource, GoesIntoAFolderRunThatEndsForWantOfAScale) {
  RunProgram test("", "/t");
  test.ArmAndGo();
  EXPECT_EQ(test.user.messages,
            std::vector<ShownMessage>{Notice("Errors occurred.\r\nProgramm will be terminated.")});
  EXPECT_TRUE(test.program.Beeindigd);
  EXPECT_TRUE(HasEnded(test.program));
  EXPECT_EQ(test.program.run.end, RunEnd::kStopped);
}

TEST(ArmRun, ArmsLikeAnonymizeAndWritesNoSettings) {
  RunProgram test;
  const std::string settings = "left as it was";
  test.files.AddFile("/program/Init.dat", settings);
  test.system.now += std::chrono::hours(1);
  ArmRun(test.program);
  test.ExpectArmed();
  EXPECT_EQ(test.program.run.ArmedAt, test.system.now);
  EXPECT_EQ(test.files.Bytes("/program/Init.dat"), settings);
}

TEST(ArmRun, DoesNothingWhileARunWorks) {
  RunProgram test;
  test.program.run.working = true;
  test.system.now += std::chrono::hours(1);
  ArmRun(test.program);
  EXPECT_NE(test.program.run.ArmedAt, test.system.now);
}

}  // namespace
}  // namespace morvex::test
