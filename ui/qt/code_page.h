// Converts between the core's bytes and the toolkit's text. Every byte has a shown form that
// converts back to the same byte, so text that is only passed through is never changed.
#pragma once

#include <QString>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/host/system_service.h"

namespace morvex {

class CodePage {
 public:
  // For kUtf8 the page is UTF-8; a byte that is part of no character is shown as a lone surrogate,
  // U+DC80 to U+DCFF. For kSingleByte it is the page of the user's locale, if that has one byte per
  // character, characters beyond ASCII, and no character twice; else it is Windows-1252 (see
  // Encoding::kWindows1252). A byte without a character is shown as a lone surrogate, U+DC00 to
  // U+DCFF. For kSingleByte the constructor switches the C library's locale for a moment, so no
  // other thread may use that locale meanwhile.
  explicit CodePage(TextCodec codec);
  // Returns the page for file names. If the locale has no single-byte page with characters beyond
  // ASCII, names are UTF-8, as the toolkit and other programs assume.
  static CodePage OfFileNames(TextCodec codec);
  // `characters` is the code page of the system. A byte without a character is shown as a lone
  // surrogate, U+DC00 to U+DCFF.
  explicit CodePage(const PageCharacters& characters);

  // Return the code pages of this machine for texts and for file names.
  static CodePage OfTexts(SystemService& system);
  static CodePage OfFileNames(SystemService& system);

  // Whether this page was made from the system's own code page.
  bool is_of_system() const { return is_of_system_; }

  QString Shown(std::string_view bytes) const;
  // Returns nothing when a character has no bytes in this code page.
  std::optional<std::string> Bytes(const QString& shown) const;
  // BytesInFront returns how many bytes the first `characters` UTF-16 units of a text take.
  // CharactersInFront returns how many UTF-16 units the first `bytes` bytes of a text take. A
  // position inside a character is rounded down to its beginning. A character without bytes takes 0
  // bytes.
  std::size_t BytesInFront(const QString& shown, qsizetype characters) const;
  qsizetype CharactersInFront(const QString& shown, std::size_t bytes) const;

 private:
  // Returns the bytes of the character at `at`, or an empty text if the character has no bytes.
  // Moves `at` behind the character.
  std::string NextBytes(const QString& shown, qsizetype& at) const;
  void TakeCharacters(const PageCharacters& characters);

  bool is_utf8_ = false;
  bool is_of_system_ = false;
  // Only for a single-byte code page. `characters_` has the character of each byte; `bytes_` has
  // for each UTF-16 unit its byte plus 1, or 0 if the unit has no byte.
  PageCharacters characters_{};
  std::vector<std::uint16_t> bytes_;
};

}  // namespace morvex
