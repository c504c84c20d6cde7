// File systems that are full, read-only or lack a feature. Each test runs in a process with its own
// mounts. Only root may start such a process, unless the system lets other users mount.
#include <sys/mount.h>

#include <filesystem>

#include "host/posix/posix_copy.h"
#include "host/posix/posix_system.h"
#include "tests/host/posix/posix_test.h"
#include "tests/support/own_mounts.h"

namespace morvex {
namespace {

namespace fs = std::filesystem;
using namespace posix_test;

using NameList = std::vector<std::string>;

class PosixMountsTest : public PosixTest {
 protected:
  void SetUp() override {
    PosixTest::SetUp();
    disk_ = folder_ / "disk";
    fs::create_directory(disk_);
  }

  void MountDisk(const char* options) {
    ASSERT_EQ(mount("tmpfs", disk_.c_str(), "tmpfs", 0, options), 0);
  }

  std::string disk_;
};

#define RUN_OR_SKIP(...)                                  \
  if (!test::OwnMounts::Run(__VA_ARGS__))                 \
  GTEST_SKIP() << "this user may not make mounts of his " \
                  "own"

TEST_F(PosixMountsTest, AFullDiskLosesNothing) {
  RUN_OR_SKIP([this] {
    MountDisk("size=64k");
    Put(folder_ / "file", Pattern(100'000));
    Put(disk_ + "/old", "kept");
    EXPECT_EQ(files_.CopyFile(folder_ / "file", disk_ + "/old", {}), ErrorNumber::kDiskFull);
    EXPECT_EQ(files_.MoveFile(folder_ / "file", disk_ + "/new", {}), ErrorNumber::kDiskFull);
    EXPECT_EQ(posix::CopyWholeFile(folder_ / "file", disk_ + "/old", {}, {false, false}),
              ErrorNumber::kDiskFull);
    EXPECT_EQ(files_.ReplaceFile(disk_ + "/old", Pattern(100'000)), ErrorNumber::kDiskFull);
    EXPECT_EQ(Content(disk_ + "/old"), "kept");
    EXPECT_EQ(Names(disk_), NameList{"old"});
    EXPECT_TRUE(IsThere(folder_ / "file"));
    EXPECT_EQ(files_.AppendToFile(disk_ + "/log", Pattern(100'000)), ErrorNumber::kDiskFull);
  });
}

TEST_F(PosixMountsTest, AFullDiskStopsAnOpenFile) {
  RUN_OR_SKIP([this] {
    MountDisk("size=64k");
    auto file = files_.CreateWorkFile(disk_ + "/file", 0600);
    ASSERT_TRUE(file);
    EXPECT_EQ(file.value->WriteAt(0, Pattern(60'000)), ErrorNumber::kNone);
    EXPECT_EQ(file.value->WriteAt(60'000, Pattern(10'000)), ErrorNumber::kDiskFull);
    EXPECT_EQ(file.value->WriteAt(0, "again"), ErrorNumber::kNone);
    EXPECT_EQ(file.value->Close(), ErrorNumber::kNone);
  });
}

TEST_F(PosixMountsTest, AnOverwrittenFileSurvivesAFullDisk) {
  RUN_OR_SKIP([this] {
    MountDisk("size=64k");
    Put(disk_ + "/file", "kept");
    // A file that is a mount point cannot be replaced by another file.
    ASSERT_EQ(
        mount((disk_ + "/file").c_str(), (disk_ + "/file").c_str(), nullptr, MS_BIND, nullptr), 0);
    Put(disk_ + "/filler", Pattern(50'000));
    EXPECT_EQ(files_.ReplaceFile(disk_ + "/file", Pattern(70'000)), ErrorNumber::kDiskFull);
    EXPECT_EQ(Content(disk_ + "/file"), "kept");
    EXPECT_EQ(files_.ReplaceFile(disk_ + "/file", "new content"), ErrorNumber::kNone);
    EXPECT_EQ(Content(disk_ + "/file"), "new content");
    EXPECT_EQ(Names(disk_), (NameList{"file", "filler"}));
    EXPECT_EQ(files_.DeleteFile(disk_ + "/file"), ErrorNumber::kPathFileAccess);
  });
}

TEST_F(PosixMountsTest, AReadOnlyDiskIsForbidden) {
  RUN_OR_SKIP([this] {
    MountDisk("size=64k");
    Put(disk_ + "/file", "kept");
    Put(folder_ / "file", "text");
    ASSERT_EQ(mount("none", disk_.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    constexpr ErrorNumber kForbidden = ErrorNumber::kPermissionDenied;
    EXPECT_EQ(files_.CreateFolder(disk_ + "/new"), kForbidden);
    EXPECT_EQ(files_.CreateWorkFile(disk_ + "/new", 0600).error, kForbidden);
    EXPECT_EQ(files_.CopyFile(folder_ / "file", disk_ + "/file", {}), kForbidden);
    EXPECT_EQ(files_.MoveFile(disk_ + "/file", disk_ + "/new", {}), kForbidden);
    EXPECT_EQ(files_.DeleteFile(disk_ + "/file"), kForbidden);
    EXPECT_EQ(files_.AppendToFile(disk_ + "/file", "x"), kForbidden);
    EXPECT_EQ(files_.ReplaceFile(disk_ + "/file", "x"), kForbidden);
    EXPECT_EQ(files_.ReplaceFile(disk_ + "/new", "x"), kForbidden);
    EXPECT_EQ(Content(disk_ + "/file"), "kept");
    EXPECT_TRUE(files_.LookUpFile(disk_ + "/file"));
  });
}

TEST_F(PosixMountsTest, AMoveOffAReadOnlyDiskLeavesTheSource) {
  RUN_OR_SKIP([this] {
    MountDisk("size=64k");
    Put(disk_ + "/file", "kept");
    ASSERT_EQ(mount("none", disk_.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    EXPECT_EQ(files_.MoveFile(disk_ + "/file", folder_ / "file", {}),
              ErrorNumber::kPermissionDenied);
    EXPECT_EQ(Content(disk_ + "/file"), "kept");
    EXPECT_EQ(Content(folder_ / "file"), "kept");
  });
}

TEST_F(PosixMountsTest, ADrivesRoomIsThatOfTheMount) {
  RUN_OR_SKIP([this] {
    MountDisk("size=64k");
    const Result<DriveSpace> empty = files_.LookUpDrive(disk_);
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty.value.total, 65536u);
    EXPECT_EQ(empty.value.available, 65536u);
    Put(disk_ + "/file", Pattern(8192));
    EXPECT_EQ(files_.LookUpDrive(disk_ + "/file").value.available, 65536u - 8192u);
  });
}

TEST_F(PosixMountsTest, WithoutProcACopyIsFilledUnderTheWorkFileName) {
  RUN_OR_SKIP([this] {
    Put(folder_ / "file", Pattern(20u << 20));
    ASSERT_EQ(mount("tmpfs", "/proc", "tmpfs", 0, nullptr), 0);
    NameList seen;
    const KeepGoing look = [&] {
      seen = Names(disk_);
      return true;
    };
    EXPECT_EQ(files_.CopyFile(folder_ / "file", disk_ + "/file", look), ErrorNumber::kNone);
    EXPECT_EQ(seen, NameList{"tijdel.enc"});
    EXPECT_EQ(Names(disk_), NameList{"file"});
    EXPECT_TRUE(Content(disk_ + "/file") == Pattern(20u << 20));
  });
}

TEST_F(PosixMountsTest, WithoutProcAProgramGoesByTheNameItWasStartedWith) {
  RUN_OR_SKIP([this] {
    ASSERT_EQ(mount("tmpfs", "/proc", "tmpfs", 0, nullptr), 0);
    std::string name = disk_ + "/./program.exe";
    char* words[] = {name.data(), nullptr};
    PosixSystemService system(1, words);
    EXPECT_EQ(system.ProgramFolder(), disk_);
    EXPECT_EQ(system.ExecutableName(), "program");
  });
}

}  // namespace
}  // namespace morvex
