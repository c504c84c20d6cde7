// What a run would make of a small file with one row of a list: shown where a row does something
// else than its writer thinks.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/engine/input_window.h"
#include "core/engine/positioned_output.h"

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
