#include "ui/console/console_text.h"

#include <gtest/gtest.h>

#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

struct BytesCase {
  std::int64_t bytes;
  const char* text;
};

class ReadableBytesTest : public testing::TestWithParam<BytesCase> {};

TEST_P(ReadableBytesTest, IsShortAndNeverRoundedUp) {
  EXPECT_EQ(ReadableBytes(GetParam().bytes), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Borders, ReadableBytesTest,
                         testing::Values(BytesCase{0, "0 bytes"}, BytesCase{1, "1 byte"},
                                         BytesCase{999, "999 bytes"}, BytesCase{1000, "1.0 kB"},
                                         BytesCase{1999, "1.9 kB"}, BytesCase{999'999, "999.9 kB"},
                                         BytesCase{1'000'000, "1.0 MB"},
                                         BytesCase{3'221'225'472, "3.2 GB"},
                                         BytesCase{1'000'000'000'000, "1.0 TB"},
                                         BytesCase{2'500'000'000'000'000, "2.5 PB"}));

TEST(ProgressLine, ShowsFilesHitsBytesAndPerCent) {
  TestProgram test;
  RunState& run = test.program.run;
  run.FilesDone = 2;
  run.FilesSkipped = 1;
  run.HitsTotal = 1;
  run.BytesBefore = 1000;
  run.FileOffset = 500;
  test.program.frmMorvex.ProgressBar1.SetMaximum(6000);
  test.program.frmMorvex.ProgressBar1.SetValue(1500);
  EXPECT_EQ(ProgressLine(test.program), "3 files  1 hit  1.5 kB  25 %");
}

TEST(ProgressLine, ABarWithoutAMaximumIsAtZero) {
  TestProgram test;
  EXPECT_EQ(ProgressLine(test.program), "0 files  0 hits  0 bytes  0 %");
}

TEST(ResultLines, HoldTheResultLabelsInTheirOrder) {
  TestProgram test;
  MainForm& window = test.program.frmMorvex;
  window.lblTotalFiles.caption = "Scanned: 3\r\nSkipped: 1";
  window.lblTijd.caption = "2 min 5 sec";
  window.lblPercentage.caption = "Hits: 7\r\nDone !";
  EXPECT_EQ(ResultLines(test.program), "Scanned: 3\nSkipped: 1\n2 min 5 sec\nHits: 7\nDone !\n");
}

TEST(ResultLines, EmptyLabelsHaveNoLine) {
  TestProgram test;
  EXPECT_EQ(ResultLines(test.program), "");
}

TEST(RunNotes, SayNothingWhenEveryFileHasItsCopy) {
  TestProgram test;
  EXPECT_EQ(RunNotes(test.program), "");
}

TEST(RunNotes, TellHowManyCouldNotBeCopiedAndWhyTheFirst) {
  TestProgram test;
  test.program.run.failed_files = 2;
  Outcome& failure = test.program.run.first_failure;
  failure.path = failure.error_path = "/source/a\x1B.txt";
  failure.error = ErrorNumber::kPermissionDenied;
  EXPECT_EQ(RunNotes(test.program),
            "2 files or folders could not be copied. The first: /source/a\\x1B.txt: "
            "Error 70: Permission denied\n");
}

TEST(RunNotes, FailuresOfSeveralKindsAreCountedByTheirErrors) {
  TestProgram test;
  test.program.run.failed_files = 3;
  test.program.run.failed_by_error = {{ErrorNumber::kDeviceIo, 1},
                                      {ErrorNumber::kPermissionDenied, 2}};
  Outcome& failure = test.program.run.first_failure;
  failure.path = "/source/a";
  failure.error = ErrorNumber::kPermissionDenied;
  failure.cause = FailureCause::kSourceFolder;
  failure.error_path = "/source";
  EXPECT_EQ(RunNotes(test.program),
            "3 files or folders could not be copied: 1 for Error 57: Device I/O error, 2 for Error "
            "70: Permission denied. The first: /source/a: Error 70: Permission denied: "
            "the source folder must be writable: /source\n");
}

TEST(RunNotes, FilesThatWerePassedOverAreCountedByReason) {
  TestProgram test;
  test.program.run.passed_over_files = 6;
  test.program.run.passed_over_by_reason = {{PassedOver::kOwnFile, 1},
                                            {PassedOver::kRecycleBin, 2},
                                            {PassedOver::kChangedMeanwhile, 1},
                                            {PassedOver::kNameEnding, 2}};
  EXPECT_EQ(RunNotes(test.program),
            "1 file was passed over and not copied: a file of the program's own, by its name.\n"
            "2 files were passed over and not copied: a recycle-bin, restore or system folder, by "
            "its path or the "
            "target's.\n"
            "1 file was passed over and not copied: changed after the run started.\n"
            "2 files were passed over and not copied: the name ends in \"cle\".\n");
}

TEST(RunNotes, LeftOutFoldersAreCountedByReason) {
  TestProgram test;
  test.program.run.left_out_folders = 1;
  test.program.run.left_out_by_reason = {
      {PassedOver::kTargetFolder, 1}, {PassedOver::kLoop, 2}, {PassedOver::kLinkedTooOften, 1}};
  EXPECT_EQ(RunNotes(test.program),
            "1 folder was left out: the target folder.\n"
            "2 folders were left out: a link to a folder that it lies in.\n"
            "1 folder was left out: a folder that links had led to a thousand times.\n");
}

TEST(RunNotes, FilesOfTheTargetThatAreNotOfTheRunAreCounted) {
  TestProgram test;
  test.program.run.other_files = 2;
  EXPECT_TRUE(RunNotes(test.program).starts_with("2 files in the target are not of this run. "))
      << RunNotes(test.program);
  test.program.run.other_files = 1;
  EXPECT_TRUE(RunNotes(test.program).starts_with("1 file in the target is not of this run. "))
      << RunNotes(test.program);
  test.program.run.other_files_error = ErrorNumber::kPermissionDenied;
  EXPECT_NE(RunNotes(test.program).find("could not be counted: Error 70: Permission denied"),
            std::string::npos)
      << RunNotes(test.program);
}

TEST(ResultLines, OfAStoppedRunHaveTheCountsOfTheRunAndNoDone) {
  TestProgram test;
  test.program.run.end = RunEnd::kStopped;
  test.program.run.FilesDone = 4;
  test.program.run.FilesSkipped = 1;
  test.program.run.HitsTotal = 7;
  test.program.frmMorvex.lblTotalFiles.caption = "Scanned: 3\r\nSipped: 1";
  test.program.frmMorvex.lblPercentage.caption = "Hits: 5\r\nDone !";
  EXPECT_EQ(ResultLines(test.program), "Scanned: 4\nSkipped: 1\nHits: 7\n");
}

TEST(RunNotes, TellWhatAStopLeftBehind) {
  TestProgram test;
  test.program.run.cut_short = "/target/a.txt";
  test.program.run.left_work_file = "/source/tijdel.enc";
  EXPECT_EQ(RunNotes(test.program),
            "Cut short: /target/a.txt\nLeft in the source: /source/tijdel.enc\n");
}

TEST(RunNotes, AFullDiskIsNamedAsTheEndOfTheRun) {
  TestProgram test;
  test.program.run.disk_full = true;
  EXPECT_EQ(RunNotes(test.program),
            "The disk is full: the run ended there, the target is not complete.\n");
}

TEST(RunNotes, ARunWithoutARowSaysThatNothingWasAnonymised) {
  TestProgram test;
  test.program.run.end = RunEnd::kFinished;
  test.program.settings.SubstitutieFile = "/lists/a.txt";
  EXPECT_EQ(RunNotes(test.program),
            "Nothing was anonymised: the replacement list has no row, or does not exist: "
            "/lists/a.txt\n");
}

TEST(RunNotes, ARunThatProcessedNoFileSaysSo) {
  TestProgram test;
  test.ApplyRows({{"a", "b"}});
  test.program.run.end = RunEnd::kFinished;
  EXPECT_EQ(RunNotes(test.program), "Nothing was anonymised: no file has a selected extension.\n");
  test.program.run.FilesDone = 1;
  EXPECT_EQ(RunNotes(test.program), "");
}

TEST(RunNotes, AListThatCouldNotBeReadIsNamedWithItsError) {
  TestProgram test;
  test.ApplyRows({{"a", "b"}});
  test.program.settings.SubstitutieFile = "/lists/a.txt";
  test.program.settings.list_file_error = ErrorNumber::kDeviceIo;
  EXPECT_EQ(RunNotes(test.program),
            "The replacement list could not be read to its end: /lists/a.txt: "
            "Error 57: Device I/O error\n");
}

}  // namespace
}  // namespace morvex::test
