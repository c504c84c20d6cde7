// The ways to spell a text in each encoding.
#include "core/leftovers/spelling.h"

#include <gtest/gtest.h>

namespace morvex::test {
namespace {

TEST(Spelling, ATextStandsAsWrittenOrInOtherCase) {
  Alphabet alphabet;
  const std::optional<Spelling> spelling = alphabet.Spell(U"M\xFC", Encoding::kUtf8);
  ASSERT_TRUE(spelling);
  EXPECT_EQ(spelling->as_written, "M\xC3\xBC");
  EXPECT_EQ(spelling->LongestSize(), 3u);
  const std::optional<Standing> as_written = StandsAt(*spelling, "M\xC3\xBCller");
  ASSERT_TRUE(as_written);
  EXPECT_TRUE(as_written->as_written);
  EXPECT_EQ(as_written->size, 3u);
  for (const char* bytes : {"m\xC3\xBC", "M\xC3\x9C", "m\xC3\x9C"}) {
    const std::optional<Standing> standing = StandsAt(*spelling, bytes);
    ASSERT_TRUE(standing) << bytes;
    EXPECT_FALSE(standing->as_written) << bytes;
  }
  for (const char* bytes : {"", "M", "M\xC3", "M\xFC", "MU", "xM\xC3\xBC"}) {
    EXPECT_FALSE(StandsAt(*spelling, bytes)) << bytes;
  }
}

TEST(Spelling, ACaseOfAnotherLengthIsFoundAndMeasured) {
  Alphabet alphabet;
  const std::optional<Spelling> spelling = alphabet.Spell(
      U"Ku\xDF"
      U"e",
      Encoding::kUtf8);
  ASSERT_TRUE(spelling);
  EXPECT_EQ(StandsAt(*spelling, "KUSSE!")->size, 5u);
  EXPECT_EQ(StandsAt(*spelling,
                     "KU\xE1\xBA\x9E"
                     "E!")
                ->size,
            6u);
  EXPECT_EQ(StandsAt(*spelling,
                     "Ku\xC3\x9F"
                     "e!")
                ->size,
            5u);
  EXPECT_GE(spelling->LongestSize(), 6u);
}

// Returns the bytes of each way to write a letter.
std::vector<std::string> WaysOf(const Spelling& spelling, std::size_t letter) {
  std::vector<std::string> ways;
  for (const LetterWay& way : *spelling.letters.at(letter)) ways.push_back(way.bytes);
  return ways;
}

TEST(Spelling, CasesThatAnEncodingLacksAreLeftOut) {
  Alphabet alphabet;
  const std::optional<Spelling> spelling = alphabet.Spell(U"\xFF\xDF", Encoding::kWindows1252);
  ASSERT_TRUE(spelling);
  EXPECT_EQ(WaysOf(*spelling, 0), (std::vector<std::string>{"\xFF", "\x9F"}));
  EXPECT_EQ(WaysOf(*spelling, 1), (std::vector<std::string>{"s", "S", "\xDF"}));
}

TEST(Spelling, ATextThatAnEncodingHasInAnotherCaseAloneIsFoundInThat) {
  Alphabet alphabet;
  const std::optional<Spelling> spelling = alphabet.Spell(U"Y\x131lmaz", Encoding::kWindows1252);
  ASSERT_TRUE(spelling);
  EXPECT_EQ(spelling->as_written, "");
  ASSERT_TRUE(StandsAt(*spelling, "YILMAZ"));
  EXPECT_FALSE(StandsAt(*spelling, "YILMAZ")->as_written);
  EXPECT_FALSE(StandsAt(*spelling, ""));
  EXPECT_FALSE(alphabet.Spell(U"\x141ukasz", Encoding::kWindows1252));
}

TEST(Spelling, OfBytesOnlyAsciiLettersHaveAnotherCase) {
  Alphabet alphabet;
  const std::optional<Spelling> spelling = alphabet.Spell(U"s\xE4\xFF\xDF", Encoding::kBytes);
  ASSERT_TRUE(spelling);
  EXPECT_EQ(WaysOf(*spelling, 0), (std::vector<std::string>{"s", "S"}));
  EXPECT_EQ(WaysOf(*spelling, 1), std::vector<std::string>{"\xE4"});
  EXPECT_EQ(WaysOf(*spelling, 2), std::vector<std::string>{"\xFF"});
  EXPECT_EQ(WaysOf(*spelling, 3), std::vector<std::string>{"\xDF"});
}

TEST(Spelling, AWayThatBeginsWithAnotherOneStandsInFrontOfIt) {
  Alphabet alphabet;
  for (const Encoding encoding : {Encoding::kUtf8, Encoding::kWindows1252, Encoding::kUtf16Le,
                                  Encoding::kUtf16Be, Encoding::kBytes}) {
    for (char32_t letter = 0; letter < 0x2200; ++letter) {
      if (letter >= 0xD800 && letter <= 0xDFFF) continue;
      const std::optional<Spelling> spelling = alphabet.Spell({&letter, 1}, encoding);
      if (!spelling) continue;
      const std::vector<std::string> ways = WaysOf(*spelling, 0);
      for (std::size_t one = 0; one < ways.size(); ++one) {
        for (std::size_t other = one + 1; other < ways.size(); ++other) {
          EXPECT_FALSE(ways[other].starts_with(ways[one])) << std::hex << +letter;
        }
      }
    }
  }
}

TEST(Spelling, TheLongSAndTheKelvinSignOfAListStandForTheirLetters) {
  Alphabet alphabet;
  const std::optional<Spelling> spelling = alphabet.Spell(U"\x212Ari\x17F\x17F", Encoding::kUtf8);
  ASSERT_TRUE(spelling);
  EXPECT_TRUE(StandsAt(*spelling, "\xE2\x84\xAAri\xC5\xBF\xC5\xBF")->as_written);
  for (const char* text : {"Kriss", "KRISS", "kri\xC3\x9F"}) {
    EXPECT_TRUE(StandsAt(*spelling, text)) << text;
  }
}

// Each line holds texts that differ in letter case alone. A row whose left text is one of them
// finds each text of the line, in every encoding that can represent the text found.
TEST(Spelling, TextsThatDifferInLetterCaseAloneStandForEachOther) {
  const std::vector<std::vector<std::u32string>> lines = {
      {U"Gro\xDFmann", U"Grossmann", U"GROSSMANN", U"GRO\x1E9EMANN"},
      {U"Y\x131lmaz", U"YILMAZ", U"y\x131lmaz", U"Yilmaz", U"Y\x130LMAZ"},
      {U"\x130nan", U"inan", U"INAN", U"\x131nan"},
      {U"Kriss", U"kri\xDF", U"KRISS"},
      {U"\xC5se", U"\x212BSE", U"\xE5se"},
      {U"\x3A0\x3CD\x3C1\x3B3\x3BF\x3C2", U"\x3A0\x38E\x3A1\x393\x39F\x3A3",
       U"\x3C0\x3CD\x3C1\x3B3\x3BF\x3C3"},
      {U"Geoffrey Fisk", U"GEOFFREY FISK", U"Geo\xFB00rey \xFB01sk"},
      {U"O\xFB03"
       U"ce",
       U"Office", U"O\xFB00ice",
       U"Of\xFB01"
       U"ce"},
      {U"Ste\xFB06", U"STEST",
       U"\xFB05"
       U"est"}};
  Alphabet alphabet;
  for (const std::vector<std::u32string>& line : lines) {
    for (const std::u32string& left : line) {
      for (const Encoding encoding :
           {Encoding::kUtf8, Encoding::kWindows1252, Encoding::kUtf16Le, Encoding::kUtf16Be}) {
        for (const std::u32string& text : line) {
          const std::optional<std::string> bytes = Encode(text, encoding);
          if (!bytes) continue;
          const std::optional<Spelling> spelling = alphabet.Spell(left, encoding);
          ASSERT_TRUE(spelling);
          const std::optional<Standing> standing = StandsAt(*spelling, *bytes + "...");
          ASSERT_TRUE(standing) << *Encode(left, Encoding::kUtf8) << " in " << *bytes;
          EXPECT_EQ(standing->size, bytes->size()) << *bytes;
          EXPECT_EQ(standing->as_written, left == text) << *bytes;
          EXPECT_LE(standing->size, spelling->LongestSize());
        }
      }
    }
  }
}

}  // namespace
}  // namespace morvex::test
