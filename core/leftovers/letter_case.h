// The other letter cases of a character, in any alphabet.
#pragma once

#include <string>
#include <vector>

namespace morvex {

// What may stand for `letter` where the case of letters does not count, without `letter` itself:
// its upper and lower case, for one with two lower cases (the final sigma) all of them, for the
// sharp s also two of s. Empty for what is no letter of an alphabet with cases.
std::vector<std::u32string> OtherCases(char32_t letter);

}  // namespace morvex
