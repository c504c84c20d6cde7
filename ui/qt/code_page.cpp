#include "ui/qt/code_page.h"

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <cwchar>

#include "core/text/encoding.h"
#include "core/text/utf8.h"

namespace morvex {
namespace {

// A byte without a character is shown as the lone surrogate with the code kEscapes + byte.
constexpr char16_t kEscapes = 0xDC00;
constexpr char16_t kFirstEscape = kEscapes + 0x80;
constexpr char16_t kLastEscape = kEscapes + 0xFF;

PageCharacters Windows1252() {
  PageCharacters characters{};
  for (std::size_t byte = 0; byte < characters.size(); ++byte) {
    const std::u32string character =
        *Decode(std::string(1, static_cast<char>(byte)), Encoding::kWindows1252);
    characters[byte] = static_cast<char16_t>(character.front());
  }
  return characters;
}

// While this object lives, the C library uses the characters of the user's locale; the toolkit may
// have set others.
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

// Returns the character of a single byte in the C library's current locale, if it has one.
std::optional<char16_t> LocaleCharacter(std::uint8_t byte) {
  const char text = static_cast<char>(byte);
  std::mbstate_t state{};
  wchar_t wide = 0;
  if (std::mbrtowc(&wide, &text, 1, &state) > 1) return std::nullopt;
  const auto code = static_cast<char32_t>(wide);
  if (code > 0xFFFF || QChar::isSurrogate(code)) return std::nullopt;
  return static_cast<char16_t>(code);
}

// Returns the code page of the user's locale. Returns nothing when the locale is unknown, takes
// several bytes per character, has no characters beyond ASCII, or has the same character for two
// byte values.
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
    const Utf8Sequence sequence = ReadUtf8(bytes.substr(at));
    if (!sequence.character) {
      shown += QChar(static_cast<char16_t>(kEscapes + byte));
      ++at;
      continue;
    }
    const char32_t character = *sequence.character;
    if (character > 0xFFFF) {
      shown += QChar(QChar::highSurrogate(character));
      shown += QChar(QChar::lowSurrogate(character));
    } else {
      shown += QChar(static_cast<char16_t>(character));
    }
    at += sequence.size;
  }
  return shown;
}

std::string CodePage::NextBytes(const QString& shown, qsizetype& at) const {
  const char16_t unit = shown[at++].unicode();
  const auto one = [](int byte) { return std::string(1, static_cast<char>(byte)); };
  if (!is_utf8_) return bytes_[unit] == 0 ? std::string() : one(bytes_[unit] - 1);
  if (unit >= kFirstEscape && unit <= kLastEscape) return one(unit - kEscapes);
  char32_t character = unit;
  if (QChar::isHighSurrogate(unit) && at < shown.size() && shown[at].isLowSurrogate()) {
    character = QChar::surrogateToUcs4(unit, shown[at++].unicode());
  }
  return Encode(character, Encoding::kUtf8).value_or(std::string());
}

std::optional<std::string> CodePage::Bytes(const QString& shown) const {
  std::string bytes;
  bytes.reserve(static_cast<std::size_t>(shown.size()));
  for (qsizetype at = 0; at < shown.size();) {
    const std::string character = NextBytes(shown, at);
    if (character.empty()) return std::nullopt;
    bytes += character;
  }
  return bytes;
}

std::size_t CodePage::BytesInFront(const QString& shown, qsizetype characters) const {
  std::size_t bytes = 0;
  for (qsizetype at = 0; at < shown.size() && at < characters;) {
    const std::size_t size = NextBytes(shown, at).size();
    if (at > characters) break;
    bytes += size;
  }
  return bytes;
}

qsizetype CodePage::CharactersInFront(const QString& shown, std::size_t bytes) const {
  std::size_t taken = 0;
  for (qsizetype at = 0; at < shown.size();) {
    const qsizetype in_front = at;
    taken += NextBytes(shown, at).size();
    if (taken > bytes) return in_front;
  }
  return shown.size();
}

}  // namespace morvex
