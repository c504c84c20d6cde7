// A text in the bytes of an encoding, letter by letter, with every other case that a letter can
// take there.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace morvex {

enum class Encoding { kUtf8, kWindows1252, kUtf16Le, kUtf16Be, kBytes };
inline constexpr std::size_t kEncodings = 5;

// The characters of bytes in one of the encodings; in kBytes every byte is one. Nothing when they
// cannot be read so: UTF-8 or UTF-16 that is none.
std::optional<std::u32string> Decode(std::string_view bytes, Encoding encoding);

// The bytes of a character; nothing when it cannot be spelled so.
std::optional<std::string> Encode(char32_t character, Encoding encoding);
// The same for a text.
std::optional<std::string> Encode(std::u32string_view text, Encoding encoding);

// A way in which a letter can stand in a file, or a joined letter that stands for several.
struct LetterWay {
  std::string bytes;
  std::size_t letters = 1;  // of the text, from this one on
  bool is_rare = false;     // as of OtherCase, and not of ASCII alone, which is in every file
};

// A way that begins with another one stands in front of it.
using LetterWays = std::vector<LetterWay>;

// A text, letter by letter, after joined letters have been taken apart. The ways belong to an
// Alphabet.
struct Spelling {
  Encoding encoding = Encoding::kBytes;
  std::vector<const LetterWays*> letters;
  std::string as_written;  // empty when the encoding lacks a letter that has an other case there

  // Bytes at most that the text takes.
  std::size_t LongestSize() const;
};

// How a text stands at a place: so many bytes, as it was written or in other letter case.
struct Standing {
  std::size_t size = 0;
  bool as_written = true;
};
std::optional<Standing> StandsAt(const Spelling& spelling, std::string_view bytes);

// Keeps the ways of every letter that was asked for. Its spellings must not outlive it.
class Alphabet {
 public:
  // Nothing when a character of the text can be spelled so in no letter case. A text of kBytes has
  // other cases for its ASCII letters alone.
  std::optional<Spelling> Spell(std::u32string_view text, Encoding encoding);

 private:
  // Of the first letter, for which the list has `sign`, such as the long s, unless that is 0.
  const LetterWays& WaysOf(std::u32string_view text, Encoding encoding, char32_t sign);

  std::array<std::unordered_map<std::u32string, LetterWays>, kEncodings> known_;
};

}  // namespace morvex
