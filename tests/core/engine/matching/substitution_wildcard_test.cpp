// What the wildcard matches. The expected bytes are worked out from the attempt's steps; where that
// takes a thought it stands beside them. Notation: k counts bytes looked up, so k - 1 fit; a match
// needs k > left text's length + extra.
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
  // The first row runs to the end of the file at every "a" and fails there.
  ExpectResult({{"a*!", "1"}, {"aX", "2"}, {"X", "3"}}, '*', "aXXaX", "232", 3);
}

TEST(SubstitutionWildcard, InFirstPositionStandsForItself) {
  // "*" fits only itself there, but opens a span all the same, and is its first byte.
  ExpectResult({{"*c", "[*]"}}, '*', "aXc*Yc", "aXc[*Y]", 1);
}

TEST(SubstitutionWildcard, InFirstPositionAloneTakesOneByte) {
  // "*" fits, k = 2; behind it the table ends. The tail is empty, so the writing ends at the "*".
  ExpectResult({{"*", "<*>"}}, '*', "a*b", "a<*b", 1);
}

TEST(SubstitutionWildcard, TakesAtLeastOneByteEvenOfTheTail) {
  // The "c" is the wildcard's first byte. It closes the span, and the span is opened again behind
  // it: "X" then stands in the tail's place, whatever it is, and the span is closed for good.
  ExpectResult({{"a*c", "[*]"}}, '*', "acXY", "[c]Y", 1);
  // At the end of the file there is nothing to stand in the tail's place: k = 3 is not above 3.
  ExpectResult({{"a*c", "[*]"}}, '*', "ac", "ac", 0);
}

TEST(SubstitutionWildcard, LastInTheWidestRowTakesOneByte) {
  // "a" and one byte fit, then the table ends: k = 3 > 2.
  ExpectResult({{"a*", "<*>"}}, '*', "abab", "<b<b", 2);
  ExpectResult({{"a*", "<*>"}}, '*', "ba", "ba", 0);
}

TEST(SubstitutionWildcard, LastInANarrowerRowTakesAllToTheEnd) {
  // The table goes on, the span stays open until the end of the file reads as NUL.
  ExpectResult({{"a*", "<*>"}, {"12345", "y"}}, '*', "cabab", "c<bab", 1);
}

TEST(SubstitutionWildcard, LastInANarrowerRowTakesAllToTheNextNul) {
  ExpectResult({{"a*", "<*>"}, {"12345", "y"}}, '*', "abc\0ad\0a"s, "<bc\0<d\0a"s, 2);
}

TEST(SubstitutionWildcard, OfTwoOnlyTheFirstIsASpansStart) {
  // The tail is "b*c" with a "*" that stands for itself.
  ExpectResult({{"a*b*c", "[*]"}}, '*', "aXbYc", "aXbYc", 0);
  // Closed at the "c": extra = 2 - 3 + 1 = 0, pattern at the second "*". That takes "Z" into the
  // captured bytes (X b * Z) and shortens extra to -2: k = 7 > 5 - 2. N = 3 - 3 + 1: two bytes are
  // written, "X" and "b".
  ExpectResult({{"a*b*c", "[*]"}}, '*', "aXb*cZ", "[Xb]", 1);
}

TEST(SubstitutionWildcard, OfTwoInARowTheSecondIsTheTail) {
  // Up to the "*" in the file, which is captured too because the pattern stands on a "*" there.
  ExpectResult({{"a**", "[*]"}}, '*', "aXY*ZW", "[XY*]ZW", 1);
  ExpectResult({{"a**", "[*]"}}, '*', "aXYZW", "aXYZW", 0);
  // In a wider table the span that this "*" opens takes one byte more: k = 6 > 3 + 1.
  ExpectResult({{"a**", "[*]"}, {"12345", ""}}, '*', "aXY*ZW", "[XY*]W", 1);
}

TEST(SubstitutionWildcard, ATailThatStandsInFrontOfTheSpanClosesItAtItsFirstByte) {
  // "ab" holds the tail "b". The wildcard takes X, and Y stands in the tail's place.
  ExpectResult({{"ab*b", "[*]"}}, '*', "abXYZ", "[X]Z", 1);
}

TEST(SubstitutionWildcard, BytesThatRepeatTheTailAreSwallowed) {
  // After "cd" the pattern stands on "d", which a second "d" fits: extra falls to -1, k = 6 > 3.
  ExpectResult({{"a*cd", "[*]"}}, '*', "aXcdZ", "[X]Z", 1);
  ExpectResult({{"a*cd", "[*]"}}, '*', "aXcddZ", "[X]Z", 1);
  ExpectResult({{"a*cd", "[*]"}}, '*', "aXcdddZ", "[X]dZ", 1);
  // After "bcde" the pattern stands on "c".
  ExpectResult({{"a*bcde", "[*]"}}, '*', "aXbcdecZ", "[X]Z", 1);
  ExpectResult({{"a*bcde", "[*]"}}, '*', "aXbcdecdeZ", "[X]Z", 1);
  ExpectResult({{"a*bcde", "[*]"}}, '*', "aXbcdecdbZ", "[X]bZ", 1);
}

TEST(SubstitutionWildcard, ATailSeenEarlyLetsPartOfTheLeftTextMatch) {
  // "ab" is the tail and stands at the front: extra is -1, -2, -3 after the second, third and
  // fourth byte, and 5 > 7 - 3. The wildcard is never reached, so nothing is captured: of the one
  // byte that the buffer starts with N = 0 - 2 + 1 leaves none.
  ExpectResult({{"abab*ab", "[*]"}}, '*', "abab", "[]", 1);
  // A byte less is not enough: 4 > 7 - 2 does not hold.
  ExpectResult({{"abab*ab", "[*]"}}, '*', "abaQ", "abaQ", 0);
}

}  // namespace
}  // namespace morvex::test
