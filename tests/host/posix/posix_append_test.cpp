// Appending records to files.
#include <filesystem>
#include <map>
#include <thread>

#include "tests/host/posix/posix_test.h"

namespace morvex {
namespace {

namespace fs = std::filesystem;
using namespace posix_test;

class PosixAppendTest : public PosixTest {
 protected:
  ErrorNumber Append(std::string_view name, std::string_view bytes) {
    return files_.AppendToFile(folder_ / name, bytes);
  }
};

TEST_F(PosixAppendTest, RecordsFollowEachOther) {
  const FileMask mask(027);
  EXPECT_EQ(Append("log", "one\r\n"), ErrorNumber::kNone);
  EXPECT_EQ(Append("log", std::string("two\0\xff", 5)), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "log"), std::string("one\r\ntwo\0\xff", 10));
  EXPECT_EQ(Bits(folder_ / "log"), 0640u);
}

TEST_F(PosixAppendTest, AnEmptyRecordMakesTheFile) {
  EXPECT_EQ(Append("log", ""), ErrorNumber::kNone);
  EXPECT_TRUE(IsThere(folder_ / "log"));
  EXPECT_EQ(Append("log", "kept"), ErrorNumber::kNone);
  EXPECT_EQ(Append("log", ""), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "log"), "kept");
}

TEST_F(PosixAppendTest, LinksAreFollowed) {
  fs::create_symlink("log", folder_ / "link");
  EXPECT_EQ(Append("link", "one "), ErrorNumber::kNone);
  EXPECT_EQ(Append("link", "two"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "log"), "one two");
}

TEST_F(PosixAppendTest, OnlyFilesAreWritten) {
  fs::create_directory(folder_ / "folder");
  Put(folder_ / "file", "");
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(Append("folder", "x"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Append("pipe", "x"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(files_.AppendToFile("/dev/null", "x"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Append("none/log", "x"), ErrorNumber::kPathNotFound);
  EXPECT_EQ(Append("file/log", "x"), ErrorNumber::kPathNotFound);
}

TEST_F(PosixAppendTest, WhatIsForbiddenIsRefused) {
  Put(folder_ / "log", "kept");
  const OrdinaryUser user(folder_.Path());
  ASSERT_EQ(chmod((folder_ / "log").c_str(), 0444), 0);
  EXPECT_EQ(Append("log", "x"), ErrorNumber::kPermissionDenied);
  ASSERT_EQ(chmod(folder_.Path().c_str(), 0555), 0);
  EXPECT_EQ(Append("new", "x"), ErrorNumber::kPermissionDenied);
  EXPECT_EQ(Content(folder_ / "log"), "kept");
}

TEST_F(PosixAppendTest, AFullDiskIsAnErrorAndTakesNoPartOfTheRecord) {
  const FileSizeLimit limit(10);
  EXPECT_EQ(Append("log", "12345678"), ErrorNumber::kNone);
  EXPECT_EQ(Append("log", "12345678"), ErrorNumber::kDiskFull);
  EXPECT_EQ(Content(folder_ / "log"), "12345678");
  EXPECT_EQ(Append("log", "90"), ErrorNumber::kNone);
  EXPECT_EQ(Append("log", "1"), ErrorNumber::kDiskFull);
}

TEST_F(PosixAppendTest, AfterAFullDiskRecordsAreTakenAgain) {
  {
    const FileSizeLimit limit(10);
    EXPECT_EQ(Append("log", "12345678"), ErrorNumber::kNone);
    EXPECT_EQ(Append("log", "12345678"), ErrorNumber::kDiskFull);
  }
  EXPECT_EQ(Append("log", "more"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "log"), "12345678more");
}

TEST_F(PosixAppendTest, EachRecordIsThereWhenTheCallReturns) {
  std::string expected;
  for (const char* record : {"one ", "two ", "", "three "}) {
    EXPECT_EQ(Append("log", record), ErrorNumber::kNone);
    expected += record;
    EXPECT_EQ(Content(folder_ / "log"), expected);
  }
}

TEST_F(PosixAppendTest, ADeletedFileIsMadeAnew) {
  EXPECT_EQ(Append("log", "one"), ErrorNumber::kNone);
  ASSERT_EQ(unlink((folder_ / "log").c_str()), 0);
  EXPECT_EQ(Append("log", "two"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "log"), "two");
}

TEST_F(PosixAppendTest, AFileThatWasMovedAwayGetsNoMore) {
  EXPECT_EQ(Append("log", "one"), ErrorNumber::kNone);
  fs::rename(folder_ / "log", folder_ / "old");
  EXPECT_EQ(Append("log", "two"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "old"), "one");
  EXPECT_EQ(Content(folder_ / "log"), "two");
}

TEST_F(PosixAppendTest, AFileThatTookTheNameGetsTheRecord) {
  EXPECT_EQ(Append("log", "one"), ErrorNumber::kNone);
  Put(folder_ / "other", "other ");
  fs::rename(folder_ / "other", folder_ / "log");
  EXPECT_EQ(Append("log", "two"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "log"), "other two");
}

TEST_F(PosixAppendTest, AFolderThatWasMovedAwayGetsNoMore) {
  fs::create_directory(folder_ / "in");
  EXPECT_EQ(Append("in/log", "one"), ErrorNumber::kNone);
  fs::rename(folder_ / "in", folder_ / "out");
  EXPECT_EQ(Append("in/log", "two"), ErrorNumber::kPathNotFound);
  fs::create_directory(folder_ / "in");
  EXPECT_EQ(Append("in/log", "two"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "out/log"), "one");
  EXPECT_EQ(Content(folder_ / "in/log"), "two");
}

TEST_F(PosixAppendTest, ALinkThatNowLeadsElsewhereIsFollowedThere) {
  fs::create_symlink("one", folder_ / "link");
  EXPECT_EQ(Append("link", "1"), ErrorNumber::kNone);
  fs::remove(folder_ / "link");
  fs::create_symlink("two", folder_ / "link");
  EXPECT_EQ(Append("link", "2"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "one") + Content(folder_ / "two"), "12");
}

TEST_F(PosixAppendTest, WhatTookTheNameButIsNoFileIsRefused) {
  EXPECT_EQ(Append("log", "one"), ErrorNumber::kNone);
  fs::rename(folder_ / "log", folder_ / "old");
  ASSERT_EQ(mkfifo((folder_ / "log").c_str(), 0600), 0);
  EXPECT_EQ(Append("log", "x"), ErrorNumber::kPathFileAccess);
  fs::remove(folder_ / "log");
  fs::create_directory(folder_ / "log");
  EXPECT_EQ(Append("log", "x"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Content(folder_ / "old"), "one");
}

TEST_F(PosixAppendTest, AFileThatWasCutGetsTheRecordAtItsEnd) {
  EXPECT_EQ(Append("log", "one two"), ErrorNumber::kNone);
  ASSERT_EQ(truncate((folder_ / "log").c_str(), 3), 0);
  EXPECT_EQ(Append("log", "!"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "log"), "one!");
}

TEST_F(PosixAppendTest, RightsThatWereTakenAwayCount) {
  const OrdinaryUser user(folder_.Path());
  EXPECT_EQ(Append("log", "one "), ErrorNumber::kNone);
  ASSERT_EQ(chmod((folder_ / "log").c_str(), 0444), 0);
  EXPECT_EQ(Append("log", "x"), ErrorNumber::kPermissionDenied);
  ASSERT_EQ(chmod((folder_ / "log").c_str(), 0644), 0);
  EXPECT_EQ(Append("log", "two"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "log"), "one two");
}

TEST_F(PosixAppendTest, TwoFilesInTurns) {
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(Append("a", "1"), ErrorNumber::kNone);
    EXPECT_EQ(Append("b", "2"), ErrorNumber::kNone);
  }
  EXPECT_EQ(Content(folder_ / "a") + Content(folder_ / "b"), "111222");
}

TEST_F(PosixAppendTest, RecordsOfTwoThreadsDoNotMix) {
  constexpr int kRecords = 2000;
  const std::string path = folder_ / "log";
  int failures[2] = {};
  const auto write = [&](int thread, char letter) {
    for (int index = 0; index < kRecords; ++index) {
      const auto length = static_cast<std::size_t>(1 + index % 700);
      const std::string record = std::string(length, letter) + "\n";
      if (files_.AppendToFile(path, record) != ErrorNumber::kNone) ++failures[thread];
    }
  };
  std::thread first(write, 0, 'a');
  std::thread second(write, 1, 'b');
  first.join();
  second.join();
  EXPECT_EQ(failures[0] + failures[1], 0);

  std::map<std::string, int> records;
  std::ifstream file(path, std::ios::binary);
  for (std::string line; std::getline(file, line);) ++records[line];
  std::map<std::string, int> expected;
  for (int index = 0; index < kRecords; ++index) {
    const auto length = static_cast<std::size_t>(1 + index % 700);
    ++expected[std::string(length, 'a')];
    ++expected[std::string(length, 'b')];
  }
  EXPECT_TRUE(records == expected);
}

}  // namespace
}  // namespace morvex
