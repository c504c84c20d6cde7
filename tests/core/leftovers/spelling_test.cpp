// Texts in the bytes of the encodings.
#include "core/leftovers/spelling.h"

#include <gtest/gtest.h>

namespace morvex::test {
namespace {

using namespace std::string_literals;

// M, u with diaeresis, euro sign, a letter beyond 16 bits.
const std::u32string kText = U"M\xFC\x20AC\x10428";

TEST(Spelling, EveryEncodingIsReadBack) {
  const std::vector<std::pair<Encoding, std::string>> spelled = {
      {Encoding::kUtf8, "M\xC3\xBC\xE2\x82\xAC\xF0\x90\x90\xA8"},
      {Encoding::kUtf16Le, "M\0\xFC\0\xAC\x20\x01\xD8\x28\xDC"s},
      {Encoding::kUtf16Be, "\0M\0\xFC\x20\xAC\xD8\x01\xDC\x28"s}};
  for (const auto& [encoding, bytes] : spelled) {
    EXPECT_EQ(Encode(kText, encoding), bytes);
    EXPECT_EQ(Decode(bytes, encoding), kText);
  }
}

TEST(Spelling, EveryByteOfWindows1252IsReadAndWrittenBack) {
  for (int code = 0; code < 256; ++code) {
    const std::string byte(1, static_cast<char>(code));
    const std::optional<std::u32string> text = Decode(byte, Encoding::kWindows1252);
    ASSERT_TRUE(text) << code;
    EXPECT_EQ(Encode(*text, Encoding::kWindows1252), byte) << code;
  }
  EXPECT_EQ(Decode("\x80\x8A\x9F\xFC", Encoding::kWindows1252), U"\x20AC\x160\x178\xFC");
}

TEST(Spelling, WhatAnEncodingLacksCannotBeSpelled) {
  EXPECT_EQ(Encode(U"\x141", Encoding::kWindows1252), std::nullopt);
  EXPECT_EQ(Encode(U"\x80", Encoding::kWindows1252), std::nullopt);
  EXPECT_EQ(Encode(U"\x100", Encoding::kBytes), std::nullopt);
}

TEST(Spelling, WhatIsNoUtf8IsNotReadAsSuch) {
  for (const char* bytes : {"\xFC", "\xC3", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80",
                            "\xF4\x90\x80\x80", "\xC3M", "\x80"}) {
    EXPECT_EQ(Decode(bytes, Encoding::kUtf8), std::nullopt) << bytes;
  }
}

TEST(Spelling, WhatIsNoUtf16IsNotReadAsSuch) {
  for (const std::string& bytes : {"M"s, "\0\xD8M\0"s, "\0\xDC"s, "\0\xD8"s}) {
    EXPECT_EQ(Decode(bytes, Encoding::kUtf16Le), std::nullopt);
  }
}

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
  EXPECT_EQ(spelling->LongestSize(), 6u);
}

TEST(Spelling, CasesThatAnEncodingLacksAreLeftOut) {
  Alphabet alphabet;
  const std::optional<Spelling> spelling = alphabet.Spell(U"\xFF\xDF", Encoding::kWindows1252);
  ASSERT_TRUE(spelling);
  EXPECT_EQ(*spelling->letters[0], (LetterWays{"\xFF", "\x9F"}));
  EXPECT_EQ(*spelling->letters[1], (LetterWays{"\xDF", "ss", "SS", "Ss", "sS"}));
}

TEST(Spelling, OfBytesOnlyAsciiLettersHaveAnotherCase) {
  Alphabet alphabet;
  const std::optional<Spelling> spelling = alphabet.Spell(U"a\xE4\xFF", Encoding::kBytes);
  ASSERT_TRUE(spelling);
  EXPECT_EQ(*spelling->letters[0], (LetterWays{"a", "A"}));
  EXPECT_EQ(*spelling->letters[1], LetterWays{"\xE4"});
  EXPECT_EQ(*spelling->letters[2], LetterWays{"\xFF"});
}

TEST(Spelling, NoWayOfALetterBeginsWithAnotherOne) {
  Alphabet alphabet;
  for (const Encoding encoding : {Encoding::kUtf8, Encoding::kWindows1252, Encoding::kUtf16Le,
                                  Encoding::kUtf16Be, Encoding::kBytes}) {
    for (char32_t letter = 0; letter < 0x2200; ++letter) {
      if (letter >= 0xD800 && letter <= 0xDFFF) continue;
      const std::optional<Spelling> spelling = alphabet.Spell({&letter, 1}, encoding);
      if (!spelling) continue;
      const LetterWays& ways = *spelling->letters[0];
      for (const std::string& one : ways) {
        for (const std::string& other : ways) {
          EXPECT_TRUE(&one == &other || !other.starts_with(one)) << std::hex << +letter;
        }
      }
    }
  }
}

}  // namespace
}  // namespace morvex::test
