// Copies appear whole or not at all, with attributes and time.
#include "host/windows/windows_copy.h"

#include <gtest/gtest.h>

#include "tests/host/windows/windows_test.h"

namespace morvex::windows_test {
namespace {

class WindowsCopyTest : public WindowsTest {
 protected:
  ErrorNumber Copy(const std::string& from, const std::string& to) {
    return files_.CopyFile(folder_ / from, folder_ / to, {});
  }
};

TEST_F(WindowsCopyTest, ACopyHasTheBytesTimeAndAttributesOfItsSource) {
  const std::string bytes = Pattern(3'000'001);
  Put(folder_ / "a", bytes);
  SetModified(folder_ / "a", 132'000'000'000'000'007);
  SetFileAttributesW(Wide(folder_ / "a").c_str(), FILE_ATTRIBUTE_READONLY);
  ASSERT_EQ(Copy("a", "b"), ErrorNumber::kNone);
  EXPECT_TRUE(Content(folder_ / "b") == bytes);
  const FileInfo source = files_.LookUpFile(folder_ / "a").value;
  const FileInfo copy = files_.LookUpFile(folder_ / "b").value;
  EXPECT_EQ(copy.modified, source.modified);
  EXPECT_EQ(copy.permissions, source.permissions);
  EXPECT_EQ(copy.permissions, static_cast<std::uint32_t>(FILE_ATTRIBUTE_READONLY));
  EXPECT_EQ(Names(files_, folder_.Path()), (std::vector<std::string>{"a", "b"}));
}

TEST_F(WindowsCopyTest, AnEmptyFileIsCopied) {
  Put(folder_ / "a", "");
  ASSERT_EQ(Copy("a", "b"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "b"), "");
}

TEST_F(WindowsCopyTest, ReplacesAFileAReadOnlyOneToo) {
  Put(folder_ / "a", "new");
  Put(folder_ / "b", "older");
  ASSERT_EQ(Copy("a", "b"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "b"), "new");
  Put(folder_ / "a", "newest");
  SetFileAttributesW(Wide(folder_ / "b").c_str(), FILE_ATTRIBUTE_READONLY);
  ASSERT_EQ(Copy("a", "B"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "b"), "newest");
}

TEST_F(WindowsCopyTest, HiddenFilesOfTheSystemAreCopiedAndReplacedLikeOthers) {
  constexpr DWORD kHidden = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
  for (const char* bytes : {"one", "another"}) {
    SetFileAttributesW(Wide(folder_ / "a").c_str(), FILE_ATTRIBUTE_NORMAL);
    Put(folder_ / "a", bytes);
    SetFileAttributesW(Wide(folder_ / "a").c_str(), kHidden);
    const std::uint32_t permissions = files_.LookUpFile(folder_ / "a").value.permissions;
    ASSERT_EQ(Copy("a", "b"), ErrorNumber::kNone);
    EXPECT_EQ(Content(folder_ / "b"), bytes);
    EXPECT_EQ(files_.LookUpFile(folder_ / "b").value.permissions, permissions);
  }
}

TEST_F(WindowsCopyTest, AShortNameOfAnotherFileIsNotTakenForThatFile) {
  Put(folder_ / "a", "new");
  Put(folder_ / "a long name.text", "kept");
  std::wstring path(1000, L'\0');
  path.resize(GetShortPathNameW(Wide(folder_ / "a long name.text").c_str(), path.data(), 1000));
  const std::string name = windows::SystemCodePage().Bytes(path.substr(path.rfind(L'\\') + 1));
  if (name.find('~') == std::string::npos) GTEST_SKIP() << "no short names are made here";
  ASSERT_TRUE(IsThere(folder_ / name));
  EXPECT_EQ(Copy("a", name), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(files_.MoveToFreeName(folder_ / "a", folder_ / name), ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(files_.MoveFile(folder_ / "a", folder_ / name, {}), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Content(folder_ / "a long name.text"), "kept");
}

TEST_F(WindowsCopyTest, AlternateStreamsAreNoFiles) {
  Put(folder_ / "a.txt", "x");
  EXPECT_EQ(files_.LookUpFile(folder_ / "a.txt:stream").error, ErrorNumber::kBadFileName);
  EXPECT_EQ(files_.LookUpFile(folder_ / "a.txt::$DATA").error, ErrorNumber::kBadFileName);
  EXPECT_EQ(Copy("a.txt:stream", "b"), ErrorNumber::kBadFileName);
  EXPECT_EQ(Copy("a.txt", "a.txt:stream"), ErrorNumber::kBadFileName);
  EXPECT_EQ(files_.CreateWorkFile(folder_ / "b:stream", 0).error, ErrorNumber::kBadFileName);
  EXPECT_EQ(Names(files_, folder_.Path()), std::vector<std::string>{"a.txt"});
}

TEST_F(WindowsCopyTest, AFileIsNeverCopiedToItselfUnderAnySpelling) {
  Put(folder_ / "a.txt", "kept");
  EXPECT_EQ(Copy("a.txt", "a.txt"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Copy("a.txt", "A.TXT"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Copy("a.txt", ".\\x\\..\\a.txt"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(files_.MoveFile(folder_ / "a.txt", folder_ / "A.txt", {}),
            ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Content(folder_ / "a.txt"), "kept");
}

TEST_F(WindowsCopyTest, AFolderThatHasThePartialFilesNameIsNotInTheWay) {
  Put(folder_ / "a", "x");
  ASSERT_EQ(files_.CreateFolder(folder_ / "tijdel.enc"), ErrorNumber::kNone);
  ASSERT_EQ(Copy("a", "b"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "b"), "x");
  EXPECT_EQ(Names(files_, folder_.Path()), (std::vector<std::string>{"a", "b", "tijdel.enc"}));
}

TEST_F(WindowsCopyTest, FoldersAndMissingFilesAreNotCopied) {
  Put(folder_ / "a", "x");
  ASSERT_EQ(files_.CreateFolder(folder_ / "folder"), ErrorNumber::kNone);
  EXPECT_EQ(Copy("a", "folder"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Copy("folder", "b"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Copy("none", "b"), ErrorNumber::kFileNotFound);
  EXPECT_EQ(Copy("a", "none\\b"), ErrorNumber::kPathNotFound);
  EXPECT_EQ(files_.CopyFile(folder_ / "a", "", {}), ErrorNumber::kFileNotFound);
  EXPECT_EQ(files_.CopyFile(folder_ / "a", "C:\\", {}), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Names(files_, folder_.Path()), (std::vector<std::string>{"a", "folder"}));
}

TEST_F(WindowsCopyTest, AnAbandonedCopyLeavesNothing) {
  Put(folder_ / "a", Pattern(9'000'000));
  Put(folder_ / "b", "old");
  int asked = 0;
  const ErrorNumber error =
      files_.CopyFile(folder_ / "a", folder_ / "b", [&] { return ++asked < 2; });
  EXPECT_EQ(error, ErrorNumber::kInvalidCall);
  EXPECT_EQ(asked, 2);
  EXPECT_EQ(Content(folder_ / "b"), "old");
  EXPECT_EQ(Names(files_, folder_.Path()), (std::vector<std::string>{"a", "b"}));
}

TEST_F(WindowsCopyTest, WhileACopyIsMadeNobodySeesItUnderItsName) {
  Put(folder_ / "a", Pattern(5'000'000));
  bool seen = false;
  const ErrorNumber error = files_.CopyFile(folder_ / "a", folder_ / "b", [&] {
    seen = seen || IsThere(folder_ / "b");
    return true;
  });
  EXPECT_EQ(error, ErrorNumber::kNone);
  EXPECT_FALSE(seen);
}

TEST_F(WindowsCopyTest, AFileThatChangesMeanwhileIsNotCopied) {
  Put(folder_ / "a", Pattern(9'000'000));
  const ErrorNumber error = files_.CopyFile(folder_ / "a", folder_ / "b", [&] {
    EXPECT_EQ(others_.AppendToFile(folder_ / "a", "more"), ErrorNumber::kNone);
    return true;
  });
  EXPECT_EQ(error, ErrorNumber::kFileAlreadyOpen);
  EXPECT_FALSE(IsThere(folder_ / "b"));
}

TEST_F(WindowsCopyTest, AStaleWorkFileOfAnEarlierRunIsReplaced) {
  Put(folder_ / "a", "bytes");
  Put(folder_ / "tijdel.enc", "stale");
  ASSERT_EQ(Copy("a", "b"), ErrorNumber::kNone);
  EXPECT_EQ(Names(files_, folder_.Path()), (std::vector<std::string>{"a", "b"}));
}

TEST_F(WindowsCopyTest, TheWorkFileItselfIsCopiedAndCopiedTo) {
  Put(folder_ / "tijdel.enc", "made");
  ASSERT_EQ(files_.CreateFolder(folder_ / "t"), ErrorNumber::kNone);
  EXPECT_EQ(Copy("tijdel.enc", "t\\b"), ErrorNumber::kNone);
  EXPECT_EQ(Copy("tijdel.enc", "t\\tijdel.enc"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "t\\tijdel.enc"), "made");
  EXPECT_EQ(Names(files_, folder_ / "t"), (std::vector<std::string>{"b", "tijdel.enc"}));
}

TEST_F(WindowsCopyTest, AFileThatAnotherProgramDoesNotShareGivesAnError) {
  Put(folder_ / "a", "x");
  const windows::Handle held(CreateFileW(Wide(folder_ / "a").c_str(), GENERIC_READ, 0, nullptr,
                                         OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(held.IsOpen());
  EXPECT_EQ(Copy("a", "b"), ErrorNumber::kPermissionDenied);
  EXPECT_EQ(files_.OpenForReading(folder_ / "a").error, ErrorNumber::kPermissionDenied);
  EXPECT_TRUE(files_.LookUpFile(folder_ / "a"));
}

}  // namespace
}  // namespace morvex::windows_test
