// Converts between the system's wide text and the program's bytes, one byte for each character of
// the system's code page. The conversion is exact: a character that the page does not have is never
// replaced by a similar one.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace morvex::windows {

// Stands for a character that the page does not have. No file name can contain "?", so a path with
// a "?" never names another file by mistake.
inline constexpr char kUnspellable = '?';

class CodePage {
 public:
  // If the page `number` (from GetACP) is unknown or uses several bytes for some characters, as
  // UTF-8 does, Windows-1252 is used in its place, because each byte must be one character.
  explicit CodePage(unsigned number);

  // Returns the character of each byte value; 0 for NUL and for bytes without a character.
  const std::array<wchar_t, 256>& Characters() const { return wide_; }
  // The number of the page that is used.
  unsigned Number() const { return number_; }
  // Returns the bytes of `text`, with kUnspellable for each UTF-16 unit that the page does not
  // have.
  std::string Bytes(std::wstring_view text) const;
  // Returns the characters of `bytes`; nothing if one of the bytes has no character.
  std::optional<std::wstring> Wide(std::string_view bytes) const;

 private:
  unsigned number_;
  std::array<wchar_t, 256> wide_{};  // 0 for bytes without a character, and for NUL
  std::map<wchar_t, char> bytes_;    // only characters from 128 on
};

// The system's page; it never changes while the process lives.
const CodePage& SystemCodePage();

}  // namespace morvex::windows
