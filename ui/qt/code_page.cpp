#include "ui/qt/code_page.h"

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <cwchar>

namespace morvex {
namespace {

// A lone surrogate stands for the byte in its lower half.
constexpr char16_t kEscapes = 0xDC00;
constexpr char16_t kFirstEscape = kEscapes + 0x80;
constexpr char16_t kLastEscape = kEscapes + 0xFF;

// Windows-1252 from 0x80 to 0x9F; elsewhere a byte is the character of its number.
constexpr std::array<char16_t, 32> kWindows1252 = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

PageCharacters Windows1252() {
  PageCharacters characters{};
  for (std::size_t byte = 0; byte < characters.size(); ++byte) {
    const bool differs = byte >= 0x80 && byte < 0xA0;
    characters[byte] = differs ? kWindows1252[byte - 0x80] : static_cast<char16_t>(byte);
  }
  return characters;
}

// Sets the C library's characters to those of the user's locale; as before when it goes. A toolkit
// may have replaced them by others.
class UserCharacters {
 public:
  UserCharacters() {
    const char* const present = std::setlocale(LC_CTYPE, nullptr);
    before_ = present == nullptr ? "C" : present;
    is_known_ = std::setlocale(LC_CTYPE, "") != nullptr;
  }
  ~UserCharacters() { std::setlocale(LC_CTYPE, before_.c_str()); }
  UserCharacters(const UserCharacters&) = delete;
  UserCharacters& operator=(const UserCharacters&) = delete;

  bool is_known() const { return is_known_; }

 private:
  std::string before_;
  bool is_known_ = false;
};

// The character of a byte in the C library's present locale, where it has one of its own.
std::optional<char16_t> LocaleCharacter(std::uint8_t byte) {
  const char text = static_cast<char>(byte);
  std::mbstate_t state{};
  wchar_t wide = 0;
  if (std::mbrtowc(&wide, &text, 1, &state) > 1) return std::nullopt;
  const auto code = static_cast<char32_t>(wide);
  if (code > 0xFFFF || QChar::isSurrogate(code)) return std::nullopt;
  return static_cast<char16_t>(code);
}

// Of the user's locale. Nothing when that is unknown, has no characters beyond ASCII or shows two
// bytes alike.
std::optional<PageCharacters> LocalePage() {
  const UserCharacters user;
  if (!user.is_known() || MB_CUR_MAX != 1) return std::nullopt;
  PageCharacters characters{};
  bool beyond_ascii = false;
  for (std::size_t byte = 0; byte < characters.size(); ++byte) {
    const std::optional<char16_t> character = LocaleCharacter(static_cast<std::uint8_t>(byte));
    beyond_ascii = beyond_ascii || (character && *character >= 0x80);
    characters[byte] = character.value_or(static_cast<char16_t>(kEscapes + byte));
  }
  if (!beyond_ascii) return std::nullopt;
  PageCharacters sorted = characters;
  std::sort(sorted.begin(), sorted.end());
  if (std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end()) return std::nullopt;
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
  if (is_utf8_) return;
  TakeCharacters(LocalePage().value_or(Windows1252()));
}

CodePage::CodePage(const PageCharacters& characters) : is_of_system_(true) {
  PageCharacters complete = characters;
  for (std::size_t byte = 1; byte < complete.size(); ++byte) {
    if (complete[byte] == 0) complete[byte] = static_cast<char16_t>(kEscapes + byte);
  }
  TakeCharacters(complete);
}

void CodePage::TakeCharacters(const PageCharacters& characters) {
  characters_ = characters;
  bytes_.resize(0x10000);
  for (std::size_t byte = 0; byte < characters_.size(); ++byte) {
    bytes_[characters_[byte]] = static_cast<std::uint16_t>(byte + 1);
  }
}

CodePage CodePage::OfFileNames(TextCodec codec) {
  return CodePage(LocalePage() ? codec : TextCodec::kUtf8);
}

CodePage CodePage::OfTexts(SystemService& system) {
  const std::optional<PageCharacters> page = system.SystemPage();
  return page ? CodePage(*page) : CodePage(system.Codec());
}

CodePage CodePage::OfFileNames(SystemService& system) {
  const std::optional<PageCharacters> page = system.SystemPage();
  return page ? CodePage(*page) : OfFileNames(system.Codec());
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
      shown += QChar(static_cast<char16_t>(kEscapes + byte));
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

// The bytes of the character at `at`, which moves behind it.
CodePage::Encoded CodePage::Encode(const QString& shown, qsizetype& at) const {
  const char16_t unit = shown[at++].unicode();
  Encoded encoded;
  const auto add = [&](char32_t byte) {
    encoded.bytes[encoded.size++] = static_cast<char>(static_cast<std::uint8_t>(byte));
  };
  if (!is_utf8_) {
    if (bytes_[unit] != 0) add(bytes_[unit] - 1U);
    return encoded;
  }
  char32_t character = unit;
  if (QChar::isHighSurrogate(unit) && at < shown.size() && shown[at].isLowSurrogate()) {
    character = QChar::surrogateToUcs4(unit, shown[at++].unicode());
  } else if (unit >= kFirstEscape && unit <= kLastEscape) {
    add(unit - kEscapes);
    return encoded;
  } else if (QChar::isSurrogate(unit)) {
    return encoded;
  }
  const auto add_rest = [&](int shift) { add(0x80U | ((character >> shift) & 0x3FU)); };
  if (character < 0x80) {
    add(character);
  } else if (character < 0x800) {
    add(0xC0U | character >> 6);
    add_rest(0);
  } else if (character < 0x10000) {
    add(0xE0U | character >> 12);
    add_rest(6);
    add_rest(0);
  } else {
    add(0xF0U | character >> 18);
    add_rest(12);
    add_rest(6);
    add_rest(0);
  }
  return encoded;
}

std::optional<std::string> CodePage::Bytes(const QString& shown) const {
  std::string bytes;
  bytes.reserve(static_cast<std::size_t>(shown.size()));
  for (qsizetype at = 0; at < shown.size();) {
    const Encoded character = Encode(shown, at);
    if (character.size == 0) return std::nullopt;
    bytes.append(character.bytes.data(), character.size);
  }
  return bytes;
}

std::size_t CodePage::BytesInFront(const QString& shown, qsizetype characters) const {
  std::size_t bytes = 0;
  for (qsizetype at = 0; at < shown.size() && at < characters;) {
    const std::size_t size = Encode(shown, at).size;
    if (at > characters) break;
    bytes += size;
  }
  return bytes;
}

qsizetype CodePage::CharactersInFront(const QString& shown, std::size_t bytes) const {
  std::size_t taken = 0;
  for (qsizetype at = 0; at < shown.size();) {
    const qsizetype in_front = at;
    taken += Encode(shown, at).size;
    if (taken > bytes) return in_front;
  }
  return shown.size();
}

}  // namespace morvex
