// What a right text with the wildcard writes (the captured bytes without those of the tail), and
// where the write position is afterwards. The expected bytes follow from the steps of the writing:
// N = upper bound of the capture buffer - length of the tail + 1; bytes 0 to N are written; the
// write position moves by N and then by one.
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
  // All bytes of the tail except the last are captured before the tail is recognised.
  ExpectResult({{"a*cdef", "[*]"}}, '*', "aXYcdefZ", "[XY]Z", 1);
}

TEST(SubstitutionRightText, EndsAtTheWildcardWithAnEmptyTail) {
  // The buffer's upper bound is 0 and N = 1, so the writing reads behind the end of the buffer.
  // That error ends the writing.
  ExpectResult({{"a*", "<*>*"}}, '*', "aXbX", "<XbX", 1);
}

TEST(SubstitutionRightText, WritesOneNulWhereNothingWasEverCaptured) {
  // Nothing has been captured, so the buffer holds only its initial byte, 0.
  ExpectResult({{"a", "<*>"}}, '*', "ab", "<\0b"s, 1);
}

TEST(SubstitutionRightText, WritesTheFirstByteOfAnEarlierRowsSpan) {
  // The second row's attempt cuts the buffer down to "P".
  ExpectResult({kCapturingRow, {"a", "<*>"}}, '*', "xPQRzab", "(PQR)<Pb", 2);
}

TEST(SubstitutionRightText, WritesAnEarlierRowsSpanWhenNoAttemptHasCutIt) {
  // The second row matches "abab" without reaching its wildcard, because "abab" ends with the tail.
  // Of the captured P Q R, its right text writes the bytes 0 to N = 2 - 2 + 1.
  ExpectResult({kCapturingRow, {"abab*ab", "[*]"}}, '*', "xPQRzabab", "(PQR)[PQ]", 2);
}

TEST(SubstitutionRightText, AnAttemptOfAPlainRowCutsTheCapturedBytes) {
  // The first byte of "aq" matches, which is enough to cut the captured bytes down to P. Then N = 0
  // - 2 + 1 = -1, so nothing is written.
  ExpectResult({kCapturingRow, {"aq", "-"}, {"abab*ab", "[*]"}}, '*', "xPQRzabab", "(PQR)[]", 2);
  // The first byte of "qa" does not match, so nothing is cut.
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
  // The first row captures b a b a b and does not match. The second row matches at the same offset
  // without capturing, and its right text leaves out the last captured byte.
  ExpectResult({{"a*!", "-"}, {"ababab*ab", "[*]"}}, '*', "ababab", "[baba]", 1);
}

TEST(SubstitutionRightText, ATailInFrontOfTheSpanTakesTheCapturedByteAway) {
  // N = 0 - 2 + 1 = -1: nothing is written, and the write position stays where it was.
  ExpectResult({{"bca*bc", "<*>"}}, '*', "bcaXYZ", "<>Z", 1);
}

TEST(SubstitutionRightText, ALongTailInFrontOfTheSpanMovesTheWritePositionBack) {
  // N = 0 - 5 + 1 = -4, then one forward: the write position goes from 6 to 3. ">" overwrites the
  // "2", "Z" overwrites the "3", and the "<" stays behind them.
  ExpectResult({{"bcdefa*bcdef", "<*>"}}, '*', "0123bcdefaXYZ", "01>Z<", 1);
}

TEST(SubstitutionRightText, SeveralWildcardsMoveTheWritePositionBackBelowTheStart) {
  // The write position goes from 2 by -3 to -1, then to -4. The ">" would be below position 1 and
  // is dropped. The next byte goes to -3, so the digits "1" to "4" are dropped, and "5" overwrites
  // the "<" at position 1.
  ExpectResult({{"bcdefa*bcdef", "<**>"}}, '*', "bcdefaXY123456789", "56789", 1);
  ExpectResult({{"bcdefa*bcdef", "<**>"}}, '*', "bcdefaXY123", "<", 1);
}

TEST(SubstitutionRightText, WhatFollowsCoversWhatTheMoveBackLeftBehind) {
  // "<" is written at position 5 and ">" at 3; then bytes of the file are written at 4 to 6.
  ExpectResult({{"bcdefa*bcdef", "<*>"}}, '*', "0123bcdefaXYZZZ", "01>ZZZ", 1);
}

TEST(SubstitutionRightText, AWildcardThatIsNoneAnyMoreIsOrdinaryText) {
  EngineProgram program({{"a*c", "[*]"}}, {'*', '*', '#'});
  EXPECT_EQ(program.Process("aXc a*c"), "aXc [*]");
  EXPECT_EQ(program.hits(), 1);
}

TEST(SubstitutionRightText, ALaterWildcardWritesTheSingleByteOfTheBuffer) {
  // Flag and tail were made with the wildcard "*": N = 0 - 1 + 1 = 0.
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
  // The rows have no flag and thus no tail. Only the end of the file closes the span, so a row
  // matches only if its left text ends in the wildcard.
  EngineProgram open({{"a#c", "<#>"}}, {'*', '*', '#'});
  EXPECT_EQ(open.Process("aXcd"), "aXcd");
  EngineProgram last({{"a#", "<#>"}, {"12345", ""}}, {'*', '*', '#'});
  EXPECT_EQ(last.Process("abcd"), "<\0"s);
  EXPECT_EQ(last.hits(), 1);
}

TEST(SubstitutionRightText, AFlaggedRowWithoutItsWildcardIsMatchedLiterally) {
  // The run has no wildcard.
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
