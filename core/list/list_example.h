// What one row of a list makes of a short example file. Shown to the user when a row does not do
// what its writer probably meant.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/engine/matching/input_window.h"
#include "core/engine/matching/positioned_output.h"

namespace morvex {

// Returns an example file that the left text was probably written for: the text with a word instead
// of the wildcard.
std::string ExampleFor(std::string_view left, std::uint8_t joker);

// Runs lists of one row over example files. Reuses its buffers from one row to the next.
class RowOutcomes {
 public:
  // Returns what a run with this row alone makes of `file`, the contents of a file. `left` and
  // `right` are as the list file has them.
  std::string Of(const std::string& left, const std::string& right, std::uint8_t joker,
                 std::string_view file);

 private:
  InputWindow input_;
  PositionedOutput output_;
};

}  // namespace morvex
