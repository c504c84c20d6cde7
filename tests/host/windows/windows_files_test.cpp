// Looking up and listing files and folders; creating folders.
#include "host/windows/windows_files.h"

#include <gtest/gtest.h>

#include "tests/host/windows/windows_test.h"

namespace morvex::windows_test {
namespace {

using WindowsFilesTest = WindowsTest;

TEST_F(WindowsFilesTest, NoMessageOfTheSystemHoldsUpACall) {
  EXPECT_NE(GetErrorMode() & SEM_FAILCRITICALERRORS, 0U);
}

TEST_F(WindowsFilesTest, AFileIsFoundWithAllThatIsKnownOfIt) {
  const std::string path = folder_ / "Report.txt";
  Put(path, "12345");
  SetModified(path, 132'000'000'000'000'005);
  const Result<FileInfo> found = files_.LookUpFile(folder_ / ".\\x\\..\\Report.txt");
  ASSERT_TRUE(found);
  EXPECT_EQ(found.value.path, path);
  EXPECT_EQ(found.value.folder, folder_.Path());
  EXPECT_EQ(found.value.name, "Report.txt");
  EXPECT_EQ(found.value.size, 5U);
  EXPECT_EQ(found.value.modified.time_since_epoch().count(), 1'555'526'400'000'000'500);
  EXPECT_EQ(found.value.permissions, 0U);
}

TEST_F(WindowsFilesTest, WhatIsNoLinkHasNoTextOfALink) {
  Put(folder_ / "Report.txt", "");
  EXPECT_EQ(files_.LinkText(folder_ / "Report.txt").error, ErrorNumber::kPathFileAccess);
  EXPECT_EQ(files_.LinkText(folder_.Path()).error, ErrorNumber::kPathFileAccess);
  EXPECT_EQ(files_.LinkText(folder_ / "none").error, ErrorNumber::kFileNotFound);
}

TEST_F(WindowsFilesTest, SpellingsOfOneNameHaveOneIdentity) {
  Put(folder_ / "Report.txt", "");
  Put(folder_ / "other.txt", "");
  const FileIdentity one = files_.LookUpFile(folder_ / "Report.txt").value.identity;
  EXPECT_EQ(files_.LookUpFile(folder_ / "REPORT.TXT").value.identity, one);
  EXPECT_NE(files_.LookUpFile(folder_ / "other.txt").value.identity, one);
}

TEST_F(WindowsFilesTest, NamesAreTheSameInAnyLetterCase) {
  const auto name = [](const wchar_t* text) { return windows::SystemCodePage().Bytes(text); };
  EXPECT_TRUE(files_.IsSameName("tijdel.enc", "Tijdel.ENC"));
  EXPECT_TRUE(files_.IsSameName(name(L"caf\u00e9"), name(L"CAF\u00c9")));
  EXPECT_FALSE(files_.IsSameName(name(L"caf\u00e9"), "cafe"));
  EXPECT_FALSE(files_.IsSameName("tijdel.enc", "tijdel.en"));
  EXPECT_FALSE(files_.IsSameName("tijdel.enc", "tijdel-enc"));
}

TEST_F(WindowsFilesTest, WhatIsNoFileIsNotFound) {
  EXPECT_EQ(files_.LookUpFile(folder_.Path()).error, ErrorNumber::kFileNotFound);
  EXPECT_EQ(files_.LookUpFile(folder_ / "none").error, ErrorNumber::kFileNotFound);
  EXPECT_EQ(files_.LookUpFile(folder_ / "none\\none").error, ErrorNumber::kPathNotFound);
  EXPECT_EQ(files_.LookUpFile("").error, ErrorNumber::kFileNotFound);
  EXPECT_EQ(files_.LookUpFile(folder_ / "NUL").error, ErrorNumber::kBadFileName);
}

TEST_F(WindowsFilesTest, AFolderIsFoundWithoutASeparatorAtItsEnd) {
  const Result<FolderInfo> found = files_.LookUpFolder(folder_.Path() + "\\\\");
  ASSERT_TRUE(found);
  EXPECT_EQ(found.value.path, folder_.Path());
  EXPECT_FALSE(found.value.is_link);
  Put(folder_ / "file", "");
  EXPECT_EQ(files_.LookUpFolder(folder_ / "file").error, ErrorNumber::kPathNotFound);
  EXPECT_EQ(files_.LookUpFolder(folder_ / "none").error, ErrorNumber::kPathNotFound);
  EXPECT_EQ(files_.LookUpFolder("").error, ErrorNumber::kPathNotFound);
}

TEST_F(WindowsFilesTest, ADriveRootKeepsItsSeparatorAndCanBeListed) {
  const Result<FolderInfo> root = files_.LookUpFolder("C:\\");
  ASSERT_TRUE(root);
  EXPECT_EQ(root.value.path, "C:\\");
  const std::vector<std::string> names = Names(files_, "C:\\");
  EXPECT_NE(std::find(names.begin(), names.end(), "windows"), names.end());
}

TEST_F(WindowsFilesTest, PathsThatLeadNowhereFail) {
  EXPECT_EQ(files_.LookUpFolder("\\\\?\\Q:\\none").error, ErrorNumber::kPathNotFound);
  for (const char* path : {"\\\\no.such.server.invalid\\share", "\\\\?\\Q:\\none"}) {
    EXPECT_NE(files_.LookUpFolder(path).error, ErrorNumber::kNone) << path;
    EXPECT_NE(files_.LookUpFile(std::string(path) + "\\x.txt").error, ErrorNumber::kNone) << path;
    EXPECT_NE(files_.ListFolder(path).error, ErrorNumber::kNone) << path;
    EXPECT_NE(files_.CreateFolder(std::string(path) + "\\a"), ErrorNumber::kNone) << path;
  }
}

TEST_F(WindowsFilesTest, AListingTellsFilesFromFolders) {
  Put(folder_ / "a.txt", "");
  ASSERT_EQ(files_.CreateFolder(folder_ / "b"), ErrorNumber::kNone);
  const Result<std::vector<FolderEntry>> listed = files_.ListFolder(folder_.Path());
  ASSERT_TRUE(listed);
  ASSERT_EQ(listed.value.size(), 2U);
  for (const FolderEntry& entry : listed.value) {
    EXPECT_EQ(entry.kind, entry.name == "b" ? EntryKind::kFolder : EntryKind::kFile);
    EXPECT_FALSE(entry.is_link);
  }
  EXPECT_EQ(files_.ListFolder(folder_ / "none").error, ErrorNumber::kPathNotFound);
  EXPECT_NE(files_.ListFolder(folder_ / "a.txt").error, ErrorNumber::kNone);
  EXPECT_TRUE(files_.ListFolder(folder_ / "b").value.empty());
}

TEST_F(WindowsFilesTest, ANameThatThePageCannotSpellIsListedAndCannotBeHad) {
  ASSERT_TRUE(PutRaw(Raw(folder_.WidePath()) + L"\\\u0416.txt", "secret"));
  ASSERT_TRUE(PutRaw(Raw(folder_.WidePath()) + L"\\\uff21.txt", "secret"));
  Put(folder_ / "A.txt", "plain");
  EXPECT_EQ(Names(files_, folder_.Path()), (std::vector<std::string>{"?.txt", "?.txt", "A.txt"}));
  const std::string path = folder_ / "?.txt";
  EXPECT_EQ(files_.LookUpFile(path).error, ErrorNumber::kBadFileName);
  EXPECT_EQ(files_.OpenForReading(path).error, ErrorNumber::kBadFileName);
  EXPECT_EQ(files_.CopyFile(path, folder_ / "copy", {}), ErrorNumber::kBadFileName);
  EXPECT_EQ(files_.CopyFile(folder_ / "A.txt", path, {}), ErrorNumber::kBadFileName);
  EXPECT_EQ(files_.MoveFile(path, folder_ / "copy", {}), ErrorNumber::kBadFileName);
  EXPECT_EQ(files_.MoveToFreeName(path, folder_ / "copy"), ErrorNumber::kBadFileName);
  EXPECT_EQ(files_.DeleteFile(path), ErrorNumber::kBadFileName);
  EXPECT_EQ(files_.CreateWorkFile(path, 0).error, ErrorNumber::kBadFileName);
  EXPECT_EQ(files_.AppendToFile(path, "x"), ErrorNumber::kBadFileName);
  EXPECT_EQ(files_.ReplaceFile(path, "x"), ErrorNumber::kBadFileName);
  EXPECT_EQ(files_.CreateFolder(path), ErrorNumber::kBadFileName);
  EXPECT_EQ(files_.ListFolder(path).error, ErrorNumber::kBadFileName);
  EXPECT_EQ(files_.RealPath(path).error, ErrorNumber::kBadFileName);
  EXPECT_EQ(files_.LookUpDrive(path).error, ErrorNumber::kBadFileName);
  EXPECT_EQ(Names(files_, folder_.Path()).size(), 3U);
}

TEST_F(WindowsFilesTest, ANameOfThePageIsFoundByItsBytes) {
  ASSERT_TRUE(PutRaw(Raw(folder_.WidePath()) + L"\\caf\u00e9.txt", "coffee"));
  const std::string name = windows::SystemCodePage().Bytes(L"caf\u00e9.txt");
  EXPECT_EQ(Names(files_, folder_.Path()), std::vector<std::string>{name});
  EXPECT_EQ(files_.LookUpFile(folder_ / name).value.size, 6U);
}

TEST_F(WindowsFilesTest, PathsMayBeLongerThanOldProgramsTakeThem) {
  std::string path = folder_.Path();
  while (path.size() < 600) {
    path += "\\" + std::string(60, 'd');
    ASSERT_EQ(files_.CreateFolder(path), ErrorNumber::kNone) << path.size();
  }
  const std::string file = path + "\\" + std::string(100, 'f') + ".txt";
  {
    Result<std::unique_ptr<WorkFile>> made = files_.CreateWorkFile(file, 0);
    ASSERT_TRUE(made);
    EXPECT_EQ(made.value->WriteAt(0, "deep"), ErrorNumber::kNone);
    EXPECT_EQ(made.value->Close(), ErrorNumber::kNone);
  }
  EXPECT_EQ(files_.CopyFile(file, path + "\\copy.txt", {}), ErrorNumber::kNone);
  EXPECT_EQ(files_.MoveFile(file, path + "\\moved.txt", {}), ErrorNumber::kNone);
  EXPECT_EQ(Names(files_, path), (std::vector<std::string>{"copy.txt", "moved.txt"}));
  EXPECT_EQ(files_.LookUpFile(path + "\\copy.txt").value.path, path + "\\copy.txt");
  EXPECT_EQ(files_.ReplaceFile(path + "\\copy.txt", "new"), ErrorNumber::kNone);
  EXPECT_EQ(files_.AppendToFile(path + "\\copy.txt", "er"), ErrorNumber::kNone);
  EXPECT_EQ(Content(path + "\\copy.txt"), "newer");
  EXPECT_TRUE(files_.LookUpDrive(path));
  EXPECT_EQ(files_.DeleteFile(path + "\\moved.txt"), ErrorNumber::kNone);
}

TEST_F(WindowsFilesTest, AFolderIsMadeOneLevelAtATime) {
  EXPECT_EQ(files_.CreateFolder(folder_ / "a\\b"), ErrorNumber::kPathNotFound);
  EXPECT_EQ(files_.CreateFolder(folder_ / "a"), ErrorNumber::kNone);
  EXPECT_EQ(files_.CreateFolder(folder_ / "A"), ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(files_.CreateFolder("C:\\"), ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(files_.CreateFolder(folder_ / "con"), ErrorNumber::kBadFileName);
  EXPECT_EQ(files_.CreateFolder(""), ErrorNumber::kPathNotFound);
}

TEST_F(WindowsFilesTest, ADriveTellsItsSpace) {
  const Result<DriveSpace> space = files_.LookUpDrive(folder_.Path());
  ASSERT_TRUE(space);
  EXPECT_GT(space.value.total, 0U);
  EXPECT_LE(space.value.available, space.value.total);
  EXPECT_NE(files_.LookUpDrive("Q:\\none").error, ErrorNumber::kNone);
}

TEST_F(WindowsFilesTest, TheRealPathIsThatOfTheDisk) {
  Put(folder_ / "a.txt", "");
  const Result<std::string> real = files_.RealPath(folder_ / ".\\a.txt");
  ASSERT_TRUE(real);
  EXPECT_EQ(files_.LookUpFile(real.value).value.identity,
            files_.LookUpFile(folder_ / "a.txt").value.identity);
  EXPECT_EQ(files_.RealPath(folder_ / "none").error, ErrorNumber::kPathNotFound);
}

TEST_F(WindowsFilesTest, ALinkToAFolderIsListedAsSuch) {
  ASSERT_EQ(files_.CreateFolder(folder_ / "real"), ErrorNumber::kNone);
  Put(folder_ / "real\\a.txt", "inside");
  constexpr DWORD kFolderLink = SYMBOLIC_LINK_FLAG_DIRECTORY;
  const std::wstring link = folder_.WidePath() + L"\\link";
  const std::wstring end = folder_.WidePath() + L"\\real";
  CreateSymbolicLinkW(link.c_str(), end.c_str(), kFolderLink);
  if (!IsThere(folder_ / "link")) {
    GTEST_SKIP() << "no links can be made here";
  }
  EXPECT_TRUE(files_.LookUpFolder(folder_ / "link").value.is_link);
  EXPECT_EQ(files_.LookUpFolder(folder_ / "link").value.identity,
            files_.LookUpFolder(folder_ / "real").value.identity);
  EXPECT_EQ(files_.DeleteFile(folder_ / "link"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "real\\a.txt"), "inside");
}

}  // namespace
}  // namespace morvex::windows_test
