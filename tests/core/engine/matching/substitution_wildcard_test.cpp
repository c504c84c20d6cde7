// What the wildcard matches. The expected bytes follow from the attempt's steps; comments explain
// those that are not obvious. Notation: k is the number of bytes that the attempt looks at; all
// these bytes except the last one match. The value extra is `MatchAttempt::extra_`. The row matches
// if k > length of the left text + extra.
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
  // "*" matches, k = 2; behind the "*" the table ends. The tail is empty, so the writing ends at
  // the right text's "*".
  ExpectResult({{"*", "<*>"}}, '*', "a*b", "a<*b", 1);
}

TEST(SubstitutionWildcard, TakesAtLeastOneByteEvenOfTheTail) {
  // The wildcard takes in the "c", although the "c" is already recognised as the tail. The span
  // opens behind the "c", and the next byte closes it: that byte counts as the tail, whatever its
  // value ("X").
  ExpectResult({{"a*c", "[*]"}}, '*', "acXY", "[c]Y", 1);
  // At the end of the file no byte can count as the tail: k = 3 is not above 3.
  ExpectResult({{"a*c", "[*]"}}, '*', "ac", "ac", 0);
}

TEST(SubstitutionWildcard, LastInTheWidestRowTakesOneByte) {
  // "a" and one more byte match, then the table ends: k = 3 > 2.
  ExpectResult({{"a*", "<*>"}}, '*', "abab", "<b<b", 2);
  ExpectResult({{"a*", "<*>"}}, '*', "ba", "ba", 0);
}

TEST(SubstitutionWildcard, LastInANarrowerRowTakesAllToTheEnd) {
  // The table goes on behind the row, so the span stays open until the end of the file, which reads
  // as a NUL.
  ExpectResult({{"a*", "<*>"}, {"12345", "y"}}, '*', "cabab", "c<bab", 1);
}

TEST(SubstitutionWildcard, LastInANarrowerRowTakesAllToTheNextNul) {
  ExpectResult({{"a*", "<*>"}, {"12345", "y"}}, '*', "abc\0ad\0a"s, "<bc\0<d\0a"s, 2);
}

TEST(SubstitutionWildcard, OfTwoOnlyTheFirstIsASpansStart) {
  // The tail is "b*c" with a "*" that stands for itself.
  ExpectResult({{"a*b*c", "[*]"}}, '*', "aXbYc", "aXbYc", 0);
  // The span is closed at the "c": extra = 2 - 3 + 1 = 0, and the pattern is at the second "*".
  // That "*" takes "Z" into the captured bytes (X b * Z) and lowers extra to -2: k = 7 > 5 - 2. N =
  // 3 - 3 + 1: two bytes are written, "X" and "b".
  ExpectResult({{"a*b*c", "[*]"}}, '*', "aXb*cZ", "[Xb]", 1);
}

TEST(SubstitutionWildcard, OfTwoInARowTheSecondIsTheTail) {
  // The "*" in the file ends the span. This "*" is captured, too, because the pattern is also at a
  // "*" then.
  ExpectResult({{"a**", "[*]"}}, '*', "aXY*ZW", "[XY*]ZW", 1);
  ExpectResult({{"a**", "[*]"}}, '*', "aXYZW", "aXYZW", 0);
  // In a wider table, the span that the last "*" of the row opens takes one byte more: k = 6 > 3 +
  // 1.
  ExpectResult({{"a**", "[*]"}, {"12345", ""}}, '*', "aXY*ZW", "[XY*]W", 1);
}

TEST(SubstitutionWildcard, ATailThatStandsInFrontOfTheSpanClosesItAtItsFirstByte) {
  // "ab" contains the tail "b". The wildcard takes X, and Y counts as the tail.
  ExpectResult({{"ab*b", "[*]"}}, '*', "abXYZ", "[X]Z", 1);
}

TEST(SubstitutionWildcard, BytesThatRepeatTheTailAreSwallowed) {
  // After "cd" the pattern is at "d", which a second "d" matches: extra falls to -1, k = 6 > 3.
  ExpectResult({{"a*cd", "[*]"}}, '*', "aXcdZ", "[X]Z", 1);
  ExpectResult({{"a*cd", "[*]"}}, '*', "aXcddZ", "[X]Z", 1);
  ExpectResult({{"a*cd", "[*]"}}, '*', "aXcdddZ", "[X]dZ", 1);
  // After "bcde" the pattern is at "c".
  ExpectResult({{"a*bcde", "[*]"}}, '*', "aXbcdecZ", "[X]Z", 1);
  ExpectResult({{"a*bcde", "[*]"}}, '*', "aXbcdecdeZ", "[X]Z", 1);
  ExpectResult({{"a*bcde", "[*]"}}, '*', "aXbcdecdbZ", "[X]bZ", 1);
}

TEST(SubstitutionWildcard, ATailSeenEarlyLetsPartOfTheLeftTextMatch) {
  // "ab" is the tail and also stands at the front: extra is -1, -2, -3 after the second, third and
  // fourth byte, and 5 > 7 - 3. The wildcard is never reached, so nothing is captured: the buffer
  // holds only its initial byte, and N = 0 - 2 + 1 = -1 writes nothing.
  ExpectResult({{"abab*ab", "[*]"}}, '*', "abab", "[]", 1);
  // One byte less is not enough: 4 > 7 - 2 does not hold.
  ExpectResult({{"abab*ab", "[*]"}}, '*', "abaQ", "abaQ", 0);
}

}  // namespace
}  // namespace morvex::test
