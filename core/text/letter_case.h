// Upper and lower case in every alphabet that has them, and ligatures: characters that stand for
// two or three letters, such as the sharp s (U+00DF) for ss or the joined fi (U+FB01) for fi.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace morvex {

// What may stand for a letter where letter case does not count.
struct OtherCase {
  std::u32string text;   // one character; two for the lower case of U+0130
  bool is_rare = false;  // false: `text` and the letter are a usual pair of cases, as a and A are
  bool operator==(const OtherCase&) const = default;
};

// Returns the other case of `letter`; for a letter with more than two forms, such as the Greek
// sigma with its final form, all other forms. Returns nothing for a character without letter case.
// The long s and the Kelvin sign count as characters without letter case.
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
