// Between the core's bytes and the text that a person sees and types. Every byte has a shown form
// and comes back from it as it was, so text that is only passed through is never changed.
#pragma once

#include <QString>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "core/host/system_service.h"

namespace morvex {

class CodePage {
 public:
  // kUtf8: bytes that are no UTF-8 are shown as the lone surrogates U+DC80 to U+DCFF.
  // kSingleByte: the code page of the C library's present locale if its characters take one byte
  // each, else Windows-1252; bytes without a character are shown as the control character of their
  // number.
  explicit CodePage(TextCodec codec);

  QString Shown(std::string_view bytes) const;
  // Nothing when a character has no bytes.
  std::optional<std::string> Bytes(const QString& shown) const;
  // How many bytes the first `characters` UTF-16 units of an encodable text take, and back: a
  // position within a character counts as the one in front of it.
  std::size_t BytesInFront(const QString& shown, qsizetype characters) const;
  qsizetype CharactersInFront(const QString& shown, std::size_t bytes) const;

 private:
  bool AppendBytes(const QString& shown, qsizetype& at, std::string& bytes) const;

  bool is_utf8_;
  std::array<char16_t, 256> characters_{};  // of a single-byte code page
};

}  // namespace morvex
