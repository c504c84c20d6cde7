// The other letter cases of a text, in any alphabet.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace morvex {

// What may stand for a letter where the case of letters does not count.
struct OtherCase {
  std::u32string text;
  bool is_rare = false;  // neither its upper nor its lower case in most languages
  bool operator==(const OtherCase&) const = default;
};

// The upper or lower case of `letter`, and of a letter with more forms (the final sigma, the
// dotless and the dotted i) all of them. Empty for what is no letter of an alphabet with cases.
std::vector<OtherCase> OtherCases(char32_t letter);

// The text with every letter that another case writes as several (the sharp s, joined letters such
// as the one for f and i) in these, in lower case; the long s and the Kelvin sign as s and k.
std::u32string TakenApart(std::u32string_view text);

// A letter that stands for so many letters of a text.
struct JoinedLetter {
  char32_t letter = 0;
  std::size_t letters = 0;
};

// The other way round: what may stand for the first letters of a text, in whatever case they are.
std::vector<JoinedLetter> JoinedAtBeginning(std::u32string_view text);

}  // namespace morvex
