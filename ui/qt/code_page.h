// Between the core's bytes and the text that a person sees and types. Every byte has a shown form
// and comes back from it as it was, so text that is only passed through is never changed.
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
  // kUtf8: bytes that are no UTF-8 are shown as the lone surrogates U+DC80 to U+DCFF.
  // kSingleByte: the code page of the user's locale if its characters take one byte each, and bytes
  // without a character are shown as the lone surrogates U+DC00 to U+DCFF; else Windows-1252, where
  // they are shown as the control characters of their numbers. Not while another thread asks the C
  // library for its locale.
  explicit CodePage(TextCodec codec);
  // For names of files. Where the locale has no characters of its own beyond ASCII they are UTF-8,
  // as the toolkit takes them to be, and everyone else who writes names.
  static CodePage OfFileNames(TextCodec codec);
  // The page that the system has, bytes without a character shown as U+DC00 to U+DCFF.
  explicit CodePage(const PageCharacters& characters);

  // Those of the machine that the program runs on.
  static CodePage OfTexts(SystemService& system);
  static CodePage OfFileNames(SystemService& system);

  // Whether it is one that the system has.
  bool is_of_system() const { return is_of_system_; }

  QString Shown(std::string_view bytes) const;
  // Nothing when a character has no bytes.
  std::optional<std::string> Bytes(const QString& shown) const;
  // How many bytes the first `characters` UTF-16 units of a text take, and back: a position within
  // a character counts as the one in front of it. A character without bytes takes none.
  std::size_t BytesInFront(const QString& shown, qsizetype characters) const;
  qsizetype CharactersInFront(const QString& shown, std::size_t bytes) const;

 private:
  // Returns the bytes of the character at `at` and moves `at` behind it; empty for a character that
  // has no bytes.
  std::string NextBytes(const QString& shown, qsizetype& at) const;
  void TakeCharacters(const PageCharacters& characters);

  bool is_utf8_ = false;
  bool is_of_system_ = false;
  // Of a single-byte code page: the character of each byte, and the byte of each character plus 1.
  PageCharacters characters_{};
  std::vector<std::uint16_t> bytes_;
};

}  // namespace morvex
