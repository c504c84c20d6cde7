#include "ui/commands/shown_text.h"

#include <algorithm>
#include <cstddef>

namespace morvex {
namespace {

constexpr std::size_t kLongestCharacter = 4;
constexpr char32_t kReplacement = 0xFFFD;

std::string Escaped(unsigned code) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  return {'\\', 'x', kDigits[code / 16 % 16], kDigits[code % 16]};
}

bool IsControl(char32_t character) {
  return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

std::string Shown(std::u32string_view text) {
  std::string shown;
  for (const char32_t character : text) {
    shown += IsControl(character) ? Escaped(character)
                                  : Encode(character, Encoding::kUtf8).value_or(std::string());
  }
  return shown;
}

// Bytes that go on a character of UTF-8 which the piece does not hold the beginning of.
std::string_view WithoutCutBeginning(std::string_view bytes) {
  std::size_t cut = 0;
  while (cut < bytes.size() && cut < kLongestCharacter - 1 &&
         (static_cast<unsigned char>(bytes[cut]) & 0xC0) == 0x80) {
    ++cut;
  }
  return bytes.substr(cut);
}

std::u32string DecodeUtf16Leniently(std::string_view bytes, Encoding encoding) {
  bytes = bytes.substr(0, bytes.size() / 2 * 2);
  if (const std::optional<std::u32string> text = Decode(bytes, encoding)) return *text;
  std::u32string text;
  for (std::size_t at = 0; at < bytes.size(); at += 2) {
    const std::optional<std::u32string> one = Decode(bytes.substr(at, 2), encoding);
    text += one ? *one : std::u32string(1, kReplacement);
  }
  return text;
}

}  // namespace

std::string ShownText(std::string_view bytes) {
  const std::optional<std::u32string> text = Decode(bytes, Encoding::kUtf8);
  return Shown(text ? *text : *Decode(bytes, Encoding::kWindows1252));
}

std::string ShownPath(std::string_view bytes) {
  std::string shown;
  while (!bytes.empty()) {
    std::size_t size = std::min(kLongestCharacter, bytes.size());
    std::optional<std::u32string> character;
    for (; size > 0; --size) {
      character = Decode(bytes.substr(0, size), Encoding::kUtf8);
      if (character && character->size() == 1) break;
    }
    if (size == 0) {
      shown += Escaped(static_cast<unsigned char>(bytes.front()));
      size = 1;
    } else {
      shown += Shown(*character);
    }
    bytes.remove_prefix(size);
  }
  return shown;
}

std::string ShownPiece(std::string_view bytes, Encoding encoding) {
  if (encoding == Encoding::kUtf16Le || encoding == Encoding::kUtf16Be) {
    return Shown(DecodeUtf16Leniently(bytes, encoding));
  }
  if (encoding == Encoding::kWindows1252) return Shown(*Decode(bytes, encoding));
  const std::string_view whole = WithoutCutBeginning(bytes);
  for (std::size_t cut = 0; cut < kLongestCharacter && cut <= whole.size(); ++cut) {
    const std::optional<std::u32string> text =
        Decode(whole.substr(0, whole.size() - cut), Encoding::kUtf8);
    if (text) return Shown(*text);
  }
  return Shown(*Decode(bytes, Encoding::kWindows1252));
}

}  // namespace morvex
