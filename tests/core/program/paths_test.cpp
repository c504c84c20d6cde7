// Building and repairing paths, and making folders.
#include "core/program/paths.h"

#include <gtest/gtest.h>

#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

class PathsTest : public ::testing::Test {
 protected:
  TestProgram slash_{'/'};
  TestProgram backslash_{'\\'};
};

TEST_F(PathsTest, JoinPutsTheHostsSeparatorBetween) {
  EXPECT_EQ(JoinPath(slash_.program, "/s", "a.txt"), "/s/a.txt");
  EXPECT_EQ(JoinPath(backslash_.program, "C:\\s", "a.txt"), "C:\\s\\a.txt");
  EXPECT_EQ(JoinPath(backslash_.program, "C:\\", "a.txt"), "C:\\\\a.txt");
  EXPECT_EQ(JoinPath(slash_.program, "", "a.txt"), "/a.txt");
}

TEST_F(PathsTest, InTheProgramsFolderNothingIsTidied) {
  EXPECT_EQ(InProgramFolder(slash_.program, "x"), "/program/x");
  backslash_.system.program_folder = "C:\\";
  EXPECT_EQ(InProgramFolder(backslash_.program, "x"), "C:\\\\x");
}

TEST_F(PathsTest, NormaliseerTakesTheDoubledBackslashOfADriveRootAway) {
  for (const TestProgram* test : {&slash_, &backslash_}) {
    EXPECT_EQ(Normaliseer(test->program, "C:\\\\Morvex.log"), "C:\\Morvex.log");
    EXPECT_EQ(Normaliseer(test->program, "C:\\\\\\x"), "C:\\\\x");
  }
}

TEST_F(PathsTest, NormaliseerTakesAnyBackslashInFourthPlaceAway) {
  EXPECT_EQ(Normaliseer(slash_.program, "abc\\d"), "abcd");
  EXPECT_EQ(Normaliseer(slash_.program, "/ab\\d"), "/abd");
  EXPECT_EQ(Normaliseer(slash_.program, "abc\\"), "abc");
}

TEST_F(PathsTest, NormaliseerLeavesDoubledBackslashesFurtherOn) {
  EXPECT_EQ(Normaliseer(backslash_.program, "C:\\a\\\\b"), "C:\\a\\\\b");
  EXPECT_EQ(Normaliseer(backslash_.program, "\\\\server\\share"), "\\\\server\\share");
}

TEST_F(PathsTest, NormaliseerLeavesShortTexts) {
  for (const char* text : {"", "a", "C:\\", "\\\\\\"}) {
    EXPECT_EQ(Normaliseer(backslash_.program, text), text);
  }
}

TEST_F(PathsTest, NormaliseerLeavesASlashInFourthPlace) {
  EXPECT_EQ(Normaliseer(slash_.program, "abc/d"), "abc/d");
}

TEST_F(PathsTest, NormaliseerGivesNothingOnceTheProgramIsToStop) {
  slash_.program.Beeindigd = true;
  EXPECT_EQ(Normaliseer(slash_.program, "/program/x"), "");
  EXPECT_EQ(Normaliseer(slash_.program, ""), "");
}

TEST_F(PathsTest, WhatLiesWithinAFolderIsToldByWholeNames) {
  EXPECT_TRUE(IsWithin(slash_.program, "/t", "/t"));
  EXPECT_TRUE(IsWithin(slash_.program, "/t/a", "/t"));
  EXPECT_FALSE(IsWithin(slash_.program, "/tt/a", "/t"));
  EXPECT_FALSE(IsWithin(slash_.program, "/", "/t"));
  EXPECT_TRUE(IsWithin(slash_.program, "/t", "/"));
  EXPECT_FALSE(IsWithin(slash_.program, "/t", ""));
  EXPECT_TRUE(IsWithin(backslash_.program, "D:\\a\\b", "D:\\"));
  EXPECT_TRUE(IsWithin(backslash_.program, "D:\\a\\b", "D:\\a"));
  EXPECT_FALSE(IsWithin(backslash_.program, "D:\\ab", "D:\\a"));
}

TEST_F(PathsTest, FolderPathCleanReducesEveryRunOfSeparators) {
  EXPECT_EQ(FolderPathClean(slash_.program, "/a//b///c////"), "/a/b/c/");
  EXPECT_EQ(FolderPathClean(backslash_.program, "C:\\\\a\\\\\\b"), "C:\\a\\b");
  EXPECT_EQ(FolderPathClean(slash_.program, "/a/b"), "/a/b");
  EXPECT_EQ(FolderPathClean(slash_.program, ""), "");
  EXPECT_EQ(FolderPathClean(slash_.program, "/"), "/");
}

TEST_F(PathsTest, FolderPathCleanKeepsALeadingPair) {
  EXPECT_EQ(FolderPathClean(backslash_.program, "\\\\server\\\\share"), "\\\\server\\share");
  EXPECT_EQ(FolderPathClean(backslash_.program, "\\\\\\\\server"), "\\\\server");
  EXPECT_EQ(FolderPathClean(backslash_.program, "\\\\"), "\\\\");
  EXPECT_EQ(FolderPathClean(slash_.program, "//net//x"), "//net/x");
}

TEST_F(PathsTest, FolderPathCleanLooksAtTheHostsSeparatorOnly) {
  EXPECT_EQ(FolderPathClean(slash_.program, "/a\\\\b"), "/a\\\\b");
  EXPECT_EQ(FolderPathClean(backslash_.program, "C:\\a//b"), "C:\\a//b");
}

TEST_F(PathsTest, UpperCaseChangesAsciiLettersAlone) {
  EXPECT_EQ(UpperCase("azAZ09_{`@["), "AZAZ09_{`@[");
  EXPECT_EQ(UpperCase("\xE9\xC3\xA9"), "\xE9\xC3\xA9");
}

TEST_F(PathsTest, AFileExistsAndAFolderIsNone) {
  slash_.files.AddFile("/a.txt", "");
  slash_.files.AddLink("/link", "/a.txt");
  slash_.files.AddLink("/broken", "/none");
  EXPECT_TRUE(FileExists(slash_.program, "/a.txt"));
  EXPECT_TRUE(FileExists(slash_.program, "/link"));
  for (const char* path : {"/program", "/none", "/broken", ""}) {
    EXPECT_FALSE(FileExists(slash_.program, path)) << path;
  }
}

TEST_F(PathsTest, AFolderExistsAndAFileIsNone) {
  slash_.files.AddFile("/a.txt", "");
  slash_.files.AddLink("/link", "/program");
  EXPECT_TRUE(FolderExists(slash_.program, "/program"));
  EXPECT_TRUE(FolderExists(slash_.program, "/link"));
  EXPECT_FALSE(FolderExists(slash_.program, "/a.txt"));
  EXPECT_FALSE(FolderExists(slash_.program, "/none"));
}

TEST_F(PathsTest, TheEmptyPathCountsAsAnExistingFolder) {
  EXPECT_TRUE(FolderExists(slash_.program, ""));
}

TEST_F(PathsTest, AFileIsTheSameUnderAnotherName) {
  MemoryFiles& files = slash_.files;
  files.AddFile("/a.txt", "");
  files.AddFile("/b.txt", "");
  files.AddLink("/link", "/a.txt");
  EXPECT_TRUE(IsSameFile(slash_.program, "/a.txt", "/a.txt").value);
  EXPECT_TRUE(IsSameFile(slash_.program, "/link", "/program/../a.txt").value);
  EXPECT_FALSE(IsSameFile(slash_.program, "/link", "/b.txt").value);
}

TEST_F(PathsTest, APathWithoutAFileIsTheSameAsNone) {
  slash_.files.AddFile("/a.txt", "");
  for (const char* path : {"/none", "/program", "/none/deeper", ""}) {
    for (const Result<bool>& same :
         {IsSameFile(slash_.program, "/a.txt", path), IsSameFile(slash_.program, path, "/a.txt"),
          IsSameFile(slash_.program, path, path)}) {
      EXPECT_EQ(same.error, ErrorNumber::kNone) << path;
      EXPECT_FALSE(same.value) << path;
    }
  }
}

TEST_F(PathsTest, WhetherFilesAreTheSameMayBeUnknown) {
  slash_.files.AddFile("/a.txt", "");
  slash_.files.AddFile("/b.txt", "");
  slash_.files.fail = [](const std::string&, const std::string& path) {
    return path == "/b.txt" ? ErrorNumber::kPermissionDenied : ErrorNumber::kNone;
  };
  EXPECT_EQ(IsSameFile(slash_.program, "/a.txt", "/b.txt").error, ErrorNumber::kPermissionDenied);
  EXPECT_EQ(IsSameFile(slash_.program, "/b.txt", "/a.txt").error, ErrorNumber::kPermissionDenied);
}

TEST_F(PathsTest, MakeFolderMakesOneLevel) {
  EXPECT_EQ(MakeFolder(slash_.program, "/a"), ErrorNumber::kNone);
  EXPECT_TRUE(slash_.files.IsFolder("/a"));
  EXPECT_EQ(MakeFolder(slash_.program, "/a"), ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(MakeFolder(slash_.program, "/x/y"), ErrorNumber::kPathNotFound);
  EXPECT_FALSE(slash_.files.Has("/x"));
}

TEST_F(PathsTest, MakeFolderTreeMakesEveryMissingParent) {
  EXPECT_EQ(MakeFolderTree(slash_.program, "/program/a/b/c"), "/program/a/b/c");
  EXPECT_TRUE(slash_.files.IsFolder("/program/a/b/c"));
  EXPECT_EQ(MakeFolderTree(backslash_.program, "C:\\a\\b"), "C:\\a\\b");
  EXPECT_TRUE(backslash_.files.IsFolder("C:\\a\\b"));
}

TEST_F(PathsTest, MakeFolderTreeGivesAnExistingFoldersPath) {
  EXPECT_EQ(MakeFolderTree(slash_.program, "/program"), "/program");
}

TEST_F(PathsTest, MakeFolderTreeGivesThePathAsItWasWritten) {
  EXPECT_EQ(MakeFolderTree(slash_.program, "/a//b/"), "/a//b/");
  EXPECT_TRUE(slash_.files.IsFolder("/a/b"));
}

TEST_F(PathsTest, MakeFolderTreeGivesNothingWhenTheFolderCannotBeMade) {
  slash_.files.fail = [](const std::string& call, const std::string& path) {
    return call == "CreateFolder" && path == "/a/b" ? ErrorNumber::kPermissionDenied
                                                    : ErrorNumber::kNone;
  };
  EXPECT_EQ(MakeFolderTree(slash_.program, "/a/b/c"), "");
  EXPECT_TRUE(slash_.files.IsFolder("/a"));
  EXPECT_FALSE(slash_.files.Has("/a/b"));
}

TEST_F(PathsTest, MakeFolderTreeGivesNothingOverAFile) {
  slash_.files.AddFile("/file", "");
  EXPECT_EQ(MakeFolderTree(slash_.program, "/file"), "");
  EXPECT_EQ(MakeFolderTree(slash_.program, "/file/sub"), "");
  EXPECT_EQ(MakeFolderTree(slash_.program, ""), "");
}

TEST_F(PathsTest, MakeFolderTreeGoesOnOverAParentThatCannotBeSeen) {
  // The parent exists, but every call on the parent fails. Only the outcome for the folder itself
  // counts.
  slash_.files.AddFolder("/a");
  slash_.files.fail = [](const std::string&, const std::string& path) {
    return path == "/a" ? ErrorNumber::kPermissionDenied : ErrorNumber::kNone;
  };
  EXPECT_EQ(MakeFolderTree(slash_.program, "/a/b"), "/a/b");
  EXPECT_TRUE(slash_.files.IsFolder("/a/b"));
}

}  // namespace
}  // namespace morvex::test
