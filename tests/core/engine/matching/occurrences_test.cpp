// The searches for the next NUL and for the end of the next tail, each from ascending offsets.
#include "core/engine/matching/occurrences.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "core/engine/matching/bytes_in_memory.h"

namespace morvex::test {
namespace {

// A window over a whole file.
class Shown {
 public:
  explicit Shown(std::string bytes) : bytes_(std::move(bytes)), file_(bytes_) {
    window_.Open(file_);
    EXPECT_EQ(window_.MoveTo(0), ErrorNumber::kNone);
  }
  const InputWindow& window() const { return window_; }

 private:
  std::string bytes_;
  MemorySource file_;
  InputWindow window_;
};

TEST(NextNul, IsTheFirstAtOrBehindTheOffset) {
  const Shown shown(std::string("ab\0cd\0e", 7));
  NextNul next;
  EXPECT_EQ(next.Find(shown.window(), 0, 100), 2u);
  EXPECT_EQ(next.Find(shown.window(), 2, 100), 2u);
  EXPECT_EQ(next.Find(shown.window(), 3, 100), 5u);
}

TEST(NextNul, TheEndOfTheFileIsOne) {
  const Shown shown("abc");
  NextNul next;
  EXPECT_EQ(next.Find(shown.window(), 0, 100), 3u);
  EXPECT_EQ(next.Find(shown.window(), 2, 4), 3u);
}

TEST(NextNul, BehindTheLimitIsNone) {
  const Shown shown(std::string("abcd\0", 5));
  NextNul next;
  EXPECT_EQ(next.Find(shown.window(), 0, 4), kNowhere);
  EXPECT_EQ(next.Find(shown.window(), 1, 5), 4u);
}

TEST(NextTail, EndsBehindItsFirstOccurrence) {
  const Shown shown("xabab.ab");
  NextTail next("ab");
  EXPECT_EQ(next.FindEnd(shown.window(), 0, 8), 3u);
  EXPECT_EQ(next.FindEnd(shown.window(), 1, 8), 3u);
  EXPECT_EQ(next.FindEnd(shown.window(), 2, 8), 5u);
  EXPECT_EQ(next.FindEnd(shown.window(), 4, 8), 8u);
  EXPECT_EQ(next.FindEnd(shown.window(), 7, 8), kNowhere);
}

TEST(NextTail, OneThatEndsBehindTheLimitIsNone) {
  const Shown shown("..abc");
  NextTail next("abc");
  EXPECT_EQ(next.FindEnd(shown.window(), 0, 4), kNowhere);
  EXPECT_EQ(next.FindEnd(shown.window(), 0, 5), 5u);
}

TEST(NextTail, OccurrencesMayOverlap) {
  const Shown shown("aaaa");
  NextTail next("aaa");
  EXPECT_EQ(next.FindEnd(shown.window(), 0, 4), 3u);
  EXPECT_EQ(next.FindEnd(shown.window(), 1, 4), 4u);
  EXPECT_EQ(next.FindEnd(shown.window(), 2, 4), kNowhere);
}

TEST(NextTail, AResetForgetsTheFileBefore) {
  const Shown first("ab");
  const Shown second("..ab");
  NextTail next("ab");
  EXPECT_EQ(next.FindEnd(first.window(), 0, 2), 2u);
  next.Reset();
  EXPECT_EQ(next.FindEnd(second.window(), 0, 4), 4u);
}

TEST(Occurrences, AgreeWithASearchFromEachOffset) {
  for (std::uint32_t seed = 0; seed < 2000; ++seed) {
    std::mt19937 random(seed);
    std::string bytes(random() % 60, ' ');
    for (char& byte : bytes) byte = random() % 12 == 0 ? '\0' : random() % 3 == 0 ? 'b' : 'a';
    std::string tail(1 + random() % 5, ' ');
    for (char& byte : tail) byte = random() % 3 == 0 ? 'b' : 'a';
    const Shown shown(bytes);
    NextNul next_nul;
    NextTail next_tail(tail);
    for (std::size_t from = 0; from < bytes.size(); from += 1 + random() % 3) {
      const std::size_t limit = from + random() % 70;
      const std::size_t nul = std::min(bytes.find('\0', from), bytes.size());
      ASSERT_EQ(next_nul.Find(shown.window(), from, limit), nul < limit ? nul : kNowhere)
          << "seed " << seed << " from " << from << " limit " << limit;
      const std::size_t found = bytes.find(tail, from);
      const bool in_front = found != std::string::npos && found + tail.size() <= limit;
      ASSERT_EQ(next_tail.FindEnd(shown.window(), from, limit),
                in_front ? found + tail.size() : kNowhere)
          << "seed " << seed << " from " << from << " limit " << limit;
    }
  }
}

}  // namespace
}  // namespace morvex::test
