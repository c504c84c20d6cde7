// What the wildcard matches. The expected bytes follow from the attempt's steps; comments explain
// those that are not obvious.
//
// In the comments, k is the number of bytes that the attempt looks at, including the NUL that
// stands for the end of the file; all of them except the last one match. The value extra is
// `MatchAttempt::extra_`, the bytes that a match takes beyond the length of the left text. The row
// matches if k > length of the left text + extra. C and T are the number of bytes in the capture
// buffer and the length of the tail; the right text's wildcard stands for the first C - (T - 1)
// captured bytes.
#include <gtest/gtest.h>

#include "tests/core/engine/engine_test.h"

namespace morvex::test {
namespace {

using namespace std::string_literals;

TEST(SubstitutionWildcard, TakesARunOfBytesUpToTheTail) {
  ExpectResult({{"a*c", "[*]"}}, '*', "aXYcZ", "[XY]Z", 1);
}

TEST(SubstitutionWildcard, TakesASingleByte) {
  ExpectResult({{"a*c", "[*]"}}, '*', "aXc", "[X]", 1);
}

TEST(SubstitutionWildcard, AnyCodeCanBeTheWildcard) {
  ExpectResult({{"a?c", "[?]"}}, '?', "aXYcZ", "[XY]Z", 1);
  ExpectResult({{"a\xFF"
                 "c",
                 "[\xFF]"}},
               '\xFF',
               "aX\xFF"
               "cZ",
               "[X\xFF]Z", 1);
}

TEST(SubstitutionWildcard, TakesTheWildcardCharacterToo) {
  ExpectResult({{"a*c", "[*]"}}, '*', "a**cZ", "[**]Z", 1);
}

TEST(SubstitutionWildcard, RunsOverLineBreaks) {
  ExpectResult({{"<*>", "(*)"}}, '*', "<a\r\nb>", "(a\r\nb)", 1);
}

TEST(SubstitutionWildcard, EndsAtTheFirstOffsetWhereTheTailStands) {
  ExpectResult({{"a*cd", "[*]"}}, '*', "aXccdYcdZ", "[Xc]YcdZ", 1);
}

TEST(SubstitutionWildcard, SeveralMatchesInOneFile) {
  ExpectResult({{"<*>", "*;"}}, '*', "<a>-<bc>-<d", "a;-bc;-<d", 2);
}

TEST(SubstitutionWildcard, WithoutItsTailNothingMatches) {
  ExpectResult({{"a*c", "[*]"}}, '*', "aXYZ", "aXYZ", 0);
}

TEST(SubstitutionWildcard, ANulClosesTheSpanWithoutAMatch) {
  ExpectResult({{"a*c", "[*]"}}, '*', "aX\0caYc"s, "aX\0c[Y]"s, 1);
}

TEST(SubstitutionWildcard, ARowWithoutMatchLeavesTheNextRowsAsTheyAre) {
  // At every "a" an attempt of the first row runs to the end of the file and fails there.
  ExpectResult({{"a*!", "1"}, {"aX", "2"}, {"X", "3"}}, '*', "aXXaX", "232", 3);
}

TEST(SubstitutionWildcard, InFirstPositionStandsForItself) {
  // In this position "*" matches only itself, but still opens a span and is the span's first byte.
  ExpectResult({{"*c", "[*]"}}, '*', "aXc*Yc", "aXc[*Y]", 1);
}

TEST(SubstitutionWildcard, InFirstPositionAloneTakesOneByte) {
  // The "*" matches, then the table ends: k = 2 > 1. The tail is empty, so the right text ends at
  // its "*".
  ExpectResult({{"*", "<*>"}}, '*', "a*b", "a<*b", 1);
}

TEST(SubstitutionWildcard, TakesAtLeastOneByteEvenOfTheTail) {
  // The wildcard captures the "c", which also counts as the tail. The next byte, whatever it is,
  // closes the span: it belongs to the match but is not captured. Here this is the "X".
  ExpectResult({{"a*c", "[*]"}}, '*', "acXY", "[c]Y", 1);
  // At the end of the file there is no next byte to close the span: k = 3 is not above 3.
  ExpectResult({{"a*c", "[*]"}}, '*', "ac", "ac", 0);
}

TEST(SubstitutionWildcard, LastInTheWidestRowTakesOneByte) {
  // "a" and one more byte match, then the table ends: k = 3 > 2.
  ExpectResult({{"a*", "<*>"}}, '*', "abab", "<b<b", 2);
  ExpectResult({{"a*", "<*>"}}, '*', "ba", "ba", 0);
}

TEST(SubstitutionWildcard, LastInANarrowerRowTakesAllToTheEnd) {
  // The other row is longer, so the table has cells behind this row's text. There the span stays
  // open until the end of the file, which the attempt reads as a NUL.
  ExpectResult({{"a*", "<*>"}, {"12345", "y"}}, '*', "cabab", "c<bab", 1);
}

TEST(SubstitutionWildcard, LastInANarrowerRowTakesAllToTheNextNul) {
  ExpectResult({{"a*", "<*>"}, {"12345", "y"}}, '*', "abc\0ad\0a"s, "<bc\0<d\0a"s, 2);
}

TEST(SubstitutionWildcard, OfTwoOnlyTheFirstIsASpansStart) {
  // The tail is "b*c" with a "*" that stands for itself.
  ExpectResult({{"a*b*c", "[*]"}}, '*', "aXbYc", "aXbYc", 0);
  // The "c" completes the tail and closes the span: extra = 2 - 3 + 1 = 0. The next byte, "Z",
  // meets the left text's second "*". It is captured, too, and lowers extra to -2: k = 7 > 3. The
  // buffer holds X b * Z: C = 4 and T = 3, so two bytes are written.
  ExpectResult({{"a*b*c", "[*]"}}, '*', "aXb*cZ", "[Xb]", 1);
}

TEST(SubstitutionWildcard, OfTwoInARowTheSecondIsTheTail) {
  // The "*" of the file is the tail and closes the span. It is captured, too, because it also meets
  // the second "*" of the left text.
  ExpectResult({{"a**", "[*]"}}, '*', "aXY*ZW", "[XY*]ZW", 1);
  ExpectResult({{"a**", "[*]"}}, '*', "aXYZW", "aXYZW", 0);
  // The second "*" of the left text opens a span again. The longer row makes the table wider, so
  // this span takes one more byte, "Z": k = 6 > 3 + 1.
  ExpectResult({{"a**", "[*]"}, {"12345", ""}}, '*', "aXY*ZW", "[XY*]W", 1);
}

TEST(SubstitutionWildcard, ATailThatStandsInFrontOfTheSpanClosesItAtItsFirstByte) {
  // The tail "b" also stands in front of the wildcard, in "ab". The wildcard takes the "X", and the
  // "Y" counts as the tail.
  ExpectResult({{"ab*b", "[*]"}}, '*', "abXYZ", "[X]Z", 1);
}

TEST(SubstitutionWildcard, BytesThatRepeatTheTailAreSwallowed) {
  // After "cd" the attempt is at the left text's "d". A second "d" of the file matches it: extra
  // falls to -1, and k = 6 > 4 - 1.
  ExpectResult({{"a*cd", "[*]"}}, '*', "aXcdZ", "[X]Z", 1);
  ExpectResult({{"a*cd", "[*]"}}, '*', "aXcddZ", "[X]Z", 1);
  ExpectResult({{"a*cd", "[*]"}}, '*', "aXcdddZ", "[X]dZ", 1);
  // After "bcde" the attempt is at the left text's "c".
  ExpectResult({{"a*bcde", "[*]"}}, '*', "aXbcdecZ", "[X]Z", 1);
  ExpectResult({{"a*bcde", "[*]"}}, '*', "aXbcdecdeZ", "[X]Z", 1);
  ExpectResult({{"a*bcde", "[*]"}}, '*', "aXbcdecdbZ", "[X]bZ", 1);
}

TEST(SubstitutionWildcard, ATailSeenEarlyLetsPartOfTheLeftTextMatch) {
  // "ab" is the tail and also stands at the front: extra is -1, -2, -3 after the second, third and
  // fourth byte, so k = 5 > 7 - 3. The wildcard is never reached and nothing is captured: C = 1 and
  // T = 2, so no byte is written.
  ExpectResult({{"abab*ab", "[*]"}}, '*', "abab", "[]", 1);
  // With three matching bytes, k = 4 is not above 7 - 2.
  ExpectResult({{"abab*ab", "[*]"}}, '*', "abaQ", "abaQ", 0);
}

}  // namespace
}  // namespace morvex::test
