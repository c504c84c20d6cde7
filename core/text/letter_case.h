// Upper and lower case in every alphabet that has them, and ligatures: characters such as the sharp
// s (U+00DF) or the joined fi (U+FB01) that another letter case writes as several letters.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace morvex {

// What may stand for a letter where letter case does not count.
struct OtherCase {
  std::u32string text;   // one character; two for the lower case of U+0130
  bool is_rare = false;  // neither the upper nor the lower case of the letter in most languages
  bool operator==(const OtherCase&) const = default;
};

// Returns the other case of `letter`; for a letter with more than two forms (the final sigma, the
// dotless and the dotted i) all other forms. Returns nothing for a character without letter case;
// the long s and the Kelvin sign count as such.
std::vector<OtherCase> OtherCases(char32_t letter);

// Returns the text with each ligature replaced by its letters in lower case, the long s (U+017F) by
// s and the Kelvin sign (U+212A) by k. All other characters stay as they are.
std::u32string WithoutLigatures(std::u32string_view text);

struct Ligature {
  char32_t character = 0;
  std::size_t letters = 0;  // how many letters it stands for
};

// Returns the ligatures that may stand for the first letters of a text, in any letter case.
// Ligatures of more letters come first.
std::vector<Ligature> LigaturesAtBeginning(std::u32string_view text);

}  // namespace morvex
