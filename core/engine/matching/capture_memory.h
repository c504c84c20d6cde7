// The capture buffer while a source is processed.
//
// Every attempt of a wildcard row overwrites the buffer, and every attempt of another row whose
// first byte matches cuts it down to one byte. This happens at nearly every offset, but the result
// is read only where a right text has a wildcard, and at the end: the state after one source is the
// state before the next one, also of another list. So this class only records the last events that
// the buffer depends on, and works out the bytes when somebody asks for them. A list that captures
// nothing then pays for one test of a flag per match; a list that captures but has no wildcard on
// the right pays for the record.
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

  // Another source begins; `state` holds what the last one left, and receives what this one leaves.
  void Open(const InputWindow& input, CaptureState& state);

  // The events, in the order in which they happen.

  // The attempt at `offset` captured bytes; `more` as in MatchAttempt.
  void Captured(std::uint64_t offset, const MatchAttempt& attempt,
                const std::vector<std::uint8_t>& more);
  // The row, the only one to be tried at `offset`, kept its span open to the last round and failed.
  void CapturedInVain(std::int32_t row, std::uint64_t offset) {
    vain_row_ = row;
    vain_offset_ = offset;
    may_be_long_ = true;
  }
  // The rows of the table behind `after` and in front of `before` were tried at `offset`.
  void TriedRows(std::uint64_t offset, std::int64_t after, std::int64_t before);
  // All rows were tried at the offsets up to `offset` that are not accounted for yet; none matched.
  void TriedUpTo(std::uint64_t offset);
  // A row that cuts the buffer was tried.
  void Cut() {
    if (may_be_long_) CutLong();
  }
  // The offsets in front of this one are accounted for.
  void StartAt(std::uint64_t offset) { accounted_up_to_ = offset; }

  // The buffer's bytes, valid until the next call here or until the window moves.
  std::string_view Bytes();
  // Bytes() lie in the window, so InputWindow::kPadding more may be read.
  bool AreInWindow() const { return in_window_ && more_.empty(); }

  // Call before the window drops bytes, and at the end: stores the buffer's bytes in the state.
  void Settle();

 private:
  static constexpr std::int32_t kNone = -1;

  // Rows whose attempts at an offset may have cut the buffer.
  struct Tried {
    std::uint64_t offset = 0;
    std::int64_t after = 0;
    std::int64_t before = 0;  // 0: no rows
  };

  void CutLong();
  void WorkOut();
  bool AnyCuts(const Tried& tried) const;

  const CompiledList& list_;
  std::array<bool, 256> cuts_{};  // by first byte
  bool any_cuts_ = false;
  const InputWindow* input_ = nullptr;
  CaptureState* state_ = nullptr;
  bool may_be_long_ = false;  // the buffer may have more than one byte
  std::uint64_t accounted_up_to_ = 0;
  // The last events, in this order; the ones before them no longer matter.
  std::int32_t vain_row_ = kNone;
  std::uint64_t vain_offset_ = 0;
  Tried tried_;
  // When in the window, the buffer is `count_` bytes of the source from `first_` on, then `more_`;
  // otherwise it is the state's. Without the events above.
  bool in_window_ = false;
  std::uint64_t first_ = 0;
  std::size_t count_ = 0;
  std::vector<std::uint8_t> more_;
};

}  // namespace morvex
