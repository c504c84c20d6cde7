#include "host/windows/windows_paths.h"

#include <gtest/gtest.h>

#include <string>

namespace morvex::windows {
namespace {

std::wstring Full(const std::string& path) { return FullPath(path, Missing::kFile).value; }

ErrorNumber ErrorOf(const std::string& path) { return FullPath(path, Missing::kFile).error; }

TEST(WindowsPaths, AFullPathIsWithoutDotsDoubledSeparatorsAndOneAtItsEnd) {
  EXPECT_EQ(Full("C:\\Data\\x.txt"), L"C:\\Data\\x.txt");
  EXPECT_EQ(Full("C:/Data//.\\a\\..\\x.txt"), L"C:\\Data\\x.txt");
  EXPECT_EQ(Full("C:\\Data\\\\"), L"C:\\Data");
}

TEST(WindowsPaths, ADrivesRootKeepsItsSeparator) {
  EXPECT_EQ(Full("C:\\"), L"C:\\");
  EXPECT_EQ(Full("C:\\\\"), L"C:\\");
  EXPECT_EQ(Full("C:\\a\\.."), L"C:\\");
}

TEST(WindowsPaths, ANetworkPathKeepsItsPairOfSeparators) {
  EXPECT_EQ(Full("\\\\server\\share\\a\\b"), L"\\\\server\\share\\a\\b");
  EXPECT_EQ(Full("\\\\server\\share\\"), L"\\\\server\\share");
  EXPECT_EQ(Full("\\\\server\\\\share\\\\a\\\\b\\\\"), L"\\\\server\\share\\a\\b");
  EXPECT_EQ(Full("\\\\server\\share\\a\\..\\..\\b"), L"\\\\server\\share\\b");
}

TEST(WindowsPaths, AServerWithoutAShareIsNoFolder) {
  for (const char* path : {"\\\\", "\\\\s", "\\\\server", "\\\\server\\", "\\\\?\\UNC\\server\\"}) {
    EXPECT_EQ(ErrorOf(path), ErrorNumber::kBadFileName) << path;
  }
  EXPECT_EQ(Full("\\\\s\\h"), L"\\\\s\\h");
}

TEST(WindowsPaths, ThePrefixOfLongPathsIsTakenOffAndPutOn) {
  EXPECT_EQ(Full("\\\\?\\C:\\Data\\x"), L"C:\\Data\\x");
  EXPECT_EQ(Full("\\\\?\\UNC\\server\\share\\x"), L"\\\\server\\share\\x");
  EXPECT_EQ(Full("//?/unc/server/share/x"), L"\\\\server\\share\\x");
  EXPECT_EQ(LongForm(L"C:\\Data"), L"\\\\?\\C:\\Data");
  EXPECT_EQ(LongForm(L"\\\\server\\share\\x"), L"\\\\?\\UNC\\server\\share\\x");
}

TEST(WindowsPaths, TheEmptyPathNamesNothing) {
  EXPECT_EQ(FullPath("", Missing::kFile).error, ErrorNumber::kFileNotFound);
  EXPECT_EQ(FullPath("", Missing::kPath).error, ErrorNumber::kPathNotFound);
}

TEST(WindowsPaths, DevicesAreNoFilesInAnyFolder) {
  for (const char* name : {"NUL", "nul", "CON", "con.txt", "PRN", "AUX.tar.gz", "COM1", "com9.log",
                           "LPT1", "COM\xb9", "NUL .txt", "CONIN$", "CONOUT$"}) {
    EXPECT_EQ(ErrorOf(std::string("C:\\Data\\") + name), ErrorNumber::kBadFileName) << name;
    EXPECT_EQ(ErrorOf(std::string(name) + "\\x.txt"), ErrorNumber::kBadFileName) << name;
    EXPECT_EQ(ErrorOf(name), ErrorNumber::kBadFileName) << name;
  }
  for (const char* name :
       {"CONSOLE", "nulls.txt", "COM", "COM10", "LPT", "xNUL", "AUX1", "a.nul"}) {
    EXPECT_EQ(ErrorOf(std::string("C:\\Data\\") + name), ErrorNumber::kNone) << name;
  }
}

TEST(WindowsPaths, NamesThatTheSystemWouldBendAreRefused) {
  for (const char* name : {"a.", "a ", "a..", "...", "a. ", " "}) {
    EXPECT_EQ(ErrorOf(std::string("C:\\Data\\") + name), ErrorNumber::kBadFileName) << name;
    EXPECT_EQ(ErrorOf(std::string("C:\\") + name + "\\x.txt"), ErrorNumber::kBadFileName) << name;
  }
}

TEST(WindowsPaths, CharactersThatNoNameHasAreRefused) {
  for (const char* name : {"a?b", "a*b", "a<b", "a>b", "a|b", "a\"b", "a:b", "a\tb", "a\x01"}) {
    EXPECT_EQ(ErrorOf(std::string("C:\\Data\\") + name), ErrorNumber::kBadFileName) << name;
  }
  EXPECT_EQ(ErrorOf(std::string("C:\\a\0b", 6)), ErrorNumber::kBadFileName);
  EXPECT_EQ(ErrorOf("1:\\x"), ErrorNumber::kBadFileName);
}

TEST(WindowsPaths, DevicePathsAreRefused) {
  for (const char* path : {"\\\\.\\PhysicalDrive0", "\\\\.\\C:", "\\\\?\\", "//./pipe/x",
                           "\\\\?\\UNC\\.\\PhysicalDrive0"}) {
    EXPECT_EQ(ErrorOf(path), ErrorNumber::kBadFileName) << path;
  }
}

TEST(WindowsPaths, WhatOnlyThePrefixLeadsToIsNoNameInTheCurrentFolder) {
  for (const char* path :
       {"\\\\?\\GLOBALROOT\\Device\\x", "\\\\?\\Volume{1234-56}\\x", "\\\\?\\x.txt",
        "\\\\?\\\\x.txt", "\\\\?\\..\\x.txt", "\\\\?\\C:", "\\\\?\\C:x.txt"}) {
    EXPECT_EQ(ErrorOf(path), ErrorNumber::kBadFileName) << path;
  }
}

TEST(WindowsPaths, ANameLongerThanAnyIsRefusedAndALongPathIsNot) {
  EXPECT_EQ(ErrorOf("C:\\" + std::string(256, 'n')), ErrorNumber::kBadFileName);
  std::string path = "C:";
  for (int part = 0; part < 10; ++part) path += "\\" + std::string(100, 'n');
  EXPECT_EQ(Full(path).size(), path.size());
}

TEST(WindowsPaths, APathIsPartedAtItsLastSeparator) {
  EXPECT_EQ(SplitPath(L"C:\\a\\b.txt").folder, L"C:\\a");
  EXPECT_EQ(SplitPath(L"C:\\a\\b.txt").name, L"b.txt");
  EXPECT_EQ(SplitPath(L"C:\\b.txt").folder, L"C:\\");
  EXPECT_EQ(SplitPath(L"C:\\b.txt").name, L"b.txt");
  EXPECT_EQ(SplitPath(L"C:\\").name, L"");
  EXPECT_EQ(SplitPath(L"\\\\server\\share\\b").folder, L"\\\\server\\share");
  EXPECT_EQ(SplitPath(L"\\\\?\\C:\\a\\b").folder, L"\\\\?\\C:\\a");
  EXPECT_EQ(SplitPath(L"\\\\?\\C:\\b").folder, L"\\\\?\\C:\\");
}

TEST(WindowsPaths, ANameIsPutBelowAFolderWithOneSeparator) {
  EXPECT_EQ(Below(L"C:\\", L"x"), L"C:\\x");
  EXPECT_EQ(Below(L"C:\\a", L"x"), L"C:\\a\\x");
}

}  // namespace
}  // namespace morvex::windows
