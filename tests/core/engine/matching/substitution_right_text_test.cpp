// What a right text with the wildcard writes, and where the write position is afterwards.
//
// In the comments, C is the number of bytes in the capture buffer (at least 1) and T is the length
// of the row's tail. The last T - 1 bytes of the buffer count as bytes of the tail, so each
// wildcard of the right text stands for the first C - (T - 1) bytes: they are written, and the
// write position moves on by as many. A negative number moves the write position back. If the
// number is above C, because the tail is empty, the C bytes are written and the right text ends.
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
  // C = 1 and T = 0: two bytes are wanted, but the buffer has only one, so the right text ends.
  ExpectResult({{"a*", "<*>*"}}, '*', "aXbX", "<XbX", 1);
}

TEST(SubstitutionRightText, WritesOneNulWhereNothingWasEverCaptured) {
  // Nothing has been captured, so the buffer holds only its initial byte, a NUL.
  ExpectResult({{"a", "<*>"}}, '*', "ab", "<\0b"s, 1);
}

TEST(SubstitutionRightText, WritesTheFirstByteOfAnEarlierRowsSpan) {
  // The second row has no wildcard, so its attempt cuts the buffer down to its first byte, "P".
  ExpectResult({kCapturingRow, {"a", "<*>"}}, '*', "xPQRzab", "(PQR)<Pb", 2);
}

TEST(SubstitutionRightText, WritesAnEarlierRowsSpanWhenNoAttemptHasCutIt) {
  // The second row matches "abab" without reaching its wildcard, because "abab" ends with the tail.
  // The buffer still holds P Q R: C = 3 and T = 2, so two bytes are written.
  ExpectResult({kCapturingRow, {"abab*ab", "[*]"}}, '*', "xPQRzabab", "(PQR)[PQ]", 2);
}

TEST(SubstitutionRightText, AnAttemptOfAPlainRowCutsTheCapturedBytes) {
  // The first byte of "aq" matches, which is enough to cut the captured bytes down to P. Then C = 1
  // and T = 2, so no byte is written.
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
  // without capturing: C = 5 and T = 2, so four bytes are written.
  ExpectResult({{"a*!", "-"}, {"ababab*ab", "[*]"}}, '*', "ababab", "[baba]", 1);
}

TEST(SubstitutionRightText, ATailInFrontOfTheSpanTakesTheCapturedByteAway) {
  // C = 1 and T = 2: nothing is written, and the write position stays where it was.
  ExpectResult({{"bca*bc", "<*>"}}, '*', "bcaXYZ", "<>Z", 1);
}

TEST(SubstitutionRightText, ALongTailInFrontOfTheSpanMovesTheWritePositionBack) {
  // C = 1 and T = 5: the wildcard moves the write position back by 3, from 6 to 3 (positions count
  // from 1). The ">" overwrites the "2", the "Z" overwrites the "3", and the "<" stays behind them.
  ExpectResult({{"bcdefa*bcdef", "<*>"}}, '*', "0123bcdefaXYZ", "01>Z<", 1);
}

TEST(SubstitutionRightText, SeveralWildcardsMoveTheWritePositionBackBelowTheStart) {
  // C = 1 and T = 5: each wildcard moves the write position back by 3, from 2 to -1 and then to -4.
  // What would be written below position 1 is dropped: the ">" and the digits "1" to "4". The "5"
  // overwrites the "<" at position 1.
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
  // The flag and the tail "c" were made with the wildcard "*". C = 1 and T = 1: the buffer's
  // initial byte, a NUL, is written.
  EngineProgram program({{"a*c", "[#]"}}, {'*', '*', '#'});
  EXPECT_EQ(program.Process("a*cb"), "[\0]b"s);
}

TEST(SubstitutionRightText, ATailMadeWithAnotherWildcardIsTheWholeLeftText) {
  // The tail was made with the wildcard "#". The left text has no "#", so all of it is the tail.
  // C = 1 and T = 3: the wildcard moves the write position back by 1, and the "]" overwrites the
  // "[".
  EngineProgram program({{"a*c", "[#]"}}, {'*', '#', '#'});
  EXPECT_EQ(program.Process("a*cZ"), "]Z");
  EXPECT_EQ(program.hits(), 1);
}

TEST(SubstitutionRightText, AnUnflaggedRowWithALaterWildcardNeverCapturesItsSpan) {
  // The flags and tails were made with the wildcard "*", so these rows have no flag and no tail.
  // Without a tail, the span stays open up to the end of the file. The first row does not match,
  // because its "c" is still unmatched there. The row that ends in the wildcard matches.
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
