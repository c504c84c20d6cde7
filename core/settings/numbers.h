// Parses numbers on the command line and in the settings file.
#pragma once

#include <cstdint>
#include <string_view>

#include "core/host/error.h"

namespace morvex {

// Converts a text that is one decimal number with an optional sign, fraction and exponent; blanks
// around the number are allowed. Rounds to the nearest integer, halves to the even one. Returns
// kTypeMismatch when the text is not a number, kOverflow when 16 bits do not hold it.
Result<std::int16_t> ToInteger16(std::string_view text);

// Returns the number at the beginning of the text, 0 if there is none; the rest is ignored. Rounds
// as ToInteger16 does. Returns kOverflow if 16 bits do not hold the number.
Result<std::int16_t> LeadingInteger16(std::string_view text);

}  // namespace morvex
