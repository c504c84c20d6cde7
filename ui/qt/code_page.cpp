#include "ui/qt/code_page.h"

#include <cstdlib>
#include <cwchar>

namespace morvex {
namespace {

constexpr char16_t kFirstEscape = 0xDC80;  // stands for the byte 0x80
constexpr char16_t kLastEscape = 0xDCFF;

// Windows-1252 from 0x80 to 0x9F; elsewhere a byte is the character of its number.
constexpr std::array<char16_t, 32> kWindows1252 = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

std::array<char16_t, 256> Windows1252() {
  std::array<char16_t, 256> characters{};
  for (std::size_t byte = 0; byte < characters.size(); ++byte) {
    const bool differs = byte >= 0x80 && byte < 0xA0;
    characters[byte] = differs ? kWindows1252[byte - 0x80] : static_cast<char16_t>(byte);
  }
  return characters;
}

// Of the C library's locale. Nothing when it has none, or when two bytes would look the same.
std::optional<std::array<char16_t, 256>> LocalePage() {
  if (MB_CUR_MAX != 1) return std::nullopt;
  std::array<char16_t, 256> characters{};
  bool beyond_ascii = false;
  for (std::size_t byte = 0; byte < characters.size(); ++byte) {
    const char text = static_cast<char>(byte);
    std::mbstate_t state{};
    wchar_t wide = 0;
    const std::size_t taken = std::mbrtowc(&wide, &text, 1, &state);
    const bool is_known = taken <= 1 && static_cast<std::uint32_t>(wide) <= 0xFFFF;
    beyond_ascii = beyond_ascii || (is_known && byte >= 0x80);
    characters[byte] = static_cast<char16_t>(is_known ? wide : static_cast<wchar_t>(byte));
    for (std::size_t other = 0; other < byte; ++other) {
      if (characters[other] == characters[byte]) return std::nullopt;
    }
  }
  if (!beyond_ascii) return std::nullopt;  // the plain C locale
  return characters;
}

// How many bytes a UTF-8 sequence that begins at `at` has; 0 when none does.
std::size_t SequenceLength(std::string_view bytes, std::size_t at, char32_t& character) {
  const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(bytes[at + i]); };
  const std::uint8_t first = byte(0);
  if (first < 0x80) {
    character = first;
    return 1;
  }
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || bytes.size() - at < length) return 0;
  character = first & (0xFF >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
    character = character << 6 | (byte(i) & 0x3F);
  }
  const char32_t least = length == 4 ? 0x10000 : length == 3 ? 0x800 : 0x80;
  const bool is_surrogate = character >= 0xD800 && character <= 0xDFFF;
  return character < least || character > 0x10FFFF || is_surrogate ? 0 : length;
}

}  // namespace

CodePage::CodePage(TextCodec codec) : is_utf8_(codec == TextCodec::kUtf8) {
  if (!is_utf8_) characters_ = LocalePage().value_or(Windows1252());
}

QString CodePage::Shown(std::string_view bytes) const {
  QString shown;
  shown.reserve(static_cast<qsizetype>(bytes.size()));
  for (std::size_t at = 0; at < bytes.size();) {
    const auto byte = static_cast<std::uint8_t>(bytes[at]);
    if (!is_utf8_) {
      shown += QChar(characters_[byte]);
      ++at;
      continue;
    }
    char32_t character = 0;
    const std::size_t length = SequenceLength(bytes, at, character);
    if (length == 0) {
      shown += QChar(static_cast<char16_t>(kFirstEscape + byte - 0x80));
      ++at;
      continue;
    }
    if (character > 0xFFFF) {
      shown += QChar(QChar::highSurrogate(character));
      shown += QChar(QChar::lowSurrogate(character));
    } else {
      shown += QChar(static_cast<char16_t>(character));
    }
    at += length;
  }
  return shown;
}

// Adds the bytes of the character at `at`, which moves behind it.
bool CodePage::AppendBytes(const QString& shown, qsizetype& at, std::string& bytes) const {
  const QChar unit = shown[at++];
  const char16_t code = unit.unicode();
  if (!is_utf8_) {
    for (std::size_t byte = 0; byte < characters_.size(); ++byte) {
      if (characters_[byte] != code) continue;
      bytes += static_cast<char>(byte);
      return true;
    }
    return false;
  }
  if (code >= kFirstEscape && code <= kLastEscape) {
    bytes += static_cast<char>(code - kFirstEscape + 0x80);
    return true;
  }
  QString character(unit);
  if (unit.isHighSurrogate() && at < shown.size() && shown[at].isLowSurrogate()) {
    character += shown[at++];
  } else if (unit.isSurrogate()) {
    return false;
  }
  bytes += character.toStdString();
  return true;
}

std::optional<std::string> CodePage::Bytes(const QString& shown) const {
  std::string bytes;
  bytes.reserve(static_cast<std::size_t>(shown.size()));
  for (qsizetype at = 0; at < shown.size();) {
    if (!AppendBytes(shown, at, bytes)) return std::nullopt;
  }
  return bytes;
}

std::size_t CodePage::BytesInFront(const QString& shown, qsizetype characters) const {
  std::string bytes;
  for (qsizetype at = 0; at < shown.size();) {
    const std::size_t in_front = bytes.size();
    AppendBytes(shown, at, bytes);
    if (at > characters) return in_front;
  }
  return bytes.size();
}

qsizetype CodePage::CharactersInFront(const QString& shown, std::size_t bytes) const {
  std::string taken;
  for (qsizetype at = 0; at < shown.size();) {
    const qsizetype in_front = at;
    AppendBytes(shown, at, taken);
    if (taken.size() > bytes) return in_front;
  }
  return shown.size();
}

}  // namespace morvex
