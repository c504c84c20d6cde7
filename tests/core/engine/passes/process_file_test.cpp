// Processing one file: what the processing leaves on the disk, in the labels and in the log, also
// after errors and stop requests.
#include "core/engine/passes/process_file.h"

#include <gtest/gtest.h>

#include "tests/core/engine/folder_program.h"

namespace morvex::test {
namespace {

constexpr const char* kWorkFile = "/s/tijdel.enc";

class ProcessFileTest : public ::testing::Test {
 protected:
  Outcome Process(const std::string& bytes) {
    test_.files.AddFile("/s/a.txt", bytes, {}, 0640);
    return ProcessFile(program_, LookUpSource(program_, "/s", "a.txt"), work_);
  }
  // Checks the outcome; `path` is the path in the error.
  void ExpectFailed(const Outcome& outcome, ErrorNumber error, const std::string& path) {
    EXPECT_EQ(outcome.kind, OutcomeKind::kFailed);
    EXPECT_EQ(outcome.error, error);
    EXPECT_EQ(outcome.error_path, path);
    EXPECT_EQ(work_, nullptr);
    EXPECT_EQ(test_.Counts(), "");
    EXPECT_EQ(test_.LogMessages(), std::vector<std::string>{});
  }

  FolderProgram test_;
  Program& program_ = test_.program;
  std::unique_ptr<WorkFile> work_;
};

TEST_F(ProcessFileTest, TheResultStandsInTheWorkFile) {
  const Outcome outcome = Process("cacb");
  EXPECT_EQ(outcome.kind, OutcomeKind::kProcessed);
  EXPECT_EQ(outcome.error, ErrorNumber::kNone);
  EXPECT_EQ(outcome.path, "/s/a.txt");
  EXPECT_EQ(outcome.bytes, 4);
  ASSERT_NE(work_, nullptr);
  EXPECT_EQ(work_->path(), kWorkFile);
  EXPECT_EQ(test_.files.Bytes(kWorkFile), "cbcb");
  EXPECT_EQ(test_.files.Bytes("/s/a.txt"), "cacb");
}

TEST_F(ProcessFileTest, AnEmptyFileGivesAnEmptyWorkFileAndAZeroInTheLog) {
  EXPECT_EQ(Process("").kind, OutcomeKind::kProcessed);
  EXPECT_EQ(test_.files.Bytes(kWorkFile), "");
  EXPECT_EQ(program_.run.HitsTotal, 0);
  EXPECT_EQ(test_.LogMessages(), std::vector<std::string>{"/s/a.txt  ----  Hits: 0"});
}

TEST_F(ProcessFileTest, TheWorkFileIsNoMoreReadableThanTheSource) {
  Process("a");
  EXPECT_EQ(test_.files.Permissions(kWorkFile), 0640u);
}

TEST_F(ProcessFileTest, HitsAreCountedForTheFileAndForTheRun) {
  program_.run.Hits_Per_File = 5;  // as if the caller had not reset the count
  program_.run.HitsTotal = 100;
  Process("aca");
  EXPECT_EQ(program_.run.Hits_Per_File, 7);
  EXPECT_EQ(program_.run.HitsTotal, 102);
  EXPECT_EQ(test_.LogMessages(), std::vector<std::string>{"/s/a.txt  ----  Hits: 7"});
}

TEST_F(ProcessFileTest, TheLabelsShowTheFileTheCountsAndTheHits) {
  program_.run.FilesDone = 3;
  program_.run.FilesSkipped = 2;
  program_.run.HitsTotal = 40;
  Process("aa");
  EXPECT_EQ(program_.frmMorvex.lblFiles.caption.get(), "/s/a.txt");
  EXPECT_EQ(test_.Counts(), "Scanned: 3\r\nSipped: 2");
  EXPECT_EQ(test_.HitsShown(), "Hits: 42\r\n");
}

TEST_F(ProcessFileTest, TheSecondLineOfTheResultLabelIsTheResultTail) {
  program_.run.ResultTail = "tail";
  Process("a");
  EXPECT_EQ(test_.HitsShown(), "Hits: 1\r\ntail");
}

TEST_F(ProcessFileTest, TheFilesPathIsShownBeforeItsFirstByteIsRead) {
  std::string shown;
  test_.OnEveryYield([&] {
    if (shown.empty() && !test_.files.Has(kWorkFile)) shown = program_.frmMorvex.lblFiles.caption;
  });
  Process("a");
  EXPECT_EQ(shown, "/s/a.txt");
}

TEST_F(ProcessFileTest, WithoutLoggingThereIsNoLine) {
  program_.run.LoggingOn = false;
  Process("a");
  EXPECT_FALSE(test_.files.Has("/program/Morvex.log"));
}

TEST_F(ProcessFileTest, WhileItWorksTheBarMovesOn) {
  program_.run.BytesBefore = 1'000'000;
  program_.run.ProgressScale = 3;
  program_.frmMorvex.ProgressBar1.SetMaximum(5000);
  std::vector<std::int64_t> values;
  test_.OnEveryYield([&] { values.push_back(program_.frmMorvex.ProgressBar1.value()); });
  Process(kLongText);
  ASSERT_GE(values.size(), 4u);
  EXPECT_TRUE(std::is_sorted(values.begin(), values.end()));
  EXPECT_EQ(values[1], 1000);
  const std::int64_t in_the_middle = values[values.size() - 2];
  EXPECT_GT(in_the_middle, 1000);
  EXPECT_LE(in_the_middle, 1200);
}

TEST_F(ProcessFileTest, WhileItWorksTheHitsShownAreThoseBeforeTheLast) {
  int looked = 0;
  test_.OnEveryYield([&] {
    if (program_.run.HitsTotal == 0 || !test_.Counts().empty()) return;
    ++looked;
    EXPECT_EQ(test_.HitsShown(), "Hits: " + std::to_string(program_.run.HitsTotal - 1) + "\r\n");
  });
  Process(kLongText);
  EXPECT_GT(looked, 0);
  EXPECT_EQ(test_.HitsShown(), "Hits: 200000\r\n");
}

TEST_F(ProcessFileTest, OnADriveRootTheDoubledBackslashIsRepaired) {
  TestProgram test('\\');
  test.program.run.ArmedAt = test.system.now;
  test.files.AddFile("C:\\a.txt", "a");
  std::vector<std::string> opened;
  test.files.fail = [&](const std::string& call, const std::string& path) {
    if (call == "OpenForReading" || call == "CreateWorkFile") opened.push_back(path);
    return ErrorNumber::kNone;
  };
  const SourceFile source = LookUpSource(test.program, "C:\\", "a.txt");
  EXPECT_EQ(ProcessFile(test.program, source, work_).kind, OutcomeKind::kProcessed);
  EXPECT_EQ(opened, (std::vector<std::string>{"C:\\a.txt", "C:\\tijdel.enc"}));
  EXPECT_EQ(WorkFilePath(test.program, "C:\\"), "C:\\tijdel.enc");
  EXPECT_EQ(WorkFilePath(test.program, "C:\\s"), "C:\\s\\tijdel.enc");
}

TEST_F(ProcessFileTest, OnceTheProgramIsToStopThereIsNoWorkFilePath) {
  program_.Beeindigd = true;
  EXPECT_EQ(WorkFilePath(program_, "/s"), "");
}

TEST_F(ProcessFileTest, AVanishedFileFailsWith53) {
  const Outcome outcome = ProcessFile(program_, LookUpSource(program_, "/s", "gone.txt"), work_);
  ExpectFailed(outcome, ErrorNumber::kFileNotFound, "/s/gone.txt");
  EXPECT_FALSE(test_.files.Has(kWorkFile));
}

TEST_F(ProcessFileTest, AnUnreadableFileFailsWith70) {
  test_.files.fail = FailOn("OpenForReading", "/s/a.txt", ErrorNumber::kPermissionDenied);
  ExpectFailed(Process("a"), ErrorNumber::kPermissionDenied, "/s/a.txt");
  EXPECT_FALSE(test_.files.Has(kWorkFile));
}

TEST_F(ProcessFileTest, AWorkFileThatCannotBeMadeFails) {
  test_.files.fail = FailOn("CreateWorkFile", kWorkFile, ErrorNumber::kPathFileAccess);
  ExpectFailed(Process("a"), ErrorNumber::kPathFileAccess, kWorkFile);
  EXPECT_FALSE(test_.files.Has(kWorkFile));
}

TEST_F(ProcessFileTest, AWorkFileNameThatIsTakenFailsAndIsLeftAlone) {
  test_.files.AddFile(kWorkFile, "stale");
  ExpectFailed(Process("a"), ErrorNumber::kFileAlreadyExists, kWorkFile);
  EXPECT_EQ(test_.files.Bytes(kWorkFile), "stale");
}

TEST_F(ProcessFileTest, AReadErrorInMidFileLeavesNoWorkFile) {
  int reads = 0;
  test_.files.fail = [&](const std::string& call, const std::string&) {
    return call == "ReadAt" && ++reads == 2 ? ErrorNumber::kDeviceIo : ErrorNumber::kNone;
  };
  ExpectFailed(Process(std::string(3'000'000, 'c')), ErrorNumber::kDeviceIo, "/s/a.txt");
  EXPECT_FALSE(test_.files.Has(kWorkFile));
}

TEST_F(ProcessFileTest, AWriteErrorLeavesNoWorkFile) {
  for (const std::size_t size : {std::size_t{10}, std::size_t{3'000'000}}) {
    test_.files.fail = FailOn("WriteAt", kWorkFile, ErrorNumber::kDiskFull);
    ExpectFailed(Process(std::string(size, 'c')), ErrorNumber::kDiskFull, kWorkFile);
    EXPECT_FALSE(test_.files.Has(kWorkFile)) << size;
  }
}

TEST_F(ProcessFileTest, AnErrorOfTheClosingLeavesNoWorkFile) {
  test_.files.fail = FailOn("Close", kWorkFile, ErrorNumber::kDiskFull);
  ExpectFailed(Process("c"), ErrorNumber::kDiskFull, kWorkFile);
  EXPECT_FALSE(test_.files.Has(kWorkFile));
}

TEST_F(ProcessFileTest, AStopInMidFileLeavesWhatWasWritten) {
  test_.StopInMidFile();
  EXPECT_EQ(Process(kLongText).kind, OutcomeKind::kStopped);
  const std::string& partial = test_.files.Bytes(kWorkFile);
  EXPECT_GT(partial.size(), 0u);
  EXPECT_LT(partial.size(), kLongResult.size());
  EXPECT_TRUE(kLongResult.starts_with(partial));
  EXPECT_EQ(program_.run.HitsTotal, static_cast<std::int64_t>(partial.size()));
}

TEST_F(ProcessFileTest, AStopInMidFileLeavesNoLineAndNoCounts) {
  test_.StopInMidFile();
  Process(kLongText);
  EXPECT_EQ(test_.Counts(), "");
  EXPECT_EQ(test_.LogMessages(), std::vector<std::string>{});
}

TEST_F(ProcessFileTest, AStopBeforeTheFirstByteLeavesNothing) {
  test_.OnEveryYield([&] { program_.Beeindigd = true; });
  EXPECT_NE(Process("a").kind, OutcomeKind::kProcessed);
  EXPECT_FALSE(test_.files.Has(kWorkFile));
  EXPECT_EQ(test_.LogMessages(), std::vector<std::string>{});
}

TEST_F(ProcessFileTest, AStopRequestIsObeyedAtTheNextYield) {
  int yields_behind = 0;
  test_.OnEveryYield([&] {
    if (program_.Beeindigd) ++yields_behind;
    if (program_.run.FileOffset > 0) program_.Beeindigd = true;
  });
  EXPECT_EQ(Process(kLongText).kind, OutcomeKind::kStopped);
  EXPECT_EQ(yields_behind, 0);
}

TEST_F(ProcessFileTest, WindowEventsAreHandledWhileItWorksWhen15MillisecondsHavePassed) {
  // Each look at the clock advances the clock by 5 ms, so two of three yields handle no events.
  test_.system.step = std::chrono::milliseconds(5);
  std::chrono::milliseconds last{0};
  test_.user.on_events = [&] {
    EXPECT_GE(test_.system.steady - last, std::chrono::milliseconds(15));
    last = test_.system.steady;
  };
  Process(std::string(1'000'000, 'c'));
  EXPECT_GE(test_.user.events_handled, 5);
}

class StaleWorkFileTest : public ProcessFileTest {
 protected:
  StaleWorkFileTest() { test_.files.AddFile("/s/a.txt", "aca"); }
  ErrorNumber Delete(const char* name = "a.txt", bool name_is_taken = false) {
    return DeleteStaleWorkFile(program_, LookUpSource(program_, "/s", name), name_is_taken);
  }
};

TEST_F(StaleWorkFileTest, ThatIsNotThereIsNoError) {
  EXPECT_EQ(Delete(), ErrorNumber::kNone);
  EXPECT_EQ(Delete("a.txt", true), ErrorNumber::kNone);
}

TEST_F(StaleWorkFileTest, IsDeleted) {
  test_.files.AddFile(kWorkFile, "stale");
  EXPECT_EQ(Delete(), ErrorNumber::kNone);
  EXPECT_FALSE(test_.files.Has(kWorkFile));
}

TEST_F(StaleWorkFileTest, ThatStaysIsAnError) {
  test_.files.AddFile(kWorkFile, "stale");
  test_.files.fail = FailOn("DeleteFile", kWorkFile, ErrorNumber::kPermissionDenied);
  EXPECT_EQ(Delete(), ErrorNumber::kPermissionDenied);
}

TEST_F(StaleWorkFileTest, OfWhichNothingIsKnownStays) {
  test_.files.AddFile(kWorkFile, "stale");
  test_.files.fail = FailOn("LookUpFile", kWorkFile, ErrorNumber::kDeviceIo);
  EXPECT_EQ(Delete(), ErrorNumber::kDeviceIo);
  EXPECT_TRUE(test_.files.Has(kWorkFile));
}

TEST_F(StaleWorkFileTest, ThatIsALinkToNothingIsDeletedOnceTheNameIsNeeded) {
  test_.files.AddLink(kWorkFile, "/nowhere");
  EXPECT_EQ(Delete(), ErrorNumber::kNone);
  EXPECT_TRUE(test_.files.Has(kWorkFile));
  EXPECT_EQ(Delete("a.txt", true), ErrorNumber::kNone);
  EXPECT_FALSE(test_.files.Has(kWorkFile));
}

TEST_F(StaleWorkFileTest, IsNoneWhenTheFileIsTheWorkFileItself) {
  test_.files.AddFile(kWorkFile, "a source");
  test_.files.AddLink("/s/link.txt", kWorkFile);
  for (const char* name : {"tijdel.enc", "link.txt"}) {
    EXPECT_EQ(Delete(name, true), ErrorNumber::kPathFileAccess) << name;
    EXPECT_EQ(test_.files.Bytes(kWorkFile), "a source") << name;
  }
}

TEST_F(ProcessFileTest, AWorkFileThatCannotBeDiscardedIsRemembered) {
  const std::int64_t hits_before = program_.run.HitsTotal;
  test_.files.fail = [](const std::string& call, const std::string&) {
    const bool fails = call == "Close" || call == "Discard";
    return fails ? ErrorNumber::kDeviceIo : ErrorNumber::kNone;
  };
  ExpectFailed(Process("aca"), ErrorNumber::kDeviceIo, kWorkFile);
  EXPECT_EQ(program_.run.left_work_file, kWorkFile);
  EXPECT_EQ(program_.run.HitsTotal, hits_before);
  EXPECT_TRUE(test_.files.Has(kWorkFile));
}

TEST_F(StaleWorkFileTest, IsForgottenOnceItIsGone) {
  test_.files.AddFile(kWorkFile, "stale");
  program_.run.left_work_file = kWorkFile;
  EXPECT_EQ(Delete(), ErrorNumber::kNone);
  EXPECT_EQ(program_.run.left_work_file, "");
}

}  // namespace
}  // namespace morvex::test
