// Which files the two passes process.
#include "core/engine/passes/extension_filter.h"

#include <gtest/gtest.h>

#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

constexpr FolderPassKind kTop = FolderPassKind::kPrepass;
constexpr FolderPassKind kBelow = FolderPassKind::kWalk;

class ExtensionFilterTest : public ::testing::Test {
 protected:
  bool Selects(const std::string& extension, const std::string& name, FolderPassKind pass) {
    test_.program.request.extensions = {extension};
    return IsSelectedExtension(test_.program, name, pass);
  }

  TestProgram test_;
};

TEST(FileExtension, IsWhatFollowsTheFirstPoint) {
  EXPECT_EQ(FileExtension("report.txt"), "txt");
  EXPECT_EQ(FileExtension("archive.tar.gz"), "tar.gz");
  EXPECT_EQ(FileExtension(".profile"), "profile");
  EXPECT_EQ(FileExtension("name."), "");
  EXPECT_EQ(FileExtension("name"), "");
  EXPECT_EQ(FileExtension(""), "");
  EXPECT_EQ(FileExtension("a..b"), ".b");
}

TEST_F(ExtensionFilterTest, InTheTopFolderTheKeyIsAPointAndTheExtension) {
  EXPECT_TRUE(Selects(".txt", "report.txt", kTop));
  EXPECT_TRUE(Selects(".html", "page.html", kTop));
  EXPECT_TRUE(Selects(".h", "page.h", kTop));
  EXPECT_FALSE(Selects(".txt", "report.txts", kTop));
  EXPECT_FALSE(Selects(".txts", "report.txt", kTop));
  EXPECT_FALSE(Selects("txt", "report.txt", kTop));
}

TEST_F(ExtensionFilterTest, InTheTopFolderArchiveTarGzIsLookedUpWhole) {
  EXPECT_TRUE(Selects(".tar.gz", "archive.tar.gz", kTop));
  EXPECT_FALSE(Selects(".gz", "archive.tar.gz", kTop));
  EXPECT_FALSE(Selects("r.gz", "archive.tar.gz", kTop));
}

TEST_F(ExtensionFilterTest, InTheTopFolderANameWithoutPointIsLookedUpAsAPoint) {
  EXPECT_TRUE(Selects(".", "README", kTop));
  EXPECT_TRUE(Selects(".", "name.", kTop));
  EXPECT_FALSE(Selects(".README", "README", kTop));
  EXPECT_FALSE(Selects("", "README", kTop));
}

TEST_F(ExtensionFilterTest, InSubFoldersTheKeyIsTheLastFourCharacters) {
  EXPECT_TRUE(Selects(".txt", "report.txt", kBelow));
  EXPECT_TRUE(Selects(".txt", ".txt", kBelow));
  EXPECT_FALSE(Selects(".html", "page.html", kBelow));
  EXPECT_TRUE(Selects("html", "page.html", kBelow));
  EXPECT_FALSE(Selects(".h", "page.h", kBelow));
  EXPECT_FALSE(Selects(".txt", "report.txt.", kBelow));
}

TEST_F(ExtensionFilterTest, InSubFoldersArchiveTarGzIsLookedUpAsItsEnd) {
  EXPECT_FALSE(Selects(".tar.gz", "archive.tar.gz", kBelow));
  EXPECT_TRUE(Selects("r.gz", "archive.tar.gz", kBelow));
}

TEST_F(ExtensionFilterTest, InSubFoldersAShorterNameIsLookedUpWhole) {
  EXPECT_TRUE(Selects(".h", ".h", kBelow));
  EXPECT_TRUE(Selects("a.h", "a.h", kBelow));
  EXPECT_FALSE(Selects(".h", "a.h", kBelow));
  EXPECT_TRUE(Selects("x", "x", kBelow));
  EXPECT_FALSE(Selects(".", "x", kBelow));
}

TEST_F(ExtensionFilterTest, LetterCaseCounts) {
  for (const FolderPassKind pass : {kTop, kBelow}) {
    EXPECT_FALSE(Selects(".TXT", "report.txt", pass));
    EXPECT_FALSE(Selects(".txt", "report.TXT", pass));
    EXPECT_TRUE(Selects(".TXT", "report.TXT", pass));
  }
}

TEST_F(ExtensionFilterTest, AnExtensionThatIsNotNamedIsNotSelected) {
  test_.program.request.extensions = {".doc"};
  for (const FolderPassKind pass : {kTop, kBelow}) {
    EXPECT_FALSE(IsSelectedExtension(test_.program, "a.txt", pass));
    EXPECT_TRUE(IsSelectedExtension(test_.program, "a.doc", pass));
  }
}

TEST_F(ExtensionFilterTest, AnExtensionFurtherDownCounts) {
  test_.program.request.extensions = {".doc", ".xml", ".txt"};
  for (const FolderPassKind pass : {kTop, kBelow}) {
    EXPECT_TRUE(IsSelectedExtension(test_.program, "a.txt", pass));
  }
}

TEST_F(ExtensionFilterTest, AnEmptyListSelectsNothing) {
  for (const FolderPassKind pass : {kTop, kBelow}) {
    EXPECT_FALSE(IsSelectedExtension(test_.program, "a.txt", pass));
    EXPECT_FALSE(IsSelectedExtension(test_.program, "a", pass));
  }
}

TEST_F(ExtensionFilterTest, WithAllFilesEveryNameIsSelectedInBothPasses) {
  test_.program.request.all_files = true;
  for (const FolderPassKind pass : {kTop, kBelow}) {
    for (const char* name : {"report.txt", "page.html", "README", ""}) {
      EXPECT_TRUE(IsSelectedExtension(test_.program, name, pass)) << name;
    }
  }
}

}  // namespace
}  // namespace morvex::test
