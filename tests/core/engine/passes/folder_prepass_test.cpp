// The first pass of a folder run: it sets the progress scale and handles the files directly in the
// source.
#include <gtest/gtest.h>

#include "tests/core/engine/folder_program.h"

namespace morvex::test {
namespace {

const ShownMessage kNoScale = {"Errors occurred.\r\nProgramm will be terminated.",
                               MessageButtons::kOk, MessageIcon::kNone};

class FolderPrepassTest : public ::testing::Test {
 protected:
  void Run(const std::string& source = "/s", const std::string& target = "/t") {
    FolderPrepass(program_, source, target);
  }
  // Adds a folder that cannot be listed, so the size of the source is unknown.
  void HideSize() {
    test_.files.AddFolder("/s/closed");
    test_.files.fail = FailOn("ListFolder", "/s/closed", ErrorNumber::kPermissionDenied);
  }
  std::int64_t Maximum() const { return program_.frmMorvex.ProgressBar1.maximum(); }

  FolderProgram test_;
  Program& program_ = test_.program;
};

TEST_F(FolderPrepassTest, TheFilesOfTheSourceAreHandledInTheOrderOfTheListing) {
  test_.files.AddFile("/s/z.txt", "aa");
  test_.files.AddFile("/s/b.bin", "aa");
  test_.files.AddFile("/s/a.txt", "a");
  Run();
  EXPECT_EQ(test_.LogMessages(),
            (std::vector<std::string>{"/s/z.txt  ----  Hits: 2", "/s/a.txt  ----  Hits: 1"}));
  EXPECT_EQ(test_.files.Below("/t"),
            (std::vector<std::string>{"/t/a.txt", "/t/b.bin", "/t/z.txt"}));
  EXPECT_EQ(test_.files.Bytes("/t/b.bin"), "aa");
  EXPECT_EQ(program_.run.FilesDone, 2);
  EXPECT_EQ(program_.run.FilesSkipped, 1);
  EXPECT_EQ(program_.run.HitsTotal, 3);
  EXPECT_EQ(program_.run.BytesTotal, 5);
  EXPECT_FALSE(program_.Beeindigd);
}

TEST_F(FolderPrepassTest, SubFoldersAreNotItsBusiness) {
  test_.files.AddFile("/s/sub/a.txt", "a");
  Run();
  EXPECT_EQ(test_.files.Below("/t"), std::vector<std::string>{});
}

TEST_F(FolderPrepassTest, AFileInUpperCaseTxtIsCopiedUnchanged) {
  test_.files.AddFile("/s/a.TXT", "aaa");
  Run();
  EXPECT_EQ(test_.files.Bytes("/t/a.TXT"), "aaa");
  EXPECT_EQ(program_.run.FilesSkipped, 1);
  EXPECT_EQ(program_.run.FilesDone, 0);
}

TEST_F(FolderPrepassTest, AFileOfARecycleBinIsStillHandledWhenTheSourceIsTheBin) {
  test_.files.AddFile("/RECYCLER/b.bin", "aaa");
  test_.files.AddFile("/RECYCLER/a.txt", "aaa");
  Run("/RECYCLER");
  EXPECT_EQ(test_.files.Below("/t"), std::vector<std::string>{"/t/b.bin"});
  EXPECT_EQ(program_.run.FilesDone, 1);
  // "b.bin" is only copied, so its path is not checked. The path of "a.txt" is checked, so "a.txt"
  // is not processed and has no result to copy.
  EXPECT_EQ(test_.LogMessages(),
            (std::vector<std::string>{"/RECYCLER/a.txt", "Error 53: File not found"}));
}

TEST_F(FolderPrepassTest, AFileAtTheTopOfSystemVolumeInformationIsProcessed) {
  test_.files.AddFile("/System Volume Information/a.txt", "aaa");
  Run("/System Volume Information");
  EXPECT_EQ(test_.files.Bytes("/t/a.txt"), "bbb");
}

TEST_F(FolderPrepassTest, TheScaleFollowsTheSizeOfTheSource) {
  struct Case {
    std::size_t size;
    int scale;
    std::int64_t maximum;
  };
  for (const Case& tested : {Case{0, -3, 0}, Case{9, -3, 9000}, Case{999, -1, 9990},
                             Case{1000, 0, 1000}, Case{12345678, 4, 1234}}) {
    FolderProgram test;
    test.files.AddFile("/s/sub/b.bin", std::string(tested.size, 'x'));
    FolderPrepass(test.program, "/s", "/t");
    EXPECT_EQ(test.program.run.ProgressScale, tested.scale) << tested.size;
    EXPECT_EQ(test.program.frmMorvex.ProgressBar1.maximum(), tested.maximum) << tested.size;
    EXPECT_EQ(test.program.run.SourceSize, static_cast<std::int64_t>(tested.size));
    EXPECT_TRUE(test.program.run.ScaleFixed);
    EXPECT_TRUE(test.user.messages.empty());
  }
}

TEST_F(FolderPrepassTest, ASourceUnderAThousandBytesGivesANegativeScaleWithoutAMessage) {
  test_.files.AddFile("/s/b.bin", std::string(123, 'x'));
  Run();
  EXPECT_EQ(program_.run.ProgressScale, -1);
  EXPECT_EQ(Maximum(), 1230);
  EXPECT_EQ(program_.frmMorvex.ProgressBar1.value(), 1230);
  EXPECT_TRUE(test_.user.messages.empty());
  EXPECT_FALSE(program_.Beeindigd);
}

TEST_F(FolderPrepassTest, TheSizeIsThatOfAllFilesBelow) {
  test_.files.AddFile("/s/a.bin", std::string(1000, 'x'));
  test_.files.AddFile("/s/one/b.bin", std::string(200, 'x'));
  test_.files.AddFile("/s/one/two/c.bin", std::string(34, 'x'));
  Run();
  EXPECT_EQ(program_.run.SourceSize, 1234);
  EXPECT_EQ(Maximum(), 1234);
}

TEST_F(FolderPrepassTest, TheScaleIsFixedOncePerRun) {
  test_.files.AddFile("/s/a.bin", std::string(5000, 'x'));
  program_.run.ScaleFixed = true;
  program_.run.ProgressScale = 2;
  program_.frmMorvex.ProgressBar1.SetMaximum(50);
  Run();
  EXPECT_EQ(program_.run.ProgressScale, 2);
  EXPECT_EQ(Maximum(), 50);
  EXPECT_EQ(program_.frmMorvex.ProgressBar1.value(), 50);
}

TEST_F(FolderPrepassTest, WithoutASizeTheDriveInUseGivesTheScale) {
  HideSize();
  test_.files.drive = {1'000'000'000, 876'543'210};  // 123,456,790 bytes in use
  test_.files.AddFile("/s/a.txt", "a");
  Run();
  EXPECT_EQ(program_.run.ProgressScale, 5);
  EXPECT_EQ(Maximum(), 1234);
  EXPECT_EQ(test_.files.Bytes("/t/a.txt"), "b");
  EXPECT_TRUE(test_.user.messages.empty());
}

TEST_F(FolderPrepassTest, ADriveWithAThousandBytesInUseGivesAScaleOfZero) {
  HideSize();
  test_.files.drive = {5000, 4000};
  Run();
  EXPECT_EQ(program_.run.ProgressScale, 0);
  EXPECT_EQ(Maximum(), 1000);
  EXPECT_TRUE(test_.user.messages.empty());
  EXPECT_FALSE(program_.Beeindigd);
}

TEST_F(FolderPrepassTest, ADriveWithLessInUseEndsTheRunWithAMessage) {
  HideSize();
  test_.files.drive = {5000, 4001};
  test_.files.AddFile("/s/a.txt", "a");
  Run();
  EXPECT_EQ(test_.user.messages, std::vector<ShownMessage>{kNoScale});
  EXPECT_TRUE(program_.Beeindigd);
  EXPECT_EQ(test_.files.Below("/t"), std::vector<std::string>{});
  EXPECT_EQ(program_.run.BytesTotal, 0);
}

TEST_F(FolderPrepassTest, ADriveThatSaysNothingEndsTheRunWithAMessage) {
  test_.files.AddFolder("/s/closed");
  test_.files.fail = [](const std::string& call, const std::string& path) {
    const bool fails = call == "LookUpDrive" || (call == "ListFolder" && path == "/s/closed");
    return fails ? ErrorNumber::kDeviceUnavailable : ErrorNumber::kNone;
  };
  Run();
  EXPECT_EQ(test_.user.messages, std::vector<ShownMessage>{kNoScale});
  EXPECT_TRUE(program_.Beeindigd);
}

TEST_F(FolderPrepassTest, AnEmptySourceHasNoDriveAndEndsTheRunWithAMessage) {
  Run("");
  EXPECT_EQ(test_.user.messages, std::vector<ShownMessage>{kNoScale});
  EXPECT_TRUE(program_.Beeindigd);
}

TEST_F(FolderPrepassTest, TheBarStartsAtZero) {
  program_.frmMorvex.ProgressBar1.SetMaximum(4000);
  program_.frmMorvex.ProgressBar1.SetValue(3000);
  test_.files.AddFile("/s/a.bin", std::string(5000, 'x'));
  std::int64_t first = -1;
  test_.OnEveryYield([&] {
    if (first < 0) first = program_.frmMorvex.ProgressBar1.value();
  });
  Run();
  EXPECT_EQ(first, 0);
  EXPECT_EQ(program_.frmMorvex.ProgressBar1.value(), 5000);
}

TEST_F(FolderPrepassTest, AMissingTargetFolderIsMade) {
  test_.files.AddFile("/s/a.txt", "a");
  Run("/s", "/made");
  EXPECT_EQ(test_.files.Bytes("/made/a.txt"), "b");
}

TEST_F(FolderPrepassTest, OnlyOneLevelOfTheTargetIsMade) {
  test_.files.AddFile("/s/a.txt", "a");
  Run("/s", "/made/deeper");
  EXPECT_FALSE(test_.files.Has("/made"));
  EXPECT_FALSE(test_.files.Has("/s/tijdel.enc"));
}

TEST_F(FolderPrepassTest, AfterAFailedCopyTheNextFileIsHandled) {
  test_.files.AddFile("/s/a.txt", "a");
  test_.files.AddFile("/s/b.txt", "aa");
  test_.files.fail = FailOn("MoveTo", "/t/a.txt", ErrorNumber::kPermissionDenied);
  Run();
  EXPECT_EQ(test_.files.Below("/t"), std::vector<std::string>{"/t/b.txt"});
  EXPECT_EQ(test_.LogMessages(),
            (std::vector<std::string>{"/s/a.txt  ----  Hits: 1", "/s/a.txt",
                                      "Error 70: Permission denied", "/s/b.txt  ----  Hits: 2"}));
  EXPECT_FALSE(program_.Beeindigd);
}

TEST_F(FolderPrepassTest, ADiskFullEndsTheRunAndTheRemainingFilesAreNotHandled) {
  test_.files.AddFile("/s/a.txt", "a");
  test_.files.AddFile("/s/b.txt", "a");
  test_.files.AddFile("/s/c.bin", "a");
  test_.files.fail = FailOn("MoveTo", "/t/a.txt", ErrorNumber::kDiskFull);
  Run();
  EXPECT_TRUE(program_.Beeindigd);
  EXPECT_EQ(test_.files.Below("/t"), std::vector<std::string>{});
  EXPECT_EQ(program_.run.FilesDone, 1);
  EXPECT_FALSE(test_.files.Has("/s/tijdel.enc"));
}

TEST_F(FolderPrepassTest, AStopRequestEndsItBeforeTheNextFile) {
  test_.files.AddFile("/s/a.bin", "a");
  test_.files.AddFile("/s/b.bin", "a");
  test_.OnEveryYield([&] {
    if (program_.run.FilesSkipped == 1) program_.Beeindigd = true;
  });
  Run();
  EXPECT_EQ(test_.files.Below("/t"), std::vector<std::string>{"/t/a.bin"});
  EXPECT_EQ(program_.run.FilesSkipped, 1);
}

TEST_F(FolderPrepassTest, AStopRequestWhileTheSizeIsAddedUpEndsItBeforeTheFirstFile) {
  test_.files.AddFile("/s/a.bin", "a");
  test_.OnEveryYield([&] { program_.Beeindigd = true; });
  Run();
  EXPECT_EQ(test_.files.Below("/t"), std::vector<std::string>{});
}

TEST_F(FolderPrepassTest, AStaleWorkFileIsNoFileOfTheSource) {
  test_.Select({".enc"});
  test_.files.AddFile("/s/tijdel.enc", "stale");
  Run();
  EXPECT_EQ(test_.files.Below("/t"), std::vector<std::string>{});
  EXPECT_EQ(program_.run.FilesDone + program_.run.FilesSkipped, 0);
  EXPECT_TRUE(test_.files.Has("/s/tijdel.enc"));
}

TEST_F(FolderPrepassTest, AStaleWorkFileIsDeletedBeforeTheFirstSelectedFileOfItsFolder) {
  test_.files.AddFile("/s/b.bin", "a");
  test_.files.AddFile("/s/tijdel.enc", "stale");
  test_.files.AddFile("/s/a.txt", "a");
  Run();
  EXPECT_EQ(test_.files.Bytes("/t/a.txt"), "b");
  EXPECT_FALSE(test_.files.Has("/s/tijdel.enc"));
  EXPECT_FALSE(test_.files.Has("/t/tijdel.enc"));
}

TEST_F(FolderPrepassTest, AFileThatComesWhileTheFilesAreHandledIsNot) {
  test_.files.AddFile("/s/a.bin", "a");
  test_.files.AddFile("/s/b.bin", "a");
  test_.OnEveryYield([&] {
    if (program_.run.FilesSkipped == 1) test_.files.AddFile("/s/late.bin", "a");
  });
  Run();
  EXPECT_TRUE(test_.files.Has("/s/late.bin"));
  EXPECT_EQ(test_.files.Below("/t"), (std::vector<std::string>{"/t/a.bin", "/t/b.bin"}));
}

TEST_F(FolderPrepassTest, YieldsAfterEachFile) {
  for (int i = 0; i < 10; ++i) test_.files.AddFile("/s/" + std::to_string(i) + ".bin", "a");
  std::vector<std::int64_t> handled;
  test_.OnEveryYield([&] { handled.push_back(program_.run.FilesSkipped); });
  Run();
  for (std::int64_t files = 0; files <= 10; ++files) {
    EXPECT_NE(std::find(handled.begin(), handled.end(), files), handled.end()) << files;
  }
}

}  // namespace
}  // namespace morvex::test
