// Reading and writing open files, replacing a file's content, and appending to it.
#include "host/windows/windows_replace.h"

#include <gtest/gtest.h>

#include <array>

#include "tests/host/windows/windows_test.h"

namespace morvex::windows_test {
namespace {

using WindowsReplaceTest = WindowsTest;

TEST_F(WindowsReplaceTest, AFileHoldsExactlyTheBytesWhateverItHeldBefore) {
  const std::string path = folder_ / "Init.dat";
  for (const std::string bytes : {"first\r\n", "a longer second text\r\n", "", "x"}) {
    EXPECT_EQ(files_.ReplaceFile(path, bytes), ErrorNumber::kNone);
    EXPECT_EQ(Content(path), bytes);
  }
  EXPECT_EQ(Names(files_, folder_.Path()), std::vector<std::string>{"Init.dat"});
}

TEST_F(WindowsReplaceTest, AReadOnlyFileIsRefusedAndKept) {
  Put(folder_ / "a", "kept");
  SetFileAttributesW(Wide(folder_ / "a").c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(files_.ReplaceFile(folder_ / "a", "new"), ErrorNumber::kPermissionDenied);
  EXPECT_EQ(Content(folder_ / "a"), "kept");
}

TEST_F(WindowsReplaceTest, TheAttributesAreKept) {
  Put(folder_ / "a", "old");
  SetFileAttributesW(Wide(folder_ / "a").c_str(), FILE_ATTRIBUTE_HIDDEN);
  const std::uint32_t before = files_.LookUpFile(folder_ / "a").value.permissions;
  EXPECT_EQ(files_.ReplaceFile(folder_ / "a", "new"), ErrorNumber::kNone);
  EXPECT_EQ(files_.LookUpFile(folder_ / "a").value.permissions, before);
}

TEST_F(WindowsReplaceTest, AFileThatOthersReadIsReplacedOrOverwritten) {
  Put(folder_ / "a", "old content");
  const windows::Handle reader(CreateFileW(Wide(folder_ / "a").c_str(), GENERIC_READ,
                                           FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                           OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(reader.IsOpen());
  EXPECT_EQ(files_.ReplaceFile(folder_ / "a", "new"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "a"), "new");
}

TEST_F(WindowsReplaceTest, FoldersAndWaysToNowhereGiveErrors) {
  EXPECT_EQ(files_.ReplaceFile(folder_.Path(), "x"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(files_.ReplaceFile(folder_ / "none\\a", "x"), ErrorNumber::kPathNotFound);
  EXPECT_EQ(files_.AppendToFile(folder_.Path(), "x"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(files_.AppendToFile(folder_ / "none\\a", "x"), ErrorNumber::kPathNotFound);
  EXPECT_EQ(files_.OpenForReading(folder_.Path()).error, ErrorNumber::kPathFileAccess);
  EXPECT_EQ(files_.OpenForReading(folder_ / "none").error, ErrorNumber::kFileNotFound);
}

TEST_F(WindowsReplaceTest, RecordsAreAddedAtTheEnd) {
  const std::string path = folder_ / "Morvex.log";
  EXPECT_EQ(files_.AppendToFile(path, ""), ErrorNumber::kNone);
  EXPECT_EQ(Content(path), "");
  EXPECT_EQ(files_.AppendToFile(path, "one\r\n"), ErrorNumber::kNone);
  EXPECT_EQ(others_.AppendToFile(path, "two\r\n"), ErrorNumber::kNone);
  EXPECT_EQ(Content(path), "one\r\ntwo\r\n");
}

TEST_F(WindowsReplaceTest, BytesAreReadAtAnyPlaceAndPassUnchanged) {
  std::string bytes;
  for (int code = 0; code < 256; ++code) bytes.push_back(static_cast<char>(code));
  Put(folder_ / "a", bytes);
  const Result<std::unique_ptr<InputFile>> file = files_.OpenForReading(folder_ / "a");
  ASSERT_TRUE(file);
  std::array<char, 300> block{};
  EXPECT_EQ(file.value->ReadAt(0, block.data(), block.size()).value, 256U);
  EXPECT_EQ(std::string(block.data(), 256), bytes);
  EXPECT_EQ(file.value->ReadAt(250, block.data(), 4).value, 4U);
  EXPECT_EQ(std::string(block.data(), 4), bytes.substr(250, 4));
  EXPECT_EQ(file.value->ReadAt(256, block.data(), 4).value, 0U);
  EXPECT_EQ(file.value->ReadAt(1ULL << 40, block.data(), 4).value, 0U);
}

TEST_F(WindowsReplaceTest, AnOpenFileTellsThatItHasChanged) {
  Put(folder_ / "a", "x");
  const Result<std::unique_ptr<InputFile>> file = files_.OpenForReading(folder_ / "a");
  ASSERT_TRUE(file);
  EXPECT_FALSE(file.value->HasChanged().value);
  EXPECT_EQ(others_.AppendToFile(folder_ / "a", "y"), ErrorNumber::kNone);
  EXPECT_TRUE(file.value->HasChanged().value);
}

TEST_F(WindowsReplaceTest, WritesMayGoBack) {
  Result<std::unique_ptr<WorkFile>> file = files_.CreateWorkFile(folder_ / "a", 0);
  ASSERT_TRUE(file);
  EXPECT_EQ(file.value->WriteAt(0, "0123456789"), ErrorNumber::kNone);
  EXPECT_EQ(file.value->WriteAt(3, "abc"), ErrorNumber::kNone);
  EXPECT_EQ(file.value->WriteAt(12, "z"), ErrorNumber::kNone);
  EXPECT_EQ(file.value->Close(), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "a"), std::string("012abc6789\0\0z", 13));
}

}  // namespace
}  // namespace morvex::windows_test
