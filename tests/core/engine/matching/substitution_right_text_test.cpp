// What a right text with the wildcard writes: the captured bytes, less those of the tail, and where
// that leaves the write position. The expected bytes are worked out from the steps of the writing:
// N = the buffer's upper bound - the tail's length + 1; bytes 0 to N are written, the position
// moves by N and then by one.
#include <gtest/gtest.h>

#include "tests/core/engine/engine_test.h"

namespace morvex::test {
namespace {

using namespace std::string_literals;

// A row that captures P, Q, R from "xPQRz".
const Rows::value_type kCapturingRow = {"x*z", "(*)"};

TEST(SubstitutionRightText, WritesTheSpanAsOftenAsItHasTheWildcard) {
  ExpectResult({{"a*c", "*-*"}}, '*', "aXYcZ", "XY-XYZ", 1);
  ExpectResult({{"a*c", "***"}}, '*', "aXYcZ", "XYXYXYZ", 1);
}

TEST(SubstitutionRightText, WithoutWildcardDropsTheSpan) {
  ExpectResult({{"a*c", "-"}}, '*', "aXYcZ", "-Z", 1);
  ExpectResult({{"a*c", ""}}, '*', "aXYcZ", "Z", 1);
}

TEST(SubstitutionRightText, LeavesOutTheTailsBytes) {
  // Of the tail all bytes but the last are captured before it is recognised.
  ExpectResult({{"a*cdef", "[*]"}}, '*', "aXYcdefZ", "[XY]Z", 1);
}

TEST(SubstitutionRightText, EndsAtTheWildcardWithAnEmptyTail) {
  // Bound 0, N = 1: the copy runs out of the buffer, and that error ends the writing.
  ExpectResult({{"a*", "<*>*"}}, '*', "aXbX", "<XbX", 1);
}

TEST(SubstitutionRightText, WritesOneNulWhereNothingWasEverCaptured) {
  // The row has no wildcard on the left: the buffer is its single first element, 0 at the start.
  ExpectResult({{"a", "<*>"}}, '*', "ab", "<\0b"s, 1);
}

TEST(SubstitutionRightText, WritesTheFirstByteOfAnEarlierRowsSpan) {
  // The second row's attempt cuts the buffer down to "P".
  ExpectResult({kCapturingRow, {"a", "<*>"}}, '*', "xPQRzab", "(PQR)<Pb", 2);
}

TEST(SubstitutionRightText, WritesAnEarlierRowsSpanWhenNoAttemptHasCutIt) {
  // The second row matches on its tail alone, without reaching its wildcard: of P Q R the bytes 0
  // to 2 - 2 + 1 are left.
  ExpectResult({kCapturingRow, {"abab*ab", "[*]"}}, '*', "xPQRzabab", "(PQR)[PQ]", 2);
}

TEST(SubstitutionRightText, AnAttemptOfAPlainRowCutsTheCapturedBytes) {
  // "aq" fits with its first byte, which is enough: of P alone N = 0 - 2 + 1 leaves nothing.
  ExpectResult({kCapturingRow, {"aq", "-"}, {"abab*ab", "[*]"}}, '*', "xPQRzabab", "(PQR)[]", 2);
  // With its first byte not fitting, nothing is cut.
  ExpectResult({kCapturingRow, {"qa", "-"}, {"abab*ab", "[*]"}}, '*', "xPQRzabab", "(PQR)[PQ]", 2);
}

TEST(SubstitutionRightText, CapturedBytesLiveOnFromFileToFile) {
  EngineProgram program({kCapturingRow, {"a", "<*>"}}, '*');
  EXPECT_EQ(program.Process("a"), "<\0"s);
  EXPECT_EQ(program.Process("xPQRz"), "(PQR)");
  EXPECT_EQ(program.program.capture.CaptureBuffer, (std::vector<std::uint8_t>{'P', 'Q', 'R'}));
  EXPECT_EQ(program.Process("a"), "<P");
  EXPECT_EQ(program.program.capture.CaptureBuffer, (std::vector<std::uint8_t>{'P'}));
}

TEST(SubstitutionRightText, AFailedAttemptLeavesItsCapturedBytes) {
  // The first row captures b a b a b in vain; the second, at the same offset, matches without
  // catching and leaves the last one out.
  ExpectResult({{"a*!", "-"}, {"ababab*ab", "[*]"}}, '*', "ababab", "[baba]", 1);
}

TEST(SubstitutionRightText, ATailInFrontOfTheSpanTakesTheCapturedByteAway) {
  // N = 0 - 2 + 1 = -1: nothing is written, and the position comes back to where it stood.
  ExpectResult({{"bca*bc", "<*>"}}, '*', "bcaXYZ", "<>Z", 1);
}

TEST(SubstitutionRightText, ALongTailInFrontOfTheSpanMovesTheWritePositionBack) {
  // N = 0 - 5 + 1 = -4, then one forward: from 6 to 3. ">" falls on the "2", "Z" on the "3", and
  // "<" stays behind them.
  ExpectResult({{"bcdefa*bcdef", "<*>"}}, '*', "0123bcdefaXYZ", "01>Z<", 1);
}

TEST(SubstitutionRightText, SeveralWildcardsMoveTheWritePositionBackBelowTheStart) {
  // From 2 by -3 to -1, to -4: ">" stands below 1 and is dropped. The next byte goes to -3, so
  // 1 to 4 are dropped and "5" falls on the "<" at 1.
  ExpectResult({{"bcdefa*bcdef", "<**>"}}, '*', "bcdefaXY123456789", "56789", 1);
  ExpectResult({{"bcdefa*bcdef", "<**>"}}, '*', "bcdefaXY123", "<", 1);
}

TEST(SubstitutionRightText, WhatFollowsCoversWhatTheMoveBackLeftBehind) {
  // "<" at 5, ">" at 3; then 4 to 6 come from the file.
  ExpectResult({{"bcdefa*bcdef", "<*>"}}, '*', "0123bcdefaXYZZZ", "01>ZZZ", 1);
}

TEST(SubstitutionRightText, AWildcardThatIsNoneAnyMoreIsOrdinaryText) {
  EngineProgram program({{"a*c", "[*]"}}, {'*', '*', '#'});
  EXPECT_EQ(program.Process("aXc a*c"), "aXc [*]");
  EXPECT_EQ(program.hits(), 1);
}

TEST(SubstitutionRightText, ALaterWildcardWritesTheSingleByteOfTheBuffer) {
  // Flag and tail are those of "*": N = 0 - 1 + 1 = 0.
  EngineProgram program({{"a*c", "[#]"}}, {'*', '*', '#'});
  EXPECT_EQ(program.Process("a*cb"), "[\0]b"s);
}

TEST(SubstitutionRightText, ATailMadeWithAnotherWildcardIsTheWholeLeftText) {
  // N = 0 - 3 + 1 = -2, then one forward: "]" falls on "[".
  EngineProgram program({{"a*c", "[#]"}}, {'*', '#', '#'});
  EXPECT_EQ(program.Process("a*cZ"), "]Z");
  EXPECT_EQ(program.hits(), 1);
}

TEST(SubstitutionRightText, AnUnflaggedRowWithALaterWildcardNeverCapturesItsSpan) {
  // Without a tail the span is never closed, so only a left text that ends in the wildcard matches.
  EngineProgram open({{"a#c", "<#>"}}, {'*', '*', '#'});
  EXPECT_EQ(open.Process("aXcd"), "aXcd");
  EngineProgram last({{"a#", "<#>"}, {"12345", ""}}, {'*', '*', '#'});
  EXPECT_EQ(last.Process("abcd"), "<\0"s);
  EXPECT_EQ(last.hits(), 1);
}

TEST(SubstitutionRightText, AFlaggedRowWithoutItsWildcardIsMatchedLiterally) {
  // No wildcard at all any more.
  EngineProgram program({{"a*c", "[*]"}}, {'*', '*', 0});
  EXPECT_EQ(program.Process("aXc a*c"), "aXc [*]");
}

TEST(SubstitutionRightText, OverTheCounterOfAnAttemptIsWrittenWhole) {
  const std::string right = std::string(40000, 'r') + "*" + std::string(40000, 's');
  const std::string written = std::string(40000, 'r') + "XY" + std::string(40000, 's');
  ExpectResult({{"a*c", right}}, '*', "1aXYc2", "1" + written + "2", 1);
}

}  // namespace
}  // namespace morvex::test
