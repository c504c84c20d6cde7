// Characters in the bytes of every encoding, and back.
#include "core/text/encoding.h"

#include <gtest/gtest.h>

#include <array>
#include <utility>
#include <vector>

namespace morvex::test {
namespace {

using namespace std::string_literals;

constexpr std::array<Encoding, kEncodings> kAll = {Encoding::kUtf8, Encoding::kWindows1252,
                                                   Encoding::kUtf16Le, Encoding::kUtf16Be,
                                                   Encoding::kBytes};

// M, u with diaeresis, euro sign, a letter beyond 16 bits.
const std::u32string kText = U"M\xFC\x20AC\x10428";

TEST(Encoding, ATextIsWrittenAndReadBack) {
  const std::vector<std::pair<Encoding, std::string>> written = {
      {Encoding::kUtf8, "M\xC3\xBC\xE2\x82\xAC\xF0\x90\x90\xA8"},
      {Encoding::kUtf16Le, "M\0\xFC\0\xAC\x20\x01\xD8\x28\xDC"s},
      {Encoding::kUtf16Be, "\0M\0\xFC\x20\xAC\xD8\x01\xDC\x28"s}};
  for (const auto& [encoding, bytes] : written) {
    EXPECT_EQ(Encode(kText, encoding), bytes);
    EXPECT_EQ(Decode(bytes, encoding), kText);
  }
}

TEST(Encoding, AnEmptyTextHasNoBytes) {
  for (const Encoding encoding : kAll) {
    EXPECT_EQ(Encode(U"", encoding), "");
    EXPECT_EQ(Decode("", encoding), U"");
  }
}

// `expected` says how many code points each encoding can write: UTF-8 and UTF-16 all but the
// surrogates, an encoding with one byte for each character 256.
TEST(Encoding, EveryCodePointThatCanBeWrittenIsReadBack) {
  constexpr std::size_t kCodePoints = 0x110000 - 0x800;
  const std::array<std::size_t, kEncodings> expected = {kCodePoints, 256, kCodePoints, kCodePoints,
                                                        256};
  for (std::size_t i = 0; i < kAll.size(); ++i) {
    std::u32string text;
    std::string bytes;
    for (char32_t code = 0; code <= 0x10FFFF; ++code) {
      const std::optional<std::string> written = Encode(code, kAll.at(i));
      if (!written) continue;
      text += code;
      bytes += *written;
    }
    EXPECT_EQ(text.size(), expected.at(i)) << i;
    EXPECT_TRUE(Decode(bytes, kAll.at(i)) == text) << i;
  }
}

TEST(Encoding, ASurrogateOrANumberBehindTheLastCodePointHasNoBytes) {
  for (const Encoding encoding : kAll) {
    for (char32_t code = 0xD800; code <= 0xDFFF; ++code) {
      ASSERT_EQ(Encode(code, encoding), std::nullopt) << std::hex << +code;
    }
    EXPECT_EQ(Encode(char32_t{0x110000}, encoding), std::nullopt);
    EXPECT_EQ(Encode(char32_t{0xFFFFFFFF}, encoding), std::nullopt);
  }
}

TEST(Encoding, EveryByteOfWindows1252IsReadAndWrittenBack) {
  for (int code = 0; code < 256; ++code) {
    const std::string byte(1, static_cast<char>(code));
    const std::optional<std::u32string> text = Decode(byte, Encoding::kWindows1252);
    ASSERT_TRUE(text) << code;
    EXPECT_EQ(Encode(*text, Encoding::kWindows1252), byte) << code;
    if (code < 0x80 || code >= 0xA0) {
      EXPECT_EQ(text->front(), static_cast<char32_t>(code));
    }
  }
}

TEST(Encoding, Bytes80To9FOfWindows1252HaveTheirCharacters) {
  EXPECT_EQ(Decode("\x80\x81\x82\x83\x84\x85\x86\x87\x88\x89\x8A\x8B\x8C\x8D\x8E\x8F",
                   Encoding::kWindows1252),
            U"\x20AC\x81\x201A\x192\x201E\x2026\x2020\x2021\x2C6\x2030\x160\x2039\x152\x8D\x17D"
            U"\x8F");
  EXPECT_EQ(Decode("\x90\x91\x92\x93\x94\x95\x96\x97\x98\x99\x9A\x9B\x9C\x9D\x9E\x9F",
                   Encoding::kWindows1252),
            U"\x90\x2018\x2019\x201C\x201D\x2022\x2013\x2014\x2DC\x2122\x161\x203A\x153\x9D\x17E"
            U"\x178");
}

TEST(Encoding, OfUnknownBytesEachIsTheCharacterOfItsNumber) {
  for (int code = 0; code < 256; ++code) {
    const std::string byte(1, static_cast<char>(code));
    const std::u32string character(1, static_cast<char32_t>(code));
    EXPECT_EQ(Decode(byte, Encoding::kBytes), character);
    EXPECT_EQ(Encode(character, Encoding::kBytes), byte);
  }
}

TEST(Encoding, ACharacterThatAnEncodingLacksHasNoBytes) {
  EXPECT_EQ(Encode(U"\x141", Encoding::kWindows1252), std::nullopt);
  EXPECT_EQ(Encode(U"\x80", Encoding::kWindows1252), std::nullopt);
  EXPECT_EQ(Encode(U"a\x141", Encoding::kWindows1252), std::nullopt);
  EXPECT_EQ(Encode(U"\x100", Encoding::kBytes), std::nullopt);
}

TEST(Encoding, MalformedUtf8IsNotRead) {
  for (const char* bytes : {"\xFC", "\xC3", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80",
                            "\xF4\x90\x80\x80", "\xC3M", "\x80", "good\xE2\x82"}) {
    EXPECT_EQ(Decode(bytes, Encoding::kUtf8), std::nullopt) << bytes;
  }
}

// In this order: an odd number of bytes (twice), a high surrogate without a low one, a low one
// alone (twice), a high one at the end (twice), the two in the wrong order, two high ones in front
// of a low one.
TEST(Encoding, MalformedUtf16IsNotRead) {
  for (const std::string& bytes : {"M"s, "M\0x"s, "\0\xD8M\0"s, "\0\xDC"s, "M\0\0\xDC"s, "\0\xD8"s,
                                   "M\0\xFF\xDB"s, "\0\xDC\0\xD8"s, "\0\xD8\0\xD8\0\xDC"s}) {
    EXPECT_EQ(Decode(bytes, Encoding::kUtf16Le), std::nullopt);
    std::string swapped = bytes;
    for (std::size_t i = 0; i + 1 < swapped.size(); i += 2) std::swap(swapped[i], swapped[i + 1]);
    EXPECT_EQ(Decode(swapped, Encoding::kUtf16Be), std::nullopt);
  }
}

TEST(Encoding, TheBordersOfUtf16PairsAreWhereTheyBelong) {
  const std::vector<std::pair<char32_t, std::string>> borders = {
      {0xD7FF, "\xD7\xFF"},           {0xE000, "\xE0\x00"s},
      {0xFFFF, "\xFF\xFF"},           {0x10000, "\xD8\x00\xDC\x00"s},
      {0x103FF, "\xD8\x00\xDF\xFF"s}, {0x10400, "\xD8\x01\xDC\x00"s},
      {0x10FFFF, "\xDB\xFF\xDF\xFF"}};
  for (const auto& [code, bytes] : borders) {
    EXPECT_EQ(Encode(code, Encoding::kUtf16Be), bytes) << std::hex << +code;
    EXPECT_EQ(Decode(bytes, Encoding::kUtf16Be), std::u32string(1, code)) << std::hex << +code;
  }
}

TEST(Encoding, AByteOrderMarkIsACharacter) {
  EXPECT_EQ(Decode("\xEF\xBB\xBFx", Encoding::kUtf8), U"\xFEFFx");
  EXPECT_EQ(Decode("\xFF\xFEx\0"s, Encoding::kUtf16Le), U"\xFEFFx");
}

}  // namespace
}  // namespace morvex::test
