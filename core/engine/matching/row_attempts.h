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

  // `list` must outlive the object, which sets `hopeless_until` in the list's attempts.
  explicit RowAttempts(CompiledList& list);

  // Call when another source begins. `state` holds the capture buffer that the last source left.
  void Open(const InputWindow& input, CaptureState& state, Pace& pace);

  // Tries the `count` rows, which must be in table order, at `offset`. Returns the first of them
  // that matches; if none does, returns `plain`, which matches unless it is kNone. The capture
  // buffer ends up as if every row of the table had been tried in turn, up to the one that matches.
  Match FirstMatch(std::uint64_t offset, const std::int32_t* rows, std::size_t count,
                   std::int32_t plain);

  // Returns the offset in front of which the row is known to fail.
  std::uint64_t HopelessUntil(std::int32_t row) { return AttemptOf(row).hopeless_until; }
  // Records that `row` failed without an attempt at one or more offsets, the last of which is
  // `offset`. It must be the only row that was found there.
  void FailedUpTo(std::int32_t row, std::uint64_t offset) {
    if (AttemptOf(row).pattern.flag == PatternRow::Flag::kWildcard) {
      captures_.CapturedInVain(row, offset);
    }
  }

  // Call before each block of offsets.
  void OpenBlock() { undecided_ = false; }
  // Whether the last FirstMatch could not decide, because it needs bytes of a stream that have not
  // arrived yet.
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
  // Whether the byte at `offset` has not arrived yet from a stream.
  bool IsStillToCome(std::uint64_t offset) const {
    return offset >= input_->end() && !input_->ended();
  }

  CompiledList& list_;
  CaptureMemory captures_;
  NextNul next_nul_;
  std::vector<NextTail> next_tails_;  // one for each of the list's tails but the first
  const InputWindow* input_ = nullptr;
  Pace* pace_ = nullptr;
  bool undecided_ = false;
  MatchAttempt attempt_;            // the last attempt
  std::vector<std::uint8_t> more_;  // see MatchAttempt::Round
};

}  // namespace morvex
