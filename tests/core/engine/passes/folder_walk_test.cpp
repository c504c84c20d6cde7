// The second pass of a folder run: the sub-folders, depth first.
#include <gtest/gtest.h>

#include "tests/core/engine/folder_program.h"

namespace morvex::test {
namespace {

class FolderWalkTest : public ::testing::Test {
 protected:
  void Walk(const std::string& source = "/s", const std::string& target = "/t") {
    FolderWalk(program_, source, target);
  }
  std::vector<std::string> Made() const { return test_.files.Below("/t"); }

  FolderProgram test_;
  Program& program_ = test_.program;
};

TEST_F(FolderWalkTest, VisitsTheTreeInPreOrder) {
  // Folders are listed in the order of creation.
  for (const char* path : {"/s/2/b/x.txt", "/s/2/m.txt", "/s/1/c/y.txt", "/s/2/a/z.txt",
                           "/s/1/n.txt", "/s/2/b/deep/w.txt", "/s/top.txt"}) {
    test_.files.AddFile(path, "");
  }
  test_.RunPasses();
  std::vector<std::string> order;
  for (const std::string& line : test_.LogMessages())
    order.push_back(line.substr(0, line.find(' ')));
  EXPECT_EQ(order, (std::vector<std::string>{"/s/top.txt", "/s/2/m.txt", "/s/2/b/x.txt",
                                             "/s/2/b/deep/w.txt", "/s/2/a/z.txt", "/s/1/n.txt",
                                             "/s/1/c/y.txt"}));
}

TEST_F(FolderWalkTest, AnEmptySourceGivesAnEmptyTargetAndNoLines) {
  test_.RunPasses("/s", "/made");
  EXPECT_TRUE(test_.files.IsFolder("/made"));
  EXPECT_EQ(test_.files.Below("/made"), std::vector<std::string>{});
  EXPECT_EQ(test_.LogMessages(), std::vector<std::string>{});
  EXPECT_EQ(program_.run.FilesDone + program_.run.FilesSkipped, 0);
}

TEST_F(FolderWalkTest, FilesAtTheTopAreNotItsBusiness) {
  test_.files.AddFile("/s/a.txt", "a");
  Walk();
  EXPECT_EQ(Made(), std::vector<std::string>{});
}

TEST_F(FolderWalkTest, EmptyFoldersAreMadeToo) {
  test_.files.AddFolder("/s/empty/deeper");
  Walk();
  EXPECT_EQ(Made(), (std::vector<std::string>{"/t/empty/", "/t/empty/deeper/"}));
}

TEST_F(FolderWalkTest, MakesAMissingTarget) {
  test_.files.AddFile("/s/sub/a.txt", "a");
  Walk("/s", "/made");
  EXPECT_EQ(test_.files.Bytes("/made/sub/a.txt"), "b");
}

TEST_F(FolderWalkTest, ArchiveTarGzIsProcessedAtTheTopAndCopiedUnchangedBelow) {
  test_.Select({".tar.gz", ".gz"});
  test_.files.AddFile("/s/archive.tar.gz", "a");
  test_.files.AddFile("/s/sub/archive.tar.gz", "a");
  test_.RunPasses();
  EXPECT_EQ(test_.files.Bytes("/t/archive.tar.gz"), "b");
  EXPECT_EQ(test_.files.Bytes("/t/sub/archive.tar.gz"), "a");
  EXPECT_EQ(program_.run.FilesDone, 1);
  EXPECT_EQ(program_.run.FilesSkipped, 1);
}

TEST_F(FolderWalkTest, PageHtmlIsProcessedAtTheTopAndCopiedUnchangedBelow) {
  test_.Select({".txt", ".html"});
  test_.files.AddFile("/s/page.html", "a");
  test_.files.AddFile("/s/sub/page.html", "a");
  test_.files.AddFile("/s/sub/page.txt", "a");
  test_.RunPasses();
  EXPECT_EQ(test_.files.Bytes("/t/page.html"), "b");
  EXPECT_EQ(test_.files.Bytes("/t/sub/page.html"), "a");
  EXPECT_EQ(test_.files.Bytes("/t/sub/page.txt"), "b");
  EXPECT_EQ(program_.run.FilesDone, 2);
  EXPECT_EQ(program_.run.FilesSkipped, 1);
}

TEST_F(FolderWalkTest, AFolderRecyclerIsLeftOutButMadeEmpty) {
  test_.files.AddFile("/s/Recycler/a.txt", "a");
  test_.files.AddFile("/s/Recycler/sub/b.bin", "a");
  test_.files.AddFile("/s/next/c.txt", "a");
  Walk();
  EXPECT_EQ(Made(), (std::vector<std::string>{"/t/Recycler/", "/t/next/", "/t/next/c.txt"}));
  EXPECT_EQ(test_.LogMessages(), std::vector<std::string>{"/s/next/c.txt  ----  Hits: 1"});
}

TEST_F(FolderWalkTest, TheLeftOutWordsCountInAnyLetterCaseAndAnywhereInTheName) {
  for (const char* name : {"RECYCLER", "my recycled things", "System Volume Information",
                           "SYSTEM VOLUME INFORMATION 2"}) {
    FolderProgram test;
    test.files.AddFile(std::string("/s/") + name + "/b.bin", "a");
    FolderWalk(test.program, "/s", "/t");
    EXPECT_EQ(test.files.Below("/t"), std::vector<std::string>{std::string("/t/") + name + "/"});
  }
}

TEST_F(FolderWalkTest, OtherWordsAreNotLeftOut) {
  for (const char* name : {"Recycle", "$Recycle.Bin", "System Volume", "_restore"}) {
    test_.files.AddFile(std::string("/s/") + name + "/b.bin", "a");
    Walk();
    EXPECT_TRUE(test_.files.Has(std::string("/t/") + name + "/b.bin")) << name;
  }
}

TEST_F(FolderWalkTest, UnderALeftOutWordInTheSourcesPathNoSubFolderIsVisited) {
  test_.files.AddFile("/recycled/s/sub/b.bin", "a");
  Walk("/recycled/s");
  EXPECT_EQ(Made(), std::vector<std::string>{"/t/sub/"});
}

TEST_F(FolderWalkTest, UnderALeftOutWordInTheTargetsPathNoSubFolderIsVisited) {
  test_.files.AddFile("/s/sub/b.bin", "a");
  test_.files.AddFolder("/s/other");
  for (const char* word : {"RECYCLER", "Recycled", "system volume information"}) {
    const std::string target = std::string("/") + word + "/t";
    test_.files.AddFolder(target);
    Walk("/s", target);
    EXPECT_EQ(test_.files.Below(target),
              (std::vector<std::string>{target + "/other/", target + "/sub/"}));
  }
}

TEST_F(FolderWalkTest, DoubledSeparatorsInThePathsAreReduced) {
  test_.files.AddFile("/s/sub/a.txt", "a");
  std::vector<std::string> looked_up;
  test_.files.fail = [&](const std::string& call, const std::string& path) {
    if (call == "LookUpFolder") looked_up.push_back(path);
    return ErrorNumber::kNone;
  };
  Walk("/s///", "/t//");
  EXPECT_EQ(test_.files.Bytes("/t/sub/a.txt"), "b");
  for (const std::string& path : looked_up) EXPECT_EQ(path.find("//"), std::string::npos) << path;
}

TEST_F(FolderWalkTest, ATargetAtADriveRootHasNoDoubledBackslash) {
  TestProgram test('\\');
  test.files.AddFile("C:\\s\\sub\\deep\\b.bin", "a");
  std::vector<std::string> made;
  test.files.fail = [&](const std::string& call, const std::string& path) {
    if (call == "CreateFolder") made.push_back(path);
    return ErrorNumber::kNone;
  };
  FolderWalk(test.program, "C:\\s", "C:\\");
  EXPECT_EQ(made, (std::vector<std::string>{"C:\\sub", "C:\\sub\\deep"}));
  EXPECT_EQ(test.files.Bytes("C:\\sub\\deep\\b.bin"), "a");
}

TEST_F(FolderWalkTest, OnceTheProgramIsToStopNothingIsDone) {
  test_.files.AddFolder("/s/sub");
  program_.Beeindigd = true;
  Walk();
  EXPECT_EQ(Made(), std::vector<std::string>{});
}

TEST_F(FolderWalkTest, AFolderThatCannotBeListedIsPassedOver) {
  test_.files.AddFile("/s/closed/a.txt", "a");
  test_.files.AddFile("/s/open/b.txt", "a");
  test_.files.fail = FailOn("ListFolder", "/s/closed", ErrorNumber::kPermissionDenied);
  Walk();
  EXPECT_EQ(Made(), (std::vector<std::string>{"/t/closed/", "/t/open/", "/t/open/b.txt"}));
  EXPECT_FALSE(program_.Beeindigd);
}

TEST_F(FolderWalkTest, AFolderThatVanishedIsPassedOver) {
  test_.files.AddFile("/s/gone/a.txt", "a");
  test_.files.AddFile("/s/here/b.txt", "a");
  test_.files.fail = FailOn("LookUpFolder", "/s/gone", ErrorNumber::kPathNotFound);
  Walk();
  EXPECT_EQ(Made(), (std::vector<std::string>{"/t/here/", "/t/here/b.txt"}));
}

TEST_F(FolderWalkTest, ATargetFolderThatCannotBeMadeCostsItsFilesOnly) {
  test_.files.AddFile("/s/sub/a.txt", "a");
  test_.files.AddFile("/s/sub/b.bin", "a");
  test_.files.AddFile("/s/next/c.txt", "a");
  test_.files.fail = FailOn("CreateFolder", "/t/sub", ErrorNumber::kPermissionDenied);
  Walk();
  EXPECT_EQ(Made(), (std::vector<std::string>{"/t/next/", "/t/next/c.txt"}));
  EXPECT_EQ(test_.LogMessages(),
            (std::vector<std::string>{"/s/sub/a.txt  ----  Hits: 1", "/s/sub/a.txt",
                                      "Error 76: Path not found", "/s/next/c.txt  ----  Hits: 1"}));
  EXPECT_EQ(program_.run.failed_files, 2);
  EXPECT_FALSE(test_.files.Has("/s/sub/tijdel.enc"));
}

TEST_F(FolderWalkTest, AFileInATargetFoldersPlaceCostsItsFilesOnly) {
  test_.files.AddFile("/t/sub", "a file");
  test_.files.AddFile("/s/sub/a.txt", "a");
  test_.files.AddFile("/s/next/c.txt", "a");
  Walk();
  EXPECT_EQ(Made(), (std::vector<std::string>{"/t/next/", "/t/next/c.txt", "/t/sub"}));
  EXPECT_EQ(test_.files.Bytes("/t/sub"), "a file");
  EXPECT_EQ(program_.run.failed_files, 1);
}

TEST_F(FolderWalkTest, ADiskFullEndsTheWalk) {
  test_.files.AddFile("/s/1/a.txt", "a");
  test_.files.AddFile("/s/1/b.txt", "a");
  test_.files.AddFile("/s/1/deep/c.txt", "a");
  test_.files.AddFile("/s/2/d.txt", "a");
  test_.files.fail = FailOn("MoveTo", "/t/1/a.txt", ErrorNumber::kDiskFull);
  Walk();
  EXPECT_TRUE(program_.Beeindigd);
  EXPECT_EQ(Made(), std::vector<std::string>{"/t/1/"});
}

TEST_F(FolderWalkTest, AStopRequestIsObeyedBeforeTheNextSubFolder) {
  test_.files.AddFolder("/s/1");
  test_.files.AddFolder("/s/2");
  test_.OnEveryYield([&] {
    if (test_.files.Has("/t/1")) program_.Beeindigd = true;
  });
  Walk();
  EXPECT_EQ(Made(), std::vector<std::string>{"/t/1/"});
}

TEST_F(FolderWalkTest, AStopRequestInMidFileLeavesAPartialCopyAndTheWorkFile) {
  test_.files.AddFile("/s/1/a.txt", kLongText);
  test_.files.AddFile("/s/1/b.txt", "a");
  test_.files.AddFile("/s/1/deep/c.txt", "a");
  test_.StopInMidFile();
  Walk();
  EXPECT_EQ(Made(), (std::vector<std::string>{"/t/1/", "/t/1/a.txt"}));
  EXPECT_LT(test_.files.Bytes("/t/1/a.txt").size(), kLongResult.size());
  EXPECT_EQ(test_.files.Bytes("/s/1/tijdel.enc"), test_.files.Bytes("/t/1/a.txt"));
}

TEST_F(FolderWalkTest, AStaleWorkFileBelowIsNoFileOfTheSource) {
  test_.files.AddFile("/s/1/tijdel.enc", "stale");
  test_.files.AddFile("/s/2/tijdel.enc", "stale");
  test_.files.AddFile("/s/2/a.txt", "a");
  Walk();
  EXPECT_EQ(Made(), (std::vector<std::string>{"/t/1/", "/t/2/", "/t/2/a.txt"}));
  EXPECT_EQ(test_.files.Bytes("/t/2/a.txt"), "b");
  EXPECT_TRUE(test_.files.Has("/s/1/tijdel.enc"));
  EXPECT_FALSE(test_.files.Has("/s/2/tijdel.enc"));
}

TEST_F(FolderWalkTest, WhatComesIntoAFolderWhileItsFilesAreHandledIsNot) {
  test_.files.AddFile("/s/1/a.bin", "a");
  test_.files.AddFile("/s/1/b.bin", "a");
  test_.OnEveryYield([&] {
    if (program_.run.FilesSkipped != 1) return;
    test_.files.AddFile("/s/1/late.bin", "a");
    test_.files.AddFile("/s/1/late/c.bin", "a");
  });
  Walk();
  EXPECT_TRUE(test_.files.Has("/s/1/late/c.bin"));
  EXPECT_EQ(Made(), (std::vector<std::string>{"/t/1/", "/t/1/a.bin", "/t/1/b.bin"}));
}

TEST_F(FolderWalkTest, CountsGoOnFromThePrepass) {
  test_.files.AddFile("/s/a.txt", "aa");
  test_.files.AddFile("/s/sub/b.txt", "aaa");
  test_.files.AddFile("/s/sub/c.bin", "1234");
  test_.RunPasses();
  EXPECT_EQ(program_.run.FilesDone, 2);
  EXPECT_EQ(program_.run.FilesSkipped, 1);
  EXPECT_EQ(program_.run.HitsTotal, 5);
  EXPECT_EQ(program_.run.BytesTotal, 9);
  EXPECT_EQ(program_.run.BytesBefore, 5);
  EXPECT_EQ(test_.Counts(), "Scanned: 2\r\nSkipped: 1");
  EXPECT_EQ(test_.HitsShown(), "Hits: 5\r\n");
  EXPECT_EQ(program_.frmMorvex.ProgressBar1.value(), 9000);
}

}  // namespace
}  // namespace morvex::test
