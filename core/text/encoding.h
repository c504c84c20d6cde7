// Characters in the bytes of an encoding, and back. A character is a Unicode code point, U+0000 to
// U+10FFFF without the surrogates U+D800 to U+DFFF.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace morvex {

enum class Encoding {
  kUtf8,
  kWindows1252,  // bytes 81, 8D, 8F, 90 and 9D are the control characters of the same number
  kUtf16Le,      // little-endian
  kUtf16Be,      // big-endian
  kBytes,        // unknown: each byte is the character of the same number, U+0000 to U+00FF
};
inline constexpr std::size_t kEncodings = 5;

// Returns the characters of `bytes`; a byte-order mark is one of them, U+FEFF. Returns nothing for
// malformed bytes: in UTF-8 whatever encodes no code point (see Utf8Sequence), in UTF-16 an odd
// number of bytes or a surrogate without its other half. kWindows1252 and kBytes never fail.
std::optional<std::u32string> Decode(std::string_view bytes, Encoding encoding);

// Returns the bytes of a character, 1 to 4. Returns nothing if the encoding lacks the character, or
// if the number is no character.
std::optional<std::string> Encode(char32_t character, Encoding encoding);

// Returns the bytes of a whole text; nothing if the encoding lacks one of its characters.
std::optional<std::string> Encode(std::u32string_view text, Encoding encoding);

}  // namespace morvex
