// One match attempt, with all rounds and with rounds skipped.
#include "core/engine/matching/match_attempt.h"

#include <gtest/gtest.h>

#include <string>

namespace morvex::test {
namespace {

PatternRow WildcardRow(std::string_view left, std::string_view tail, std::int64_t width) {
  PatternRow row;
  row.left = left;
  row.tail = tail;
  row.width = width;
  row.wildcard = '*';
  row.flag = PatternRow::Flag::kWildcard;
  return row;
}

// Runs an attempt until the attempt ends. The attempt reads `bytes`, then NULs. With `skips`, every
// round that can be skipped is skipped.
MatchAttempt Ended(const PatternRow& row, const std::string& bytes, bool skips) {
  MatchAttempt attempt;
  std::vector<std::uint8_t> more;
  const std::size_t found = row.tail.empty() ? std::string::npos : bytes.find(row.tail);
  const int tail_round = found == std::string::npos ? MatchAttempt::kLastRound
                                                    : static_cast<int>(found + row.tail.size());
  const int nul_round = static_cast<int>(bytes.size()) + 1;
  const int span_end = std::min({tail_round, nul_round, MatchAttempt::kLastRound});
  for (;;) {
    if (skips && attempt.InOpenSpan(row) && attempt.round() < span_end) {
      attempt.SkipTo(row, span_end);
    }
    const auto at = static_cast<std::size_t>(attempt.round() - 1);
    const auto byte = static_cast<std::uint8_t>(at < bytes.size() ? bytes[at] : '\0');
    const bool tail_ends = found != std::string::npos && attempt.round() == tail_round;
    if (!attempt.Round(row, byte, tail_ends, more)) return attempt;
  }
}

TEST(MatchAttempt, SkippingRoundsChangesNothing) {
  for (const std::int64_t width : {4, 9}) {
    const PatternRow row = WildcardRow("a*;", ";", width);
    for (const char* bytes : {"a;", "aX;", "aXYZ;..", "aXYZ", "a", "b", "aXX;;;"}) {
      const MatchAttempt slow = Ended(row, bytes, false);
      const MatchAttempt fast = Ended(row, bytes, true);
      EXPECT_EQ(slow.Matched(row), fast.Matched(row)) << bytes;
      EXPECT_EQ(slow.length(), fast.length()) << bytes;
      EXPECT_EQ(slow.captured_first(), fast.captured_first()) << bytes;
      EXPECT_EQ(slow.captured_count(), fast.captured_count()) << bytes;
    }
  }
}

TEST(MatchAttempt, ASpanThatNothingEndsFailsInItsLastRound) {
  const PatternRow row = WildcardRow("a*;", ";", 9);
  const std::string bytes = "a" + std::string(40'000, 'x');
  const MatchAttempt slow = Ended(row, bytes, false);
  EXPECT_FALSE(slow.Matched(row));
  EXPECT_EQ(slow.captured_count(), MatchAttempt::kLastRound - 1);

  MatchAttempt behind_prefix;
  std::vector<std::uint8_t> more;
  ASSERT_TRUE(behind_prefix.Round(row, 'a', false, more));
  MatchAttempt failed;
  failed.FailInSpan(row, behind_prefix);
  EXPECT_FALSE(failed.Matched(row));
  EXPECT_EQ(failed.captured_first(), slow.captured_first());
  EXPECT_EQ(failed.captured_count(), slow.captured_count());
}

TEST(MatchAttempt, AMatchUpToTheTailIsWhatItsRoundsGive) {
  for (const char* tail : {";", ";end"}) {
    const std::string left = std::string("ab*") + tail;
    const PatternRow row = WildcardRow(left, tail, 20);
    MatchAttempt behind_prefix;
    std::vector<std::uint8_t> more;
    ASSERT_TRUE(behind_prefix.Round(row, 'a', false, more));
    ASSERT_TRUE(behind_prefix.Round(row, 'b', false, more));
    for (const std::size_t captured : {1U, 2U, 3U, 30'000U}) {
      const std::string bytes = "ab" + std::string(captured, 'x') + tail + "...";
      const MatchAttempt slow = Ended(row, bytes, false);
      MatchAttempt fast;
      fast.MatchUpToTail(behind_prefix, static_cast<int>(2 + captured + std::string(tail).size()));
      EXPECT_TRUE(slow.Matched(row)) << bytes.size();
      EXPECT_TRUE(fast.Matched(row)) << bytes.size();
      EXPECT_EQ(slow.length(), fast.length()) << bytes.size();
      EXPECT_EQ(slow.captured_first(), fast.captured_first()) << bytes.size();
      EXPECT_EQ(slow.captured_count(), fast.captured_count()) << bytes.size();
    }
  }
}

TEST(MatchAttempt, TheLongestMatchHas32766Bytes) {
  for (const std::size_t size : {std::size_t{32766}, std::size_t{32767}}) {
    const PatternRow row = WildcardRow("a*;", ";", 9);
    const std::string bytes = "a" + std::string(size - 2, 'x') + ";";
    const MatchAttempt attempt = Ended(row, bytes, true);
    EXPECT_EQ(attempt.Matched(row), size == 32766) << size;
  }
}

}  // namespace
}  // namespace morvex::test
