#include "ui/commands/shown_text.h"

#include <algorithm>
#include <cstddef>
#include <vector>

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

bool IsHex(std::string_view digits) {
  return digits.find_first_not_of("0123456789ABCDEF") == std::string_view::npos;
}

// Whether a backslash in front of the shown text would be taken for the beginning of an escape, or
// for one half of two.
bool CouldEscape(std::string_view shown) {
  return shown.starts_with('\\') ||
         (shown.starts_with('x') && shown.size() >= 3 && IsHex(shown.substr(1, 2))) ||
         (shown.starts_with('u') && shown.size() >= 5 && IsHex(shown.substr(1, 4)));
}

// A text that grows by characters and by bytes that are none.
class ShownSoFar {
 public:
  void Add(char32_t character) {
    if (character == '\\') backslashes_.push_back(shown_.size());
    if (character < 0x80 && IsControl(character)) {
      shown_ += Escaped(character);
    } else if (IsControl(character) || IsUnseen(character)) {
      shown_ += "\\u" + HexByte(character >> 8) + HexByte(character);
    } else {
      shown_ += Encode(character, Encoding::kUtf8).value_or(std::string());
    }
  }
  void AddByte(char byte) { shown_ += Escaped(static_cast<unsigned char>(byte)); }

  std::string Text() const {
    std::string text;
    std::size_t from = 0;
    for (const std::size_t backslash : backslashes_) {
      text.append(shown_, from, backslash - from);
      if (CouldEscape(std::string_view(shown_).substr(backslash + 1))) text += '\\';
      from = backslash;
    }
    return text.append(shown_, from);
  }

 private:
  std::string shown_;
  std::vector<std::size_t> backslashes_;  // of the text itself
};

std::string Shown(std::u32string_view text) {
  ShownSoFar shown;
  for (const char32_t character : text) shown.Add(character);
  return shown.Text();
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
  ShownSoFar shown;
  while (!bytes.empty()) {
    std::size_t size = std::min(kLongestCharacter, bytes.size());
    std::optional<std::u32string> character;
    for (; size > 0; --size) {
      character = Decode(bytes.substr(0, size), Encoding::kUtf8);
      if (character && character->size() == 1) break;
    }
    if (size == 0) {
      shown.AddByte(bytes.front());
      size = 1;
    } else {
      shown.Add(character->front());
    }
    bytes.remove_prefix(size);
  }
  return shown.Text();
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
