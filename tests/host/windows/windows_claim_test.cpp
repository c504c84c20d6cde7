// Creating, moving and discarding work files, alone and beside another run over the same source.
#include "host/windows/windows_claim.h"

#include <gtest/gtest.h>

#include "tests/host/windows/windows_test.h"

namespace morvex::windows_test {
namespace {

class WindowsClaimTest : public WindowsTest {
 protected:
  // Creates a work file with this name and these bytes, and closes it.
  std::unique_ptr<WorkFile> Make(const std::string& name, std::string_view bytes,
                                 std::uint32_t permissions = 0) {
    Result<std::unique_ptr<WorkFile>> made = files_.CreateWorkFile(folder_ / name, permissions);
    EXPECT_TRUE(made);
    if (!made) return nullptr;
    EXPECT_EQ(made.value->WriteAt(0, bytes), ErrorNumber::kNone);
    EXPECT_EQ(made.value->Close(), ErrorNumber::kNone);
    return std::move(made.value);
  }
};

TEST_F(WindowsClaimTest, AFileIsMadeOnce) {
  const auto made = Make("t", "one");
  EXPECT_EQ(files_.CreateWorkFile(folder_ / "T", 0).error, ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(others_.CreateWorkFile(folder_ / "t", 0).error, ErrorNumber::kFileAlreadyExists);
  ASSERT_EQ(files_.CreateFolder(folder_ / "folder"), ErrorNumber::kNone);
  EXPECT_EQ(files_.CreateWorkFile(folder_ / "folder", 0).error, ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(files_.CreateWorkFile(folder_ / "none\\t", 0).error, ErrorNumber::kPathNotFound);
}

TEST_F(WindowsClaimTest, WhatOneRunMakesNoOtherDeletesOrMoves) {
  const auto mine = Make("t", "mine");
  EXPECT_EQ(others_.DeleteFile(folder_ / "t"), ErrorNumber::kFileAlreadyOpen);
  EXPECT_EQ(others_.MoveFile(folder_ / "t", folder_ / "x", {}), ErrorNumber::kFileAlreadyOpen);
  EXPECT_EQ(others_.MoveToFreeName(folder_ / "t", folder_ / "x"), ErrorNumber::kFileAlreadyOpen);
  EXPECT_EQ(Content(folder_ / "t"), "mine");
  EXPECT_EQ(mine->Discard(), ErrorNumber::kNone);
  EXPECT_FALSE(IsThere(folder_ / "t"));
}

TEST_F(WindowsClaimTest, AFileThatIsStillWrittenIsClaimedToo) {
  Result<std::unique_ptr<WorkFile>> made = files_.CreateWorkFile(folder_ / "t", 0);
  ASSERT_TRUE(made);
  EXPECT_EQ(others_.DeleteFile(folder_ / "t"), ErrorNumber::kFileAlreadyOpen);
  EXPECT_EQ(made.value->WriteAt(0, "x"), ErrorNumber::kNone);
  EXPECT_EQ(made.value->Discard(), ErrorNumber::kNone);
  EXPECT_FALSE(IsThere(folder_ / "t"));
}

TEST_F(WindowsClaimTest, AfterItsMoveAFileIsAnybodys) {
  const auto mine = Make("t", "mine");
  ASSERT_EQ(mine->MoveTo(folder_ / "final", {}), ErrorNumber::kNone);
  EXPECT_FALSE(IsThere(folder_ / "t"));
  EXPECT_EQ(Content(folder_ / "final"), "mine");
  EXPECT_EQ(others_.DeleteFile(folder_ / "final"), ErrorNumber::kNone);
}

TEST_F(WindowsClaimTest, AStaleWorkFileIsAnybodys) {
  Make("t", "mine");
  EXPECT_EQ(Content(folder_ / "t"), "mine");
  EXPECT_EQ(others_.DeleteFile(folder_ / "t"), ErrorNumber::kNone);
}

TEST_F(WindowsClaimTest, ACopyOfTheWorkFileLeavesItClaimed) {
  const auto mine = Make("t", "mine");
  EXPECT_EQ(mine->CopyTo(folder_ / "copy"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "copy"), "mine");
  EXPECT_EQ(others_.DeleteFile(folder_ / "t"), ErrorNumber::kFileAlreadyOpen);
}

TEST_F(WindowsClaimTest, AMoveReplacesAFileAndNothingElse) {
  const auto work = Make("t", "new");
  Put(folder_ / "b", "old");
  SetFileAttributesW(Wide(folder_ / "b").c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(work->MoveTo(folder_ / "b", {}), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "b"), "new");
  ASSERT_EQ(files_.CreateFolder(folder_ / "folder"), ErrorNumber::kNone);
  EXPECT_EQ(files_.MoveFile(folder_ / "b", folder_ / "folder", {}), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(files_.MoveFile(folder_ / "folder", folder_ / "c", {}), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(files_.MoveFile(folder_ / "none", folder_ / "c", {}), ErrorNumber::kFileNotFound);
  EXPECT_EQ(files_.MoveFile(folder_ / "b", folder_ / "none\\c", {}), ErrorNumber::kPathNotFound);
  EXPECT_EQ(Content(folder_ / "b"), "new");
}

TEST_F(WindowsClaimTest, AFreeNameIsGivenAndATakenOneIsNot) {
  const auto work = Make("t", "bytes");
  Put(folder_ / "b", "there");
  EXPECT_EQ(work->MoveToFreeName(folder_ / "b"), ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(work->MoveToFreeName(folder_ / "B"), ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(others_.DeleteFile(folder_ / "t"), ErrorNumber::kFileAlreadyOpen);
  EXPECT_EQ(work->MoveToFreeName(folder_ / "c"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "b"), "there");
  EXPECT_EQ(Content(folder_ / "c"), "bytes");
  ASSERT_EQ(files_.CreateFolder(folder_ / "folder"), ErrorNumber::kNone);
  EXPECT_EQ(files_.MoveToFreeName(folder_ / "c", folder_ / "folder"),
            ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(files_.MoveToFreeName(folder_ / "folder", folder_ / "d"), ErrorNumber::kPathFileAccess);
}

TEST_F(WindowsClaimTest, AFileOfAReadOnlySourceIsMadeMovedReplacedAndDeleted) {
  constexpr std::uint32_t kReadOnly = FILE_ATTRIBUTE_READONLY;
  const auto one = Make("t", "one", kReadOnly);
  EXPECT_EQ(files_.LookUpFile(folder_ / "t").value.permissions, kReadOnly);
  EXPECT_EQ(one->MoveTo(folder_ / "final", {}), ErrorNumber::kNone);
  EXPECT_EQ(files_.LookUpFile(folder_ / "final").value.permissions, kReadOnly);
  const auto two = Make("t", "two", kReadOnly);
  EXPECT_EQ(two->MoveTo(folder_ / "final", {}), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "final"), "two");
  EXPECT_EQ(Make("t", "three", kReadOnly)->Discard(), ErrorNumber::kNone);
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
