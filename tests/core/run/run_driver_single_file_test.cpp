// Runs that Go starts with a single file as source.
#include <gtest/gtest.h>

#include "tests/core/run/run_program.h"

namespace morvex::test {
namespace {

const std::string kHeader = std::string(25, '-') + "11/21/26" + std::string(25, '-');

class GoSingleFileTest : public ::testing::Test {
 protected:
  GoSingleFileTest() { test_.files.AddFile("/s/a.txt", "aca"); }
  void Run() { test_.ArmAndGo(); }

  RunProgram test_{"/s/a.txt", "/t/copy.txt"};
};

TEST_F(GoSingleFileTest, MakesTheCopyAtTheTargetText) {
  Run();
  EXPECT_EQ(test_.files.Bytes("/t/copy.txt"), "bcb");
  EXPECT_EQ(test_.program.run.end, RunEnd::kFinished);
}

TEST_F(GoSingleFileTest, TheWindowStaysArmed) {
  Run();
  test_.ExpectArmed();
  EXPECT_EQ(test_.window().mouse_pointer, MousePointer::kDefault);
  EXPECT_FALSE(test_.window().ProgressBar1.visible);
}

TEST_F(GoSingleFileTest, TheBarIsShownWhileTheFileIsWorkedOn) {
  bool shown = false;
  test_.OnEveryYield([&] { shown = shown || test_.window().ProgressBar1.visible; });
  Run();
  EXPECT_TRUE(shown);
}

TEST_F(GoSingleFileTest, ASecondRunShowsNothingOfTheFirstOne) {
  Run();
  std::vector<std::string> shown;
  test_.window().changes.on_change = [&] {
    const std::string& text = test_.window().lblPercentage.caption;
    if (shown.empty() || shown.back() != text) shown.push_back(text);
  };
  test_.Go();
  test_.window().changes.on_change = nullptr;
  ASSERT_GE(shown.size(), 2u);
  EXPECT_EQ(shown[1], "") << "Go clears what the first run left before anything is counted";
  EXPECT_EQ(shown.back(), "Hits: 2\r\nDone !");
}

TEST_F(GoSingleFileTest, TheLoggingBoxStaysDisabled) {
  Run();
  EXPECT_FALSE(test_.program.frmOpties.chkLoggen.enabled);
}

TEST_F(GoSingleFileTest, LogsTheHeaderAndTheEnginesLinesButNoSummary) {
  Run();
  EXPECT_EQ(test_.LogMessages(),
            (std::vector<std::string>{kHeader, "/s/a.txt", "/s/a.txt  ----  Hits: 2"}));
}

TEST_F(GoSingleFileTest, WithLoggingOffThereIsNoLogAtAll) {
  RunProgram test("/s/a.txt", "/t/copy.txt", false);
  test.files.AddFile("/s/a.txt", "aca");
  test.ArmAndGo();
  EXPECT_EQ(test.files.Bytes("/t/copy.txt"), "bcb");
  EXPECT_FALSE(test.files.Has("/program/Morvex.log"));
}

TEST_F(GoSingleFileTest, GoCanBePressedAgainAtOnceAndTheFilesHitsAddUp) {
  Run();
  test_.Go();
  EXPECT_EQ(test_.program.run.end, RunEnd::kFinished);
  EXPECT_EQ(test_.program.run.HitsTotal, 2);
  EXPECT_EQ(test_.LogMessages().back(), "/s/a.txt  ----  Hits: 4");
  EXPECT_EQ(test_.window().lblPercentage.caption.get(), "Hits: 2\r\nDone !");
}

TEST_F(GoSingleFileTest, ATargetFolderThatDoesNotExistIsNotAskedAbout) {
  Text1_Change(test_.program, kTargetBox, "/none/copy.txt");
  Run();
  EXPECT_TRUE(test_.user.messages.empty());
  EXPECT_FALSE(test_.files.Has("/none"));
  EXPECT_EQ(test_.window().lblTotalFiles.caption.get(), "Scanned: 1 ");
  test_.ExpectArmed();
}

TEST_F(GoSingleFileTest, WithoutACopyTheRunCouldNotRun) {
  Text1_Change(test_.program, kTargetBox, "/t");
  Run();
  EXPECT_EQ(test_.program.run.end, RunEnd::kCouldNotRun);
  EXPECT_EQ(test_.program.run.failed_files, 1);
  EXPECT_EQ(test_.program.run.first_failure.error, ErrorNumber::kPathFileAccess);
  EXPECT_EQ(test_.files.Below("/t"), std::vector<std::string>{});
}

TEST_F(GoSingleFileTest, AFilePassedOverByARuleIsToldApart) {
  test_.files.AddFile("/s/a.txt", "aca", test_.system.now);
  Run();
  EXPECT_EQ(test_.program.run.end, RunEnd::kCouldNotRun);
  EXPECT_EQ(test_.program.run.passed_over_files, 1);
  EXPECT_EQ(test_.program.run.failed_files, 0);
}

TEST_F(GoSingleFileTest, TheBarIsSeenWhileItWorks) {
  std::vector<bool> seen;
  test_.OnEveryYield([&] { seen.push_back(test_.window().ProgressBar1.visible); });
  Run();
  ASSERT_FALSE(seen.empty());
  EXPECT_EQ(std::count(seen.begin(), seen.end(), false), 0);
  EXPECT_FALSE(test_.window().ProgressBar1.visible);
}

TEST_F(GoSingleFileTest, ThePointerIsAnHourglassWhileItWorks) {
  std::vector<MousePointer> seen;
  test_.OnEveryYield([&] { seen.push_back(test_.window().mouse_pointer); });
  Run();
  ASSERT_FALSE(seen.empty());
  EXPECT_EQ(seen.front(), MousePointer::kHourglass);
}

TEST_F(GoSingleFileTest, ExitInMidFileStopsIt) {
  test_.files.AddFile("/s/a.txt", kLongText);
  test_.OnEveryYield([&] {
    if (test_.program.run.FileOffset > 0) cmdExit_Click(test_.program);
  });
  Run();
  EXPECT_EQ(test_.program.run.end, RunEnd::kStopped);
  EXPECT_TRUE(HasEnded(test_.program));
  EXPECT_LT(test_.files.Bytes("/t/copy.txt").size(), kLongResult.size());
  EXPECT_FALSE(test_.files.Has("/s/tijdel.enc"));
}

}  // namespace
}  // namespace morvex::test
