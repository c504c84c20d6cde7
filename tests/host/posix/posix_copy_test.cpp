// Copies of whole files, in each of the ways that a system may offer.
#include "host/posix/posix_copy.h"

#include <filesystem>
#include <functional>
#include <new>
#include <vector>

#include "tests/host/posix/posix_test.h"

namespace morvex::posix {
namespace {

namespace fs = std::filesystem;
using namespace posix_test;

using NameList = std::vector<std::string>;

class PosixCopyTest : public PosixTest, public ::testing::WithParamInterface<CopyWays> {
 protected:
  void SetUp() override {
    PosixTest::SetUp();
    fs::create_directory(folder_ / "in");
    fs::create_directory(folder_ / "out");
  }

  ErrorNumber Copy(std::string_view from, std::string_view to, const KeepGoing& keep_going = {}) {
    return CopyWholeFile(folder_ / from, folder_ / to, keep_going, GetParam());
  }
  NameList Out() const { return Names(folder_ / "out"); }
};

std::string WaysName(const ::testing::TestParamInfo<CopyWays>& info) {
  return std::string(info.param.unnamed_file ? "Unnamed" : "Named") +
         (info.param.copy_in_kernel ? "InKernel" : "ThroughMemory");
}

INSTANTIATE_TEST_SUITE_P(EveryWay, PosixCopyTest,
                         ::testing::Values(CopyWays{true, true}, CopyWays{true, false},
                                           CopyWays{false, true}, CopyWays{false, false}),
                         WaysName);

TEST_P(PosixCopyTest, EverySizeArrivesWhole) {
  constexpr std::size_t kMemory = 1u << 20;
  constexpr std::size_t kKernel = 8u << 20;
  const std::string bytes = Pattern(kKernel + 1);
  for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{4096}, kMemory - 1,
                                 kMemory, kMemory + 1, kKernel - 1, kKernel, kKernel + 1}) {
    Put(folder_ / "in/file", std::string_view(bytes).substr(0, size));
    ASSERT_EQ(Copy("in/file", "out/file"), ErrorNumber::kNone) << size;
    EXPECT_TRUE(Content(folder_ / "out/file") == bytes.substr(0, size)) << size;
    EXPECT_EQ(Out(), NameList{"file"});
  }
}

TEST_P(PosixCopyTest, BitsAndTimeGoAlong) {
  const OrdinaryUser user(folder_.Path());
  const FileMask mask(027);
  Put(folder_ / "in/file", "text");
  SetModified(folder_ / "in/file", {1111111111, 222333444});
  for (const mode_t bits : {0777u, 0666u, 0444u, 0400u, 0604u}) {
    ASSERT_EQ(chmod((folder_ / "in/file").c_str(), bits), 0);
    ASSERT_EQ(Copy("in/file", "out/file"), ErrorNumber::kNone);
    const struct stat status = StatusOf(folder_ / "out/file");
    EXPECT_EQ(status.st_mode & 07777, bits);
    EXPECT_EQ(status.st_mtim.tv_sec, 1111111111);
    EXPECT_EQ(status.st_mtim.tv_nsec, 222333444);
  }
}

TEST_P(PosixCopyTest, OnlyPermissionBitsGoAlong) {
  Put(folder_ / "in/file", "text");
  ASSERT_EQ(chmod((folder_ / "in/file").c_str(), 06755), 0);
  ASSERT_EQ(Copy("in/file", "out/file"), ErrorNumber::kNone);
  EXPECT_EQ(Bits(folder_ / "out/file"), 0755u);
}

TEST_P(PosixCopyTest, AnyNameThatAFolderTakesIsCopied) {
  for (const std::string& name : {kOddName, kLongName, std::string(".hidden"), std::string("-r")}) {
    Put(folder_ / "in/" + name, name);
    ASSERT_EQ(Copy("in/" + name, "out/" + name), ErrorNumber::kNone) << name;
    EXPECT_EQ(Content(folder_ / "out/" + name), name);
  }
  EXPECT_EQ(Out().size(), 4u);
}

TEST_P(PosixCopyTest, PathsMayBeRelative) {
  const fs::path before = fs::current_path();
  fs::current_path(folder_ / "in");
  Put("file", "text");
  EXPECT_EQ(CopyWholeFile("file", "copy", {}, GetParam()), ErrorNumber::kNone);
  EXPECT_EQ(CopyWholeFile("file", "../out//./file", {}, GetParam()), ErrorNumber::kNone);
  fs::current_path(before);
  EXPECT_EQ(Content(folder_ / "in/copy"), "text");
  EXPECT_EQ(Content(folder_ / "out/file"), "text");
}

TEST_P(PosixCopyTest, AnExistingFileIsReplacedAndNotWrittenInto) {
  Put(folder_ / "in/file", "new");
  Put(folder_ / "out/file", "old and longer");
  fs::create_hard_link(folder_ / "out/file", folder_ / "out/second name");
  EXPECT_EQ(Copy("in/file", "out/file"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "out/file"), "new");
  EXPECT_EQ(Content(folder_ / "out/second name"), "old and longer");
}

TEST_P(PosixCopyTest, AReadOnlyFileIsReplaced) {
  Put(folder_ / "in/file", "new");
  Put(folder_ / "out/file", "old");
  const OrdinaryUser user(folder_.Path());
  ASSERT_EQ(chmod((folder_ / "out/file").c_str(), 0), 0);
  EXPECT_EQ(Copy("in/file", "out/file"), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "out/file"), "new");
}

TEST_P(PosixCopyTest, ALinkIsReplacedAndNotWrittenThrough) {
  Put(folder_ / "in/file", "new");
  Put(folder_ / "bystander", "kept");
  fs::create_symlink(folder_ / "bystander", folder_ / "out/to file");
  fs::create_symlink(folder_ / "nowhere", folder_ / "out/broken");
  fs::create_symlink("loop", folder_ / "out/loop");
  for (const char* name : {"to file", "broken", "loop"}) {
    EXPECT_EQ(Copy("in/file", std::string("out/") + name), ErrorNumber::kNone) << name;
    EXPECT_TRUE(S_ISREG(StatusOf(folder_ / "out/" + name).st_mode)) << name;
    EXPECT_EQ(Content(folder_ / "out/" + name), "new") << name;
  }
  EXPECT_EQ(Content(folder_ / "bystander"), "kept");
  EXPECT_FALSE(IsThere(folder_ / "nowhere"));
}

TEST_P(PosixCopyTest, ALinkAtTheSourceIsCopiedAsTheFile) {
  Put(folder_ / "in/file", "text");
  fs::create_symlink("file", folder_ / "in/link");
  EXPECT_EQ(Copy("in/link", "out/link"), ErrorNumber::kNone);
  EXPECT_TRUE(S_ISREG(StatusOf(folder_ / "out/link").st_mode));
  EXPECT_EQ(Content(folder_ / "out/link"), "text");
}

TEST_P(PosixCopyTest, AFileIsNotCopiedOntoItself) {
  Put(folder_ / "in/file", "kept");
  fs::create_hard_link(folder_ / "in/file", folder_ / "out/hard");
  fs::create_symlink(folder_ / "in/file", folder_ / "out/soft");
  fs::create_directory_symlink("in", folder_ / "alias");
  for (const char* to : {"in/file", "in/../in/file", "alias/file", "out/hard", "out/soft"}) {
    EXPECT_EQ(Copy("in/file", to), ErrorNumber::kPathFileAccess) << to;
  }
  EXPECT_EQ(Copy("out/soft", "in/file"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Content(folder_ / "in/file"), "kept");
  EXPECT_TRUE(S_ISLNK(StatusOf(folder_ / "out/soft").st_mode));
  EXPECT_EQ(Out(), (NameList{"hard", "soft"}));
}

TEST_P(PosixCopyTest, WhatIsNoFileIsNotReplaced) {
  Put(folder_ / "in/file", "text");
  fs::create_directory(folder_ / "out/folder");
  fs::create_directory_symlink("folder", folder_ / "out/folder link");
  ASSERT_EQ(mkfifo((folder_ / "out/pipe").c_str(), 0600), 0);
  fs::create_symlink("/dev/null", folder_ / "out/device link");
  const NameList before = Out();
  for (const char* to :
       {"folder", "folder/", "folder/.", "folder/..", "folder link", "pipe", "device link"}) {
    EXPECT_EQ(Copy("in/file", std::string("out/") + to), ErrorNumber::kPathFileAccess) << to;
  }
  EXPECT_EQ(Out(), before);
  EXPECT_TRUE(S_ISFIFO(StatusOf(folder_ / "out/pipe").st_mode));
  EXPECT_TRUE(S_ISLNK(StatusOf(folder_ / "out/device link").st_mode));
  EXPECT_TRUE(Names(folder_ / "out/folder").empty());
}

TEST_P(PosixCopyTest, TheTargetsFolderMustBeThere) {
  Put(folder_ / "in/file", "text");
  for (const char* to : {"none/file", "in/file/x", "out/none/", "none/..", "none/."}) {
    EXPECT_EQ(Copy("in/file", to), ErrorNumber::kPathNotFound) << to;
  }
  EXPECT_TRUE(Out().empty());
}

TEST_P(PosixCopyTest, OnlyOrdinaryFilesAreCopied) {
  ASSERT_EQ(mkfifo((folder_ / "in/pipe").c_str(), 0600), 0);
  Put(folder_ / "out/file", "kept");
  EXPECT_EQ(Copy("in/none", "out/file"), ErrorNumber::kFileNotFound);
  EXPECT_EQ(Copy("in/pipe", "out/file"), ErrorNumber::kFileNotFound);
  EXPECT_EQ(Copy("in", "out/file"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(CopyWholeFile("/dev/zero", folder_ / "out/file", {}, GetParam()),
            ErrorNumber::kFileNotFound);
  EXPECT_EQ(Content(folder_ / "out/file"), "kept");
  EXPECT_EQ(Out(), NameList{"file"});
}

TEST_P(PosixCopyTest, WhatIsForbiddenIsRefused) {
  Put(folder_ / "in/file", "text");
  Put(folder_ / "in/closed", "secret");
  Put(folder_ / "out/file", "kept");
  const OrdinaryUser user(folder_.Path());
  ASSERT_EQ(chmod((folder_ / "in/closed").c_str(), 0), 0);
  EXPECT_EQ(Copy("in/closed", "out/new"), ErrorNumber::kPermissionDenied);
  ASSERT_EQ(chmod((folder_ / "out").c_str(), 0555), 0);
  EXPECT_EQ(Copy("in/file", "out/new"), ErrorNumber::kPermissionDenied);
  EXPECT_EQ(Copy("in/file", "out/file"), ErrorNumber::kPermissionDenied);
  EXPECT_EQ(Content(folder_ / "out/file"), "kept");
  EXPECT_EQ(Out(), NameList{"file"});
  ASSERT_EQ(chmod((folder_ / "out").c_str(), 0), 0);
  EXPECT_EQ(Copy("in/file", "out/file"), ErrorNumber::kPermissionDenied);
}

TEST_P(PosixCopyTest, AnothersFileInAStickyFolderStays) {
  if (geteuid() != 0) GTEST_SKIP() << "needs a second user, which only root can be";
  { const OrdinaryUser owner(folder_.Path()); }
  Put(folder_ / "in/file", "text");
  Put(folder_ / "out/file", "kept");
  ASSERT_EQ(chown((folder_ / "out").c_str(), 0, 0), 0);
  ASSERT_EQ(chmod((folder_ / "out").c_str(), 01777), 0);
  ASSERT_EQ(seteuid(kNobody), 0);
  const ErrorNumber error = Copy("in/file", "out/file");
  ASSERT_EQ(seteuid(0), 0);
  EXPECT_EQ(error, ErrorNumber::kPermissionDenied);
  EXPECT_EQ(Content(folder_ / "out/file"), "kept");
  EXPECT_EQ(Out(), NameList{"file"});
}

TEST_P(PosixCopyTest, ASourceThatChangesMeanwhileLeavesTheOldFile) {
  Put(folder_ / "out/file", "kept");
  const std::string from = folder_ / "in/file";
  const std::string bytes = Pattern(20'000'000);
  for (const std::function<void()>& change : std::vector<std::function<void()>>{
           [&] { truncate(from.c_str(), 100); }, [&] { files_.AppendToFile(from, "more"); },
           [&] {
             SetModified(from, {1'000'000'000, 1});
           }}) {
    Put(from, bytes);
    const KeepGoing once = [&] {
      change();
      return true;
    };
    EXPECT_EQ(Copy("in/file", "out/file", once), ErrorNumber::kFileAlreadyOpen);
    EXPECT_EQ(Content(folder_ / "out/file"), "kept");
    EXPECT_EQ(Out(), NameList{"file"});
  }
}

TEST_P(PosixCopyTest, AFullDiskLeavesTheOldFile) {
  Put(folder_ / "in/file", Pattern(100'000));
  Put(folder_ / "out/file", "kept");
  {
    const FileSizeLimit limit(50'000);
    EXPECT_EQ(Copy("in/file", "out/file"), ErrorNumber::kDiskFull);
    EXPECT_EQ(Copy("in/file", "out/new"), ErrorNumber::kDiskFull);
  }
  EXPECT_EQ(Content(folder_ / "out/file"), "kept");
  EXPECT_EQ(Out(), NameList{"file"});
}

TEST_P(PosixCopyTest, RunningOutOfDescriptorsLeavesTheOldFile) {
  Put(folder_ / "in/file", "text");
  Put(folder_ / "out/file", "kept");
  const std::string from = folder_ / "in/file";
  const std::string to = folder_ / "out/file";
  const CopyWays ways = GetParam();
  int more = 0;
  for (;; ++more) {
    ErrorNumber error = ErrorNumber::kNone;
    {
      const DescriptorLimit limit(more);
      error = CopyWholeFile(from, to, {}, ways);
    }
    if (error == ErrorNumber::kNone) break;
    ASSERT_EQ(error, ErrorNumber::kTooManyFiles) << more;
    EXPECT_EQ(Content(folder_ / "out/file"), "kept") << more;
    EXPECT_EQ(Out(), NameList{"file"}) << more;
  }
  EXPECT_GE(more, 2);
  EXPECT_EQ(Content(folder_ / "out/file"), "text");
}

TEST_P(PosixCopyTest, AReadThatFailsLeavesTheOldFile) {
  // Reading this attribute fails with a device error if the device does not support it.
  const std::string source = "/sys/devices/system/cpu/cpu0/power/autosuspend_delay_ms";
  const Result<std::unique_ptr<InputFile>> file = files_.OpenForReading(source);
  char byte = 0;
  if (!file || file.value->ReadAt(0, &byte, 1).error != ErrorNumber::kDeviceIo) {
    GTEST_SKIP() << "no file here that cannot be read";
  }
  Put(folder_ / "out/file", "kept");
  EXPECT_EQ(CopyWholeFile(source, folder_ / "out/file", {}, GetParam()), ErrorNumber::kDeviceIo);
  EXPECT_EQ(Content(folder_ / "out/file"), "kept");
  EXPECT_EQ(Out(), NameList{"file"});
}

TEST_P(PosixCopyTest, NothingIsSeenUntilTheCopyIsWhole) {
  const std::string bytes = Pattern(20u << 20);
  Put(folder_ / "in/file", bytes);
  ASSERT_EQ(chmod((folder_ / "in/file").c_str(), 0604), 0);
  Put(folder_ / "out/file", "old");
  const NameList expected =
      GetParam().unnamed_file ? NameList{"file"} : NameList{"file", "tijdel.enc"};
  int asked = 0;
  const KeepGoing look = [&] {
    ++asked;
    EXPECT_EQ(Content(folder_ / "out/file"), "old");
    EXPECT_EQ(Out(), expected);
    if (!GetParam().unnamed_file) {
      EXPECT_EQ(Bits(folder_ / "out/tijdel.enc") & 0177, 0u);
    }
    return true;
  };
  EXPECT_EQ(Copy("in/file", "out/file", look), ErrorNumber::kNone);
  EXPECT_GE(asked, 2);
  EXPECT_TRUE(Content(folder_ / "out/file") == bytes);
  EXPECT_EQ(Out(), NameList{"file"});
}

TEST_P(PosixCopyTest, AnAbandonedCopyLeavesNothing) {
  Put(folder_ / "in/file", Pattern(20u << 20));
  Put(folder_ / "out/file", "old");
  int asked = 0;
  const KeepGoing second_no = [&] { return ++asked < 2; };
  EXPECT_EQ(Copy("in/file", "out/file", second_no), ErrorNumber::kInvalidCall);
  EXPECT_EQ(asked, 2);
  const KeepGoing no = [] { return false; };
  EXPECT_EQ(Copy("in/file", "out/new", no), ErrorNumber::kInvalidCall);
  EXPECT_EQ(Content(folder_ / "out/file"), "old");
  EXPECT_EQ(Out(), NameList{"file"});
}

TEST_P(PosixCopyTest, AnExceptionLeavesNothing) {
  Put(folder_ / "in/file", Pattern(20u << 20));
  const KeepGoing throws = []() -> bool { throw std::bad_alloc(); };
  EXPECT_THROW(Copy("in/file", "out/file", throws), std::bad_alloc);
  EXPECT_TRUE(Out().empty());
}

}  // namespace
}  // namespace morvex::posix
