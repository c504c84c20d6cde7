// A text in the bytes of an encoding, letter by letter, with every other case that a letter can
// take there.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
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

// The ways in which a letter can stand in a file; the first is the letter as it was written.
using LetterWays = std::vector<std::string>;

// A text, letter by letter. The ways belong to an Alphabet.
struct Spelling {
  Encoding encoding = Encoding::kBytes;
  std::vector<const LetterWays*> letters;
  std::string as_written;  // the bytes of every letter's first way

  // Leaves the first `count` letters.
  void Cut(std::size_t count);
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
  // Nothing when a character of the text cannot be spelled so. A text of kBytes has other cases for
  // its ASCII letters alone.
  std::optional<Spelling> Spell(std::u32string_view text, Encoding encoding);

 private:
  const LetterWays* WaysOf(char32_t letter, Encoding encoding);

  std::deque<LetterWays> ways_;  // stay where they are
  std::array<std::unordered_map<char32_t, const LetterWays*>, kEncodings> known_;
};

}  // namespace morvex
