// Moving files within one file system and to another.
#include <filesystem>
#include <memory>

#include "host/posix/posix_copy.h"
#include "tests/host/posix/posix_test.h"

namespace morvex {
namespace {

namespace fs = std::filesystem;
using namespace posix_test;

using NameList = std::vector<std::string>;

class PosixMoveTest : public PosixTest {
 protected:
  void SetUp() override {
    PosixTest::SetUp();
    fs::create_directory(folder_ / "in");
    fs::create_directory(folder_ / "out");
    Put(folder_ / "in/file", "text");
  }

  ErrorNumber Move(std::string_view from, std::string_view to) {
    return files_.MoveFile(folder_ / from, folder_ / to, {});
  }
  ErrorNumber MoveToFreeName(std::string_view from, std::string_view to) {
    return files_.MoveToFreeName(folder_ / from, folder_ / to);
  }
};

TEST_F(PosixMoveTest, TheFileItselfMoves) {
  ASSERT_EQ(chmod((folder_ / "in/file").c_str(), 0405), 0);
  const struct stat before = StatusOf(folder_ / "in/file");
  EXPECT_EQ(Move("in/file", "out/file"), ErrorNumber::kNone);
  const struct stat after = StatusOf(folder_ / "out/file");
  EXPECT_EQ(after.st_ino, before.st_ino);
  EXPECT_EQ(after.st_mode, before.st_mode);
  EXPECT_EQ(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
  EXPECT_TRUE(Names(folder_ / "in").empty());
}

TEST_F(PosixMoveTest, FilesAndLinksAreReplaced) {
  Put(folder_ / "bystander", "kept");
  Put(folder_ / "out/file", "old");
  fs::create_symlink(folder_ / "bystander", folder_ / "out/link");
  EXPECT_EQ(Move("in/file", "out/file"), ErrorNumber::kNone);
  EXPECT_EQ(Move("out/file", "out/link"), ErrorNumber::kNone);
  EXPECT_TRUE(S_ISREG(StatusOf(folder_ / "out/link").st_mode));
  EXPECT_EQ(Content(folder_ / "out/link"), "text");
  EXPECT_EQ(Names(folder_ / "out"), NameList{"link"});
  EXPECT_EQ(Content(folder_ / "bystander"), "kept");
}

TEST_F(PosixMoveTest, ALinkMovesAsTheFileThatItLeadsTo) {
  fs::create_symlink("file", folder_ / "in/link");
  EXPECT_EQ(Move("in/link", "out/link"), ErrorNumber::kNone);
  EXPECT_TRUE(S_ISREG(StatusOf(folder_ / "out/link").st_mode));
  EXPECT_EQ(Content(folder_ / "out/link"), "text");
  EXPECT_EQ(Names(folder_ / "in"), NameList{"file"});
  EXPECT_EQ(Content(folder_ / "in/file"), "text");
}

TEST_F(PosixMoveTest, AFileIsNotMovedOntoItself) {
  fs::create_hard_link(folder_ / "in/file", folder_ / "out/hard");
  fs::create_symlink(folder_ / "in/file", folder_ / "out/soft");
  for (const char* to : {"in/file", "in/./file", "out/hard", "out/soft"}) {
    EXPECT_EQ(Move("in/file", to), ErrorNumber::kPathFileAccess) << to;
  }
  EXPECT_EQ(Move("out/soft", "in/file"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Content(folder_ / "in/file"), "text");
  EXPECT_EQ(Names(folder_ / "out"), (NameList{"hard", "soft"}));
}

TEST_F(PosixMoveTest, WhatIsNoFileIsNeitherMovedNorReplaced) {
  ASSERT_EQ(mkfifo((folder_ / "in/pipe").c_str(), 0600), 0);
  fs::create_directory_symlink("in", folder_ / "folder link");
  EXPECT_EQ(Move("in", "out/new"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Move("folder link", "out/new"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Move("in/pipe", "out/new"), ErrorNumber::kFileNotFound);
  EXPECT_EQ(Move("in/none", "out/new"), ErrorNumber::kFileNotFound);
  EXPECT_EQ(Move("in/file", "out"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Move("in/file", "in/pipe"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Move("in/file", "none/file"), ErrorNumber::kPathNotFound);
  EXPECT_EQ(Move("in/file", "out/none/"), ErrorNumber::kPathNotFound);
  EXPECT_TRUE(Names(folder_ / "out").empty());
  EXPECT_EQ(Names(folder_ / "in"), (NameList{"file", "pipe"}));
}

TEST_F(PosixMoveTest, AForbiddenFolderKeepsItsFile) {
  const OrdinaryUser user(folder_.Path());
  ASSERT_EQ(chmod((folder_ / "in").c_str(), 0555), 0);
  EXPECT_EQ(Move("in/file", "out/file"), ErrorNumber::kPermissionDenied);
  EXPECT_EQ(Content(folder_ / "in/file"), "text");
  EXPECT_TRUE(Names(folder_ / "out").empty());
}

TEST_F(PosixMoveTest, AFreeNameIsTakenInOneStep) {
  const struct stat before = StatusOf(folder_ / "in/file");
  EXPECT_EQ(MoveToFreeName("in/file", "out/file"), ErrorNumber::kNone);
  EXPECT_EQ(StatusOf(folder_ / "out/file").st_ino, before.st_ino);
  EXPECT_TRUE(Names(folder_ / "in").empty());
}

TEST_F(PosixMoveTest, ATakenNameIsNotFree) {
  fs::create_hard_link(folder_ / "in/file", folder_ / "out/hard");
  fs::create_symlink(folder_ / "in/file", folder_ / "out/soft");
  fs::create_symlink("nowhere", folder_ / "out/broken");
  fs::create_directory(folder_ / "out/folder");
  Put(folder_ / "out/other", "kept");
  const NameList names = Names(folder_ / "out");
  for (const std::string& name : names) {
    EXPECT_EQ(MoveToFreeName("in/file", "out/" + name), ErrorNumber::kFileAlreadyExists) << name;
  }
  EXPECT_EQ(MoveToFreeName("in/file", "in/file"), ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(Names(folder_ / "out"), names);
  EXPECT_EQ(Content(folder_ / "in/file"), "text");
  EXPECT_EQ(Content(folder_ / "out/other"), "kept");
  EXPECT_FALSE(IsThere(folder_ / "out/nowhere"));
}

TEST_F(PosixMoveTest, OnlyAFileItselfTakesAFreeName) {
  fs::create_symlink("file", folder_ / "in/link");
  ASSERT_EQ(mkfifo((folder_ / "in/pipe").c_str(), 0600), 0);
  EXPECT_EQ(MoveToFreeName("in/link", "out/new"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(MoveToFreeName("in/pipe", "out/new"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(MoveToFreeName("in", "out/new"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(MoveToFreeName("in/none", "out/new"), ErrorNumber::kFileNotFound);
  EXPECT_EQ(MoveToFreeName("in/file", "none/new"), ErrorNumber::kPathNotFound);
  EXPECT_TRUE(Names(folder_ / "out").empty());
}

// Adds a second folder, on another file system.
class PosixMoveAcrossTest : public PosixMoveTest {
 protected:
  void SetUp() override {
    PosixMoveTest::SetUp();
    const std::optional<std::string> base = FolderOnOtherDevice(folder_.Path());
    if (!base) GTEST_SKIP() << "no second file system to write to";
    far_ = std::make_unique<TempFolder>(*base);
    ASSERT_FALSE(far_->Path().empty());
    ASSERT_NE(StatusOf(far_->Path()).st_dev, StatusOf(folder_.Path()).st_dev);
  }

  std::unique_ptr<TempFolder> far_;
};

TEST_F(PosixMoveAcrossTest, TheFileArrivesWithBitsAndTime) {
  const std::string bytes = Pattern(9'000'001);
  Put(folder_ / "in/file", bytes);
  ASSERT_EQ(chmod((folder_ / "in/file").c_str(), 0604), 0);
  SetModified(folder_ / "in/file", {1111111111, 222333444});
  Put(*far_ / "file", "old");
  EXPECT_EQ(files_.MoveFile(folder_ / "in/file", *far_ / "file", {}), ErrorNumber::kNone);
  EXPECT_TRUE(Content(*far_ / "file") == bytes);
  const struct stat status = StatusOf(*far_ / "file");
  EXPECT_EQ(status.st_mode & 07777, 0604u);
  EXPECT_EQ(status.st_mtim.tv_sec, 1111111111);
  EXPECT_EQ(status.st_mtim.tv_nsec, 222333444);
  EXPECT_TRUE(Names(folder_ / "in").empty());
  EXPECT_EQ(Names(far_->Path()), NameList{"file"});
}

TEST_F(PosixMoveAcrossTest, NoFreeNameIsTakenThere) {
  EXPECT_EQ(files_.MoveToFreeName(folder_ / "in/file", *far_ / "file"),
            ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Names(folder_ / "in"), NameList{"file"});
  EXPECT_TRUE(Names(far_->Path()).empty());
}

TEST_F(PosixMoveAcrossTest, AnAbandonedMoveLeavesTheSource) {
  Put(folder_ / "in/file", Pattern(20u << 20));
  const KeepGoing no = [] { return false; };
  EXPECT_EQ(files_.MoveFile(folder_ / "in/file", *far_ / "file", no), ErrorNumber::kInvalidCall);
  EXPECT_EQ(Names(folder_ / "in"), NameList{"file"});
  EXPECT_TRUE(Names(far_->Path()).empty());
}

TEST_F(PosixMoveAcrossTest, AFullDiskLeavesTheSource) {
  Put(folder_ / "in/file", Pattern(100'000));
  const FileSizeLimit limit(1000);
  EXPECT_EQ(files_.MoveFile(folder_ / "in/file", *far_ / "file", {}), ErrorNumber::kDiskFull);
  EXPECT_EQ(Names(folder_ / "in"), NameList{"file"});
  EXPECT_TRUE(Names(far_->Path()).empty());
}

TEST_F(PosixMoveAcrossTest, ASourceThatCannotBeDeletedIsReported) {
  const OrdinaryUser user(folder_.Path());
  ASSERT_EQ(chmod((folder_ / "in").c_str(), 0555), 0);
  const TempFolder own(fs::path(far_->Path()).parent_path());
  EXPECT_EQ(files_.MoveFile(folder_ / "in/file", own / "file", {}), ErrorNumber::kPermissionDenied);
  EXPECT_EQ(Content(folder_ / "in/file"), "text");
  EXPECT_EQ(Content(own / "file"), "text");
}

}  // namespace
}  // namespace morvex
