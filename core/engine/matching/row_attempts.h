// Tries the rows whose prefix stands at an offset but does not decide by itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/engine/matching/capture_memory.h"
#include "core/engine/matching/compiled_list.h"
#include "core/engine/matching/input_window.h"
#include "core/engine/matching/match_attempt.h"
#include "core/engine/matching/occurrences.h"
#include "core/engine/matching/pace.h"

namespace morvex {

class RowAttempts {
 public:
  static constexpr std::int32_t kNone = -1;

  struct Match {
    std::int32_t row = kNone;  // index into the list's rows
    std::uint64_t length = 0;  // bytes matched
  };

  // `list` must outlive the object. What holds for the offsets ahead is noted in its attempts.
  explicit RowAttempts(CompiledList& list);

  // Another source begins. What the last one left in the capture buffer is in `state`.
  void Open(const InputWindow& input, CaptureState& state, Pace& pace);

  // Tries the `count` rows, which are in table order, at `offset` and then takes the plain row, if
  // there is one. The capture buffer ends up as if every row of the table had been tried.
  Match FirstMatch(std::uint64_t offset, const std::int32_t* rows, std::size_t count,
                   std::int32_t plain);

  // The row is known to fail at the offsets in front of this one.
  std::uint64_t HopelessUntil(std::int32_t row) { return AttemptOf(row).hopeless_until; }
  // The row, the only one found at the last offsets, has failed there without an attempt, the last
  // time at `offset`.
  void FailedUpTo(std::int32_t row, std::uint64_t offset) {
    if (AttemptOf(row).pattern.flag == PatternRow::Flag::kWildcard) {
      captures_.CapturedInVain(row, offset);
    }
  }

  // Call before each block of offsets.
  void OpenBlock() { undecided_ = false; }
  // The last FirstMatch found neither a match nor that there is none: it needs bytes of a stream
  // that are still to come.
  bool undecided() const { return undecided_; }

  CaptureMemory& captures() { return captures_; }

 private:
  CompiledAttempt& AttemptOf(std::int32_t row) {
    const int attempt = list_.rows[static_cast<std::size_t>(row)].attempt;
    return list_.attempts[static_cast<std::size_t>(attempt)];
  }
  bool Try(CompiledAttempt& compiled, std::uint64_t offset);
  bool TryRounds(const CompiledAttempt& compiled, std::uint64_t offset, std::uint64_t nul_round,
                 std::uint64_t tail_round);
  bool FailInSpan(const CompiledAttempt& compiled);
  NextTail& TailOf(const CompiledAttempt& compiled) {
    return next_tails_[static_cast<std::size_t>(compiled.tail - 1)];
  }
  // The byte of a stream is not there yet, and may be any byte.
  bool IsStillToCome(std::uint64_t offset) const {
    return offset >= input_->end() && !input_->ended();
  }

  CompiledList& list_;
  CaptureMemory captures_;
  NextNul next_nul_;
  std::vector<NextTail> next_tails_;  // by the list's tails, without the first
  const InputWindow* input_ = nullptr;
  Pace* pace_ = nullptr;
  bool undecided_ = false;
  MatchAttempt attempt_;            // the last one
  std::vector<std::uint8_t> more_;  // captured by it apart from the other bytes
};

}  // namespace morvex
