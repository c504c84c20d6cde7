// Looking up files, folders and drives; creating folders; deleting files.
#include "host/posix/posix_files.h"

#include <sys/socket.h>
#include <sys/statvfs.h>
#include <sys/un.h>
#include <time.h>

#include <chrono>
#include <filesystem>
#include <limits>
#include <map>

#include "host/posix/posix_time.h"
#include "tests/host/posix/posix_test.h"

namespace morvex {
namespace {

namespace fs = std::filesystem;
using namespace posix_test;

class PosixFilesTest : public PosixTest {};

TEST_F(PosixFilesTest, TheSeparatorIsASlash) { EXPECT_EQ(files_.Separator(), '/'); }

TEST_F(PosixFilesTest, AFileIsDescribedWhole) {
  Put(folder_ / "file.txt", "12345");
  ASSERT_EQ(chmod((folder_ / "file.txt").c_str(), 04640), 0);
  SetModified(folder_ / "file.txt", {1234567890, 123456789});
  const Result<FileInfo> info = files_.LookUpFile(folder_ / "./file.txt");
  ASSERT_TRUE(info);
  EXPECT_EQ(info.value.path, folder_ / "file.txt");
  EXPECT_EQ(info.value.folder, folder_.Path());
  EXPECT_EQ(info.value.name, "file.txt");
  EXPECT_EQ(info.value.size, 5u);
  EXPECT_EQ(info.value.permissions, 0640u);
  EXPECT_EQ(info.value.modified.time_since_epoch(), std::chrono::nanoseconds(1234567890123456789));
  const struct stat status = StatusOf(folder_ / "file.txt");
  EXPECT_EQ(info.value.identity, (FileIdentity{status.st_dev, status.st_ino}));
}

TEST_F(PosixFilesTest, AFileBehindALinkIsDescribedUnderTheLinksName) {
  Put(folder_ / "file", "12345");
  fs::create_symlink("file", folder_ / "link");
  const Result<FileInfo> info = files_.LookUpFile(folder_ / "link");
  ASSERT_TRUE(info);
  EXPECT_EQ(info.value.path, folder_ / "link");
  EXPECT_EQ(info.value.name, "link");
  EXPECT_EQ(info.value.size, 5u);
  EXPECT_EQ(info.value.identity, files_.LookUpFile(folder_ / "file").value.identity);
}

TEST_F(PosixFilesTest, MomentsOutsideTheClockBecomeItsEnds) {
  using posix::ToWallTime;
  EXPECT_EQ(ToWallTime({-1, 999999999}).time_since_epoch(), std::chrono::nanoseconds(-1));
  const WallTime last = ToWallTime({std::numeric_limits<time_t>::max(), 999999999});
  const WallTime first = ToWallTime({std::numeric_limits<time_t>::min(), 0});
  EXPECT_GT(last, WallTime(std::chrono::hours(24 * 365 * 290)));
  EXPECT_LT(first, WallTime(std::chrono::hours(-24 * 365 * 290)));
}

TEST_F(PosixFilesTest, OnlyOrdinaryFilesAreFiles) {
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  fs::create_directory(folder_ / "folder");
  fs::create_symlink("nowhere", folder_ / "broken");
  fs::create_symlink("loop", folder_ / "loop");
  Put(folder_ / "file", "");
  for (const std::string& path : {folder_ / "pipe", folder_ / "folder", folder_ / "broken",
                                  folder_ / "none", std::string("/dev/null"), std::string()}) {
    EXPECT_EQ(files_.LookUpFile(path).error, ErrorNumber::kFileNotFound) << path;
  }
  EXPECT_EQ(files_.LookUpFile(folder_ / "file/x").error, ErrorNumber::kPathNotFound);
  EXPECT_EQ(files_.LookUpFile(folder_ / "file/").error, ErrorNumber::kPathNotFound);
  EXPECT_EQ(files_.LookUpFile(folder_ / "loop").error, ErrorNumber::kPathFileAccess);
}

TEST_F(PosixFilesTest, ASocketIsNoFile) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string path = folder_ / "socket";
  if (path.size() >= sizeof address.sun_path) GTEST_SKIP() << "the temporary folder lies too deep";
  path.copy(address.sun_path, path.size());
  const int socket_number = socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(
      bind(socket_number, static_cast<sockaddr*>(static_cast<void*>(&address)), sizeof address), 0);
  EXPECT_EQ(files_.LookUpFile(path).error, ErrorNumber::kFileNotFound);
  EXPECT_EQ(files_.OpenForReading(path).error, ErrorNumber::kFileNotFound);
  EXPECT_EQ(files_.AppendToFile(path, "x"), ErrorNumber::kPathFileAccess);
  const std::vector<FolderEntry> listed = files_.ListFolder(folder_.Path()).value;
  ASSERT_EQ(listed.size(), 1U);
  EXPECT_EQ(listed[0].kind, EntryKind::kSpecial);
  close(socket_number);
}

TEST_F(PosixFilesTest, AFolderIsDescribed) {
  fs::create_directory(folder_ / "folder");
  fs::create_directory_symlink("folder", folder_ / "link");
  const Result<FolderInfo> folder = files_.LookUpFolder(folder_ / "folder/");
  ASSERT_TRUE(folder);
  EXPECT_EQ(folder.value.path, folder_ / "folder");
  EXPECT_FALSE(folder.value.is_link);
  for (const char* name : {"link", "link/", "link/."}) {
    const Result<FolderInfo> link = files_.LookUpFolder(folder_ / name);
    ASSERT_TRUE(link) << name;
    EXPECT_EQ(link.value.path, folder_ / "link") << name;
    EXPECT_TRUE(link.value.is_link) << name;
    EXPECT_EQ(link.value.identity, folder.value.identity) << name;
  }
  EXPECT_EQ(files_.LookUpFolder("//").value.path, "/");
  EXPECT_FALSE(files_.LookUpFolder("/").value.is_link);
  EXPECT_EQ(files_.LookUpFolder(folder_ / "folder/..").value.path, folder_.Path());
}

TEST_F(PosixFilesTest, WhatIsNoFolderIsNotFound) {
  Put(folder_ / "file", "");
  fs::create_symlink("nowhere", folder_ / "broken");
  for (const std::string& path : {folder_ / "none", folder_ / "file", folder_ / "broken",
                                  folder_ / "file/x", std::string(), std::string("/dev/null")}) {
    EXPECT_EQ(files_.LookUpFolder(path).error, ErrorNumber::kPathNotFound) << path;
  }
}

TEST_F(PosixFilesTest, NamesOfEveryKindOfByteWork) {
  for (const std::string& name : {kOddName, kLongName}) {
    Put(folder_ / name, "odd");
    const Result<FileInfo> info = files_.LookUpFile(folder_ / name);
    ASSERT_TRUE(info) << name;
    EXPECT_EQ(info.value.name, name);
    EXPECT_EQ(info.value.path, folder_ / name);
    EXPECT_EQ(files_.DeleteFile(folder_ / name), ErrorNumber::kNone);
    EXPECT_EQ(files_.CreateFolder(folder_ / name), ErrorNumber::kNone);
    EXPECT_EQ(files_.LookUpFolder(folder_ / name).value.path, folder_ / name);
  }
}

TEST_F(PosixFilesTest, BadNamesAreRefusedByEveryCall) {
  Put(folder_ / "file", "kept");
  const KeepGoing never_asked;
  for (const std::string& name : {kNulName, kTooLongName, std::string("file\0", 5)}) {
    const std::string bad = folder_ / name;
    const std::string good = folder_ / "file";
    constexpr ErrorNumber kBad = ErrorNumber::kBadFileName;
    EXPECT_EQ(files_.LookUpFile(bad).error, kBad);
    EXPECT_EQ(files_.LookUpFolder(bad).error, kBad);
    EXPECT_EQ(files_.ListFolder(bad).error, kBad);
    EXPECT_EQ(files_.RealPath(bad).error, kBad);
    EXPECT_EQ(files_.LookUpDrive(bad).error, kBad);
    EXPECT_EQ(files_.CreateFolder(bad), kBad);
    EXPECT_EQ(files_.CopyFile(bad, folder_ / "new", never_asked), kBad);
    EXPECT_EQ(files_.CopyFile(good, bad, never_asked), kBad);
    EXPECT_EQ(files_.MoveFile(bad, folder_ / "new", never_asked), kBad);
    EXPECT_EQ(files_.MoveFile(good, bad, never_asked), kBad);
    EXPECT_EQ(files_.MoveToFreeName(bad, folder_ / "new"), kBad);
    EXPECT_EQ(files_.MoveToFreeName(good, bad), kBad);
    EXPECT_EQ(files_.DeleteFile(bad), kBad);
    EXPECT_EQ(files_.OpenForReading(bad).error, kBad);
    EXPECT_EQ(files_.CreateWorkFile(bad, 0600).error, kBad);
    EXPECT_EQ(files_.AppendToFile(bad, "x"), kBad);
    EXPECT_EQ(files_.ReplaceFile(bad, "x"), kBad);
  }
  EXPECT_EQ(Names(folder_.Path()), std::vector<std::string>{"file"});
  EXPECT_EQ(Content(folder_ / "file"), "kept");
}

TEST_F(PosixFilesTest, TheEmptyPathNamesNothing) {
  Put(folder_ / "file", "kept");
  const KeepGoing never_asked;
  constexpr ErrorNumber kNoFile = ErrorNumber::kFileNotFound;
  constexpr ErrorNumber kNoPath = ErrorNumber::kPathNotFound;
  EXPECT_EQ(files_.LookUpFile("").error, kNoFile);
  EXPECT_EQ(files_.LookUpFolder("").error, kNoPath);
  EXPECT_EQ(files_.ListFolder("").error, kNoPath);
  EXPECT_EQ(files_.RealPath("").error, kNoPath);
  EXPECT_EQ(files_.LookUpDrive("").error, kNoPath);
  EXPECT_EQ(files_.CreateFolder(""), kNoPath);
  EXPECT_EQ(files_.CopyFile("", folder_ / "new", never_asked), kNoFile);
  EXPECT_EQ(files_.CopyFile(folder_ / "file", "", never_asked), kNoFile);
  EXPECT_EQ(files_.MoveFile("", folder_ / "new", never_asked), kNoFile);
  EXPECT_EQ(files_.MoveFile(folder_ / "file", "", never_asked), kNoFile);
  EXPECT_EQ(files_.MoveToFreeName("", folder_ / "new"), kNoFile);
  EXPECT_EQ(files_.MoveToFreeName(folder_ / "file", ""), kNoFile);
  EXPECT_EQ(files_.DeleteFile(""), kNoFile);
  EXPECT_EQ(files_.OpenForReading("").error, kNoFile);
  EXPECT_EQ(files_.CreateWorkFile("", 0600).error, kNoFile);
  EXPECT_EQ(files_.AppendToFile("", "x"), kNoFile);
  EXPECT_EQ(files_.ReplaceFile("", "x"), kNoFile);
  EXPECT_EQ(Content(folder_ / "file"), "kept");
}

TEST_F(PosixFilesTest, AFolderIsMadeOneLevelAtATime) {
  const FileMask mask(022);
  Put(folder_ / "file", "");
  fs::create_symlink("nowhere", folder_ / "broken");
  EXPECT_EQ(files_.CreateFolder(folder_ / "new"), ErrorNumber::kNone);
  EXPECT_EQ(Bits(folder_ / "new"), 0755u);
  EXPECT_EQ(files_.CreateFolder(folder_ / "new"), ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(files_.CreateFolder(folder_ / "file"), ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(files_.CreateFolder(folder_ / "broken"), ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(files_.CreateFolder("/"), ErrorNumber::kFileAlreadyExists);
  EXPECT_EQ(files_.CreateFolder(folder_ / "none/new"), ErrorNumber::kPathNotFound);
  EXPECT_EQ(files_.CreateFolder(folder_ / "file/new"), ErrorNumber::kPathNotFound);
}

TEST_F(PosixFilesTest, AFolderLikeAnotherIsNoMoreOpenAndItsOwnersToWrite) {
  const FileMask mask(022);
  for (const auto& [bits, made] : std::map<mode_t, mode_t>{
           {0700, 0700}, {0750, 0750}, {0777, 0755}, {0555, 0755}, {0000, 0700}, {02770, 0750}}) {
    FolderInfo like;
    like.permissions = bits;
    const std::string path = folder_ / std::to_string(bits);
    EXPECT_EQ(files_.CreateFolderLike(path, like), ErrorNumber::kNone);
    EXPECT_EQ(Bits(path), made) << std::oct << bits;
    EXPECT_EQ(files_.LookUpFolder(path).value.permissions, made);
  }
}

TEST_F(PosixFilesTest, ForbiddenFoldersAreForbidden) {
  fs::create_directory(folder_ / "closed");
  Put(folder_ / "closed/file", "kept");
  const OrdinaryUser user(folder_.Path());
  ASSERT_EQ(chmod((folder_ / "closed").c_str(), 0555), 0);
  EXPECT_EQ(files_.CreateFolder(folder_ / "closed/new"), ErrorNumber::kPermissionDenied);
  EXPECT_EQ(files_.DeleteFile(folder_ / "closed/file"), ErrorNumber::kPermissionDenied);
  ASSERT_EQ(chmod((folder_ / "closed").c_str(), 0), 0);
  EXPECT_EQ(files_.LookUpFile(folder_ / "closed/file").error, ErrorNumber::kPermissionDenied);
  EXPECT_EQ(files_.LookUpFolder(folder_ / "closed/x").error, ErrorNumber::kPermissionDenied);
  EXPECT_EQ(files_.RealPath(folder_ / "closed/file").error, ErrorNumber::kPermissionDenied);
  EXPECT_TRUE(files_.LookUpFolder(folder_ / "closed"));
}

TEST_F(PosixFilesTest, DeletingTakesFilesAndLinksButNoFolders) {
  fs::create_directory(folder_ / "folder");
  Put(folder_ / "file", "kept");
  fs::create_symlink("file", folder_ / "link");
  fs::create_symlink("nowhere", folder_ / "broken");
  fs::create_directory_symlink("folder", folder_ / "folder link");
  EXPECT_EQ(files_.DeleteFile(folder_ / "folder"), ErrorNumber::kPathFileAccess);
  for (const char* name : {"link", "broken", "folder link"}) {
    EXPECT_EQ(files_.DeleteFile(folder_ / name), ErrorNumber::kNone) << name;
  }
  EXPECT_EQ(Names(folder_.Path()), (std::vector<std::string>{"file", "folder"}));
  EXPECT_EQ(Content(folder_ / "file"), "kept");
  EXPECT_EQ(files_.DeleteFile(folder_ / "file"), ErrorNumber::kNone);
  EXPECT_EQ(files_.DeleteFile(folder_ / "file"), ErrorNumber::kFileNotFound);
  EXPECT_EQ(files_.DeleteFile(folder_ / "none/file"), ErrorNumber::kFileNotFound);
}

TEST_F(PosixFilesTest, AReadOnlyFileIsDeleted) {
  Put(folder_ / "file", "");
  const OrdinaryUser user(folder_.Path());
  ASSERT_EQ(chmod((folder_ / "file").c_str(), 0), 0);
  EXPECT_EQ(files_.DeleteFile(folder_ / "file"), ErrorNumber::kNone);
  EXPECT_FALSE(IsThere(folder_ / "file"));
}

TEST_F(PosixFilesTest, RealPathResolvesEveryLink) {
  fs::create_directories(folder_ / "a/b");
  Put(folder_ / "a/b/file", "");
  fs::create_directory_symlink("a", folder_ / "one");
  fs::create_symlink("one/b/file", folder_ / "two");
  EXPECT_EQ(files_.RealPath(folder_ / "two").value, folder_ / "a/b/file");
  EXPECT_EQ(files_.RealPath(folder_ / "one//b/..").value, folder_ / "a");
  EXPECT_EQ(files_.RealPath("/").value, "/");
  EXPECT_EQ(files_.RealPath(folder_ / "none").error, ErrorNumber::kPathNotFound);
  EXPECT_EQ(files_.RealPath(folder_ / "two/x").error, ErrorNumber::kPathNotFound);
}

TEST_F(PosixFilesTest, ADriveHasRoom) {
  struct statvfs drive {};
  ASSERT_EQ(statvfs(folder_.Path().c_str(), &drive), 0);
  const Result<DriveSpace> space = files_.LookUpDrive(folder_.Path());
  ASSERT_TRUE(space);
  EXPECT_EQ(space.value.total, std::uint64_t{drive.f_blocks} * drive.f_frsize);
  EXPECT_GT(space.value.total, 0u);
  EXPECT_LE(space.value.available, space.value.total);
  EXPECT_EQ(files_.LookUpDrive(folder_ / "none").error, ErrorNumber::kPathNotFound);
}

}  // namespace
}  // namespace morvex
