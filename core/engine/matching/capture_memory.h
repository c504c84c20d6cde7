// The capture buffer while a file is processed. Attempts fill it at nearly every place and hardly
// ever need what an earlier one left there, so it is kept as a note of where in the file the caught
// bytes stand, and made into bytes when they are asked for or leave the window.
//
// An attempt of a row without the wildcard whose first byte fits cuts the buffer down to one byte.
// Whether that has happened is only looked into when it matters.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "core/engine/matching/capture_state.h"
#include "core/engine/matching/compiled_list.h"
#include "core/engine/matching/input_window.h"

namespace morvex {

class CaptureMemory {
 public:
  // `cutting_rows` as in CompiledList; must outlive the object.
  explicit CaptureMemory(const std::array<std::vector<std::int64_t>, 256>& cutting_rows);

  // Another file begins; `state` holds what the last one left.
  void Open(CaptureState& state);

  // The attempt at `place` (an offset in the file) caught bytes; `more` as in MatchAttempt.
  void Caught(std::uint64_t place, const MatchAttempt& attempt,
              const std::vector<std::uint8_t>& more) {
    noted_ = true;
    first_ = place + static_cast<std::uint64_t>(attempt.caught_first() - 1);
    count_ = static_cast<std::size_t>(attempt.caught_count());
    if (!more_.empty() || !more.empty()) more_ = more;
    may_be_long_ = true;
  }

  // An attempt cut the buffer.
  void Cut() {
    if (may_be_long_) CutLong();
  }

  // The rows of the places up to `place` were tried and none matched.
  void TriedUpTo(const InputWindow& window, std::uint64_t place);
  // The places in front of `place` need no look: something at them decided already.
  void StartAt(std::uint64_t place) { looked_up_to_ = place; }

  // The buffer's bytes. Valid until the next call here or the window's next move.
  std::string_view Bytes(const InputWindow& window);
  // Whether Bytes gives bytes of the window, so that InputWindow::kPadding more may be read.
  bool AreInWindow() const { return noted_ && more_.empty(); }

  // Call before the window moves over bytes: puts the buffer's bytes into the state.
  void Settle(const InputWindow& window);

 private:
  void CutLong();

  std::array<bool, 256> cuts_{};  // by first byte
  bool any_cuts_ = false;
  CaptureState* state_ = nullptr;
  bool may_be_long_ = false;  // the buffer may have more than one byte
  std::uint64_t looked_up_to_ = 0;
  // When noted, the buffer's bytes are `count_` of the file from `first_` on, then `more_`.
  bool noted_ = false;
  std::uint64_t first_ = 0;
  std::size_t count_ = 0;
  std::vector<std::uint8_t> more_;
};

}  // namespace morvex
