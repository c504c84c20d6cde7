// The ways to spell a text in an encoding: letter by letter, each in every letter case.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/text/encoding.h"

namespace morvex {

// One way to write a letter: one of its forms, or a ligature that stands for the letter and for
// letters after it.
struct LetterWay {
  std::string bytes;
  std::size_t letters = 1;  // how many letters of the text it stands for
  bool is_rare = false;     // a ligature, or a rare form (see OtherCase) that is not ASCII
};

// Longest first, so that a way that begins with another way comes before that other way.
using LetterWays = std::vector<LetterWay>;

// All ways to write a text in one encoding.
struct Spelling {
  Encoding encoding = Encoding::kBytes;
  // One element per letter of the text, in which ligatures are replaced by their letters. The
  // Alphabet owns the ways.
  std::vector<const LetterWays*> letters;
  // The bytes of the text with its own letter case and ligatures; empty if the encoding lacks one
  // of its characters.
  std::string as_written;

  // The most bytes that the text takes, in any of its ways.
  std::size_t LongestSize() const;
};

// An occurrence of a text.
struct Standing {
  std::size_t size = 0;    // bytes
  bool as_written = true;  // false: in another letter case, or with other ligatures
};

// Returns the occurrence of a text at the beginning of `bytes`, if there is one.
std::optional<Standing> StandsAt(const Spelling& spelling, std::string_view bytes);

// Makes spellings and owns their ways: it must outlive every Spelling that it returns.
class Alphabet {
 public:
  // Returns nothing if the encoding has no way to write one of the text's letters. In kBytes only
  // ASCII letters have another case.
  std::optional<Spelling> Spell(std::u32string_view text, Encoding encoding);

 private:
  // Returns all ways to write the first letter of `text`. `sign`: the long s or the Kelvin sign, if
  // the list has this sign in place of the letter; else 0.
  const LetterWays& WaysOf(std::u32string_view text, Encoding encoding, char32_t sign);

  std::array<std::unordered_map<std::u32string, LetterWays>, kEncodings> known_;
};

}  // namespace morvex
