// Runs that Go starts with a folder as source, and that finish.
#include <gtest/gtest.h>

#include "core/list/editor.h"
#include "core/settings/options.h"
#include "tests/core/run/run_program.h"

namespace morvex::test {
namespace {

const std::string kHeader = std::string(25, '-') + "11/21/26" + std::string(25, '-');

class GoFolderTest : public ::testing::Test {
 protected:
  GoFolderTest() {
    test_.files.AddFile("/s/a.txt", "aca");
    test_.files.AddFile("/s/b.bin", "aca");
    test_.files.AddFile("/s/sub/c.txt", "aaaa");
    test_.system.times_of_day = {{12, 0, 0}, {12, 2, 5}};
  }

  RunProgram test_;
  Program& program_ = test_.program;
};

TEST_F(GoFolderTest, MakesTheCopies) {
  test_.ArmAndGo();
  EXPECT_EQ(test_.files.Below("/t"),
            (std::vector<std::string>{"/t/a.txt", "/t/b.bin", "/t/sub/", "/t/sub/c.txt"}));
  EXPECT_EQ(test_.files.Bytes("/t/a.txt"), "bcb");
  EXPECT_EQ(test_.files.Bytes("/t/b.bin"), "aca");
  EXPECT_EQ(test_.files.Bytes("/t/sub/c.txt"), "bbbb");
  EXPECT_EQ(program_.run.end, RunEnd::kFinished);
}

TEST_F(GoFolderTest, AfterwardsTheFocusIsToStandOnOk) {
  test_.ArmAndGo();
  EXPECT_EQ(test_.window().focus.get(), &test_.window().cmdAnonymize);
}

TEST_F(GoFolderTest, ASecondRunShowsNothingOfTheFirstOneNotEvenAtItsStart) {
  test_.ArmAndGo();
  ASSERT_EQ(test_.window().lblPercentage.caption.get(), "Hits: 6\r\nDone !");
  test_.Arm();
  bool done_seen = false;
  bool first_seen = false;
  test_.window().changes.on_change = [&] {
    if (!program_.run.working || first_seen) return;
    // When the hourglass appears, the labels must already be empty.
    const MainForm& window = test_.window();
    const std::string shown = window.lblFiles.caption.get() + window.lblTotalFiles.caption.get() +
                              window.lblTijd.caption.get() + window.lblPercentage.caption.get();
    first_seen = shown.empty();
    done_seen = done_seen || (window.mouse_pointer == MousePointer::kHourglass && !shown.empty());
  };
  test_.Go();
  test_.window().changes.on_change = nullptr;
  EXPECT_TRUE(first_seen) << "the labels were never empty";
  EXPECT_FALSE(done_seen) << "something else was shown before the labels were cleared";
}

TEST_F(GoFolderTest, TheFirstRunLeavesWhatStartUpSaysUntilItHasAFigureOfItsOwn) {
  program_.frmMorvex.lblTotalFiles.caption = "Bezig met scannen...";
  std::vector<std::string> shown;
  test_.window().changes.on_change = [&] {
    const std::string& text = test_.window().lblTotalFiles.caption;
    if (shown.empty() || shown.back() != text) shown.push_back(text);
  };
  test_.ArmAndGo();
  test_.window().changes.on_change = nullptr;
  ASSERT_GE(shown.size(), 2u);
  EXPECT_EQ(shown[0], "Bezig met scannen...");
  EXPECT_TRUE(shown[1].starts_with("Scanned: 1")) << shown[1];
}

TEST_F(GoFolderTest, ASourceThatCannotBeListedIsNamedAsWhatStopsTheRun) {
  test_.files.fail = FailOn("ListFolder", "/s", ErrorNumber::kPermissionDenied);
  test_.ArmAndGo();
  EXPECT_EQ(program_.run.end, RunEnd::kCouldNotRun);
  EXPECT_EQ(program_.run.first_failure.path, "/s");
  EXPECT_EQ(program_.run.first_failure.error, ErrorNumber::kPermissionDenied);
}

TEST_F(GoFolderTest, ATargetThatVanishesIsNamedAsWhatStopsTheRun) {
  bool checked = false;
  test_.files.fail = [&](const std::string& call, const std::string& path) {
    const bool of_target = call == "LookUpFolder" && path == "/t";
    const bool fails = of_target && checked;
    checked = checked || of_target;
    return fails || (checked && call == "CreateFolder") ? ErrorNumber::kPathNotFound
                                                        : ErrorNumber::kNone;
  };
  test_.ArmAndGo();
  EXPECT_EQ(program_.run.end, RunEnd::kCouldNotRun);
  EXPECT_EQ(program_.run.first_failure.path, "/t");
}

TEST_F(GoFolderTest, LogsHeaderFilesAndSummary) {
  test_.ArmAndGo();
  EXPECT_EQ(test_.LogMessages(),
            (std::vector<std::string>{
                kHeader, "/s/a.txt  ----  Hits: 2", "/s/sub/c.txt  ----  Hits: 4", "  ",
                "Initialisatie-bestand: /program/Init.dat", "Substitutie-bestand: /list.txt",
                "gemorvexeerd: 2 bestanden", "Overgeslagen: 1 bestanden", "Vervangingen: 6",
                "Totaal: 10 bytes", "Verstreken tijd: 2 min 5 sec"}));
}

TEST_F(GoFolderTest, TheRecordsOfTheSummaryStandInQuotesBehindTheTime) {
  test_.ArmAndGo();
  const std::string& log = test_.files.Bytes("/program/Morvex.log");
  EXPECT_NE(log.find("\"12:34:56   \"\r\n\"12:34:56 Initialisatie-bestand: "), std::string::npos);
  EXPECT_TRUE(log.ends_with("\"12:34:56 Verstreken tijd: 2 min 5 sec\"\r\n")) << log;
}

TEST_F(GoFolderTest, TheSummaryNamesTheSettingsFileWithTheProgramFolderAsItStands) {
  TestProgram test('\\');
  test.system.program_folder = "C:\\";
  test.files.AddFolder("C:\\s");
  test.files.AddFolder("C:\\t");
  StartUp(test.program);
  Text1_Change(test.program, kSourceBox, "C:\\s");
  Text1_Change(test.program, kTargetBox, "C:\\t");
  ASSERT_TRUE(test.program.frmOpties.chkLoggen.SetValue(1));
  cmdAnonymize_Click(test.program);
  cmdGo_Click(test.program);
  EXPECT_NE(test.files.Bytes("C:\\Morvex.log").find(" Initialisatie-bestand: C:\\\\Init.dat\""),
            std::string::npos);
}

TEST_F(GoFolderTest, ShowsTimeHitsAndTheFullBar) {
  test_.ArmAndGo();
  EXPECT_EQ(test_.window().lblTijd.caption.get(), "2 min 5 sec");
  EXPECT_EQ(test_.window().lblPercentage.caption.get(), "Hits: 6\r\nDone !");
  EXPECT_EQ(test_.window().lblTotalFiles.caption.get(), "Scanned: 2\r\nSkipped: 1");
  EXPECT_EQ(test_.window().ProgressBar1.maximum(), 1000);
  EXPECT_EQ(test_.window().ProgressBar1.value(), 1000);
}

TEST_F(GoFolderTest, LeavesTheWindowIdleAndTheLoggingBoxEnabled) {
  test_.window().cmdExit.enabled = false;
  test_.ArmAndGo();
  test_.ExpectIdle();
  EXPECT_TRUE(test_.window().cmdExit.enabled);
  EXPECT_TRUE(program_.frmOpties.chkLoggen.enabled);
  EXPECT_TRUE(test_.window().loaded);
  EXPECT_TRUE(test_.window().visible);
}

TEST_F(GoFolderTest, WhileItWorksGoAndTheLoggingBoxAreDisabledUnderAnHourglass) {
  int looked = 0;
  test_.OnEveryYield([&] {
    ++looked;
    EXPECT_FALSE(test_.window().cmdGo.enabled);
    EXPECT_FALSE(program_.frmOpties.chkLoggen.enabled);
    EXPECT_FALSE(test_.source_box().enabled);
    EXPECT_EQ(test_.window().mouse_pointer, MousePointer::kHourglass);
    EXPECT_TRUE(test_.window().ProgressBar1.visible);
    EXPECT_TRUE(program_.run.working);
  });
  test_.ArmAndGo();
  EXPECT_GT(looked, 0);
  EXPECT_FALSE(test_.window().ProgressBar1.visible);
  EXPECT_FALSE(program_.run.working);
}

TEST_F(GoFolderTest, WithLoggingOffThereIsNoLogAtAll) {
  RunProgram test("/s", "/t", false);
  test.files.AddFile("/s/a.txt", "aca");
  test.files.AddFile("/s/article", "aca");
  test.ArmAndGo();
  EXPECT_EQ(test.program.run.end, RunEnd::kFinished);
  EXPECT_FALSE(test.files.Has("/program/Morvex.log"));
}

TEST_F(GoFolderTest, OverMidnightTheTimeIsNegative) {
  test_.system.times_of_day = {{23, 59, 50}, {0, 0, 10}};
  test_.ArmAndGo();
  EXPECT_EQ(test_.window().lblTijd.caption.get(), "-1439 min -40 sec");
  EXPECT_EQ(test_.LogMessages().back(), "Verstreken tijd: -1439 min -40 sec");
  EXPECT_EQ(program_.run.elapsed.elapsed, -86380);
}

TEST_F(GoFolderTest, DoesNotWriteTheSettingsFile) {
  test_.Arm();
  test_.files.DeleteFile("/program/Init.dat");
  test_.Go();
  EXPECT_FALSE(test_.files.Has("/program/Init.dat"));
}

TEST_F(GoFolderTest, ASecondRunCountsAndScalesAnew) {
  test_.ArmAndGo();
  test_.files.AddFile("/s/big.bin", std::string(12345678, 'x'));
  test_.ArmAndGo();
  EXPECT_EQ(program_.run.FilesDone, 2);
  EXPECT_EQ(program_.run.HitsTotal, 6);
  EXPECT_EQ(program_.run.ProgressScale, 4);
  EXPECT_EQ(test_.window().ProgressBar1.maximum(), 1234);
}

TEST_F(GoFolderTest, CountsBeyond32BitsAreShownAndLoggedAsTheyAre) {
  // Shortly before the end, the counters are raised as if the run had handled billions of files.
  bool grown = false;
  test_.OnEveryYield([&] {
    if (grown || program_.run.FilesSkipped == 0) return;
    grown = true;
    program_.run.FilesDone += 5'000'000'000;
    program_.run.FilesSkipped += 6'000'000'000;
    program_.run.HitsTotal += 7'000'000'000;
    program_.run.BytesTotal += 8'000'000'000;
  });
  test_.ArmAndGo();
  EXPECT_EQ(test_.window().lblTotalFiles.caption.get(),
            "Scanned: 5000000002\r\nSkipped: 6000000001");
  EXPECT_EQ(test_.window().lblPercentage.caption.get(), "Hits: 7000000006\r\nDone !");
  const std::vector<std::string> log = test_.LogMessages();
  for (const char* line :
       {"gemorvexeerd: 5000000002 bestanden", "Overgeslagen: 6000000001 bestanden",
        "Vervangingen: 7000000006", "Totaal: 8000000010 bytes"}) {
    EXPECT_NE(std::find(log.begin(), log.end(), line), log.end()) << line;
  }
}

TEST_F(GoFolderTest, FilesWrittenAfterTheArmingAreNotProcessed) {
  test_.Arm();
  test_.files.AddFile("/s/new.txt", "aca", test_.system.now);
  test_.Go();
  EXPECT_FALSE(test_.files.Has("/t/new.txt"));
  EXPECT_TRUE(test_.files.Has("/t/a.txt"));
  EXPECT_EQ(program_.run.passed_over_files, 1);
}

TEST_F(GoFolderTest, AListThatWasChangedIsUsedOnlyAfterItsOk) {
  imList_Click(program_);
  Cell_Change(program_, {Column::kRight, 0}, "other");
  test_.ArmAndGo();
  EXPECT_EQ(test_.files.Bytes("/t/a.txt"), "bcb");
}

TEST_F(GoFolderTest, WhileARunWorksNothingElseStarts) {
  int tried = 0;
  const std::string settings = test_.files.Bytes("/program/Init.dat");
  test_.Arm();
  test_.files.AddFile("/program/Init.dat", "kept");
  test_.OnEveryYield([&] {
    ++tried;
    const std::int64_t done = program_.run.FilesDone + program_.run.FilesSkipped;
    const std::string caption = test_.window().cmdGo.caption;
    cmdGo_Click(program_);
    cmdAnonymize_Click(program_);
    imList_Click(program_);
    imOpties_Click(program_);
    EXPECT_EQ(program_.run.FilesDone + program_.run.FilesSkipped, done);
    EXPECT_FALSE(test_.window().cmdGo.enabled);
    EXPECT_FALSE(program_.frmReplacements.visible);
    EXPECT_FALSE(program_.frmOpties.visible);
    EXPECT_TRUE(test_.window().visible);
  });
  test_.Go();
  EXPECT_GT(tried, 3);
  EXPECT_EQ(program_.run.end, RunEnd::kFinished);
  EXPECT_EQ(program_.run.FilesDone, 2);
  EXPECT_EQ(test_.files.Bytes("/program/Init.dat"), "kept");
}

TEST_F(GoFolderTest, WindowEventsAreHandledThroughoutTheRun) {
  std::vector<std::int64_t> seen;
  test_.OnEveryYield([&] { seen.push_back(program_.run.FilesDone + program_.run.FilesSkipped); });
  test_.ArmAndGo();
  for (const std::int64_t files : {0, 1, 2, 3}) {
    EXPECT_NE(std::find(seen.begin(), seen.end(), files), seen.end()) << files;
  }
}

}  // namespace
}  // namespace morvex::test
