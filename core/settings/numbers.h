// Numbers written by people: on the command line and in the settings file.
#pragma once

#include <cstdint>
#include <string_view>

#include "core/host/error.h"

namespace morvex {

// The whole text is one decimal number, with an optional sign, fraction and exponent; blanks before
// and after it are allowed. Rounded to the nearest integer, halves to the even one. kTypeMismatch
// when it is no number, kOverflow when 16 bits do not hold it.
Result<std::int16_t> ToInteger16(std::string_view text);

// The number that the text starts with, 0 when it starts with none; what follows is not looked at.
// Rounded in the same way, with the same kOverflow.
Result<std::int16_t> LeadingInteger16(std::string_view text);

}  // namespace morvex
