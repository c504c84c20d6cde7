// Making, moving and deleting the temporary file, alone and beside another run at the same source.
#include "host/windows/windows_claim.h"

#include <gtest/gtest.h>

#include "tests/host/windows/windows_test.h"

namespace morvex::windows_test {
namespace {

class WindowsClaimTest : public WindowsTest {
 protected:
  void Make(const std::string& name, std::string_view bytes, std::uint32_t permissions = 0) {
    Result<std::unique_ptr<OutputFile>> made = files_.CreateFile(folder_ / name, permissions);
    ASSERT_TRUE(made);
    ASSERT_EQ(made.value->WriteAt(0, bytes), ErrorNumber::kNone);
    ASSERT_EQ(made.value->Close(), ErrorNumber::kNone);
  }
};

TEST_F(WindowsClaimTest, AFileIsMadeOnce) {
  Make("t", "one");
  EXPECT_EQ(files_.CreateFile(folder_ / "T", 0).error, ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(others_.CreateFile(folder_ / "t", 0).error, ErrorNumber::kFileAlreadyExists);
  ASSERT_EQ(files_.CreateFolder(folder_ / "folder"), ErrorNumber::kNone);
  EXPECT_EQ(files_.CreateFile(folder_ / "folder", 0).error, ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(files_.CreateFile(folder_ / "none\\t", 0).error, ErrorNumber::kPathNotFound);
}

TEST_F(WindowsClaimTest, WhatOneRunMakesNoOtherDeletesOrMoves) {
  Make("t", "mine");
  EXPECT_EQ(others_.DeleteFile(folder_ / "t"), ErrorNumber::kFileAlreadyOpen);
  EXPECT_EQ(others_.MoveFile(folder_ / "t", folder_ / "x", {}), ErrorNumber::kFileAlreadyOpen);
  EXPECT_EQ(others_.MoveToFreeName(folder_ / "t", folder_ / "x"), ErrorNumber::kFileAlreadyOpen);
  EXPECT_EQ(Content(folder_ / "t"), "mine");
  EXPECT_EQ(files_.DeleteFile(folder_ / "t"), ErrorNumber::kNone);
  EXPECT_FALSE(IsThere(folder_ / "t"));
}

TEST_F(WindowsClaimTest, AFileThatIsStillWrittenIsClaimedToo) {
  Result<std::unique_ptr<OutputFile>> made = files_.CreateFile(folder_ / "t", 0);
  ASSERT_TRUE(made);
  EXPECT_EQ(others_.DeleteFile(folder_ / "t"), ErrorNumber::kFileAlreadyOpen);
  EXPECT_EQ(made.value->WriteAt(0, "x"), ErrorNumber::kNone);
}

TEST_F(WindowsClaimTest, AfterItsMoveAFileIsAnybodys) {
  Make("t", "mine");
  ASSERT_EQ(files_.MoveFile(folder_ / "t", folder_ / "final", {}), ErrorNumber::kNone);
  EXPECT_FALSE(IsThere(folder_ / "t"));
  EXPECT_EQ(Content(folder_ / "final"), "mine");
  EXPECT_EQ(others_.DeleteFile(folder_ / "final"), ErrorNumber::kNone);
}

TEST_F(WindowsClaimTest, ALeftOverIsAnybodys) {
  {
    WindowsFileService ended;
    ASSERT_TRUE(ended.CreateFile(folder_ / "t", 0));
  }
  EXPECT_EQ(others_.DeleteFile(folder_ / "t"), ErrorNumber::kNone);
}

TEST_F(WindowsClaimTest, AMoveReplacesAFileAndNothingElse) {
  Make("t", "new");
  Put(folder_ / "b", "old");
  SetFileAttributesW(Wide(folder_ / "b").c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(files_.MoveFile(folder_ / "t", folder_ / "b", {}), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "b"), "new");
  ASSERT_EQ(files_.CreateFolder(folder_ / "folder"), ErrorNumber::kNone);
  EXPECT_EQ(files_.MoveFile(folder_ / "b", folder_ / "folder", {}), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(files_.MoveFile(folder_ / "folder", folder_ / "c", {}), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(files_.MoveFile(folder_ / "none", folder_ / "c", {}), ErrorNumber::kFileNotFound);
  EXPECT_EQ(files_.MoveFile(folder_ / "b", folder_ / "none\\c", {}), ErrorNumber::kPathNotFound);
  EXPECT_EQ(Content(folder_ / "b"), "new");
}

TEST_F(WindowsClaimTest, AFreeNameIsGivenAndATakenOneIsNot) {
  Make("t", "bytes");
  Put(folder_ / "b", "there");
  EXPECT_EQ(files_.MoveToFreeName(folder_ / "t", folder_ / "b"), ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(files_.MoveToFreeName(folder_ / "t", folder_ / "B"), ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(files_.MoveToFreeName(folder_ / "t", folder_ / "c"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "b"), "there");
  EXPECT_EQ(Content(folder_ / "c"), "bytes");
  ASSERT_EQ(files_.CreateFolder(folder_ / "folder"), ErrorNumber::kNone);
  EXPECT_EQ(files_.MoveToFreeName(folder_ / "c", folder_ / "folder"),
            ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(files_.MoveToFreeName(folder_ / "folder", folder_ / "d"), ErrorNumber::kPathFileAccess);
}

TEST_F(WindowsClaimTest, AFileOfAReadOnlySourceIsMadeMovedReplacedAndDeleted) {
  constexpr std::uint32_t kReadOnly = FILE_ATTRIBUTE_READONLY;
  Make("t", "one", kReadOnly);
  EXPECT_EQ(files_.LookUpFile(folder_ / "t").value.permissions, kReadOnly);
  EXPECT_EQ(files_.MoveFile(folder_ / "t", folder_ / "final", {}), ErrorNumber::kNone);
  EXPECT_EQ(files_.LookUpFile(folder_ / "final").value.permissions, kReadOnly);
  Make("t", "two", kReadOnly);
  EXPECT_EQ(files_.MoveFile(folder_ / "t", folder_ / "final", {}), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "final"), "two");
  Make("t", "three", kReadOnly);
  EXPECT_EQ(files_.DeleteFile(folder_ / "t"), ErrorNumber::kNone);
  EXPECT_EQ(files_.DeleteFile(folder_ / "final"), ErrorNumber::kNone);
  EXPECT_TRUE(Names(files_, folder_.Path()).empty());
}

TEST_F(WindowsClaimTest, NoFolderIsEverDeleted) {
  ASSERT_EQ(files_.CreateFolder(folder_ / "folder"), ErrorNumber::kNone);
  EXPECT_EQ(files_.DeleteFile(folder_ / "folder"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(files_.DeleteFile(folder_ / "none"), ErrorNumber::kFileNotFound);
  EXPECT_EQ(files_.DeleteFile(""), ErrorNumber::kFileNotFound);
  EXPECT_TRUE(IsThere(folder_ / "folder"));
}

}  // namespace
}  // namespace morvex::windows_test
