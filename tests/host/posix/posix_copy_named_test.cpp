// Copies that are filled under the work file's name (tijdel.enc), also when the target folder
// already holds that name. The last three tests copy with the file service, which may fill a copy
// without a name.
#include <filesystem>
#include <new>

#include "host/posix/posix_copy.h"
#include "tests/host/posix/posix_test.h"

namespace morvex::posix {
namespace {

namespace fs = std::filesystem;
using namespace posix_test;

using NameList = std::vector<std::string>;

class PosixCopyNamedTest : public PosixTest {
 protected:
  ErrorNumber Copy(std::string_view from, std::string_view to) {
    return CopyWholeFile(folder_ / from, folder_ / to, {}, CopyWays{false, true});
  }
  void MakeOut() {
    fs::create_directory(folder_ / "out");
    Put(folder_ / "file", "text");
  }
};

TEST_F(PosixCopyNamedTest, AStaleWorkFileOfAnEarlierRunIsRemoved) {
  MakeOut();
  Put(folder_ / "out/tijdel.enc", "stale");
  ASSERT_EQ(chmod((folder_ / "out/tijdel.enc").c_str(), 0444), 0);
  EXPECT_EQ(Copy("file", "out/file"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "out/file"), "text");
  EXPECT_EQ(Names(folder_ / "out"), NameList{"file"});
}

TEST_F(PosixCopyNamedTest, AStaleWorkFileLinkIsRemovedAndNotWrittenThrough) {
  MakeOut();
  Put(folder_ / "bystander", "kept");
  fs::create_symlink(folder_ / "bystander", folder_ / "out/tijdel.enc");
  EXPECT_EQ(Copy("file", "out/file"), ErrorNumber::kNone);
  fs::create_symlink(folder_ / "nowhere", folder_ / "out/tijdel.enc");
  EXPECT_EQ(Copy("file", "out/file"), ErrorNumber::kNone);
  EXPECT_EQ(Names(folder_ / "out"), NameList{"file"});
  EXPECT_EQ(Content(folder_ / "bystander"), "kept");
  EXPECT_FALSE(IsThere(folder_ / "nowhere"));
}

TEST_F(PosixCopyNamedTest, WhatIsNoFileIsNotTakenForAStaleWorkFile) {
  MakeOut();
  fs::create_directory(folder_ / "out/tijdel.enc");
  EXPECT_EQ(Copy("file", "out/file"), ErrorNumber::kPathFileAccess);
  fs::remove(folder_ / "out/tijdel.enc");
  ASSERT_EQ(mkfifo((folder_ / "out/tijdel.enc").c_str(), 0600), 0);
  EXPECT_EQ(Copy("file", "out/file"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Names(folder_ / "out"), NameList{"tijdel.enc"});
}

TEST_F(PosixCopyNamedTest, TheSourceIsNotTakenForAStaleWorkFile) {
  MakeOut();
  Put(folder_ / "out/tijdel.enc", "the source");
  EXPECT_EQ(Copy("out/tijdel.enc", "out/file"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Content(folder_ / "out/tijdel.enc"), "the source");

  fs::create_hard_link(folder_ / "out/tijdel.enc", folder_ / "other name");
  EXPECT_EQ(Copy("other name", "out/file"), ErrorNumber::kPathFileAccess);

  fs::remove(folder_ / "out/tijdel.enc");
  fs::create_symlink(folder_ / "other name", folder_ / "out/tijdel.enc");
  EXPECT_EQ(Copy("out/tijdel.enc", "out/file"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Names(folder_ / "out"), NameList{"tijdel.enc"});
  EXPECT_EQ(Content(folder_ / "out/tijdel.enc"), "the source");
}

TEST_F(PosixCopyNamedTest, ACopyMayHaveTheWorkFileName) {
  MakeOut();
  Put(folder_ / "out/tijdel.enc", "old");
  Put(folder_ / "out/.tijdel.enc", "stale");
  EXPECT_EQ(Copy("file", "out/tijdel.enc"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "out/tijdel.enc"), "text");
  EXPECT_EQ(Names(folder_ / "out"), NameList{"tijdel.enc"});
}

TEST_F(PosixCopyNamedTest, TheServiceNeedsNoWorkFileNameHere) {
  MakeOut();
  Put(folder_ / "out/tijdel.enc", "the source");
  EXPECT_EQ(files_.CopyFile(folder_ / "out/tijdel.enc", folder_ / "out/file", {}),
            ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "out/file"), "the source");
  EXPECT_EQ(Names(folder_ / "out"), (NameList{"file", "tijdel.enc"}));
}

TEST_F(PosixCopyNamedTest, NoExceptionLeavesTheService) {
  MakeOut();
  Put(folder_ / "file", Pattern(20u << 20));
  const KeepGoing no_memory = []() -> bool { throw std::bad_alloc(); };
  const KeepGoing no_reason = []() -> bool { throw 1; };
  const std::string to = folder_ / "out/file";
  EXPECT_EQ(files_.CopyFile(folder_ / "file", to, no_memory), ErrorNumber::kOutOfMemory);
  EXPECT_EQ(files_.CopyFile(folder_ / "file", to, no_reason), ErrorNumber::kPathFileAccess);
  EXPECT_TRUE(Names(folder_ / "out").empty());
}

TEST_F(PosixCopyNamedTest, TheSourcesTimeOfLastUseIsNotTheCopys) {
  MakeOut();
  SetModified(folder_ / "file", {1000, 0});
  const struct stat before = StatusOf(folder_ / "file");
  EXPECT_EQ(files_.CopyFile(folder_ / "file", folder_ / "out/file", {}), ErrorNumber::kNone);
  const struct stat copy = StatusOf(folder_ / "out/file");
  EXPECT_EQ(copy.st_mtim.tv_sec, 1000);
  EXPECT_GE(copy.st_atim.tv_sec, before.st_ctim.tv_sec);
}

}  // namespace
}  // namespace morvex::posix
