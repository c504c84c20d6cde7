// The 8-bit code of a character.
#pragma once

#include <cstdint>
#include <string_view>

#include "core/program/program.h"

namespace morvex {

// The code of the text's first character. 0 when the text is empty or that character has more than
// one byte in the host's text codec.
std::uint8_t CharacterCode(const Program& program, std::string_view text);

}  // namespace morvex
