#include "core/text/shown_text.h"

#include <cstddef>
#include <optional>
#include <vector>

#include "core/text/utf8.h"

namespace morvex {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

std::string HexByte(unsigned code) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  return {kDigits[code / 16 % 16], kDigits[code % 16]};
}

std::string Escaped(unsigned code) { return "\\x" + HexByte(code); }

bool IsControl(char32_t character) {
  return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

// Whether the character has no width, or changes where or in which order the text around it is
// shown.
bool IsUnseen(char32_t character) {
  return character == 0x61C || (character >= 0x200B && character <= 0x200F) ||
         (character >= 0x2028 && character <= 0x202E) ||
         (character >= 0x2060 && character <= 0x2069) || character == 0xFEFF;
}

bool IsHex(std::string_view digits) {
  return digits.find_first_not_of("0123456789ABCDEF") == std::string_view::npos;
}

// Whether a backslash in front of `shown` would read as the first character of an escape or of a
// doubled backslash.
bool CouldEscape(std::string_view shown) {
  return shown.starts_with('\\') ||
         (shown.starts_with('x') && shown.size() >= 3 && IsHex(shown.substr(1, 2))) ||
         (shown.starts_with('u') && shown.size() >= 5 && IsHex(shown.substr(1, 4)));
}

// Collects characters, and bytes that are part of no character.
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
  std::vector<std::size_t> backslashes_;  // offsets in shown_ of backslashes that begin no escape
};

std::string Shown(std::u32string_view text) {
  ShownSoFar shown;
  for (const char32_t character : text) shown.Add(character);
  return shown.Text();
}

// Removes the continuation bytes of a character that begins in front of the piece.
std::string_view WithoutCutBeginning(std::string_view bytes) {
  std::size_t cut = 0;
  while (cut < bytes.size() && cut < kLongestUtf8 - 1 && IsUtf8Continuation(bytes[cut])) ++cut;
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
    const Utf8Sequence sequence = ReadUtf8(bytes);
    if (sequence.character) {
      shown.Add(*sequence.character);
    } else {
      shown.AddByte(bytes.front());
    }
    bytes.remove_prefix(sequence.character ? sequence.size : 1);
  }
  return shown.Text();
}

std::string ShownPiece(std::string_view bytes, Encoding encoding) {
  if (encoding == Encoding::kUtf16Le || encoding == Encoding::kUtf16Be) {
    return Shown(DecodeUtf16Leniently(bytes, encoding));
  }
  if (encoding == Encoding::kWindows1252) return Shown(*Decode(bytes, encoding));
  const std::string_view whole = WithoutCutBeginning(bytes);
  for (std::size_t cut = 0; cut < kLongestUtf8 && cut <= whole.size(); ++cut) {
    const std::optional<std::u32string> text =
        Decode(whole.substr(0, whole.size() - cut), Encoding::kUtf8);
    if (text) return Shown(*text);
  }
  return Shown(*Decode(bytes, Encoding::kWindows1252));
}

std::string Printable(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const Utf8Sequence sequence = ReadUtf8(text);
    const bool is_control = sequence.character && IsControl(*sequence.character);
    // Of U+0080 to U+009F only the first byte is taken in this round. The next round escapes the
    // second byte, which alone is a control character to terminals without UTF-8.
    const std::size_t size = is_control ? 1 : sequence.size;
    const auto code = static_cast<unsigned char>(text.front());
    if (size == 1 && IsControl(code)) {
      shown += Escaped(code);
    } else {
      shown.append(text, 0, size);
    }
    text.remove_prefix(size);
  }
  return shown;
}

std::string PrintableLines(std::string_view text) {
  constexpr std::string_view kLineBreak = "\r\n";
  const std::size_t end = text.rfind(kLineBreak);
  if (end == std::string_view::npos) return Printable(text);
  return Printable(text.substr(0, end)) + "\n" + Printable(text.substr(end + kLineBreak.size()));
}

}  // namespace morvex
