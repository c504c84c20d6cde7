// Reading UTF-8: valid, truncated, overlong, surrogates, and numbers above U+10FFFF.
#include "core/text/utf8.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "core/text/encoding.h"

namespace morvex::test {
namespace {

constexpr char32_t kLast = 0x10FFFF;

bool IsSurrogate(char32_t code) { return code >= 0xD800 && code <= 0xDFFF; }

// Returns `code` as a sequence of `size` bytes, even where that sequence is not valid.
std::string Sequence(char32_t code, std::size_t size) {
  if (size == 1) return std::string(1, static_cast<char>(code));
  std::string bytes;
  for (; bytes.size() + 1 < size; code >>= 6) {
    bytes.insert(bytes.begin(), static_cast<char>(0x80 | (code & 0x3F)));
  }
  const int mark = size == 2 ? 0xC0 : size == 3 ? 0xE0 : 0xF0;
  return static_cast<char>(static_cast<char32_t>(mark) | code) + bytes;
}

TEST(ReadUtf8, EveryCodePointIsReadAndWrittenBack) {
  for (char32_t code = 0; code <= kLast; ++code) {
    if (IsSurrogate(code)) continue;
    const std::optional<std::string> bytes = Encode(code, Encoding::kUtf8);
    ASSERT_TRUE(bytes) << std::hex << +code;
    const Utf8Sequence sequence = ReadUtf8(*bytes + "x");
    ASSERT_EQ(sequence.character, code) << std::hex << +code;
    ASSERT_EQ(sequence.size, bytes->size()) << std::hex << +code;
  }
}

TEST(ReadUtf8, TheBordersOfEverySizeAreWhereTheyBelong) {
  const std::vector<std::pair<char32_t, std::string>> borders = {
      {0x0, std::string(1, '\0')},   {0x7F, "\x7F"},           {0x80, "\xC2\x80"},
      {0x7FF, "\xDF\xBF"},           {0x800, "\xE0\xA0\x80"},  {0xD7FF, "\xED\x9F\xBF"},
      {0xE000, "\xEE\x80\x80"},      {0xFFFF, "\xEF\xBF\xBF"}, {0x10000, "\xF0\x90\x80\x80"},
      {0x10FFFF, "\xF4\x8F\xBF\xBF"}};
  for (const auto& [code, bytes] : borders) {
    EXPECT_EQ(ReadUtf8(bytes).character, code) << std::hex << +code;
    EXPECT_EQ(ReadUtf8(bytes).size, bytes.size()) << std::hex << +code;
    EXPECT_EQ(Encode(code, Encoding::kUtf8), bytes) << std::hex << +code;
  }
}

TEST(ReadUtf8, SurrogatesAreASequenceWithoutACharacter) {
  for (char32_t code = 0xD800; code <= 0xDFFF; ++code) {
    const Utf8Sequence sequence = ReadUtf8(Sequence(code, 3));
    ASSERT_EQ(sequence.size, 3u) << std::hex << +code;
    ASSERT_EQ(sequence.character, std::nullopt) << std::hex << +code;
  }
}

TEST(ReadUtf8, OverlongFormsAreASequenceWithoutACharacter) {
  for (char32_t code = 0; code < 0x10000; ++code) {
    const std::size_t shortest = code < 0x80 ? 1 : code < 0x800 ? 2 : 3;
    for (std::size_t size = std::max<std::size_t>(3, shortest + 1); size <= 4; ++size) {
      const Utf8Sequence sequence = ReadUtf8(Sequence(code, size));
      ASSERT_EQ(sequence.size, size) << std::hex << +code;
      ASSERT_EQ(sequence.character, std::nullopt) << std::hex << +code;
    }
  }
}

TEST(ReadUtf8, NumbersBehindTheLastCodePointAreASequenceWithoutACharacter) {
  for (char32_t code = kLast + 1; code < 0x140000; ++code) {
    const Utf8Sequence sequence = ReadUtf8(Sequence(code, 4));
    ASSERT_EQ(sequence.size, 4u) << std::hex << +code;
    ASSERT_EQ(sequence.character, std::nullopt) << std::hex << +code;
  }
}

// C0 and C1 could lead only overlong forms; F5 to FF could lead only numbers above U+10FFFF.
TEST(ReadUtf8, AByteThatLeadsNoSequenceStandsAlone) {
  for (int byte = 0x80; byte < 0x100; ++byte) {
    if (byte >= 0xC2 && byte <= 0xF4) continue;
    const Utf8Sequence sequence = ReadUtf8(static_cast<char>(byte) + std::string("\x80\x80\x80"));
    EXPECT_EQ(sequence.size, 1u) << byte;
    EXPECT_EQ(sequence.character, std::nullopt) << byte;
  }
}

TEST(ReadUtf8, ATruncatedOrInterruptedSequenceIsItsFirstByte) {
  for (const std::string whole : {"\xC3\xBC", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"}) {
    for (std::size_t size = 1; size < whole.size(); ++size) {
      for (const char* next : {"", "x", "\xC3", "\xFF"}) {
        const Utf8Sequence sequence = ReadUtf8(whole.substr(0, size) + next);
        EXPECT_EQ(sequence.size, 1u) << whole << " " << size << next;
        EXPECT_EQ(sequence.character, std::nullopt) << whole << " " << size << next;
      }
    }
  }
}

TEST(IsUtf8Continuation, IsEveryByteFrom80ToBf) {
  for (int byte = 0; byte < 256; ++byte) {
    EXPECT_EQ(IsUtf8Continuation(static_cast<char>(byte)), byte >= 0x80 && byte <= 0xBF) << byte;
  }
}

}  // namespace
}  // namespace morvex::test
