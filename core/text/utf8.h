// Reads UTF-8. All code that reads UTF-8 does so here.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace morvex {

// The most bytes that one character takes in UTF-8.
inline constexpr std::size_t kLongestUtf8 = 4;

// The UTF-8 sequence that some bytes begin with.
struct Utf8Sequence {
  // Length in bytes, 1 to 4. A lead byte (C2 to F4) counts together with the continuation bytes
  // that it announces. A lead byte without all of them, and any other byte, has length 1.
  std::size_t size = 1;
  // The code point; nothing if the bytes encode no code point: a stray or truncated byte, an
  // overlong form, a surrogate (U+D800 to U+DFFF), or a number above U+10FFFF.
  std::optional<char32_t> character;
};

// Returns the sequence that `bytes` begin with; `bytes` must not be empty.
Utf8Sequence ReadUtf8(std::string_view bytes);

// Whether `code` is the code point of a character: U+10FFFF at most, and no surrogate.
bool IsCodePoint(char32_t code);

// Whether a byte is a continuation byte, 80 to BF: it never begins a character.
bool IsUtf8Continuation(char byte);

}  // namespace morvex
