// The border between the system's wide text and the program's bytes: one byte for each character of
// the system's own code page. Nothing is bent to fit: a character that the page does not hold is
// never taken for one that looks like it.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace morvex::windows {

// Stands where the page has no byte. No file name can hold it, so no other file is named by
// mistake.
inline constexpr char kUnspellable = '?';

class CodePage {
 public:
  // Where `number` (as GetACP gives it) is unknown or takes several bytes for some characters, such
  // as UTF-8, the page is Windows-1252: every byte has to be a character of its own.
  explicit CodePage(unsigned number);

  // The character of each byte; 0 for bytes without one, and for NUL.
  const std::array<wchar_t, 256>& Characters() const { return wide_; }
  // The number of the page that is used.
  unsigned Number() const { return number_; }
  // `text` with kUnspellable for each unit that the page does not hold.
  std::string Bytes(std::wstring_view text) const;
  // Nothing when a byte stands for no character of its own.
  std::optional<std::wstring> Wide(std::string_view bytes) const;

 private:
  unsigned number_;
  std::array<wchar_t, 256> wide_{};  // 0 for bytes without a character, and for NUL
  std::map<wchar_t, char> bytes_;    // for characters from 128 on
};

// The system's page, the same as long as the process lives.
const CodePage& SystemCodePage();

}  // namespace morvex::windows
