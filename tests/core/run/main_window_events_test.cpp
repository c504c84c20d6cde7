// Events of the main window, the start delay and the program's end.
#include "core/run/main_window_events.h"

#include <gtest/gtest.h>

#include "core/list/editor.h"
#include "core/settings/options.h"
#include "tests/core/run/run_program.h"

namespace morvex::test {
namespace {

using std::chrono::milliseconds;

class MainWindowEventsTest : public ::testing::Test {
 protected:
  MainWindowEventsTest() { test_.program.run.LoggingOn = false; }

  RunProgram test_;
  Program& program_ = test_.program;
  MainForm& window_ = test_.program.frmMorvex;
};

TEST_F(MainWindowEventsTest, AClickOnTheWindowHidesTheOpenExtensionList) {
  program_.frmOpties.lstExtensie.visible = true;
  frmMorvex_Click(program_);
  EXPECT_FALSE(program_.frmOpties.lstExtensie.visible);
  frmMorvex_Click(program_);
  EXPECT_FALSE(program_.frmOpties.lstExtensie.visible);
}

TEST_F(MainWindowEventsTest, AClickOnTheFileLabelDoesTheSame) {
  program_.frmOpties.lstExtensie.visible = true;
  lblFiles_Click(program_);
  EXPECT_FALSE(program_.frmOpties.lstExtensie.visible);
}

TEST_F(MainWindowEventsTest, ThePointerOverAPictureBecomesCursor101) {
  imOpties_MouseMove(program_);
  EXPECT_EQ(window_.imOpties.mouse_pointer, MousePointer::kCustom);
  EXPECT_EQ(window_.imOpties.cursor_resource, 101);
  EXPECT_EQ(window_.imList.mouse_pointer, MousePointer::kDefault);
  imList_MouseMove(program_);
  EXPECT_EQ(window_.imList.mouse_pointer, MousePointer::kCustom);
  EXPECT_EQ(window_.imList.cursor_resource, 101);
}

TEST_F(MainWindowEventsTest, TheOptionsPictureShowsTheOptionsWindow) {
  imOpties_Click(program_);
  EXPECT_TRUE(program_.frmOpties.visible);
  EXPECT_TRUE(window_.visible);
}

TEST_F(MainWindowEventsTest, TheListPictureShowsTheEditorAndHidesTheMainWindow) {
  imList_Click(program_);
  EXPECT_TRUE(program_.frmReplacements.loaded);
  EXPECT_TRUE(program_.frmReplacements.visible);
  EXPECT_FALSE(window_.visible);
  EXPECT_TRUE(window_.loaded);
}

TEST_F(MainWindowEventsTest, TypingInEitherBoxDisablesGoUntilTheRunIsArmedAgain) {
  for (const int box : {kSourceBox, kTargetBox}) {
    test_.Arm();
    test_.ExpectArmed();
    Text1_Change(program_, box, "/typed" + std::to_string(box));
    EXPECT_FALSE(window_.cmdGo.enabled);
    EXPECT_EQ(window_.cmdGo.caption.get(), ">------------>>>>");
    test_.Arm();
    test_.ExpectArmed();
  }
}

TEST_F(MainWindowEventsTest, ADoubleClickShowsTheFolderTreeInPlaceOfTheBox) {
  for (const int box : {kSourceBox, kTargetBox}) {
    RunProgram test;
    Text1_DblClick(test.program, box);
    EXPECT_FALSE(test.window().Text1(box).visible);
    EXPECT_TRUE(test.window().Text1(kSourceBox + kTargetBox - box).visible);
    EXPECT_TRUE(test.window().FolderTreeview1.visible);
    EXPECT_EQ(test.window().FolderTreeview1.selected_folder.get(), box == kSourceBox ? "/s" : "/t");
    EXPECT_EQ(test.window().focus.get(), &test.window().FolderTreeview1);
    EXPECT_EQ(test.window().EditedBox, box);
  }
}

TEST_F(MainWindowEventsTest, AChosenFolderComesIntoTheBoxThatTheTreeStoodInFor) {
  Text1_DblClick(program_, kTargetBox);
  FolderTreeview1_FolderChosen(program_, "/chosen");
  EXPECT_FALSE(window_.FolderTreeview1.visible);
  EXPECT_TRUE(test_.target_box().visible);
  EXPECT_EQ(test_.target_box().text.get(), "/chosen");
  EXPECT_EQ(test_.source_box().text.get(), "/s");
}

TEST_F(MainWindowEventsTest, AChosenFolderIsAChangeOfTheBox) {
  Text1_DblClick(program_, kSourceBox);
  window_.cmdGo.caption = "GO !";
  window_.cmdGo.enabled = true;
  FolderTreeview1_FolderChosen(program_, "/chosen");
  EXPECT_FALSE(window_.cmdGo.enabled);
  EXPECT_EQ(window_.cmdGo.caption.get(), ">------------>>>>");
}

TEST_F(MainWindowEventsTest, AChoiceThatIsGivenUpBringsTheBoxBackAsItWas) {
  Text1_DblClick(program_, kSourceBox);
  FolderTreeview1_Cancelled(program_);
  EXPECT_FALSE(window_.FolderTreeview1.visible);
  EXPECT_TRUE(test_.source_box().visible);
  EXPECT_EQ(test_.source_box().text.get(), "/s");
}

TEST_F(MainWindowEventsTest, ADoubleClickOnTheOtherBoxBringsTheFirstBack) {
  Text1_DblClick(program_, kSourceBox);
  Text1_DblClick(program_, kTargetBox);
  EXPECT_TRUE(test_.source_box().visible);
  EXPECT_FALSE(test_.target_box().visible);
  EXPECT_EQ(window_.FolderTreeview1.selected_folder.get(), "/t");
  FolderTreeview1_FolderChosen(program_, "/chosen");
  EXPECT_EQ(test_.source_box().text.get(), "/s");
  EXPECT_EQ(test_.target_box().text.get(), "/chosen");
}

TEST_F(MainWindowEventsTest, AFolderEventIsKeptAndNothingIsSeenOfIt) {
  const std::uint64_t before = window_.changes.revision();
  FolderTreeview1_FolderEvent(program_, "/looked/at");
  EXPECT_EQ(window_.FolderTreeview1.last_folder_event, "/looked/at");
  EXPECT_EQ(window_.changes.revision(), before);
}

TEST_F(MainWindowEventsTest, TheTimersTickDisablesIt) {
  window_.Timer1.enabled = true;
  Timer1_Timer(program_);
  EXPECT_FALSE(window_.Timer1.enabled);
}

TEST_F(MainWindowEventsTest, WaitEndsWhenItsTimeHasPassed) {
  std::vector<std::string> shown;
  std::vector<int> intervals;
  test_.user.on_wait = [&](milliseconds longest) {
    EXPECT_LE(longest, milliseconds(40));
    EXPECT_TRUE(window_.Timer1.enabled);
    shown.push_back(window_.lblTotalFiles.caption);
    intervals.push_back(window_.Timer1.interval_ms);
    test_.system.steady += milliseconds(25);
  };
  Wait(program_, milliseconds(40));
  EXPECT_EQ(shown, (std::vector<std::string>(2, "Momentje...")));
  EXPECT_EQ(intervals, (std::vector<int>{40, 40}));
  EXPECT_FALSE(window_.Timer1.enabled);
  EXPECT_EQ(window_.lblTotalFiles.caption.get(), "Bezig met scannen...");
}

TEST_F(MainWindowEventsTest, WaitEndsEarlyAtTheTimersTick) {
  int waits = 0;
  test_.user.on_wait = [&](milliseconds) {
    ++waits;
    Timer1_Timer(program_);
  };
  Wait(program_, milliseconds(32767));
  EXPECT_EQ(waits, 1);
}

TEST_F(MainWindowEventsTest, WaitEndsEarlyAtExit) {
  int waits = 0;
  test_.user.on_wait = [&](milliseconds) {
    ++waits;
    cmdExit_Click(program_);
  };
  Wait(program_, milliseconds(32767));
  EXPECT_EQ(waits, 1);
  EXPECT_TRUE(HasEnded(program_));
}

TEST_F(MainWindowEventsTest, ExitUnloadsEditorOptionsAndMainWindowInThisOrder) {
  imList_Click(program_);
  const UnloadOrder order(program_);
  cmdExit_Click(program_);
  EXPECT_EQ(order.names, (std::vector<std::string>{"editor", "options", "main"}));
  EXPECT_TRUE(HasEnded(program_));
}

TEST_F(MainWindowEventsTest, ExitFirstTellsTheProgramToStop) {
  bool told = false;
  window_.changes.on_change = [&] { told = program_.Beeindigd; };
  cmdExit_Click(program_);
  EXPECT_TRUE(told);
}

TEST_F(MainWindowEventsTest, ExitWhileTheOptionsWindowIsOpenUnloadsAllThree) {
  imOpties_Click(program_);
  cmdExit_Click(program_);
  EXPECT_FALSE(program_.frmOpties.loaded || program_.frmOpties.visible);
  EXPECT_FALSE(program_.frmReplacements.loaded || program_.frmReplacements.visible);
  EXPECT_FALSE(window_.loaded || window_.visible);
  EXPECT_TRUE(program_.Beeindigd);
}

TEST_F(MainWindowEventsTest, ClosingTheMainWindowIsExit) {
  frmMorvex_Close(program_);
  EXPECT_TRUE(program_.Beeindigd);
  EXPECT_TRUE(HasEnded(program_));
}

TEST_F(MainWindowEventsTest, TheProgramHasNotEndedWhileAWindowIsLoaded) {
  imList_Click(program_);
  EXPECT_FALSE(HasEnded(program_));
  Unload(program_.frmReplacements);
  EXPECT_FALSE(HasEnded(program_));
  Unload(window_);
  EXPECT_FALSE(HasEnded(program_));
  Unload(program_.frmOpties);
  EXPECT_TRUE(HasEnded(program_));
}

}  // namespace
}  // namespace morvex::test
