// Upper and lower case in the alphabets.
#include "core/leftovers/letter_case.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace morvex::test {
namespace {

using Cases = std::vector<std::u32string>;

TEST(LetterCase, LettersOfEveryKindOfRangeHaveTheirOtherCase) {
  const std::vector<std::pair<char32_t, char32_t>> pairs = {{'A', 'a'},
                                                            {'Z', 'z'},
                                                            {0xC0, 0xE0},
                                                            {0xDE, 0xFE},
                                                            {0x141, 0x142},
                                                            {0x160, 0x161},
                                                            {0x178, 0xFF},
                                                            {0x17D, 0x17E},
                                                            {0x1A0, 0x1A1},
                                                            {0x218, 0x219},
                                                            {0x386, 0x3AC},
                                                            {0x391, 0x3B1},
                                                            {0x410, 0x430},
                                                            {0x42F, 0x44F},
                                                            {0x401, 0x451},
                                                            {0x531, 0x561},
                                                            {0x10D0 + 0xBC0, 0x10D0},
                                                            {0x1EA0, 0x1EA1},
                                                            {0x1F08, 0x1F00},
                                                            {0xFF21, 0xFF41},
                                                            {0x10400, 0x10428},
                                                            {0x1E921, 0x1E943}};
  for (const auto& [upper, lower] : pairs) {
    EXPECT_EQ(OtherCases(upper), Cases{std::u32string(1, lower)}) << std::hex << +upper;
    const Cases others = OtherCases(lower);
    EXPECT_NE(std::find(others.begin(), others.end(), std::u32string(1, upper)), others.end())
        << std::hex << +lower;
  }
}

TEST(LetterCase, WhatIsNoLetterHasNoOtherCase) {
  for (const char32_t sign :
       {U'0', U'@', U'[', U'`', U'{', char32_t{0}, char32_t{0xD7}, char32_t{0xF7}, char32_t{0x5D0},
        char32_t{0x4E2D}, char32_t{0x212A}, char32_t{0x10FFFF}}) {
    EXPECT_EQ(OtherCases(sign), Cases{}) << std::hex << +sign;
  }
}

TEST(LetterCase, TheSharpSIsAlsoTwoOfS) {
  EXPECT_EQ(OtherCases(0xDF), (Cases{U"\x1E9E", U"ss", U"SS", U"Ss", U"sS"}));
  EXPECT_EQ(OtherCases(0x1E9E), (Cases{U"\xDF", U"ss", U"SS", U"Ss", U"sS"}));
}

TEST(LetterCase, AllThreeSigmasAreOneLetter) {
  EXPECT_EQ(OtherCases(0x3C2), (Cases{U"\x3A3", U"\x3C3"}));
  EXPECT_EQ(OtherCases(0x3A3), (Cases{U"\x3C3", U"\x3C2"}));
  EXPECT_EQ(OtherCases(0x3C3), (Cases{U"\x3A3", U"\x3C2"}));
}

TEST(LetterCase, TheDottedAndTheDotlessIHaveTheirLatinCase) {
  EXPECT_EQ(OtherCases(0x130), Cases{U"i"});
  EXPECT_EQ(OtherCases(0x131), Cases{U"I"});
  EXPECT_EQ(OtherCases(U'i'), Cases{U"I"});
}

}  // namespace
}  // namespace morvex::test
