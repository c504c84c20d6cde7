// The bounds of a match attempt (its counters have 16 bits) and of the blocks in which a file goes
// through memory.
#include <gtest/gtest.h>

#include "core/engine/matching/input_window.h"
#include "core/engine/matching/positioned_output.h"
#include "tests/core/engine/engine_test.h"

namespace morvex::test {
namespace {

using namespace std::string_literals;

constexpr std::size_t kLongestMatch = 32766;
// The ends of the input window's first buffer and of the output's first block.
constexpr std::size_t kInputBorder = InputWindow::kBufferSize;
constexpr std::size_t kOutputBorder = PositionedOutput::kBlock;
constexpr std::size_t kManyBlocks = std::size_t{3} << 20;

std::string Times(std::size_t count, char byte) { return std::string(count, byte); }

TEST(SubstitutionLimits, ASpanThatMakesAMatchOf32766BytesIsFound) {
  const std::string span = Times(kLongestMatch - 2, 'X');
  ExpectResult({{"a*c", "[*]"}}, '*', "a" + span + "cZ", "[" + span + "]Z", 1);
}

TEST(SubstitutionLimits, ASpanThatMakesAMatchOf32767BytesIsNot) {
  const std::string input = "a" + Times(kLongestMatch - 1, 'X') + "cZ";
  ExpectResult({{"a*c", "[*]"}}, '*', input, input, 0);
}

TEST(SubstitutionLimits, AfterTheOverflowTheNextOffsetIsTriedAfresh) {
  // The "c" is too far from the first "a", but not from the second.
  const std::string span = Times(kLongestMatch - 2, 'X');
  ExpectResult({{"a*c", "[*]"}, {"X-", "!"}}, '*', "aa" + span + "cX-", "a[" + span + "]!", 2);
}

TEST(SubstitutionLimits, ALeftTextOf32766BytesMatches) {
  const std::string left = Times(kLongestMatch, 'a');
  ExpectResult({{left, "b"}}, 0, left + "a", "ba", 1);
  ExpectResult({{left, "b"}, {left + "++", "-"}}, 0, left + left, "bb", 2);
}

TEST(SubstitutionLimits, ALeftTextOf32767BytesNeverMatches) {
  const std::string left = "b" + Times(kLongestMatch, 'a');
  ExpectResult({{left, "c"}}, 0, left, left, 0);
  ExpectResult({{left, "c"}, {left + "++", "-"}}, 0, left + left, left + left, 0);
}

TEST(SubstitutionLimits, AWildcardInLastPositionFindsAtMost32766Bytes) {
  const Rows rows = {{"a*", "<*>"}, {"12345", ""}};
  const std::string fits = Times(kLongestMatch - 1, 'X');
  ExpectResult(rows, '*', "a" + fits, "<" + fits, 1);
  ExpectResult(rows, '*', "a" + fits + "X", "a" + fits + "X", 0);
  ExpectResult(rows, '*', "a" + fits + "X\0a"s, "a" + fits + "X\0a"s, 0);
}

TEST(SubstitutionLimits, ExtraThatFallsOutOfRangeEndsTheAttempt) {
  // `extra` is MatchAttempt::extra_, a counter of 16 bits. When the tail of 12000 bytes closes the
  // span, `extra` is 0. Each further byte that matches subtracts 11999. Two subtractions stay
  // within 16 bits, three do not.
  const std::string tail = Times(12000, 't');
  const Rows rows = {{"a*" + tail, "[*]"}};
  ExpectResult(rows, '*', "aX" + tail + "ttZ", "[X]Z", 1);
  const std::string input = "aX" + tail + "tttZ";
  ExpectResult(rows, '*', input, input, 0);
}

TEST(SubstitutionLimits, AMatchOverABlocksBorderIsFound) {
  // Three borders: a full block of the output, the offset at which the window moves on because it
  // shows less than the look-ahead, and the end of the window's first buffer.
  for (const std::size_t border :
       {kOutputBorder, kInputBorder - InputWindow::kLookAhead, kInputBorder}) {
    for (std::size_t before = border - 12; before <= border + 1; ++before) {
      const std::string fill = Times(before, '.');
      ExpectResult({{"abcdef", "x"}, {"<*>", "(*)"}}, '*', fill + "abcdef<abc>" + fill,
                   fill + "x(abc)" + fill, 2);
    }
  }
}

TEST(SubstitutionLimits, AMatchOverTheLastLookAheadBytesOfABlockIsFound) {
  // The longest match ends just in front of, at or just behind the end of the window's first
  // buffer.
  const std::string span = Times(kLongestMatch - 2, 'X');
  for (std::size_t end = kInputBorder - 3; end <= kInputBorder + 3; ++end) {
    const std::string fill = Times(end - kLongestMatch, '.');
    ExpectResult({{"a*c", "[*]"}}, '*', fill + "a" + span + "c.", fill + "[" + span + "].", 1);
  }
}

TEST(SubstitutionLimits, AWritePositionThatMovesBackOverABlocksBorderOverwrites) {
  // "0123bcdefaXYZ" becomes "01>Z<". The text is placed at every offset around the end of an output
  // block.
  for (std::size_t before = kOutputBorder - 6; before <= kOutputBorder + 1; ++before) {
    const std::string fill = Times(before, '.');
    ExpectResult({{"bcdefa*bcdef", "<*>"}}, '*', fill + "0123bcdefaXYZ", fill + "01>Z<", 1);
  }
}

TEST(SubstitutionLimits, AListTooLargeForTheAutomatonFindsItsLongRowsAll) {
  Rows rows;
  for (std::size_t more = 0; more < 40; ++more)
    rows.push_back({Times(30'000 + more, 'a') + "b", "x"});
  // The match begins at the first offset from which the longest row reaches the "b".
  ExpectResult(rows, '*', Times(31'000, 'a') + "b.", Times(31'000 - 30'039, 'a') + "x.", 1);
}

TEST(SubstitutionLimits, AFileOfManyBlocksKeepsItsOrder) {
  std::string input;
  std::string output;
  for (int i = 0; input.size() < kManyBlocks; ++i) {
    input += "name" + std::to_string(i) + ";";
    output += "<" + std::to_string(i) + ">";
  }
  EngineProgram program({{"name*;", "<*>"}}, '*');
  EXPECT_TRUE(program.Process(input) == output);
  EXPECT_GT(program.hits(), 200'000);
}

}  // namespace
}  // namespace morvex::test
