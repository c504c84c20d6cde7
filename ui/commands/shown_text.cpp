#include "ui/commands/shown_text.h"

#include <algorithm>
#include <cstddef>

namespace morvex {
namespace {

constexpr std::size_t kLongestCharacter = 4;
constexpr char32_t kReplacement = 0xFFFD;

std::string HexByte(unsigned code) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  return {kDigits[code / 16 % 16], kDigits[code % 16]};
}

std::string Escaped(unsigned code) { return "\\x" + HexByte(code); }

bool IsControl(char32_t character) {
  return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

// Shows nothing itself and changes where or in which order the text around it is shown.
bool IsUnseen(char32_t character) {
  return character == 0x61C || (character >= 0x200B && character <= 0x200F) ||
         (character >= 0x2028 && character <= 0x202E) ||
         (character >= 0x2060 && character <= 0x2069) || character == 0xFEFF;
}

std::string Shown(std::u32string_view text) {
  std::string shown;
  for (const char32_t character : text) {
    if (IsControl(character)) {
      shown += Escaped(character);
    } else if (IsUnseen(character)) {
      shown += "\\u" + HexByte(character >> 8) + HexByte(character);
    } else {
      shown += Encode(character, Encoding::kUtf8).value_or(std::string());
    }
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
  std::u32string text;
  while (bytes.size() >= 2) {
    std::size_t size = 2;
    std::optional<std::u32string> character = Decode(bytes.substr(0, size), encoding);
    if (!character && bytes.size() >= 4) {
      size = 4;
      character = Decode(bytes.substr(0, size), encoding);
    }
    if (!character) size = 2;
    text += character ? *character : std::u32string(1, kReplacement);
    bytes.remove_prefix(size);
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
