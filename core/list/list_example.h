// The result of one row of a list on a short sample text, made by the real substitution. It is
// shown to the user where a row does not do what its writer meant.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/engine/matching/input_window.h"
#include "core/engine/matching/positioned_output.h"

namespace morvex {

// A file for which a left text with the wildcard may have been written: a word stands in the
// wildcard's place.
std::string ExampleFor(std::string_view left, std::uint8_t joker);

// Keeps the memory that a substitution needs from one row to the next.
class RowOutcomes {
 public:
  // Substitutes by the rules of a run. The cells are as the list has them.
  std::string Of(const std::string& left_cell, const std::string& right_cell, std::uint8_t joker,
                 std::string_view file);

 private:
  InputWindow input_;
  PositionedOutput output_;
};

}  // namespace morvex
