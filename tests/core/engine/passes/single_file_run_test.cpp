// The run for a source that is a single file.
#include "core/engine/passes/single_file_run.h"

#include <gtest/gtest.h>

#include "tests/core/engine/folder_program.h"

namespace morvex::test {
namespace {

constexpr const char* kWorkFile = "/s/tijdel.enc";
constexpr const char* kTarget = "/t/copy.txt";
constexpr WallTime kOld{std::chrono::hours(1000)};

class SingleFileRunTest : public ::testing::Test {
 protected:
  SingleFileRunTest() { test_.files.AddFile("/s/a.bin", "caca", kOld, 0640); }
  OutcomeKind Run(const std::string& target = kTarget) {
    outcome_ = SingleFileRun(program_, "/s/a.bin", target);
    return outcome_.kind;
  }
  // Runs and checks the outcome; `path` is the path in the error.
  void ExpectFailed(const std::string& target, ErrorNumber error, const std::string& path) {
    EXPECT_EQ(Run(target), OutcomeKind::kFailed) << path;
    EXPECT_EQ(outcome_.error, error) << path;
    EXPECT_EQ(outcome_.error_path, path);
  }
  std::string Elapsed() const { return program_.frmMorvex.lblTijd.caption; }

  FolderProgram test_;
  Program& program_ = test_.program;
  Outcome outcome_;
};

TEST_F(SingleFileRunTest, TheTargetTextIsThePathOfTheCopy) {
  EXPECT_EQ(Run(), OutcomeKind::kProcessed);
  EXPECT_EQ(test_.files.Bytes(kTarget), "cbcb");
  EXPECT_EQ(test_.files.Permissions(kTarget), 0640u);
  EXPECT_EQ(test_.files.Bytes("/s/a.bin"), "caca");
  EXPECT_FALSE(test_.files.Has(kWorkFile));
}

TEST_F(SingleFileRunTest, NeedsNoSelectedExtension) {
  test_.Select({});
  EXPECT_EQ(Run(), OutcomeKind::kProcessed);
  EXPECT_EQ(test_.files.Bytes(kTarget), "cbcb");
}

TEST_F(SingleFileRunTest, LogsThePathAndThenTheHits) {
  Run();
  EXPECT_EQ(test_.LogMessages(), (std::vector<std::string>{"/s/a.bin", "/s/a.bin  ----  Hits: 2"}));
}

TEST_F(SingleFileRunTest, ShowsOneFileTheTimeAndTheHits) {
  test_.system.times_of_day = {{12, 0, 0}, {12, 2, 5}};
  Run();
  EXPECT_EQ(test_.Counts(), "Scanned: 1 ");
  EXPECT_EQ(Elapsed(), "2 min 5 sec");
  EXPECT_EQ(test_.HitsShown(), "Hits: 2\r\nDone !");
  EXPECT_EQ(program_.run.FilesDone, 1);
  EXPECT_EQ(program_.run.BytesTotal, 4);
}

TEST_F(SingleFileRunTest, OverMidnightTheTimeIsNegative) {
  test_.system.times_of_day = {{23, 59, 50}, {0, 0, 10}};
  Run();
  EXPECT_EQ(Elapsed(), "-1439 min -40 sec");
}

TEST_F(SingleFileRunTest, TheBarsMaximumCoversTheFile) {
  test_.files.AddFile("/s/a.bin", std::string(12345, 'c'), kOld);
  Run();
  EXPECT_EQ(program_.run.ProgressScale, 1);
  EXPECT_EQ(program_.frmMorvex.ProgressBar1.maximum(), 1234);
  EXPECT_EQ(program_.frmMorvex.ProgressBar1.value(), 1234);
}

TEST_F(SingleFileRunTest, TheBarStartsAtZero) {
  program_.frmMorvex.ProgressBar1.SetMaximum(4000);
  program_.frmMorvex.ProgressBar1.SetValue(3000);
  std::int64_t first = -1;
  test_.OnEveryYield([&] {
    if (first < 0) first = program_.frmMorvex.ProgressBar1.value();
  });
  Run();
  EXPECT_EQ(first, 0);
}

TEST_F(SingleFileRunTest, HitsPerFileAreNotResetForASecondRun) {
  Run();
  Run();
  EXPECT_EQ(test_.LogMessages().back(), "/s/a.bin  ----  Hits: 4");
  EXPECT_EQ(program_.run.Hits_Per_File, 4);
}

TEST_F(SingleFileRunTest, AStaleWorkFileIsDeletedFirst) {
  test_.files.AddFile(kWorkFile, "stale, longer than the result");
  EXPECT_EQ(Run(), OutcomeKind::kProcessed);
  EXPECT_EQ(test_.files.Bytes(kTarget), "cbcb");
  EXPECT_FALSE(test_.files.Has(kWorkFile));
}

TEST_F(SingleFileRunTest, AStaleWorkFileThatCannotBeDeletedReachesNoCopy) {
  test_.files.AddFile(kWorkFile, "stale");
  test_.files.fail = FailOn("DeleteFile", kWorkFile, ErrorNumber::kPermissionDenied);
  ExpectFailed(kTarget, ErrorNumber::kPermissionDenied, "/s");
  EXPECT_FALSE(test_.files.Has(kTarget));
}

TEST_F(SingleFileRunTest, ATargetThatIsAFolderGetsNoFile) {
  ExpectFailed("/t", ErrorNumber::kPathFileAccess, "/t");
  EXPECT_EQ(test_.files.Below("/t"), std::vector<std::string>{});
  EXPECT_FALSE(test_.files.Has(kWorkFile));
  EXPECT_EQ(test_.Counts(), "Scanned: 1 ");
  EXPECT_EQ(test_.HitsShown(), "Hits: 2\r\nDone !");
}

TEST_F(SingleFileRunTest, ATargetInAMissingFolderGetsNoFile) {
  ExpectFailed("/none/copy.txt", ErrorNumber::kPathNotFound, "/none/copy.txt");
  EXPECT_FALSE(test_.files.Has("/none"));
  EXPECT_FALSE(test_.files.Has(kWorkFile));
}

TEST_F(SingleFileRunTest, AnEmptyTargetGetsNoFile) {
  ExpectFailed("", ErrorNumber::kPathNotFound, "");
  EXPECT_FALSE(test_.files.Has(kWorkFile));
}

TEST_F(SingleFileRunTest, ATargetThatIsTheSourceLeavesItAlone) {
  ExpectFailed("/s/a.bin", ErrorNumber::kPathFileAccess, "/s/a.bin");
  EXPECT_EQ(test_.files.Bytes("/s/a.bin"), "caca");
  test_.files.AddLink("/t/link", "/s/a.bin");
  ExpectFailed("/t/link", ErrorNumber::kPathFileAccess, "/t/link");
  EXPECT_EQ(test_.files.Bytes("/s/a.bin"), "caca");
  EXPECT_FALSE(test_.files.Has(kWorkFile));
}

TEST_F(SingleFileRunTest, ASourceNamedLikeTheWorkFileIsLeftAlone) {
  test_.files.AddFile(kWorkFile, "caca", kOld);
  EXPECT_EQ(SingleFileRun(program_, kWorkFile, kTarget).error, ErrorNumber::kPathFileAccess);
  EXPECT_EQ(test_.files.Bytes(kWorkFile), "caca");
  EXPECT_FALSE(test_.files.Has(kTarget));
}

TEST_F(SingleFileRunTest, AFilePassedOverByARuleHasNoCopyButIsShownAsScanned) {
  test_.files.AddFile("/s/a.bin", "caca", test_.system.now);
  EXPECT_EQ(Run(), OutcomeKind::kPassedOver);
  EXPECT_EQ(outcome_.why, PassedOver::kChangedMeanwhile);
  EXPECT_FALSE(test_.files.Has(kTarget));
  EXPECT_EQ(test_.Counts(), "Scanned: 1 ");
  EXPECT_EQ(program_.run.FilesDone, 1);
  EXPECT_EQ(test_.HitsShown(), "Hits: 0\r\nDone !");
  EXPECT_EQ(test_.LogMessages(), std::vector<std::string>{"/s/a.bin"});
}

TEST_F(SingleFileRunTest, ASkippedArticleIsLoggedAndCounted) {
  test_.files.AddFile("/s/article", "caca", kOld);
  EXPECT_EQ(SingleFileRun(program_, "/s/article", kTarget).why, PassedOver::kNameEnding);
  EXPECT_EQ(test_.LogMessages(), (std::vector<std::string>{"/s/article", "SKIP article"}));
  EXPECT_EQ(program_.run.FilesSkipped, 1);
}

TEST_F(SingleFileRunTest, AVanishedFileIsNotLogged) {
  test_.files.DeleteFile("/s/a.bin");
  ExpectFailed(kTarget, ErrorNumber::kFileNotFound, "/s/a.bin");
  EXPECT_EQ(test_.LogMessages(), std::vector<std::string>{});
  EXPECT_EQ(program_.run.BytesTotal, 0);
}

TEST_F(SingleFileRunTest, OnceTheProgramIsToStopNothingIsDone) {
  program_.Beeindigd = true;
  EXPECT_EQ(Run(), OutcomeKind::kStopped);
  EXPECT_EQ(program_.run.BytesTotal, 0);
  EXPECT_EQ(program_.run.FilesDone, 0);
  EXPECT_EQ(test_.Counts(), "");
  EXPECT_FALSE(test_.files.Has(kTarget));
}

TEST_F(SingleFileRunTest, AStopInMidFileLeavesAPartialCopyAndNoWorkFile) {
  test_.files.AddFile("/s/a.bin", kLongText, kOld);
  test_.StopInMidFile();
  EXPECT_EQ(Run(), OutcomeKind::kStopped);
  EXPECT_EQ(program_.run.cut_short, kTarget);
  ASSERT_TRUE(test_.files.Has(kTarget));
  const std::string& partial = test_.files.Bytes(kTarget);
  EXPECT_GT(partial.size(), 0u);
  EXPECT_LT(partial.size(), kLongResult.size());
  EXPECT_TRUE(kLongResult.starts_with(partial));
  EXPECT_FALSE(test_.files.Has(kWorkFile));
  EXPECT_EQ(test_.files.Bytes("/s/a.bin"), kLongText);
}

TEST_F(SingleFileRunTest, EveryErrorLeavesNeitherCopyNorWorkFile) {
  struct Case {
    const char* call;
    const char* path;
    ErrorNumber error;
  };
  const Case cases[] = {{"OpenForReading", "/s/a.bin", ErrorNumber::kPermissionDenied},
                        {"CreateWorkFile", kWorkFile, ErrorNumber::kPathFileAccess},
                        {"ReadAt", "/s/a.bin", ErrorNumber::kDeviceIo},
                        {"WriteAt", kWorkFile, ErrorNumber::kDiskFull},
                        {"Close", kWorkFile, ErrorNumber::kDiskFull},
                        {"MoveTo", kTarget, ErrorNumber::kDiskFull}};
  for (const Case& tested : cases) {
    test_.files.fail = FailOn(tested.call, tested.path, tested.error);
    ExpectFailed(kTarget, tested.error, tested.path);
    EXPECT_FALSE(test_.files.Has(kWorkFile)) << tested.call;
    EXPECT_FALSE(test_.files.Has(kTarget)) << tested.call;
    EXPECT_FALSE(program_.Beeindigd) << tested.call;
  }
}

TEST_F(SingleFileRunTest, OnADriveRootTheCopyIsMadeToo) {
  TestProgram test('\\');
  test.program.run.ArmedAt = test.system.now;
  test.program.run.LoggingOn = true;
  test.files.AddFile("C:\\a.txt", "a");
  EXPECT_EQ(SingleFileRun(test.program, "C:\\a.txt", "C:\\b.txt").error, ErrorNumber::kNone);
  EXPECT_EQ(test.files.Bytes("C:\\b.txt"), "a");
  EXPECT_FALSE(test.files.Has("C:\\tijdel.enc"));
  // The logged path is the folder, a separator and the name; a doubled separator stays.
  EXPECT_EQ(test.LogMessages().front(), "C:\\\\a.txt");
}

}  // namespace
}  // namespace morvex::test
