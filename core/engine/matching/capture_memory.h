// The capture buffer (capture_state.h) while a source is processed.
//
// An attempt (match_attempt.h) that comes to a wildcard overwrites the buffer. An attempt of a row
// without a wildcard cuts the buffer down to one byte if the row's first byte matches. So the
// buffer changes at very many offsets. But its bytes are read only where a right text has a
// wildcard, and at the end of the source, because the next source starts with the same buffer, even
// under another list. So this class records only the last events that the buffer depends on, and
// computes the bytes when a caller asks for them. If a list captures nothing, this class only tests
// one flag per match. If a list captures, but has no wildcard in a right text, this class only
// keeps its records.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "core/engine/matching/capture_state.h"
#include "core/engine/matching/compiled_list.h"
#include "core/engine/matching/input_window.h"

namespace morvex {

class CaptureMemory {
 public:
  // `list` must outlive the object.
  explicit CaptureMemory(const CompiledList& list);

  // Call when another source begins. `state` holds the buffer that the last source left and
  // receives the buffer that this source leaves.
  void Open(const InputWindow& input, CaptureState& state);

  // The functions from here to StartAt report events. Call them in the order in which the events
  // happen. An offset is accounted for once its effect on the buffer has been reported.

  // The attempt at `offset` has captured bytes. For `more` see MatchAttempt::Round.
  void Captured(std::uint64_t offset, const MatchAttempt& attempt,
                const std::vector<std::uint8_t>& more) {
    vain_row_ = kNone;
    tried_ = {};
    in_window_ = true;
    first_ = offset + static_cast<std::uint64_t>(attempt.captured_first() - 1);
    count_ = static_cast<std::size_t>(attempt.captured_count());
    if (!more_.empty() || !more.empty()) more_ = more;
    may_be_long_ = true;
  }
  // The attempt of `row`, the only row to try at `offset`, has failed after capturing bytes up to
  // the last possible round.
  void CapturedInVain(std::int32_t row, std::uint64_t offset) {
    vain_row_ = row;
    vain_offset_ = offset;
    may_be_long_ = true;
  }
  // The table rows between `after` and `before`, both excluded, were tried at `offset`.
  void TriedRows(std::uint64_t offset, std::int64_t after, std::int64_t before) {
    if (HasRecords()) WorkOut();
    tried_ = {offset, after, before};
    accounted_up_to_ = offset + 1;
  }
  // All rows were tried, and none matched, at every offset in front of `offset` that is not yet
  // accounted for.
  void TriedUpTo(std::uint64_t offset);
  // A row that cuts the buffer was tried, and its first byte matched.
  void Cut() {
    if (may_be_long_) CutLong();
  }
  // Marks the offsets in front of `offset` as accounted for.
  void StartAt(std::uint64_t offset) { accounted_up_to_ = offset; }

  // Returns the buffer's bytes. They are valid until the next call of a function of this object or
  // until the window moves.
  std::string_view Bytes();
  // Whether the bytes that Bytes returned lie in the window. If so, InputWindow::kPadding bytes
  // behind them are readable.
  bool AreInWindow() const { return in_window_ && more_.empty(); }

  // Stores the buffer's bytes in the state. Call before the window drops bytes, and at the end of
  // the source.
  void Settle();

 private:
  static constexpr std::int32_t kNone = -1;

  // The table rows between `after` and `before`, both excluded, were tried at `offset` and may have
  // cut the buffer.
  struct Tried {
    std::uint64_t offset = 0;
    std::int64_t after = 0;
    std::int64_t before = 0;  // 0: no rows
  };

  bool HasRecords() const { return vain_row_ != kNone || tried_.before > 0; }
  void CutLong();
  void WorkOut();
  bool AnyCuts(const Tried& tried) const;

  const CompiledList& list_;
  std::array<bool, 256> cuts_{};  // by byte: some row that begins with the byte cuts the buffer
  bool any_cuts_ = false;
  const InputWindow* input_ = nullptr;
  CaptureState* state_ = nullptr;
  bool may_be_long_ = false;  // the buffer may have more than one byte
  std::uint64_t accounted_up_to_ = 0;
  // The recorded events, which WorkOut has not applied yet. If vain_row_ is set, its attempt came
  // last and overwrites the whole buffer, so tried_ no longer matters.
  std::int32_t vain_row_ = kNone;
  std::uint64_t vain_offset_ = 0;
  Tried tried_;
  // The buffer before the recorded events. If in_window_, it consists of `count_` bytes of the
  // source from offset `first_` on, then `more_`. Otherwise it is the state's buffer.
  bool in_window_ = false;
  std::uint64_t first_ = 0;
  std::size_t count_ = 0;
  std::vector<std::uint8_t> more_;
};

}  // namespace morvex
