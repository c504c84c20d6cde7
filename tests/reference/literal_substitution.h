// The standard that the engine is judged by: a slow substitution that follows each step literally.
// At a byte of the file, it tries one row after the other, in the order of the table. The first row
// that matches writes its right text, and the substitution goes on behind the matched bytes. If no
// row matches, the byte is copied.
//
// A tail is the part of a left text behind its first wildcard. A span is open while a wildcard
// takes in bytes; these bytes are captured. The order of the steps defines the result. Some effects
// look like slips: captured bytes outlive their match, a tail is recognised in the text in front of
// the wildcard, the write position moves back. These effects are part of what a list means, so the
// engine must show them too.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "core/engine/matching/capture_state.h"
#include "core/engine/matching/input_window.h"
#include "core/engine/matching/positioned_output.h"
#include "core/engine/matching/substitution.h"
#include "core/tables/substitution_tables.h"

namespace morvex::test {

// The state that an attempt leaves for the next attempt.
struct LiteralState : CaptureState {
  bool Joker_SET = false;  // a span is open
};

class LiteralSubstitution {
 public:
  // Rows with an empty left text are never tried. `tables` and `state` must outlive the object, and
  // the tables may not change; `joker` is the wildcard's code, 0 for none.
  LiteralSubstitution(const SubstitutionTables& tables, std::uint8_t joker, LiteralState& state);

  SubstitutionEnd Run(InputWindow& input, PositionedOutput& output, SubstitutionWatcher& watcher);

  ErrorNumber read_error() const { return read_error_; }

 private:
  struct UsableRow {
    std::int64_t row = 0;
    std::uint8_t first = 0;  // code of the left text's first character
  };
  struct Match {
    const UsableRow* row = nullptr;  // null: no row matched
    int length = 0;                  // bytes matched
  };
  class Attempt;

  // Sets `stopped` if the watcher wants to stop before all rows are tried.
  Match FirstMatchingRow(const InputWindow& input, bool& stopped);
  bool MayGoOn();
  // Writes a right text at `position` and returns the write position behind it.
  std::int64_t WriteRightText(std::int64_t row, std::int64_t position, PositionedOutput& output);
  // If the list has grown since the tables were filled, the tables may lack the tail of a row.
  const std::string& TailOf(std::int64_t row) const {
    static const std::string kNone;
    const auto index = static_cast<std::size_t>(row);
    return index < tables_.JokerTail.size() ? tables_.JokerTail[index] : kNone;
  }
  bool IsJoker(std::uint8_t code) const { return joker_ != 0 && code == joker_; }

  const SubstitutionTables& tables_;
  std::uint8_t joker_;
  LiteralState& state_;
  SubstitutionWatcher* watcher_ = nullptr;  // of the present Run
  std::int64_t read_pos_ = 0;               // 1-based, like every position here
  std::vector<UsableRow> rows_;
  std::array<bool, 256> starts_a_row_{};  // by the code of a left text's first character
  std::int64_t steps_ = 0;                // since the watcher was last asked
  ErrorNumber read_error_ = ErrorNumber::kNone;
};

}  // namespace morvex::test
