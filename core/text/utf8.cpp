#include "core/text/utf8.h"

#include <array>
#include <cstdint>

namespace morvex {
namespace {

// For each number of bytes, the smallest code point that needs that many. A smaller code point in
// that many bytes is overlong.
constexpr std::array<char32_t, kLongestUtf8 + 1> kSmallest = {0, 0, 0x80, 0x800, 0x10000};

// Returns the length in bytes of the sequence that a lead byte announces; 0 for any other byte.
std::size_t AnnouncedSize(std::uint8_t lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  return lead >= 0xF0 && lead <= 0xF4 ? 4 : 0;
}

}  // namespace

Utf8Sequence ReadUtf8(std::string_view bytes) {
  const auto lead = static_cast<std::uint8_t>(bytes.front());
  const std::size_t size = AnnouncedSize(lead);
  if (size == 0 || bytes.size() < size) return {};
  // The lead byte of a sequence of more than one byte begins with `size` one bits and a zero bit,
  // which are no part of the character.
  char32_t character = size == 1 ? lead : lead & (0xFFU >> (size + 1));
  for (std::size_t i = 1; i < size; ++i) {
    if (!IsUtf8Continuation(bytes[i])) return {};
    character = character << 6 | (static_cast<std::uint8_t>(bytes[i]) & 0x3FU);
  }
  if (character < kSmallest.at(size) || !IsCodePoint(character)) {
    return {size, std::nullopt};
  }
  return {size, character};
}

bool IsCodePoint(char32_t code) { return code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF); }

bool IsUtf8Continuation(char byte) { return (static_cast<std::uint8_t>(byte) & 0xC0U) == 0x80U; }

}  // namespace morvex
