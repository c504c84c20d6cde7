// Reading and writing files at given offsets.
#include "host/posix/posix_streams.h"

#include <filesystem>
#include <functional>
#include <limits>

#include "host/posix/posix_replace.h"
#include "tests/host/posix/posix_test.h"

namespace morvex {
namespace {

namespace fs = std::filesystem;
using namespace posix_test;

class PosixStreamsTest : public PosixTest {
 protected:
  // Returns the bytes that ReadAt reads.
  static std::string Read(InputFile& file, std::uint64_t offset, std::size_t size) {
    std::string into(size, '?');
    const Result<std::size_t> read = file.ReadAt(offset, into.data(), size);
    EXPECT_EQ(read.error, ErrorNumber::kNone);
    into.resize(read.value);
    return into;
  }
};

TEST_F(PosixStreamsTest, ReadingAnyPlace) {
  const std::string bytes = Pattern(3'000'000);
  Put(folder_ / "file", bytes);
  const auto file = files_.OpenForReading(folder_ / "file");
  ASSERT_TRUE(file);
  EXPECT_EQ(Read(*file.value, 0, bytes.size()), bytes);
  EXPECT_EQ(Read(*file.value, 2'999'990, 100), bytes.substr(2'999'990));
  EXPECT_EQ(Read(*file.value, 17, 5), bytes.substr(17, 5));
  EXPECT_EQ(Read(*file.value, 3'000'000, 100), "");
  EXPECT_EQ(Read(*file.value, 5'000'000'000'000, 100), "");
  EXPECT_EQ(Read(*file.value, std::numeric_limits<std::uint64_t>::max(), 100), "");
  EXPECT_EQ(Read(*file.value, 0, 0), "");
}

TEST_F(PosixStreamsTest, AFileThatChangesWhileItIsOpenIsFoundOut) {
  const std::string path = folder_ / "file";
  const auto changes = [&](const std::function<void()>& change) {
    Put(path, "content");
    SetModified(path, {1'000'000'000, 5});
    const auto file = files_.OpenForReading(path);
    change();
    return file.value->HasChanged().value;
  };
  EXPECT_FALSE(changes([] {}));
  EXPECT_TRUE(changes([&] { files_.AppendToFile(path, "more"); }));
  EXPECT_TRUE(changes([&] { truncate(path.c_str(), 3); }));
  EXPECT_TRUE(changes([&] { Put(path, "CONTENT"); }));
  EXPECT_TRUE(changes([&] { SetModified(path, {1'000'000'000, 6}); }));
  // Afterwards the name leads to another file, but the open file is unchanged.
  EXPECT_FALSE(changes([&] {
    Put(folder_ / "new", "new");
    fs::rename(folder_ / "new", path);
  }));
  EXPECT_FALSE(changes([&] { fs::remove(path); }));
}

TEST_F(PosixStreamsTest, AFileIsReadUpToTheSizeThatItHasWhenItIsOpened) {
  const std::string path = folder_ / "file";
  Put(path, "content");
  const auto file = files_.OpenForReading(path);
  ASSERT_EQ(files_.AppendToFile(path, "more"), ErrorNumber::kNone);
  EXPECT_EQ(Read(*file.value, 0, 100), "content");
  EXPECT_EQ(Read(*file.value, 7, 100), "");
}

TEST_F(PosixStreamsTest, AnEmptyFileHasNothingToRead) {
  Put(folder_ / "file", "");
  const auto file = files_.OpenForReading(folder_ / "file");
  ASSERT_TRUE(file);
  EXPECT_EQ(Read(*file.value, 0, 10), "");
}

TEST_F(PosixStreamsTest, ALinkIsReadAsTheFile) {
  Put(folder_ / "file", "content");
  fs::create_symlink("file", folder_ / "link");
  const auto file = files_.OpenForReading(folder_ / "link");
  ASSERT_TRUE(file);
  EXPECT_EQ(Read(*file.value, 0, 100), "content");
}

TEST_F(PosixStreamsTest, OnlyOrdinaryFilesAreOpened) {
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  fs::create_symlink("nowhere", folder_ / "broken");
  for (const std::string& path :
       {folder_ / "pipe", folder_ / "broken", folder_ / "none", std::string("/dev/full")}) {
    EXPECT_EQ(files_.OpenForReading(path).error, ErrorNumber::kFileNotFound) << path;
  }
  EXPECT_EQ(files_.OpenForReading(folder_.Path()).error, ErrorNumber::kPathFileAccess);
  Put(folder_ / "file", "");
  EXPECT_EQ(files_.OpenForReading(folder_ / "file/x").error, ErrorNumber::kPathNotFound);
}

TEST_F(PosixStreamsTest, AForbiddenFileIsNotOpened) {
  Put(folder_ / "file", "secret");
  const OrdinaryUser user(folder_.Path());
  ASSERT_EQ(chmod((folder_ / "file").c_str(), 0222), 0);
  EXPECT_EQ(files_.OpenForReading(folder_ / "file").error, ErrorNumber::kPermissionDenied);
}

TEST_F(PosixStreamsTest, RunningOutOfDescriptorsIsAnError) {
  const std::string path = folder_ / "file";
  const std::string fresh = folder_ / "new";
  ASSERT_TRUE(posix::CreateWorkFile(path, 0600));
  ErrorNumber opened = ErrorNumber::kNone;
  ErrorNumber created = ErrorNumber::kNone;
  ErrorNumber appended = ErrorNumber::kNone;
  {
    const DescriptorLimit none_left(0);
    opened = posix::OpenInput(path).error;
    created = posix::CreateWorkFile(fresh, 0600).error;
    appended = posix::AppendRecord(path, "x");
  }
  EXPECT_EQ(opened, ErrorNumber::kTooManyFiles);
  EXPECT_EQ(created, ErrorNumber::kTooManyFiles);
  EXPECT_EQ(appended, ErrorNumber::kTooManyFiles);
  EXPECT_EQ(Names(folder_.Path()), std::vector<std::string>{"file"});
}

TEST_F(PosixStreamsTest, AReadThatFailsIsADeviceError) {
  // The system shows the process's memory as an ordinary file. The first bytes of this file cannot
  // be read.
  const auto memory = files_.OpenForReading("/proc/self/mem");
  if (!memory) GTEST_SKIP() << "the process may not look at its own memory";
  char byte = 0;
  EXPECT_EQ(memory.value->ReadAt(0, &byte, 1).error, ErrorNumber::kDeviceIo);
}

TEST_F(PosixStreamsTest, WritingAnyPlace) {
  auto file = files_.CreateWorkFile(folder_ / "file", 0600);
  ASSERT_TRUE(file);
  EXPECT_EQ(file.value->WriteAt(0, "0123456789"), ErrorNumber::kNone);
  EXPECT_EQ(file.value->WriteAt(3, "abc"), ErrorNumber::kNone);
  EXPECT_EQ(file.value->WriteAt(12, "end"), ErrorNumber::kNone);
  EXPECT_EQ(file.value->WriteAt(5, ""), ErrorNumber::kNone);
  EXPECT_EQ(file.value->Close(), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "file"), std::string("012abc6789\0\0end", 15));
}

TEST_F(PosixStreamsTest, BigWritesAreWhole) {
  const std::string bytes = Pattern(3'000'001);
  auto file = files_.CreateWorkFile(folder_ / "file", 0600);
  ASSERT_TRUE(file);
  EXPECT_EQ(file.value->WriteAt(0, bytes), ErrorNumber::kNone);
  EXPECT_EQ(file.value->Close(), ErrorNumber::kNone);
  EXPECT_TRUE(Content(folder_ / "file") == bytes);
}

TEST_F(PosixStreamsTest, TheDestructorClosesToo) {
  {
    auto file = files_.CreateWorkFile(folder_ / "file", 0600);
    ASSERT_TRUE(file);
    EXPECT_EQ(file.value->WriteAt(0, "text"), ErrorNumber::kNone);
  }
  EXPECT_EQ(Content(folder_ / "file"), "text");
}

TEST_F(PosixStreamsTest, ATakenNameIsNotCreated) {
  Put(folder_ / "file", "kept");
  fs::create_directory(folder_ / "folder");
  fs::create_symlink("nowhere", folder_ / "broken");
  fs::create_symlink("file", folder_ / "link");
  for (const char* name : {"file", "folder", "broken", "link"}) {
    EXPECT_EQ(files_.CreateWorkFile(folder_ / name, 0600).error, ErrorNumber::kFileAlreadyExists)
        << name;
  }
  EXPECT_EQ(Content(folder_ / "file"), "kept");
  EXPECT_FALSE(IsThere(folder_ / "nowhere"));
  EXPECT_EQ(files_.CreateWorkFile(folder_ / "none/file", 0600).error, ErrorNumber::kPathNotFound);
  EXPECT_EQ(files_.CreateWorkFile(folder_ / "file/x", 0600).error, ErrorNumber::kPathNotFound);
}

TEST_F(PosixStreamsTest, ANewFileHasExactlyTheBitsAskedFor) {
  const OrdinaryUser user(folder_.Path());
  for (const mode_t mask : {0u, 022u, 077u, 0777u}) {
    const FileMask passing(mask);
    for (const std::uint32_t bits : {0666u, 0777u, 0600u, 0444u, 0u}) {
      auto file = files_.CreateWorkFile(folder_ / "file", bits);
      ASSERT_TRUE(file) << bits;
      EXPECT_EQ(Bits(folder_ / "file"), bits) << "mask " << mask;
      EXPECT_EQ(file.value->WriteAt(0, "written"), ErrorNumber::kNone) << bits;
      EXPECT_EQ(file.value->Close(), ErrorNumber::kNone) << bits;
      EXPECT_EQ(StatusOf(folder_ / "file").st_size, 7) << bits;
      ASSERT_EQ(file.value->Discard(), ErrorNumber::kNone);
    }
  }
}

TEST_F(PosixStreamsTest, BitsThatAreNoPermissionsAreNotSet) {
  auto file = files_.CreateWorkFile(folder_ / "file", 07640);
  ASSERT_TRUE(file);
  EXPECT_EQ(Bits(folder_ / "file"), 0640u);
}

TEST_F(PosixStreamsTest, AForbiddenFolderTakesNoFile) {
  fs::create_directory(folder_ / "closed");
  const OrdinaryUser user(folder_.Path());
  ASSERT_EQ(chmod((folder_ / "closed").c_str(), 0555), 0);
  EXPECT_EQ(files_.CreateWorkFile(folder_ / "closed/file", 0600).error,
            ErrorNumber::kPermissionDenied);
}

TEST_F(PosixStreamsTest, AFullDiskIsAnError) {
  auto file = files_.CreateWorkFile(folder_ / "file", 0600);
  ASSERT_TRUE(file);
  {
    const FileSizeLimit limit(1000);
    EXPECT_EQ(file.value->WriteAt(0, std::string(900, 'a')), ErrorNumber::kNone);
    EXPECT_EQ(file.value->WriteAt(900, std::string(200, 'b')), ErrorNumber::kDiskFull);
    EXPECT_EQ(file.value->WriteAt(5000, "c"), ErrorNumber::kDiskFull);
  }
  EXPECT_EQ(file.value->WriteAt(std::numeric_limits<std::uint64_t>::max(), "d"),
            ErrorNumber::kDiskFull);
  EXPECT_EQ(file.value->Close(), ErrorNumber::kNone);
  EXPECT_EQ(Content(folder_ / "file"), std::string(900, 'a') + std::string(100, 'b'));
}

}  // namespace
}  // namespace morvex
