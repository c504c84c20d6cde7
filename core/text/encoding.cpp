#include "core/text/encoding.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "core/text/utf8.h"

namespace morvex {
namespace {

// Bytes 80 to 9F of Windows-1252; every other byte is the character of the same number.
constexpr std::array<char32_t, 32> kWindowsCharacters = {
    0x20AC, 0x81,   0x201A, 0x192,  0x201E, 0x2026, 0x2020, 0x2021, 0x2C6,  0x2030, 0x160,
    0x2039, 0x152,  0x8D,   0x17D,  0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x2DC,  0x2122, 0x161,  0x203A, 0x153,  0x9D,   0x17E,  0x178};
constexpr char32_t kTableBegin = 0x80;
constexpr char32_t kTableEnd = 0xA0;  // exclusive

// From this character on, UTF-16 writes a high and a low surrogate with 10 bits each.
constexpr char32_t kFirstPair = 0x10000;
constexpr char32_t kFirstHigh = 0xD800;
constexpr char32_t kFirstLow = 0xDC00;
constexpr char32_t kLastLow = 0xDFFF;

bool IsInTable(char32_t code) { return code >= kTableBegin && code < kTableEnd; }

bool IsSurrogate(char32_t unit) { return unit >= kFirstHigh && unit <= kLastLow; }

std::uint8_t ByteAt(std::string_view bytes, std::size_t at) {
  return static_cast<std::uint8_t>(bytes[at]);
}

char Byte(char32_t value) { return static_cast<char>(value & 0xFF); }

std::optional<std::u32string> DecodeUtf8(std::string_view bytes) {
  std::u32string text;
  while (!bytes.empty()) {
    const Utf8Sequence sequence = ReadUtf8(bytes);
    if (!sequence.character) return std::nullopt;
    text += *sequence.character;
    bytes.remove_prefix(sequence.size);
  }
  return text;
}

std::optional<std::u32string> DecodeUtf16(std::string_view bytes, bool big_endian) {
  if (bytes.size() % 2 != 0) return std::nullopt;
  std::u32string text;
  char32_t high = 0;
  for (std::size_t at = 0; at < bytes.size(); at += 2) {
    const char32_t unit = static_cast<char32_t>(ByteAt(bytes, at + (big_endian ? 0 : 1))) << 8 |
                          ByteAt(bytes, at + (big_endian ? 1 : 0));
    const bool is_low = unit >= kFirstLow && unit <= kLastLow;
    if (is_low != (high != 0)) return std::nullopt;
    if (is_low) {
      text += static_cast<char32_t>(kFirstPair + ((high - kFirstHigh) << 10 | (unit - kFirstLow)));
      high = 0;
    } else if (IsSurrogate(unit)) {
      high = unit;
    } else {
      text += unit;
    }
  }
  if (high != 0) return std::nullopt;
  return text;
}

std::string EncodeUtf8(char32_t character) {
  const auto continuation = [character](unsigned shift) {
    return Byte(0x80 | (character >> shift & 0x3F));
  };
  if (character < 0x80) return {Byte(character)};
  if (character < 0x800) return {Byte(0xC0 | character >> 6), continuation(0)};
  if (character < 0x10000) {
    return {Byte(0xE0 | character >> 12), continuation(6), continuation(0)};
  }
  return {Byte(0xF0 | character >> 18), continuation(12), continuation(6), continuation(0)};
}

std::optional<std::string> EncodeWindows1252(char32_t character) {
  const auto found = std::find(kWindowsCharacters.begin(), kWindowsCharacters.end(), character);
  if (found != kWindowsCharacters.end()) {
    const auto index = static_cast<char32_t>(found - kWindowsCharacters.begin());
    return std::string(1, Byte(kTableBegin + index));
  }
  if (character > 0xFF || IsInTable(character)) return std::nullopt;
  return std::string(1, Byte(character));
}

std::string EncodeUtf16(char32_t character, bool big_endian) {
  std::string bytes;
  const auto add = [&](char32_t unit) {
    bytes += Byte(big_endian ? unit >> 8 : unit);
    bytes += Byte(big_endian ? unit : unit >> 8);
  };
  if (character < kFirstPair) {
    add(character);
  } else {
    add(kFirstHigh + ((character - kFirstPair) >> 10));
    add(kFirstLow + ((character - kFirstPair) & 0x3FF));
  }
  return bytes;
}

}  // namespace

std::optional<std::u32string> Decode(std::string_view bytes, Encoding encoding) {
  switch (encoding) {
    case Encoding::kUtf8:
      return DecodeUtf8(bytes);
    case Encoding::kUtf16Le:
    case Encoding::kUtf16Be:
      return DecodeUtf16(bytes, encoding == Encoding::kUtf16Be);
    case Encoding::kWindows1252:
    case Encoding::kBytes:
      break;
  }
  std::u32string text;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    const char32_t code = ByteAt(bytes, at);
    const bool by_table = encoding == Encoding::kWindows1252 && IsInTable(code);
    text += by_table ? kWindowsCharacters[code - kTableBegin] : code;
  }
  return text;
}

std::optional<std::string> Encode(char32_t character, Encoding encoding) {
  if (!IsCodePoint(character)) return std::nullopt;
  switch (encoding) {
    case Encoding::kUtf8:
      return EncodeUtf8(character);
    case Encoding::kWindows1252:
      return EncodeWindows1252(character);
    case Encoding::kUtf16Le:
    case Encoding::kUtf16Be:
      return EncodeUtf16(character, encoding == Encoding::kUtf16Be);
    case Encoding::kBytes:
      break;
  }
  if (character > 0xFF) return std::nullopt;
  return std::string(1, Byte(character));
}

std::optional<std::string> Encode(std::u32string_view text, Encoding encoding) {
  std::string bytes;
  for (const char32_t character : text) {
    const std::optional<std::string> encoded = Encode(character, encoding);
    if (!encoded) return std::nullopt;
    bytes += *encoded;
  }
  return bytes;
}

}  // namespace morvex
