// Each rule by which a file is never processed.
#include "core/engine/passes/skip_rules.h"

#include <gtest/gtest.h>

#include "tests/core/engine/folder_program.h"

namespace morvex::test {
namespace {

constexpr std::chrono::nanoseconds kInstant{1};

class SkipRulesTest : public ::testing::Test {
 protected:
  SkipRulesTest() { test_.program.run.ArmedAt = test_.system.now; }
  PassedOver Decide(const std::string& name, const std::string& folder = "/s") {
    return WhyPassedOver(test_.program, name, folder, test_.system.now - kInstant);
  }
  PassedOver DecideModified(WallTime modified) {
    return WhyPassedOver(test_.program, "a.txt", "/s", modified);
  }

  TestProgram test_;
};

TEST_F(SkipRulesTest, AnOrdinaryFileIsProcessed) {
  EXPECT_EQ(Decide("a.txt"), PassedOver::kNo);
  EXPECT_EQ(Decide(""), PassedOver::kNo);
}

TEST_F(SkipRulesTest, TheBaseNameMorvexIsSkippedSilently) {
  for (const char* name :
       {"Morvex.log", "Morvex.exe", "Morvex.", "Morvex.txt", "Morvex.tar.gz", "Morvex.cle"}) {
    EXPECT_EQ(Decide(name), PassedOver::kOwnFile) << name;
  }
}

TEST_F(SkipRulesTest, MorvexAndOneCharacterWithoutPointIsSkippedSilently) {
  EXPECT_EQ(Decide("Morvex1"), PassedOver::kOwnFile);
  EXPECT_EQ(Decide("MorvexX"), PassedOver::kOwnFile);
  EXPECT_EQ(Decide("Morvex"), PassedOver::kNo);
  EXPECT_EQ(Decide("Morvex12"), PassedOver::kNo);
}

TEST_F(SkipRulesTest, OtherNamesAroundMorvexAreProcessed) {
  for (const char* name : {"morvex.log", "MORVEX.EXE", "Morvex1.log", "xMorvex.log", "Morve.log",
                           ".Morvex", "MorvexHELP.chm"}) {
    EXPECT_EQ(Decide(name), PassedOver::kNo) << name;
  }
}

TEST_F(SkipRulesTest, TheRunningProgramsOwnExecutableIsSkippedSilently) {
  test_.system.executable_name = "anonymise";
  EXPECT_EQ(Decide("anonymise.exe"), PassedOver::kOwnFile);
  EXPECT_EQ(Decide("anonymise"), PassedOver::kNo);
  EXPECT_EQ(Decide("Anonymise.exe"), PassedOver::kNo);
  EXPECT_EQ(Decide("morvex-cli.exe"), PassedOver::kNo);
}

TEST_F(SkipRulesTest, FilesInRecycleBinsAreSkippedSilentlyInAnyLetterCase) {
  for (const char* folder : {"/s/RECYCLED", "/s/recycled", "/s/ReCycled/deep/er", "/RECYCLER/s",
                             "/s/Recycler", "/s/unrecycled stuff"}) {
    EXPECT_EQ(Decide("a.txt", folder), PassedOver::kRecycleBin) << folder;
  }
  EXPECT_EQ(Decide("recycled.txt", "/s"), PassedOver::kNo);
  EXPECT_EQ(Decide("a.txt", "/s/recycle"), PassedOver::kNo);
}

TEST_F(SkipRulesTest, FilesInRestoreFoldersAreSkippedSilentlyInAnyLetterCase) {
  EXPECT_EQ(Decide("a.txt", "/_RESTORE"), PassedOver::kRecycleBin);
  EXPECT_EQ(Decide("a.txt", "/s/my_restore/x"), PassedOver::kRecycleBin);
  EXPECT_EQ(Decide("a.txt", "/restore"), PassedOver::kNo);
}

TEST_F(SkipRulesTest, SystemVolumeInformationNeverFires) {
  for (const char* folder : {"/System Volume Information", "/SYSTEM VOLUME INFORMATION/x",
                             "/system volume information"}) {
    EXPECT_EQ(Decide("a.txt", folder), PassedOver::kNo) << folder;
  }
}

TEST_F(SkipRulesTest, AFileChangedAtTheMomentOfArmingIsSkippedSilently) {
  EXPECT_EQ(DecideModified(test_.system.now), PassedOver::kChangedMeanwhile);
}

TEST_F(SkipRulesTest, AFileChangedAnInstantBeforeArmingIsProcessed) {
  EXPECT_EQ(DecideModified(test_.system.now - kInstant), PassedOver::kNo);
}

TEST_F(SkipRulesTest, AFileChangedAfterArmingIsSkippedSilently) {
  EXPECT_EQ(DecideModified(test_.system.now + kInstant), PassedOver::kChangedMeanwhile);
}

TEST_F(SkipRulesTest, WithoutATimeThatRuleIsPassedOver) {
  EXPECT_EQ(WhyPassedOver(test_.program, "a.txt", "/s", std::nullopt), PassedOver::kNo);
}

TEST_F(SkipRulesTest, NamesEndingInCleAreSkippedAndCounted) {
  for (const char* name : {"article", "cle", "a.cle", "x.txtcle"}) {
    EXPECT_EQ(WhyPassedOver(test_.program, name, "/s", std::nullopt), PassedOver::kNameEnding)
        << name;
  }
  for (const char* name : {"article.txt", "CLE", "a.Cle", "cle.", "le"}) {
    EXPECT_EQ(Decide(name), PassedOver::kNo) << name;
  }
}

TEST_F(SkipRulesTest, TheSilentRulesComeBeforeTheCountedOne) {
  EXPECT_EQ(Decide("article", "/s/recycler"), PassedOver::kRecycleBin);
  EXPECT_EQ(WhyPassedOver(test_.program, "article", "/s", test_.system.now),
            PassedOver::kChangedMeanwhile);
}

// The skip rules as they act when a file is processed.
class SkippedFileTest : public ::testing::Test {
 protected:
  OutcomeKind Process(const std::string& name, const std::string& folder = "/s",
                      WallTime modified = {}) {
    test_.files.AddFile(folder + "/" + name, "aaa", modified);
    std::unique_ptr<WorkFile> work;
    return ProcessFile(test_.program, LookUpSource(test_.program, folder, name), work).kind;
  }
  void ExpectNothingDone(const std::string& folder = "/s") {
    EXPECT_FALSE(test_.files.Has(folder + "/tijdel.enc"));
    EXPECT_EQ(test_.program.run.HitsTotal, 0);
    EXPECT_EQ(test_.program.frmMorvex.lblFiles.caption.get(), "");
    EXPECT_EQ(test_.Counts(), "");
  }

  FolderProgram test_;
};

TEST_F(SkippedFileTest, TheProgramsOwnFilesLeaveNoLineAndNoCount) {
  for (const char* name : {"Morvex.log", "Morvex.exe", "Morvex.dat", "morvex-cli.exe"}) {
    EXPECT_EQ(Process(name), OutcomeKind::kPassedOver) << name;
  }
  EXPECT_EQ(test_.LogMessages(), std::vector<std::string>{});
  EXPECT_EQ(test_.program.run.FilesSkipped, 0);
  ExpectNothingDone();
}

TEST_F(SkippedFileTest, ArticleLeavesASkipLineAndCounts) {
  EXPECT_EQ(Process("article"), OutcomeKind::kPassedOver);
  EXPECT_EQ(test_.LogMessages(), std::vector<std::string>{"SKIP article"});
  EXPECT_EQ(test_.program.run.FilesSkipped, 1);
  ExpectNothingDone();
}

TEST_F(SkippedFileTest, ArticleCountsWithoutLoggingToo) {
  test_.program.run.LoggingOn = false;
  EXPECT_EQ(Process("article"), OutcomeKind::kPassedOver);
  EXPECT_FALSE(test_.files.Has("/program/Morvex.log"));
  EXPECT_EQ(test_.program.run.FilesSkipped, 1);
}

TEST_F(SkippedFileTest, AFileAsNewAsTheArmingLeavesNoLineAndNoCount) {
  EXPECT_EQ(Process("a.txt", "/s", test_.system.now), OutcomeKind::kPassedOver);
  EXPECT_EQ(test_.LogMessages(), std::vector<std::string>{});
  EXPECT_EQ(test_.program.run.FilesSkipped, 0);
  ExpectNothingDone();
}

TEST_F(SkippedFileTest, AFileAnInstantOlderThanTheArmingIsProcessed) {
  EXPECT_EQ(Process("a.txt", "/s", test_.system.now - kInstant), OutcomeKind::kProcessed);
  EXPECT_EQ(test_.files.Bytes("/s/tijdel.enc"), "bbb");
}

TEST_F(SkippedFileTest, AFileUnderRecycledInMixedCaseLeavesNoLineAndNoCount) {
  EXPECT_EQ(Process("a.txt", "/s/ReCyClEd/x"), OutcomeKind::kPassedOver);
  EXPECT_EQ(test_.LogMessages(), std::vector<std::string>{});
  EXPECT_EQ(test_.program.run.FilesSkipped, 0);
  ExpectNothingDone("/s/ReCyClEd/x");
}

TEST_F(SkippedFileTest, AFileUnderSystemVolumeInformationIsProcessed) {
  EXPECT_EQ(Process("a.txt", "/s/System Volume Information"), OutcomeKind::kProcessed);
  EXPECT_EQ(test_.files.Bytes("/s/System Volume Information/tijdel.enc"), "bbb");
}

}  // namespace
}  // namespace morvex::test
