// The window that slides over the source file.
#include "core/engine/matching/input_window.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "core/engine/matching/bytes_in_memory.h"
#include "tests/support/byte_streams.h"

namespace morvex::test {
namespace {

constexpr std::size_t kLookAhead = InputWindow::kLookAhead;
constexpr std::size_t kMegabyte = std::size_t{1} << 20;

// Bytes whose values depend on their offset.
std::string Pattern(std::size_t size) {
  std::string bytes(size, ' ');
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7 + i / 251 + i / 65521);
  return bytes;
}

// Counts the reads, and lets them fail with `error` if that is set.
class Counted : public MemorySource {
 public:
  using MemorySource::MemorySource;
  Result<std::size_t> ReadAt(std::uint64_t offset, char* into, std::size_t size) override {
    ++reads;
    if (error != ErrorNumber::kNone) return error;
    return MemorySource::ReadAt(offset, into, size);
  }
  std::int64_t reads = 0;
  ErrorNumber error = ErrorNumber::kNone;
};

class InputWindowTest : public ::testing::Test {
 protected:
  void Open(std::string bytes) {
    bytes_ = std::move(bytes);
    source_.emplace(bytes_);
  }

  // Expects that the window is at `offset` and shows at least kLookAhead bytes of the file, or all
  // that are left.
  void ExpectShown(const InputWindow& window, std::size_t offset) {
    const std::size_t rest = bytes_.size() - std::min(bytes_.size(), offset);
    ASSERT_GE(window.size(), std::min(rest, kLookAhead)) << offset;
    ASSERT_LE(window.size(), rest) << offset;
    const std::string_view shown(reinterpret_cast<const char*>(window.data()), window.size());
    ASSERT_TRUE(shown == std::string_view(bytes_).substr(bytes_.size() - rest, window.size()))
        << offset;
  }

  std::string bytes_;
  std::optional<Counted> source_;
};

TEST_F(InputWindowTest, AnEmptyFileHasEndedAtItsStart) {
  Open("");
  InputWindow window;
  window.Open(*source_);
  EXPECT_EQ(window.MoveTo(0), ErrorNumber::kNone);
  EXPECT_EQ(window.size(), 0u);
}

TEST_F(InputWindowTest, AShortFileIsShownWhole) {
  Open("abc");
  InputWindow window;
  window.Open(*source_);
  for (std::size_t offset = 0; offset <= 3; ++offset) {
    EXPECT_EQ(window.MoveTo(offset), ErrorNumber::kNone);
    EXPECT_EQ(window.size(), 3 - offset);
    ExpectShown(window, offset);
  }
}

TEST_F(InputWindowTest, AShortFileIsReadOnceAndFoundToHaveEnded) {
  Open("abc");
  InputWindow window;
  window.Open(*source_);
  const std::int64_t reads = source_->reads;
  for (std::size_t offset = 0; offset <= 3; ++offset) window.MoveTo(offset);
  EXPECT_EQ(source_->reads, reads + 2);
}

TEST_F(InputWindowTest, ShowsTheLookAheadFromEveryPlaceAroundTheBordersOfItsBlocks) {
  Open(Pattern(3 * kMegabyte));
  // A window that moves on byte by byte is refilled where it would show fewer than kLookAhead
  // bytes.
  constexpr std::size_t kBlock = InputWindow::kBufferSize - kLookAhead;
  for (std::size_t border = kBlock; border < bytes_.size(); border += kBlock) {
    InputWindow window;
    window.Open(*source_);
    ASSERT_EQ(window.MoveTo(border - kBlock), ErrorNumber::kNone);
    ASSERT_TRUE(window.Holds(border)) << border;
    ASSERT_FALSE(window.Holds(border + 1) && !window.ended()) << border;
    for (std::size_t offset = border - 40; offset < border + 40; ++offset) {
      ASSERT_EQ(window.MoveTo(offset), ErrorNumber::kNone);
      ExpectShown(window, offset);
    }
  }
}

TEST_F(InputWindowTest, ShowsExactlyTheRestAtTheEndOfTheFile) {
  for (const std::size_t size : {kMegabyte, kMegabyte + kLookAhead - 1, kMegabyte + kLookAhead,
                                 kMegabyte + kLookAhead + 1}) {
    Open(Pattern(size));
    InputWindow window;
    window.Open(*source_);
    for (std::size_t offset = size - kLookAhead - 2; offset <= size; offset += 1000) {
      ASSERT_EQ(window.MoveTo(offset), ErrorNumber::kNone);
      ExpectShown(window, offset);
    }
    for (std::size_t offset = size - 2; offset <= size; ++offset) {
      ASSERT_EQ(window.MoveTo(offset), ErrorNumber::kNone);
      EXPECT_EQ(window.size(), size - offset);
      ExpectShown(window, offset);
    }
  }
}

TEST_F(InputWindowTest, LeapsOverWhatItDoesNotHold) {
  Open(Pattern(4 * kMegabyte));
  InputWindow window;
  window.Open(*source_);
  for (const std::size_t offset : {std::size_t{0}, 2 * kMegabyte, 2 * kMegabyte + 5,
                                   4 * kMegabyte - 1, 4 * kMegabyte, 4 * kMegabyte + 10}) {
    ASSERT_EQ(window.MoveTo(offset), ErrorNumber::kNone);
    ExpectShown(window, offset);
  }
}

TEST_F(InputWindowTest, GoesThroughAFileInLargeBlocks) {
  Open(Pattern(3 * kMegabyte));
  InputWindow window;
  window.Open(*source_);
  const std::int64_t reads = source_->reads;
  std::string seen;
  for (std::size_t offset = 0;; ++offset) {
    ASSERT_EQ(window.MoveTo(offset), ErrorNumber::kNone);
    if (window.size() == 0) break;
    seen += static_cast<char>(*window.data());
  }
  EXPECT_TRUE(seen == bytes_);
  EXPECT_LE(source_->reads - reads, 25);  // 3 MiB in blocks of 128 KiB, and the end
}

// Hands out a few bytes at a time, as a slow network may.
class Trickle : public ByteSource {
 public:
  explicit Trickle(std::string_view bytes) : bytes_(bytes) {}
  Result<std::size_t> ReadAt(std::uint64_t offset, char* into, std::size_t size) override {
    constexpr std::size_t kFew = 1000;
    return bytes_.copy(into, std::min(size, kFew), std::min<std::size_t>(offset, bytes_.size()));
  }

 private:
  std::string_view bytes_;
};

TEST_F(InputWindowTest, AReadThatGivesLessThanAskedIsNoEndOfTheFile) {
  bytes_ = Pattern(kMegabyte);
  Trickle trickle(bytes_);
  InputWindow window;
  window.Open(trickle);
  for (const std::size_t offset : {std::size_t{0}, kMegabyte / 2, kMegabyte - 1, kMegabyte}) {
    ASSERT_EQ(window.MoveTo(offset), ErrorNumber::kNone);
    ExpectShown(window, offset);
  }
}

TEST_F(InputWindowTest, AReadErrorLeavesItEmpty) {
  Open(Pattern(2 * kMegabyte));
  InputWindow window;
  window.Open(*source_);
  source_->error = ErrorNumber::kDeviceIo;
  EXPECT_EQ(window.MoveTo(0), ErrorNumber::kDeviceIo);
  EXPECT_EQ(window.size(), 0u);
}

TEST_F(InputWindowTest, AReadErrorInMidFileIsGivenWhenItIsMet) {
  Open(Pattern(2 * kMegabyte));
  InputWindow window;
  window.Open(*source_);
  ASSERT_EQ(window.MoveTo(0), ErrorNumber::kNone);
  source_->error = ErrorNumber::kDeviceIo;
  // The window already holds the bytes from this offset on, so nothing is read.
  EXPECT_EQ(window.MoveTo(1000), ErrorNumber::kNone);
  ExpectShown(window, 1000);
  EXPECT_EQ(window.MoveTo(kMegabyte + 1), ErrorNumber::kDeviceIo);
  EXPECT_EQ(window.size(), 0u);
}

TEST_F(InputWindowTest, AStreamThatPausesIsShownAsFarAsItGoes) {
  const std::string bytes = Pattern(4000);
  const std::vector<std::size_t> sizes = {100, 1, 3899};
  std::size_t next = 0;
  auto next_size = [&] { return next < sizes.size() ? sizes[next++] : 1; };
  PiecesInput stream(bytes, next_size);
  std::size_t waits = 0;
  stream.at_pause = [&] { ++waits; };
  InputWindow window;
  window.Open(stream);
  EXPECT_EQ(window.MoveTo(0), ErrorNumber::kNone);
  EXPECT_EQ(window.size(), 0u);
  EXPECT_TRUE(window.IsShort());
  EXPECT_EQ(waits, 0u) << "only Wait waits";
  EXPECT_EQ(window.Wait(), ErrorNumber::kNone);
  EXPECT_EQ(window.size(), 100u);
  EXPECT_EQ(window.MoveTo(60), ErrorNumber::kNone);
  EXPECT_EQ(waits, 1u);
  EXPECT_EQ(window.Wait(), ErrorNumber::kNone);
  EXPECT_EQ(window.Wait(), ErrorNumber::kNone);
  EXPECT_EQ(window.size(), 3940u);
  EXPECT_EQ(std::string_view(reinterpret_cast<const char*>(window.data()), window.size()),
            std::string_view(bytes).substr(60));
  for (std::size_t i = 0; i < InputWindow::kPadding; ++i) {
    ASSERT_EQ(window.data()[window.size() + i], 0) << i;
  }
  EXPECT_FALSE(window.ended());
  EXPECT_EQ(window.Wait(), ErrorNumber::kNone);
  EXPECT_TRUE(window.ended());
  EXPECT_FALSE(window.IsShort());
  EXPECT_EQ(waits, 4u);
}

TEST_F(InputWindowTest, AnErrorWhileItWaitsLeavesItEmpty) {
  Open("abc");
  source_->error = ErrorNumber::kDeviceIo;
  InputWindow window;
  window.Open(*source_);
  EXPECT_EQ(window.Wait(), ErrorNumber::kDeviceIo);
  EXPECT_EQ(window.size(), 0u);
}

}  // namespace
}  // namespace morvex::test
