// Links in the source, links in the target, and trees that overlap.
#include "core/engine/passes/tree_rules.h"

#include <gtest/gtest.h>

#include "tests/core/engine/folder_program.h"

namespace morvex::test {
namespace {

class TreeRulesTest : public ::testing::Test {
 protected:
  std::vector<std::string> Made() const { return test_.files.Below("/t"); }
  void ExpectPathError(const std::string& path) {
    const std::vector<std::string> log = test_.LogMessages();
    const auto found = std::find(log.begin(), log.end(), path);
    ASSERT_NE(found, log.end()) << path;
    ASSERT_NE(found + 1, log.end()) << path;
    EXPECT_EQ(*(found + 1), "Error 75: Path/File access error");
  }

  FolderProgram test_;
  Program& program_ = test_.program;
};

TEST_F(TreeRulesTest, ALinkToTheSourceIsNotFollowed) {
  test_.files.AddFile("/s/a.txt", "a");
  test_.files.AddLink("/s/loop", "/s");
  test_.RunPasses();
  EXPECT_EQ(Made(), std::vector<std::string>{"/t/a.txt"});
}

TEST_F(TreeRulesTest, ALinkToAFolderOnTheCurrentPathIsNotFollowed) {
  test_.files.AddFile("/s/1/2/a.txt", "a");
  test_.files.AddLink("/s/1/2/up", "/s/1");
  test_.RunPasses();
  EXPECT_EQ(Made(), (std::vector<std::string>{"/t/1/", "/t/1/2/", "/t/1/2/a.txt"}));
}

TEST_F(TreeRulesTest, TwoFoldersWithLinksToEachOtherEnd) {
  test_.files.AddFile("/s/1/a.txt", "a");
  test_.files.AddFile("/s/2/b.txt", "a");
  test_.files.AddLink("/s/1/to2", "/s/2");
  test_.files.AddLink("/s/2/to1", "/s/1");
  test_.RunPasses();
  EXPECT_EQ(Made(),
            (std::vector<std::string>{"/t/1/", "/t/1/a.txt", "/t/1/to2/", "/t/1/to2/b.txt", "/t/2/",
                                      "/t/2/b.txt", "/t/2/to1/", "/t/2/to1/a.txt"}));
}

TEST_F(TreeRulesTest, ALinkToAFolderElsewhereIsFollowed) {
  test_.files.AddFile("/elsewhere/a.txt", "a");
  test_.files.AddLink("/s/link", "/elsewhere");
  test_.RunPasses();
  EXPECT_EQ(test_.files.Bytes("/t/link/a.txt"), "b");
  EXPECT_TRUE(test_.files.IsFolder("/t/link"));
  EXPECT_FALSE(test_.files.Has("/elsewhere/tijdel.enc"));
}

TEST_F(TreeRulesTest, TwoLinksToOneFolderAreBothFollowed) {
  test_.files.AddFile("/elsewhere/a.txt", "a");
  test_.files.AddLink("/s/one", "/elsewhere");
  test_.files.AddLink("/s/two", "/elsewhere");
  test_.RunPasses();
  EXPECT_EQ(test_.files.Bytes("/t/one/a.txt"), "b");
  EXPECT_EQ(test_.files.Bytes("/t/two/a.txt"), "b");
}

TEST_F(TreeRulesTest, LinksLeadIntoOneFolderABoundedNumberOfTimes) {
  test_.files.AddFolder("/s/1");
  test_.files.AddFolder("/elsewhere/below");
  test_.files.AddLink("/s/link", "/elsewhere");
  TreeRules rules(program_, "/s", "/t");
  const FolderInfo plain = test_.files.LookUpFolder("/s/1").value;
  const FolderInfo link = test_.files.LookUpFolder("/s/link").value;
  const FolderInfo below = test_.files.LookUpFolder("/s/link/below").value;
  for (std::int64_t visit = 0; visit < TreeRules::kMostVisitsByLinks; ++visit) {
    ASSERT_EQ(rules.WhyNotEntered(link).value, PassedOver::kNo) << visit;
    rules.Enter(link);
    ASSERT_EQ(rules.WhyNotEntered(below).value, PassedOver::kNo) << visit;
    rules.Enter(below);
    rules.Leave();
    rules.Leave();
  }
  EXPECT_EQ(rules.WhyNotEntered(link).value, PassedOver::kLinkedTooOften);
  // The limit applies only to folders that are themselves links.
  EXPECT_EQ(rules.WhyNotEntered(below).value, PassedOver::kNo);
  EXPECT_EQ(rules.WhyNotEntered(plain).value, PassedOver::kNo);
}

TEST_F(TreeRulesTest, ALinkToAFileIsReadAsThatFile) {
  test_.files.AddFile("/elsewhere.dat", "a");
  test_.files.AddLink("/s/a.txt", "/elsewhere.dat");
  test_.files.AddLink("/s/b.bin", "/elsewhere.dat");
  test_.RunPasses();
  EXPECT_EQ(test_.files.Bytes("/t/a.txt"), "b");
  EXPECT_EQ(test_.files.Bytes("/t/b.bin"), "a");
  test_.files.DeleteFile("/elsewhere.dat");
  EXPECT_TRUE(test_.files.LookUpFile("/t/b.bin")) << "the copy is a file of its own";
}

TEST_F(TreeRulesTest, ATargetInTheSourceIsNotWalkedInto) {
  test_.files.AddFile("/s/a.txt", "a");
  test_.files.AddFile("/s/sub/b.txt", "a");
  test_.files.AddFolder("/s/out");
  test_.RunPasses("/s", "/s/out");
  EXPECT_EQ(test_.files.Below("/s/out"),
            (std::vector<std::string>{"/s/out/a.txt", "/s/out/sub/", "/s/out/sub/b.txt"}));
  EXPECT_EQ(program_.run.FilesDone, 2);
}

TEST_F(TreeRulesTest, ATargetDeepInTheSourceIsNotWalkedInto) {
  test_.files.AddFile("/s/sub/b.txt", "a");
  test_.files.AddFile("/s/sub/out/old.txt", "a");
  test_.RunPasses("/s", "/s/sub/out");
  EXPECT_EQ(
      test_.files.Below("/s/sub/out"),
      (std::vector<std::string>{"/s/sub/out/old.txt", "/s/sub/out/sub/", "/s/sub/out/sub/b.txt"}));
  EXPECT_EQ(test_.files.Bytes("/s/sub/out/old.txt"), "a");
}

TEST_F(TreeRulesTest, WhatLiesInTheTargetIsNotCountedInTheScale) {
  test_.files.AddFile("/s/a.bin", std::string(1000, 'x'));
  test_.files.AddFile("/s/out/old.bin", std::string(5000, 'x'));
  FolderPrepass(program_, "/s", "/s/out");
  EXPECT_EQ(program_.run.SourceSize, 1000);
}

TEST_F(TreeRulesTest, ATargetReachedThroughALinkIsNotWalkedInto) {
  test_.files.AddFile("/t/old.txt", "a");
  test_.files.AddFile("/t/deep/older.txt", "a");
  test_.files.AddLink("/s/to_target", "/t");
  test_.files.AddLink("/s/into_target", "/t/deep");
  test_.files.AddFile("/s/sub/b.txt", "a");
  test_.RunPasses();
  EXPECT_EQ(Made(), (std::vector<std::string>{"/t/deep/", "/t/deep/older.txt", "/t/old.txt",
                                              "/t/sub/", "/t/sub/b.txt"}));
  EXPECT_EQ(test_.files.Bytes("/t/deep/older.txt"), "a");
}

TEST_F(TreeRulesTest, ALinkIntoATargetThatIsARootIsNotFollowed) {
  test_.files.AddFile("/deep/old.txt", "a");
  test_.files.AddLink("/s/into_target", "/deep");
  test_.files.AddFile("/s/sub/b.txt", "a");
  test_.RunPasses("/s", "/");
  EXPECT_FALSE(test_.files.Has("/into_target"));
  EXPECT_EQ(test_.files.Bytes("/sub/b.txt"), "b");
}

TEST_F(TreeRulesTest, AFolderWhoseNameStartsLikeTheTargetsIsFollowed) {
  test_.files.AddFile("/tt/a.txt", "a");
  test_.files.AddLink("/s/link", "/tt");
  test_.RunPasses();
  EXPECT_EQ(test_.files.Bytes("/t/link/a.txt"), "b");
}

TEST_F(TreeRulesTest, ASourceInTheTargetIsNotWrittenInto) {
  test_.files.AddFile("/t/s/a.txt", "a");
  test_.files.AddFile("/t/s/sub/b.txt", "a");
  test_.files.AddFile("/t/s/s/c.txt", "a");
  test_.RunPasses("/t/s", "/t");
  EXPECT_EQ(Made(),
            (std::vector<std::string>{"/t/a.txt", "/t/s/", "/t/s/a.txt", "/t/s/s/", "/t/s/s/c.txt",
                                      "/t/s/sub/", "/t/s/sub/b.txt", "/t/sub/", "/t/sub/b.txt"}));
  EXPECT_EQ(test_.files.Bytes("/t/s/a.txt"), "a");
  EXPECT_EQ(test_.files.Bytes("/t/a.txt"), "b");
  ExpectPathError("/t/s/s");
  EXPECT_EQ(program_.run.failed_files, 1);
}

TEST_F(TreeRulesTest, ATargetThatIsTheSourceFailsWith75AndLeavesItUntouched) {
  test_.files.AddFile("/s/a.txt", "a");
  test_.files.AddFile("/s/b.bin", "a");
  test_.files.AddFile("/s/sub/c.txt", "a");
  test_.files.AddFile("/s/sub/d.bin", "a");
  const std::vector<std::string> before = test_.files.Below("/s");
  test_.RunPasses("/s", "/s");
  EXPECT_EQ(test_.files.Below("/s"), before);
  for (const char* path : {"/s/a.txt", "/s/b.bin", "/s/sub/c.txt", "/s/sub/d.bin"}) {
    EXPECT_EQ(test_.files.Bytes(path), "a") << path;
  }
  ExpectPathError("/s/a.txt");
  ExpectPathError("/s/sub/c.txt");
  EXPECT_EQ(program_.run.failed_files, 4);
  EXPECT_EQ(program_.run.first_failure.error, ErrorNumber::kPathFileAccess);
}

TEST_F(TreeRulesTest, ATargetThatIsALinkToTheSourceLeavesItUntouched) {
  test_.files.AddFile("/s/a.txt", "a");
  test_.files.AddFile("/s/sub/c.txt", "a");
  test_.files.AddLink("/alias", "/s");
  const std::vector<std::string> before = test_.files.Below("/s");
  test_.RunPasses("/s", "/alias");
  EXPECT_EQ(test_.files.Below("/s"), before);
  EXPECT_EQ(test_.files.Bytes("/s/a.txt"), "a");
  EXPECT_EQ(test_.files.Bytes("/s/sub/c.txt"), "a");
  ExpectPathError("/s/a.txt");
}

TEST_F(TreeRulesTest, AFolderOfTheTargetThatIsALinkIsNotWrittenInto) {
  test_.files.AddFile("/s/sub/b.txt", "a");
  test_.files.AddFile("/s/sub/deep/c.bin", "a");
  test_.files.AddFile("/s/next/d.txt", "a");
  test_.files.AddFolder("/elsewhere");
  test_.files.AddLink("/t/sub", "/elsewhere");
  test_.RunPasses();
  EXPECT_EQ(test_.files.Below("/elsewhere"), std::vector<std::string>{});
  EXPECT_EQ(test_.files.Bytes("/t/next/d.txt"), "b");
  ExpectPathError("/s/sub");
  EXPECT_EQ(program_.run.failed_files, 1);
}

TEST_F(TreeRulesTest, TheTargetItselfMayBeALink) {
  test_.files.AddFile("/s/a.txt", "a");
  test_.files.AddFile("/s/sub/b.txt", "a");
  test_.files.AddFolder("/real");
  test_.files.AddLink("/link", "/real");
  test_.RunPasses("/s", "/link");
  EXPECT_EQ(test_.files.Below("/real"),
            (std::vector<std::string>{"/real/a.txt", "/real/sub/", "/real/sub/b.txt"}));
}

TEST_F(TreeRulesTest, AFolderOfTheTargetThatCannotBeLookedAtIsNotWrittenInto) {
  test_.files.AddFile("/s/sub/b.txt", "a");
  test_.files.AddFolder("/t/sub");
  test_.files.fail = FailOn("LookUpFolder", "/t/sub", ErrorNumber::kDeviceIo);
  test_.RunPasses();
  EXPECT_EQ(Made(), std::vector<std::string>{"/t/sub/"});
  EXPECT_EQ(test_.LogMessages(),
            (std::vector<std::string>{"/s/sub", "Error 57: Device I/O error"}));
}

TEST_F(TreeRulesTest, WithoutTheTwoFoldersThereAreNoRules) {
  EXPECT_EQ(TreeRules(program_, "/s", "/t").error(), ErrorNumber::kNone);
  EXPECT_EQ(TreeRules(program_, "/none", "/t").error(), ErrorNumber::kPathNotFound);
  EXPECT_EQ(TreeRules(program_, "/s", "/none").error(), ErrorNumber::kPathNotFound);
  test_.files.fail = FailOn("RealPath", "/t", ErrorNumber::kDeviceIo);
  EXPECT_EQ(TreeRules(program_, "/s", "/t").error(), ErrorNumber::kDeviceIo);
}

TEST_F(TreeRulesTest, AWalkWithoutRulesVisitsNothing) {
  test_.files.AddFile("/s/sub/b.txt", "a");
  test_.files.fail = FailOn("RealPath", "/t", ErrorNumber::kDeviceIo);
  EXPECT_EQ(FolderWalk(program_, "/s", "/t"), ErrorNumber::kDeviceIo);
  EXPECT_EQ(Made(), std::vector<std::string>{});
}

TEST_F(TreeRulesTest, TheSizeCountsAFileThatVanishedAsNothing) {
  test_.files.AddFile("/s/a.bin", "12345");
  test_.files.AddFile("/s/gone.bin", "12345");
  test_.files.fail = FailOn("LookUpFile", "/s/gone.bin", ErrorNumber::kFileNotFound);
  TreeRules rules(program_, "/s", "/t");
  const Result<std::uint64_t> size =
      FolderSize(program_, rules, test_.files.LookUpFolder("/s").value);
  ASSERT_TRUE(size);
  EXPECT_EQ(size.value, 5u);
}

TEST_F(TreeRulesTest, TheSizeFailsWithTheErrorOfAFileOrFolderBelow) {
  test_.files.AddFile("/s/sub/a.bin", "12345");
  for (const char* call : {"LookUpFile", "LookUpFolder", "ListFolder"}) {
    TreeRules rules(program_, "/s", "/t");
    const FolderInfo source = test_.files.LookUpFolder("/s").value;
    const char* path = std::string(call) == "LookUpFile" ? "/s/sub/a.bin" : "/s/sub";
    test_.files.fail = FailOn(call, path, ErrorNumber::kPermissionDenied);
    EXPECT_EQ(FolderSize(program_, rules, source).error, ErrorNumber::kPermissionDenied) << call;
    test_.files.fail = nullptr;
  }
}

TEST_F(TreeRulesTest, TheSizeOfALoopEnds) {
  test_.files.AddFile("/s/sub/a.bin", "12345");
  test_.files.AddLink("/s/sub/loop", "/s");
  test_.files.AddLink("/s/again", "/s/sub");
  TreeRules rules(program_, "/s", "/t");
  // The file of 5 bytes counts twice: below "sub" and below "again".
  EXPECT_EQ(FolderSize(program_, rules, test_.files.LookUpFolder("/s").value).value, 10u);
}

TEST_F(TreeRulesTest, ALinkOfWhichItCannotBeToldWhereItLeadsIsNotFollowed) {
  test_.files.AddFile("/t/in/a.txt", "a");
  test_.files.AddLink("/s/into_target", "/t/in");
  test_.files.fail = FailOn("RealPath", "/s/into_target", ErrorNumber::kDeviceIo);
  test_.RunPasses();
  EXPECT_EQ(Made(), (std::vector<std::string>{"/t/in/", "/t/in/a.txt"}));
  EXPECT_EQ(program_.run.failed_files, 1);
  EXPECT_EQ(program_.run.first_failure.path, "/s/into_target");
}

TEST_F(TreeRulesTest, ATreeOfAnyDepthIsWalked) {
  constexpr int kLevels = 200;
  std::string path = "/s";
  for (int level = 0; level < kLevels; ++level) path += "/d";
  test_.files.AddFile(path + "/a.txt", "a");
  test_.RunPasses();
  EXPECT_EQ(test_.files.Bytes("/t" + path.substr(2) + "/a.txt"), "b");
}

}  // namespace
}  // namespace morvex::test
