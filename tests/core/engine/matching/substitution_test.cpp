// What a list without wildcard does to a file's bytes.
#include "core/engine/matching/substitution.h"

#include <gtest/gtest.h>

#include "tests/core/engine/engine_test.h"

namespace morvex::test {
namespace {

using namespace std::string_literals;

TEST(Substitution, AnEmptyListCopiesTheFile) {
  ExpectResult({}, 0, "any\r\nbytes", "any\r\nbytes", 0);
}

TEST(Substitution, EveryOccurrenceIsReplaced) { ExpectResult({{"ab", "X"}}, 0, "abcab", "XcX", 2); }

TEST(Substitution, AWholeFileCanBeOneMatch) { ExpectResult({{"abc", "x"}}, 0, "abc", "x", 1); }

TEST(Substitution, LetterCaseCounts) {
  ExpectResult({{"ab", "X"}}, 0, "Ab aB AB ab", "Ab aB AB X", 1);
}

TEST(Substitution, AnEmptyFileGivesAnEmptyResultWithoutHits) {
  ExpectResult({{"a", "b"}, {"b*", "c"}}, '*', "", "", 0);
}

TEST(Substitution, TheEarlierOfTwoMatchingRowsIsApplied) {
  ExpectResult({{"ab", "1"}, {"abc", "2"}}, 0, "abc", "1c", 1);
  ExpectResult({{"abc", "2"}, {"ab", "1"}}, 0, "abc abd", "2 1d", 2);
  ExpectResult({{"a", "first"}, {"a", "second"}}, 0, "a", "first", 1);
}

TEST(Substitution, ALaterRowIsTriedWhereTheEarlierOnesFail) {
  ExpectResult({{"aaa", "1"}, {"aab", "2"}, {"b", "3"}}, 0, "aaaaabbaa",
               "1"
               "23"
               "aa",
               3);
}

TEST(Substitution, MatchesNeverOverlap) { ExpectResult({{"aa", "b"}}, 0, "aaaaa", "bba", 2); }

TEST(Substitution, ReplacedTextIsNeverScannedAgain) {
  ExpectResult({{"a", "aa"}}, 0, "aa", "aaaa", 2);
  ExpectResult({{"ab", "a"}}, 0, "abb", "ab", 1);
  ExpectResult({{"a", "b"}, {"b", "a"}}, 0, "ab", "ba", 2);
}

TEST(Substitution, TheScanGoesOnBehindTheMatchedBytes) {
  // "abab" stands at the offsets 0 and 2; the second occurrence starts inside the first.
  ExpectResult({{"abab", "x"}}, 0, "ababab", "xab", 1);
}

TEST(Substitution, AnEmptyRightTextDeletes) {
  ExpectResult({{"b", ""}}, 0, "abcb", "ac", 2);
  ExpectResult({{"a", ""}}, 0, "aaa", "", 3);
}

TEST(Substitution, ALongerRightTextPushesTheRestBack) {
  ExpectResult({{"b", "12345"}}, 0, "abcba", "a12345c12345a", 2);
}

TEST(Substitution, ARowWithAnEmptyLeftTextIsNeverTried) {
  ExpectResult({{"", "x"}, {"a", "b"}}, 0, "aca", "bcb", 2);
  ExpectResult({{"", ""}}, 0, "aca", "aca", 0);
  ExpectResult({{"", "x"}}, '*', "*a", "*a", 0);
}

TEST(Substitution, ALineBreakIsTwoBytesLikeAnyOther) {
  ExpectResult({{"[CRLF]", "|"}, {"x", "[CRLF]"}}, 0, "a\r\nbx\n", "a|b\r\n\n", 2);
}

TEST(Substitution, EveryByteValueCanBeFoundAndWritten) {
  for (int code = 1; code < 256; ++code) {
    const std::string byte(1, static_cast<char>(code));
    const std::string other(1, static_cast<char>(code == 1 ? 2 : code ^ 1));
    EngineProgram program(Rows{{byte + byte, other + "\xFF"}});
    EXPECT_EQ(program.Process(byte + byte + other), other + "\xFF" + other) << code;
    EXPECT_EQ(program.hits(), 1) << code;
  }
}

TEST(Substitution, ANulEndsAnAttempt) {
  ExpectResult({{"ab", "X"}}, 0, "a\0b"s, "a\0b"s, 0);
  ExpectResult({{"ab", "X"}}, 0, "ab\0ab"s, "X\0X"s, 2);
}

TEST(Substitution, ANulIsMatchedAgainstTheLeftTextBeforeItEndsTheAttempt) {
  // The attempt ends at a NUL, whether the NUL matches or not. Only the bytes before the NUL count,
  // so a left text that holds a NUL never matches.
  ExpectResult({{"a\0"s, "X"}}, 0, "a\0"s, "a\0"s, 0);
  ExpectResult({{"a\0b"s, "X"}}, 0, "a\0b"s, "a\0b"s, 0);
  ExpectResult({{"\0"s, "X"}}, 0, "\0\0"s, "\0\0"s, 0);
  // The longer row makes the table wider, so NULs follow "a" in the table. The NUL of the file
  // matches the first of them, but it ends the attempt and is not part of the match.
  ExpectResult({{"a", "X"}, {"long enough", "Y"}}, 0, "a\0a"s, "X\0X"s, 2);
}

TEST(Substitution, TheEndOfTheFileReadsAsNul) {
  ExpectResult({{"ab", "X"}}, 0, "cab", "cX", 1);
  ExpectResult({{"abc", "X"}}, 0, "cab", "cab", 0);
  ExpectResult({{"ab\0"s, "X"}}, 0, "ab", "ab", 0);
}

TEST(Substitution, NulsInARightTextAreNotWritten) {
  ExpectResult({{"a", "x\0y\0"s}}, 0, "aba", "xybxy", 2);
}

TEST(Substitution, WithoutWildcardNoCharacterIsOne) {
  ExpectResult({{"a*c", "[*]"}}, 0, "aXc a*c", "aXc [*]", 1);
  // Behind a left text the table holds 0. That 0 is not a wildcard, although the run's wildcard
  // code is also 0, which means no wildcard.
  ExpectResult({{"ab", "X"}, {"abcdef", "Y"}}, 0, "abz", "Xz", 1);
}

TEST(Substitution, TheWidestRowMatchesLikeAnyOther) {
  // Behind the widest row the table ends. The end of the table ends the attempt and does not affect
  // the next attempt.
  ExpectResult({{"ab", "1"}}, 0, "ababb", "11b", 2);
  ExpectResult({{"abc", "1"}, {"ab", "2"}, {"b", "3"}}, 0, "abcabab", "122", 3);
}

TEST(Substitution, AShorterRightTextThanTheWidestIsWrittenToItsEnd) {
  ExpectResult({{"a", "x"}, {"b", "12345678"}}, 0, "aba", "x12345678x", 3);
}

TEST(Substitution, CountsStartAnewForEveryFileOnlyWhenTheCallerSaysSo) {
  EngineProgram program(Rows{{"a", "b"}});
  EXPECT_EQ(program.Process("aa"), "bb");
  EXPECT_EQ(program.Process("aaa"), "bbb");
  EXPECT_EQ(program.hits(), 3);
  EXPECT_EQ(program.program.run.HitsTotal, 5);
}

}  // namespace
}  // namespace morvex::test
