// Writing large files in a thread of its own: the bytes, their order, and the call that reports an
// error.
#include "host/posix/posix_write_behind.h"

#include <cerrno>
#include <memory>
#include <thread>

#include "host/posix/posix_descriptor.h"
#include "host/posix/posix_streams.h"
#include "tests/host/posix/posix_test.h"

namespace morvex {
namespace {

using namespace posix_test;
using posix::Descriptor;
using posix::WriteBehind;

constexpr std::size_t kBuffer = WriteBehind::kBufferSize;
constexpr std::size_t kRing = WriteBehind::kBuffers * kBuffer;

class PosixWriteBehindTest : public PosixTest {
 protected:
  Descriptor Create(const std::string& name) {
    return posix::OpenAt(AT_FDCWD, (folder_ / name).c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  }

  const std::shared_ptr<WriteBehind> behind_ = std::make_shared<WriteBehind>();
};

TEST_F(PosixWriteBehindTest, PiecesOfAnySizeComeOutWhole) {
  const std::string bytes = Pattern(3 * kRing + 12'345);
  for (const std::size_t piece : {std::size_t{999}, std::size_t{131'072}, kBuffer, 2 * kRing}) {
    const Descriptor file = Create("file");
    ASSERT_TRUE(behind_->Begin(file.Get()));
    for (std::size_t at = 0; at < bytes.size(); at += piece) {
      ASSERT_EQ(behind_->Write(at, std::string_view(bytes).substr(at, piece)), 0);
    }
    EXPECT_EQ(behind_->Finish(), 0);
    EXPECT_TRUE(Content(folder_ / "file") == bytes) << piece;
  }
}

TEST_F(PosixWriteBehindTest, WhatIsWrittenLastStands) {
  const Descriptor file = Create("file");
  std::string expected(2 * kRing, '\0');
  ASSERT_TRUE(behind_->Begin(file.Get()));
  for (unsigned round = 0; round < 2000; ++round) {
    // The offset grows in large steps and goes back when it reaches the end of the file. The second
    // write begins one byte behind the beginning of the first, so it lies inside the first write or
    // directly behind it.
    const std::size_t size = 1 + round * 37 % 3000;
    const std::size_t at = round * std::size_t{7919} * 13 % (expected.size() - size);
    const std::string bytes(size, static_cast<char>('a' + round % 26));
    expected.replace(at, size, bytes);
    ASSERT_EQ(behind_->Write(at, bytes), 0);
    ASSERT_EQ(behind_->Write(at + 1, "#"), 0);
    expected[at + 1] = '#';
  }
  ASSERT_EQ(behind_->Write(expected.size() - 1, "e"), 0);
  expected.back() = 'e';
  EXPECT_EQ(behind_->Finish(), 0);
  EXPECT_TRUE(Content(folder_ / "file") == expected);
}

TEST_F(PosixWriteBehindTest, NothingToWrite) {
  const Descriptor file = Create("file");
  ASSERT_TRUE(behind_->Begin(file.Get()));
  EXPECT_EQ(behind_->Write(0, ""), 0);
  EXPECT_EQ(behind_->Write(77, ""), 0);
  EXPECT_EQ(behind_->Finish(), 0);
  EXPECT_EQ(Content(folder_ / "file"), "");
}

TEST_F(PosixWriteBehindTest, OneFileAtATime) {
  const Descriptor one = Create("one");
  const Descriptor two = Create("two");
  ASSERT_TRUE(behind_->Begin(one.Get()));
  EXPECT_FALSE(behind_->Begin(two.Get()));
  EXPECT_EQ(behind_->Write(0, "1"), 0);
  EXPECT_EQ(behind_->Finish(), 0);
  ASSERT_TRUE(behind_->Begin(two.Get()));
  EXPECT_EQ(behind_->Write(0, "2"), 0);
  EXPECT_EQ(behind_->Finish(), 0);
  EXPECT_EQ(Content(folder_ / "one") + Content(folder_ / "two"), "12");
}

TEST_F(PosixWriteBehindTest, AnErrorComesWithTheSameCallEveryTime) {
  const std::string buffer = Pattern(kBuffer);
  for (int repeated = 0; repeated < 20; ++repeated) {
    const Descriptor file = Create("file");
    ASSERT_TRUE(behind_->Begin(file.Get()));
    const FileSizeLimit limit(2 * kBuffer + 1000);  // the third buffer exceeds the limit
    std::size_t taken = 0;
    int code = 0;
    while (code == 0 && taken < 100) code = behind_->Write(taken++ * kBuffer, buffer);
    EXPECT_EQ(code, EFBIG);
    EXPECT_EQ(taken, 3 + WriteBehind::kBuffers);
    EXPECT_EQ(behind_->Write(0, "more"), EFBIG);
    EXPECT_EQ(behind_->Finish(), EFBIG);
    EXPECT_EQ(StatusOf(folder_ / "file").st_size, 2 * kBuffer + 1000);
  }
}

TEST_F(PosixWriteBehindTest, FinishGivesAnErrorThatNoWriteGave) {
  const Descriptor file = Create("file");
  ASSERT_TRUE(behind_->Begin(file.Get()));
  const FileSizeLimit limit(1000);
  EXPECT_EQ(behind_->Write(0, std::string(1001, 'x')), 0);
  EXPECT_EQ(behind_->Finish(), EFBIG);
}

TEST_F(PosixWriteBehindTest, AFullDeviceIsFull) {
  const Descriptor full = posix::OpenAt(AT_FDCWD, "/dev/full", O_WRONLY);
  if (!full.IsOpen()) GTEST_SKIP() << "no /dev/full";
  ASSERT_TRUE(behind_->Begin(full.Get()));
  EXPECT_EQ(behind_->Write(0, "x"), 0);
  EXPECT_EQ(behind_->Finish(), ENOSPC);
}

TEST_F(PosixWriteBehindTest, AfterAnErrorTheNextFileIsWritten) {
  const Descriptor file = Create("file");
  ASSERT_TRUE(behind_->Begin(-1));
  EXPECT_EQ(behind_->Write(0, "lost"), 0);
  EXPECT_EQ(behind_->Finish(), EBADF);
  ASSERT_TRUE(behind_->Begin(file.Get()));
  EXPECT_EQ(behind_->Write(0, "kept"), 0);
  EXPECT_EQ(behind_->Finish(), 0);
  EXPECT_EQ(Content(folder_ / "file"), "kept");
}

TEST_F(PosixWriteBehindTest, AnOffsetBeyondAllFilesIsAFullDisk) {
  const Descriptor file = Create("file");
  ASSERT_TRUE(behind_->Begin(file.Get()));
  EXPECT_EQ(behind_->Write(std::numeric_limits<std::uint64_t>::max(), "x"), 0);
  EXPECT_EQ(behind_->Finish(), EFBIG);
}

// Large outputs through a work file.
class PosixLargeOutputTest : public PosixWriteBehindTest {
 protected:
  std::unique_ptr<WorkFile> CreateOutput(const std::string& name) {
    auto file = posix::CreateWorkFile(folder_ / name, 0600, behind_);
    EXPECT_EQ(file.error, ErrorNumber::kNone);
    return std::move(file.value);
  }
  // Writes `bytes` in pieces of 128 KiB. Returns the first error.
  static ErrorNumber Write(OutputFile& file, std::string_view bytes) {
    for (std::size_t at = 0; at < bytes.size(); at += kPiece) {
      const ErrorNumber error = file.WriteAt(at, bytes.substr(at, kPiece));
      if (error != ErrorNumber::kNone) return error;
    }
    return ErrorNumber::kNone;
  }
  static constexpr std::size_t kPiece = std::size_t{128} << 10;
};

TEST_F(PosixLargeOutputTest, ALargeFileIsWhole) {
  const std::string bytes = Pattern(5'000'001);
  const auto file = CreateOutput("file");
  EXPECT_EQ(Write(*file, bytes), ErrorNumber::kNone);
  EXPECT_EQ(file->WriteAt(10, "early"), ErrorNumber::kNone);
  EXPECT_EQ(file->WriteAt(4'999'999, "late"), ErrorNumber::kNone);
  EXPECT_EQ(file->Close(), ErrorNumber::kNone);
  std::string expected = bytes;
  expected.replace(10, 5, "early");
  expected.replace(4'999'999, 2, "late");
  EXPECT_TRUE(Content(folder_ / "file") == expected);
}

TEST_F(PosixLargeOutputTest, TheDestructorWritesWhatIsLeft) {
  const std::string bytes = Pattern(2'000'003);
  EXPECT_EQ(Write(*CreateOutput("file"), bytes), ErrorNumber::kNone);
  EXPECT_TRUE(Content(folder_ / "file") == bytes);
}

TEST_F(PosixLargeOutputTest, TwoLargeFilesAtOnceAreBothWhole) {
  const std::string bytes = Pattern(3'000'000);
  const auto one = CreateOutput("one");
  const auto two = CreateOutput("two");
  for (std::size_t at = 0; at < bytes.size(); at += kPiece) {
    const std::string_view piece = std::string_view(bytes).substr(at, kPiece);
    EXPECT_EQ(one->WriteAt(at, piece), ErrorNumber::kNone);
    EXPECT_EQ(two->WriteAt(at, piece), ErrorNumber::kNone);
  }
  EXPECT_EQ(two->Close(), ErrorNumber::kNone);
  EXPECT_EQ(one->Close(), ErrorNumber::kNone);
  EXPECT_TRUE(Content(folder_ / "one") == bytes);
  EXPECT_TRUE(Content(folder_ / "two") == bytes);
}

TEST_F(PosixLargeOutputTest, TwoThreadsShareTheOneThatWrites) {
  const std::string bytes = Pattern(2'500'000);
  const auto work = [&](const char* name, int& failures) {
    for (int repeated = 0; repeated < 5; ++repeated) {
      const auto file =
          posix::CreateWorkFile(folder_ / (name + std::to_string(repeated)), 0600, behind_);
      if (!file || Write(*file.value, bytes) != ErrorNumber::kNone) ++failures;
      if (file && file.value->Close() != ErrorNumber::kNone) ++failures;
    }
  };
  int failures[2] = {};
  std::thread first([&] { work("a", failures[0]); });
  std::thread second([&] { work("b", failures[1]); });
  first.join();
  second.join();
  EXPECT_EQ(failures[0] + failures[1], 0);
  for (const std::string& name : Names(folder_.Path())) {
    EXPECT_TRUE(Content(folder_ / name) == bytes) << name;
  }
  EXPECT_EQ(Names(folder_.Path()).size(), 10u);
}

TEST_F(PosixLargeOutputTest, AFullDiskIsToldByALaterWrite) {
  const std::string bytes = Pattern(8'000'000);
  const FileSizeLimit limit(1'000'000);
  const auto file = CreateOutput("file");
  EXPECT_EQ(Write(*file, bytes), ErrorNumber::kDiskFull);
  EXPECT_EQ(file->Close(), ErrorNumber::kDiskFull);
  EXPECT_TRUE(Content(folder_ / "file") == bytes.substr(0, 1'000'000));
}

TEST_F(PosixLargeOutputTest, AFullDiskIsToldByClose) {
  const std::string bytes = Pattern(1'100'000);
  const FileSizeLimit limit(1'000'000);
  const auto file = CreateOutput("file");
  EXPECT_EQ(Write(*file, bytes), ErrorNumber::kNone);
  EXPECT_EQ(file->Close(), ErrorNumber::kDiskFull);
}

TEST_F(PosixLargeOutputTest, ASmallFileStartsNoThread) {
  const auto threads = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
  };
  const auto before = threads();
  const auto small = CreateOutput("small");
  EXPECT_EQ(Write(*small, Pattern(300'000)), ErrorNumber::kNone);
  EXPECT_EQ(threads(), before);
  EXPECT_EQ(small->Close(), ErrorNumber::kNone);
  const auto large = CreateOutput("large");
  EXPECT_EQ(Write(*large, Pattern(3'000'000)), ErrorNumber::kNone);
  EXPECT_EQ(threads(), before + 1);
}

}  // namespace
}  // namespace morvex
