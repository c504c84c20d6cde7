// Upper and lower case in all alphabets, and ligatures.
#include "core/text/letter_case.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace morvex::test {
namespace {

// Returns those other cases of a letter that consist of one character, in ascending order.
std::u32string CasesOf(char32_t letter) {
  std::u32string cases;
  for (const OtherCase& each : OtherCases(letter)) {
    if (each.text.size() == 1) cases += each.text;
  }
  std::sort(cases.begin(), cases.end());
  return cases;
}

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
    EXPECT_EQ(OtherCases(upper).front(), (OtherCase{std::u32string(1, lower), false}))
        << std::hex << +upper;
    EXPECT_EQ(OtherCases(lower).front(), (OtherCase{std::u32string(1, upper), false}))
        << std::hex << +lower;
  }
}

TEST(LetterCase, ACharacterWithoutLetterCaseHasNoOtherCase) {
  for (const char32_t sign :
       {U'0', U'@', U'[', U'`', U'{', char32_t{0}, char32_t{0xD7}, char32_t{0xF7}, char32_t{0x5D0},
        char32_t{0x4E2D}, char32_t{0x10FFFF}}) {
    EXPECT_TRUE(OtherCases(sign).empty()) << std::hex << +sign;
  }
}

TEST(LetterCase, ALetterOfMoreThanTwoFormsHasAllOthersWhicheverItIs) {
  const std::vector<std::u32string> groups = {
      U"Ii\x130\x131",           U"\xB5\x39C\x3BC",     U"\xC5\xE5\x212B",
      U"\x398\x3B8\x3D1\x3F4",   U"\x3A3\x3C2\x3C3",    U"\x3A9\x3C9\x2126",
      U"\x422\x442\x1C84\x1C85", U"\x1E60\x1E61\x1E9B", U"\x1C4\x1C5\x1C6"};
  for (const std::u32string& group : groups) {
    for (const char32_t letter : group) {
      std::u32string others = group;
      std::erase(others, letter);
      EXPECT_EQ(CasesOf(letter), others) << std::hex << +letter;
    }
  }
}

TEST(LetterCase, OtherCasesAreMutual) {
  for (char32_t letter = 0; letter < 0x20000; ++letter) {
    for (const char32_t other : CasesOf(letter)) {
      EXPECT_NE(CasesOf(other).find(letter), std::u32string::npos) << std::hex << +letter;
    }
  }
}

TEST(LetterCase, FormsThatFewTextsHoldAreRare) {
  EXPECT_EQ(OtherCases(U's'), (std::vector<OtherCase>{{U"S", false}}));
  EXPECT_EQ(OtherCases(U'i'),
            (std::vector<OtherCase>{{U"I", false}, {U"\x130", true}, {U"\x131", true}}));
}

TEST(LetterCase, TheLowerCaseOfTheDottedIMayKeepItsDot) {
  EXPECT_EQ(OtherCases(0x130).front(), (OtherCase{U"i\x307", true}));
}

TEST(LetterCase, JoinedLettersAreWithoutLigatures) {
  EXPECT_EQ(WithoutLigatures(U"Wei\xDF"), U"Weiss");
  EXPECT_EQ(WithoutLigatures(U"WEI\x1E9E"), U"WEIss");
  EXPECT_EQ(WithoutLigatures(U"\xFB03\xFB01x\xFB06\x587"), U"ffifixst\x565\x582");
  EXPECT_EQ(WithoutLigatures(U"Anna"), U"Anna");
  EXPECT_EQ(WithoutLigatures(U"\x17F\x212A"), U"sk");
  EXPECT_EQ(WithoutLigatures(U""), U"");
}

TEST(LetterCase, LigaturesAreFoundWhateverTheCaseOfTheText) {
  const auto joined = [](std::u32string_view text) {
    std::vector<std::pair<char32_t, std::size_t>> found;
    for (const Ligature& each : LigaturesAtBeginning(text)) {
      found.emplace_back(each.character, each.letters);
    }
    return found;
  };
  using Found = std::vector<std::pair<char32_t, std::size_t>>;
  for (const char32_t* text : {U"ss", U"SSE", U"sS"}) {
    EXPECT_EQ(joined(text), (Found{{0xDF, 2}, {0x1E9E, 2}}));
  }
  EXPECT_EQ(joined(U"ffIx"), (Found{{0xFB03, 3}, {0xFB00, 2}}));
  EXPECT_EQ(joined(U"f\x131"), (Found{{0xFB01, 2}}));
  EXPECT_EQ(joined(U"\x535\x552"), (Found{{0x587, 2}}));
  for (const char32_t* text : {U"s", U"sas", U"", U"f", U"ass", U"\x565"}) {
    EXPECT_EQ(joined(text), Found{});
  }
}

}  // namespace
}  // namespace morvex::test
