// What a pass does with one file, step by step.
#include "core/engine/passes/file_step.h"

#include <gtest/gtest.h>

#include "tests/core/engine/folder_program.h"

namespace morvex::test {
namespace {

constexpr const char* kWorkFile = "/s/tijdel.enc";
constexpr WallTime kOld{std::chrono::hours(1000)};

class FileStepTest : public ::testing::Test {
 protected:
  FileStepTest() { test_.files.AddFile("/s/a.txt", "caca", kOld, 0640); }
  bool Handle(const std::string& name) {
    return HandleFile(program_, "/s", name, "/t", FolderPassKind::kPrepass);
  }
  // Checks that the file has no copy, and that the log's last two lines tell why.
  void ExpectNotCopied(const std::string& name, const std::string& error) {
    EXPECT_TRUE(Handle(name));
    EXPECT_FALSE(test_.files.Has("/t/" + name));
    const std::vector<std::string> log = test_.LogMessages();
    ASSERT_GE(log.size(), 2u);
    EXPECT_EQ(log[log.size() - 2], "/s/" + name);
    EXPECT_EQ(log.back(), error);
    // Labels are updated all the same.
    EXPECT_EQ(test_.Counts(), "Scanned: " + std::to_string(program_.run.FilesDone) +
                                  "\r\nSkipped: " + std::to_string(program_.run.FilesSkipped));
    EXPECT_EQ(test_.HitsShown(), "Hits: " + std::to_string(program_.run.HitsTotal) + "\r\n");
    EXPECT_EQ(program_.frmMorvex.lblFiles.caption.get(), "/s/" + name);
  }

  FolderProgram test_;
  Program& program_ = test_.program;
};

TEST_F(FileStepTest, ASelectedFileIsProcessedIntoTheTarget) {
  EXPECT_TRUE(Handle("a.txt"));
  EXPECT_EQ(test_.files.Bytes("/t/a.txt"), "cbcb");
  EXPECT_EQ(test_.files.Bytes("/s/a.txt"), "caca");
  EXPECT_FALSE(test_.files.Has(kWorkFile));
}

TEST_F(FileStepTest, AProcessedCopyHasTheSourcesPermissionBits) {
  Handle("a.txt");
  EXPECT_EQ(test_.files.Permissions("/t/a.txt"), 0640u);
}

TEST_F(FileStepTest, AnExistingTargetFileIsOverwritten) {
  test_.files.AddFile("/t/a.txt", "what stood there, longer");
  EXPECT_TRUE(Handle("a.txt"));
  EXPECT_EQ(test_.files.Bytes("/t/a.txt"), "cbcb");
}

TEST_F(FileStepTest, AFreeTargetIsNotLookedAt) {
  std::vector<std::string> calls;
  test_.files.fail = [&](const std::string& call, const std::string& path) {
    if (path == "/t/a.txt") calls.push_back(call);
    return ErrorNumber::kNone;
  };
  EXPECT_TRUE(Handle("a.txt"));
  EXPECT_EQ(calls, std::vector<std::string>{"MoveTo"});
  EXPECT_EQ(test_.files.Bytes("/t/a.txt"), "cbcb");
}

TEST_F(FileStepTest, ATargetOnAnotherFileSystemGetsTheCopyToo) {
  test_.files.moves_in_one_step = false;
  EXPECT_TRUE(Handle("a.txt"));
  EXPECT_EQ(test_.files.Bytes("/t/a.txt"), "cbcb");
  EXPECT_FALSE(test_.files.Has(kWorkFile));
  EXPECT_EQ(program_.run.failed_files, 0);
}

TEST_F(FileStepTest, AFileThatIsNotSelectedIsCopiedUnchanged) {
  test_.files.AddFile("/s/a.TXT", "caca", kOld, 0440);
  EXPECT_TRUE(Handle("a.TXT"));
  EXPECT_EQ(test_.files.Bytes("/t/a.TXT"), "caca");
  EXPECT_EQ(test_.files.Permissions("/t/a.TXT"), 0440u);
  EXPECT_EQ(test_.files.LookUpFile("/t/a.TXT").value.modified, kOld);
  EXPECT_EQ(program_.run.FilesSkipped, 1);
  EXPECT_EQ(program_.run.FilesDone, 0);
  EXPECT_EQ(test_.LogMessages(), std::vector<std::string>{});
}

TEST_F(FileStepTest, CountsFilesAndBytes) {
  program_.run.BytesTotal = 1000;
  program_.run.Hits_Per_File = 77;
  Handle("a.txt");
  EXPECT_EQ(program_.run.BytesBefore, 1000);
  EXPECT_EQ(program_.run.BytesTotal, 1004);
  EXPECT_EQ(program_.run.FilesDone, 1);
  EXPECT_EQ(program_.run.FilesSkipped, 0);
  EXPECT_EQ(program_.run.Hits_Per_File, 2);
  test_.files.AddFile("/s/b.bin", "123");
  Handle("b.bin");
  EXPECT_EQ(program_.run.BytesBefore, 1004);
  EXPECT_EQ(program_.run.BytesTotal, 1007);
  EXPECT_EQ(program_.run.FilesDone, 1);
  EXPECT_EQ(program_.run.FilesSkipped, 1);
}

TEST_F(FileStepTest, ShowsPathCountsHitsAndProgress) {
  program_.run.FilesSkipped = 4;
  program_.run.ProgressScale = 1;
  program_.run.BytesTotal = 1000;
  program_.frmMorvex.ProgressBar1.SetMaximum(1000);
  Handle("a.txt");
  EXPECT_EQ(program_.frmMorvex.lblFiles.caption.get(), "/s/a.txt");
  EXPECT_EQ(test_.Counts(), "Scanned: 1\r\nSkipped: 4");
  EXPECT_EQ(test_.HitsShown(), "Hits: 2\r\n");
  EXPECT_EQ(program_.frmMorvex.ProgressBar1.value(), 100);
}

TEST_F(FileStepTest, AFileThatIsNotSelectedShowsCountsHitsAndProgressToo) {
  test_.files.AddFile("/s/b.bin", "123");
  program_.frmMorvex.ProgressBar1.SetMaximum(1000);
  Handle("b.bin");
  EXPECT_EQ(program_.frmMorvex.lblFiles.caption.get(), "");
  EXPECT_EQ(test_.Counts(), "Scanned: 0\r\nSkipped: 1");
  EXPECT_EQ(test_.HitsShown(), "Hits: 0\r\n");
  EXPECT_EQ(program_.frmMorvex.ProgressBar1.value(), 3);
}

TEST_F(FileStepTest, OnceTheProgramIsToStopNothingIsTouched) {
  program_.Beeindigd = true;
  EXPECT_FALSE(Handle("a.txt"));
  EXPECT_EQ(program_.run.BytesTotal, 0);
  EXPECT_EQ(program_.run.FilesDone, 0);
  EXPECT_FALSE(test_.files.Has("/t/a.txt"));
}

TEST_F(FileStepTest, AFilePassedOverByARuleIsNotCopiedAndLoggedAsNotFound) {
  test_.files.AddFile("/s/Morvex.txt", "caca", kOld);
  ExpectNotCopied("Morvex.txt", "Error 53: File not found");
  EXPECT_EQ(test_.LogMessages().size(), 2u);
  EXPECT_EQ(program_.run.FilesDone, 1);
  EXPECT_EQ(program_.run.FilesSkipped, 0);
  EXPECT_EQ(program_.run.passed_over_files, 1);
  EXPECT_EQ(program_.run.failed_files, 0);
}

TEST_F(FileStepTest, AFileEndingInCleHasItsSkipLineBeforeTheErrorLines) {
  test_.Select({".cle"});
  test_.files.AddFile("/s/a.cle", "caca", kOld);
  ExpectNotCopied("a.cle", "Error 53: File not found");
  EXPECT_EQ(test_.LogMessages().front(), "SKIP a.cle");
  EXPECT_EQ(program_.run.FilesDone, 1);
  EXPECT_EQ(program_.run.FilesSkipped, 1);
}

TEST_F(FileStepTest, AFailedCopyIsLoggedCountedAndLeavesNoWorkFile) {
  test_.files.fail = FailOn("MoveTo", "/t/a.txt", ErrorNumber::kPermissionDenied);
  ExpectNotCopied("a.txt", "Error 70: Permission denied");
  EXPECT_FALSE(test_.files.Has(kWorkFile));
  EXPECT_EQ(program_.run.FilesDone, 1);
  EXPECT_EQ(program_.run.failed_files, 1);
  EXPECT_EQ(program_.run.first_failure.path, "/s/a.txt");
  EXPECT_EQ(program_.run.first_failure.error, ErrorNumber::kPermissionDenied);
  EXPECT_EQ(program_.run.first_failure.cause, FailureCause::kTarget);
  EXPECT_EQ(program_.run.first_failure.error_path, "/t/a.txt");
  EXPECT_FALSE(program_.Beeindigd);
}

TEST_F(FileStepTest, ADiskFullOnTheCopyEndsTheRunWithoutLines) {
  test_.files.fail = FailOn("MoveTo", "/t/a.txt", ErrorNumber::kDiskFull);
  EXPECT_FALSE(Handle("a.txt"));
  EXPECT_FALSE(test_.files.Has("/t/a.txt"));
  EXPECT_EQ(test_.LogMessages(), std::vector<std::string>{"/s/a.txt  ----  Hits: 2"});
}

TEST_F(FileStepTest, ADiskFullOnTheWorkFileEndsTheRunToo) {
  test_.files.fail = FailOn("WriteAt", kWorkFile, ErrorNumber::kDiskFull);
  EXPECT_FALSE(Handle("a.txt"));
  EXPECT_FALSE(test_.files.Has(kWorkFile));
  EXPECT_FALSE(test_.files.Has("/t/a.txt"));
}

TEST_F(FileStepTest, ADiskFullOnAFileThatIsNotSelectedDoesNot) {
  test_.files.AddFile("/s/b.bin", "123");
  test_.files.fail = FailOn("CopyFile", "/t/b.bin", ErrorNumber::kDiskFull);
  EXPECT_TRUE(Handle("b.bin"));
  EXPECT_EQ(program_.run.FilesSkipped, 1);
}

TEST_F(FileStepTest, AFailedCopyOfAFileThatIsNotSelectedIsCountedAndNotLogged) {
  test_.files.AddFile("/s/b.bin", "123");
  test_.files.fail = FailOn("CopyFile", "/t/b.bin", ErrorNumber::kPermissionDenied);
  EXPECT_TRUE(Handle("b.bin"));
  EXPECT_EQ(test_.LogMessages(), std::vector<std::string>{});
  EXPECT_EQ(program_.run.FilesSkipped, 1);
  EXPECT_EQ(program_.run.failed_files, 1);
  EXPECT_EQ(program_.run.first_failure.path, "/s/b.bin");
  EXPECT_EQ(test_.Counts(), "Scanned: 0\r\nSkipped: 1");
}

TEST_F(FileStepTest, AVanishedFileIsLoggedAsNotFound) {
  ExpectNotCopied("gone.txt", "Error 53: File not found");
  EXPECT_EQ(program_.run.BytesTotal, 0);
  EXPECT_EQ(program_.run.failed_files, 1);
}

TEST_F(FileStepTest, AnUnreadableFileIsLoggedWith70) {
  test_.files.fail = FailOn("OpenForReading", "/s/a.txt", ErrorNumber::kPermissionDenied);
  ExpectNotCopied("a.txt", "Error 70: Permission denied");
  EXPECT_EQ(program_.run.failed_files, 1);
}

TEST_F(FileStepTest, AReadErrorInMidFileLeavesNeitherCopyNorWorkFile) {
  test_.files.fail = FailOn("ReadAt", "/s/a.txt", ErrorNumber::kDeviceIo);
  ExpectNotCopied("a.txt", "Error 57: Device I/O error");
  EXPECT_FALSE(test_.files.Has(kWorkFile));
}

TEST_F(FileStepTest, AFailureInAFolderThatCannotBeWrittenNamesTheFileAndTheFolder) {
  for (const char* call : {"CreateWorkFile", "DeleteFile"}) {
    FolderProgram test;
    test.files.AddFile("/s/a.txt", "caca", kOld);
    if (std::string(call) == "DeleteFile") test.files.AddFile(kWorkFile, "stale");
    test.files.fail = FailOn(call, kWorkFile, ErrorNumber::kPermissionDenied);
    HandleFile(test.program, "/s", "a.txt", "/t", FolderPassKind::kPrepass);
    const Outcome& failure = test.program.run.first_failure;
    EXPECT_EQ(failure.path, "/s/a.txt") << call;
    EXPECT_EQ(failure.cause, FailureCause::kSourceFolder) << call;
    EXPECT_EQ(failure.error_path, "/s") << call;
  }
}

TEST_F(FileStepTest, AFailureOfTheWorkFileNamesTheFileThatHasNoCopy) {
  test_.files.fail = FailOn("WriteAt", kWorkFile, ErrorNumber::kDeviceIo);
  Handle("a.txt");
  EXPECT_EQ(program_.run.first_failure.path, "/s/a.txt");
  EXPECT_EQ(program_.run.first_failure.cause, FailureCause::kWorkFile);
  EXPECT_EQ(program_.run.first_failure.error_path, kWorkFile);
}

TEST_F(FileStepTest, ATargetThatIsTheSourceIsToldAsThat) {
  test_.files.AddFile("/s/b.bin", "123");
  for (const char* name : {"a.txt", "b.bin"}) {
    program_.run.failed_files = 0;
    HandleFile(program_, "/s", name, "/s", FolderPassKind::kPrepass);
    EXPECT_EQ(program_.run.first_failure.path, std::string("/s/") + name);
    EXPECT_EQ(program_.run.first_failure.error, ErrorNumber::kPathFileAccess);
    EXPECT_EQ(program_.run.first_failure.cause, FailureCause::kTargetIsSource) << name;
  }
}

TEST_F(FileStepTest, AStoppedFileCountsTheBytesThatItsCopyHas) {
  test_.files.AddFile("/s/big.txt", kLongText, kOld);
  test_.OnEveryYield([this] {
    if (program_.run.FileOffset > 0) program_.Beeindigd = true;
  });
  program_.run.BytesTotal = 1000;
  EXPECT_FALSE(Handle("big.txt"));
  const auto written = static_cast<std::int64_t>(test_.files.Bytes("/t/big.txt").size());
  EXPECT_GT(written, 0);
  EXPECT_LT(written, static_cast<std::int64_t>(kLongText.size()));
  EXPECT_EQ(program_.run.BytesTotal, 1000 + written);
}

TEST_F(FileStepTest, AWorkFileThatCannotBeMadeIsLogged) {
  test_.files.fail = FailOn("CreateWorkFile", kWorkFile, ErrorNumber::kPathFileAccess);
  ExpectNotCopied("a.txt", "Error 75: Path/File access error");
}

TEST_F(FileStepTest, AStaleWorkFileIsDeletedBeforeTheFileIsProcessed) {
  test_.files.AddFile(kWorkFile, "stale, and longer than the result");
  EXPECT_TRUE(Handle("a.txt"));
  EXPECT_EQ(test_.files.Bytes("/t/a.txt"), "cbcb");
  EXPECT_FALSE(test_.files.Has(kWorkFile));
}

TEST_F(FileStepTest, AStaleWorkFileThatCannotBeDeletedReachesNoCopy) {
  test_.files.AddFile(kWorkFile, "stale");
  test_.files.fail = FailOn("DeleteFile", kWorkFile, ErrorNumber::kPermissionDenied);
  ExpectNotCopied("a.txt", "Error 70: Permission denied");
  EXPECT_EQ(test_.files.Bytes(kWorkFile), "stale");
}

TEST_F(FileStepTest, AFolderInTheTargetsPlaceIsLoggedWith75) {
  test_.files.AddFolder("/t/a.txt");
  EXPECT_TRUE(Handle("a.txt"));
  EXPECT_EQ(test_.LogMessages().back(), "Error 75: Path/File access error");
  EXPECT_TRUE(test_.files.IsFolder("/t/a.txt"));
  EXPECT_FALSE(test_.files.Has(kWorkFile));
}

TEST_F(FileStepTest, ATargetThatIsTheSourceFileIsLeftAloneWith75) {
  test_.files.AddLink("/t/a.txt", "/s/a.txt");
  EXPECT_TRUE(Handle("a.txt"));
  EXPECT_EQ(test_.LogMessages().back(), "Error 75: Path/File access error");
  EXPECT_EQ(test_.files.Bytes("/s/a.txt"), "caca");
  EXPECT_FALSE(test_.files.Has(kWorkFile));
}

TEST_F(FileStepTest, ATargetOfWhichCannotBeToldWhetherItIsTheSourceIsNotWritten) {
  test_.files.AddLink("/t/a.txt", "/s/a.txt");
  test_.files.fail = [](const std::string& call, const std::string& path) {
    return call == "LookUpFile" && path == "/t/a.txt" ? ErrorNumber::kDeviceIo : ErrorNumber::kNone;
  };
  EXPECT_TRUE(Handle("a.txt"));
  EXPECT_EQ(test_.files.Bytes("/s/a.txt"), "caca");
  EXPECT_EQ(test_.LogMessages().back(), "Error 57: Device I/O error");
  EXPECT_FALSE(test_.files.Has(kWorkFile));
}

TEST_F(FileStepTest, NoLinkInTheTargetIsWrittenThrough) {
  test_.files.AddFile("/elsewhere.txt", "keep");
  test_.files.AddLink("/t/a.txt", "/elsewhere.txt");
  EXPECT_TRUE(Handle("a.txt"));
  EXPECT_EQ(test_.files.Bytes("/elsewhere.txt"), "keep");
  EXPECT_EQ(test_.files.Bytes("/t/a.txt"), "cbcb");
}

TEST_F(FileStepTest, AStopInMidFileLeavesAPartialCopyAndTheWorkFile) {
  test_.files.AddFile("/s/a.txt", kLongText, kOld);
  test_.StopInMidFile();
  EXPECT_FALSE(Handle("a.txt"));
  const std::string& partial = test_.files.Bytes("/t/a.txt");
  EXPECT_GT(partial.size(), 0u);
  EXPECT_LT(partial.size(), kLongResult.size());
  EXPECT_TRUE(kLongResult.starts_with(partial));
  EXPECT_EQ(test_.files.Bytes(kWorkFile), partial);
  EXPECT_EQ(test_.files.Bytes("/s/a.txt"), kLongText);
  EXPECT_EQ(test_.Counts(), "");
}

TEST_F(FileStepTest, AStopAtTheFilesEndLeavesTheWholeCopyAndTheWorkFile) {
  test_.OnEveryYield([&] {
    if (!test_.Counts().empty()) program_.Beeindigd = true;
  });
  EXPECT_FALSE(Handle("a.txt"));
  EXPECT_EQ(test_.files.Bytes("/t/a.txt"), "cbcb");
  EXPECT_EQ(test_.files.Bytes(kWorkFile), "cbcb");
}

TEST_F(FileStepTest, AStopDuringTheCopyOfAFileThatIsNotSelectedIsNoFailure) {
  test_.files.AddFile("/s/b.bin", "123");
  test_.OnEveryYield([&] { program_.Beeindigd = true; });
  Handle("b.bin");
  EXPECT_FALSE(test_.files.Has("/t/b.bin"));
  EXPECT_EQ(program_.run.failed_files, 0);
}

TEST_F(FileStepTest, AWorkFileOfAnotherRunIsWaitedFor) {
  test_.files.AddFile(kWorkFile, "another run's");
  int asked = 0;
  int waits = 0;
  test_.files.fail = [&](const std::string& call, const std::string& path) {
    const bool in_use = call == "DeleteFile" && path == kWorkFile && ++asked <= 3;
    return in_use ? ErrorNumber::kFileAlreadyOpen : ErrorNumber::kNone;
  };
  test_.user.on_wait = [&](std::chrono::milliseconds) { ++waits; };
  EXPECT_TRUE(Handle("a.txt"));
  EXPECT_EQ(waits, 3);
  EXPECT_EQ(test_.files.Bytes("/t/a.txt"), "cbcb");
}

TEST_F(FileStepTest, AnotherRunThatStandsStillIsNotWaitedForForEver) {
  test_.files.AddFile(kWorkFile, "another run's");
  test_.files.fail = FailOn("DeleteFile", kWorkFile, ErrorNumber::kFileAlreadyOpen);
  std::chrono::milliseconds waited{0};
  test_.user.on_wait = [&](std::chrono::milliseconds longest) { waited += longest; };
  ExpectNotCopied("a.txt", "Error 55: File already open");
  EXPECT_GT(waited, std::chrono::seconds(4));
  EXPECT_LT(waited, std::chrono::seconds(6));
  EXPECT_EQ(test_.files.Bytes(kWorkFile), "another run's");
}

TEST_F(FileStepTest, AStopRequestEndsTheWaitForAnotherRun) {
  test_.files.AddFile(kWorkFile, "another run's");
  test_.files.fail = FailOn("DeleteFile", kWorkFile, ErrorNumber::kFileAlreadyOpen);
  int waits = 0;
  test_.user.on_wait = [&](std::chrono::milliseconds) {
    ++waits;
    program_.Beeindigd = true;
  };
  EXPECT_FALSE(Handle("a.txt"));
  EXPECT_EQ(waits, 1);
  EXPECT_EQ(test_.files.Bytes(kWorkFile), "another run's");
  EXPECT_FALSE(test_.files.Has("/t/a.txt"));
}

TEST_F(FileStepTest, ANameThatAnotherRunTookInBetweenIsTriedAgain) {
  int tries = 0;
  test_.files.fail = [&](const std::string& call, const std::string&) {
    const bool taken = call == "CreateWorkFile" && ++tries <= 2;
    return taken ? ErrorNumber::kFileAlreadyExists : ErrorNumber::kNone;
  };
  EXPECT_TRUE(Handle("a.txt"));
  EXPECT_EQ(test_.files.Bytes("/t/a.txt"), "cbcb");
}

TEST_F(FileStepTest, AFileThatChangesWhileItIsReadIsPassedOver) {
  test_.files.AddFile("/s/b.txt", kLongText, kOld);
  test_.OnEveryYield([&] {
    if (program_.run.FileOffset > 0) test_.files.AppendToFile("/s/b.txt", "a");
  });
  ExpectNotCopied("b.txt", "Error 53: File not found");
  EXPECT_EQ(program_.run.passed_over_files, 1);
  EXPECT_EQ(program_.run.HitsTotal, 0);
  EXPECT_FALSE(test_.files.Has(kWorkFile));
}

TEST_F(FileStepTest, HitsOfACopyThatCameToNothingDoNotCount) {
  EXPECT_TRUE(Handle("a.txt"));
  test_.files.AddFile("/s/b.txt", kLongText, kOld);
  int reads = 0;
  test_.files.fail = [&](const std::string& call, const std::string& path) {
    const bool second = call == "ReadAt" && path == "/s/b.txt" && ++reads == 2;
    return second ? ErrorNumber::kDeviceIo : ErrorNumber::kNone;
  };
  EXPECT_TRUE(Handle("b.txt"));
  EXPECT_EQ(program_.run.first_failure.error, ErrorNumber::kDeviceIo);
  EXPECT_FALSE(test_.files.Has("/t/b.txt"));
  EXPECT_EQ(program_.run.HitsTotal, 2);
}

TEST_F(FileStepTest, ASourceThatTheTargetCannotBeToldFromIsNotStaked) {
  // After the first MoveTo, LookUpFile does not find the target, although the target's name is
  // taken.
  bool lie = false;
  test_.files.fail = [&](const std::string& call, const std::string& path) {
    if (call == "MoveTo") lie = true;
    return lie && call == "LookUpFile" && path == "/s/a.txt" ? ErrorNumber::kFileNotFound
                                                             : ErrorNumber::kNone;
  };
  EXPECT_TRUE(HandleFile(program_, "/s", "a.txt", "/s", FolderPassKind::kPrepass));
  EXPECT_EQ(test_.files.Bytes("/s/a.txt"), "caca");
  EXPECT_EQ(program_.run.first_failure.error, ErrorNumber::kPathFileAccess);
}

TEST_F(FileStepTest, ALinkToNothingInTheTargetIsReplacedByTheCopy) {
  test_.files.AddLink("/t/a.txt", "/nowhere");
  EXPECT_TRUE(Handle("a.txt"));
  EXPECT_EQ(test_.files.Bytes("/t/a.txt"), "cbcb");
}

TEST_F(FileStepTest, AWorkFileThatCannotBeDeletedIsRemembered) {
  test_.files.AddFolder("/t/a.txt");
  test_.files.fail = FailOn("Discard", kWorkFile, ErrorNumber::kPermissionDenied);
  EXPECT_TRUE(Handle("a.txt"));
  EXPECT_EQ(program_.run.left_work_file, kWorkFile);
}

}  // namespace
}  // namespace morvex::test
