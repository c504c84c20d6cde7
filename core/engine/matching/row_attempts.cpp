#include "core/engine/matching/row_attempts.h"

#include <algorithm>

namespace morvex {
namespace {

constexpr std::uint64_t kStepsPerAttempt = 32;
constexpr std::int64_t kNoTableRow = -1;

}  // namespace

RowAttempts::RowAttempts(CompiledList& list)
    : list_(list), captures_(list), next_tails_(list.tails.begin() + 1, list.tails.end()) {}

void RowAttempts::Open(const InputWindow& input, CaptureState& state, Pace& pace) {
  input_ = &input;
  pace_ = &pace;
  captures_.Open(input, state);
  next_nul_ = NextNul();
  for (NextTail& tail : next_tails_) tail.Reset();
  for (CompiledAttempt& attempt : list_.attempts) attempt.hopeless_until = 0;
  undecided_ = false;
}

RowAttempts::Match RowAttempts::FirstMatch(std::uint64_t offset, const std::int32_t* rows,
                                           std::size_t count, std::int32_t plain) {
  std::int64_t captured_by = kNoTableRow;
  Match match;
  for (std::size_t i = 0; i < count; ++i) {
    if (!pace_->MayGoOn(offset)) return {};
    pace_->AddSteps(kStepsPerAttempt);
    const bool matches = Try(AttemptOf(rows[i]), offset);
    // All rows will be tried again when more bytes have arrived, and will then capture anew.
    if (undecided_) return {};
    if (attempt_.captured_count() > 0) {
      captures_.Captured(offset, attempt_, more_);
      captured_by = list_.rows[static_cast<std::size_t>(rows[i])].table_row;
    }
    if (matches) {
      match = {rows[i], static_cast<std::uint64_t>(attempt_.length())};
      break;
    }
  }
  if (match.row == kNone && plain != kNone) {
    match = {plain, list_.effects[static_cast<std::size_t>(plain)].prefix_size};
  }
  const CompiledRow* const winner =
      match.row == kNone ? nullptr : &list_.rows[static_cast<std::size_t>(match.row)];
  // Without a match or a capture, the offset is accounted for later, by TriedUpTo.
  if (winner == nullptr && captured_by == kNoTableRow) return match;
  if (winner != nullptr && winner->cuts) {
    captures_.Cut();
    return match;
  }
  if (captured_by == kNoTableRow) captures_.TriedUpTo(offset);
  captures_.TriedRows(offset, captured_by,
                      winner != nullptr ? winner->table_row : list_.table_size);
  return match;
}

bool RowAttempts::FailInSpan(const CompiledAttempt& compiled) {
  more_.clear();
  attempt_.FailInSpan(compiled.pattern, compiled.behind_prefix);
  return false;
}

// Returns whether the row matches at `offset`, and leaves its finished attempt in `attempt_`. Both
// are meaningless if undecided_ is set afterwards.
bool RowAttempts::Try(CompiledAttempt& compiled, std::uint64_t offset) {
  const PatternRow& pattern = compiled.pattern;
  if (offset < compiled.hopeless_until) return FailInSpan(compiled);
  // The rounds that read the first NUL and the last byte of the tail; kNowhere if no round does.
  std::uint64_t nul_round = kNowhere;
  std::uint64_t tail_round = kNowhere;
  const std::uint64_t limit = offset + MatchAttempt::kLastRound;
  const std::uint64_t nul = next_nul_.Find(*input_, offset, limit);
  if (nul != kNowhere) nul_round = nul - offset + 1;
  if (compiled.tail > 0) {
    const std::uint64_t end = TailOf(compiled).FindEnd(*input_, offset, std::min(nul, limit));
    if (end != kNowhere) tail_round = end - offset;
  }
  if (nul_round == kNowhere && tail_round == kNowhere && compiled.opens_span) {
    undecided_ = IsStillToCome(limit - 1);
    if (undecided_) return false;
    // The span stays open to the last round, here and at every later offset from which all rounds
    // read bytes in front of `known`.
    std::uint64_t known = next_nul_.known_up_to();
    if (compiled.tail > 0) known = std::min(known, TailOf(compiled).known_up_to());
    compiled.hopeless_until = known - std::min<std::uint64_t>(known, MatchAttempt::kLastRound);
    return FailInSpan(compiled);
  }
  if (compiled.is_usual && tail_round < MatchAttempt::kLastRound &&
      tail_round > static_cast<std::uint64_t>(compiled.behind_prefix.round()) &&
      (pattern.tail.size() == 1 ||
       (!IsStillToCome(offset + tail_round) &&
        *input_->At(offset + tail_round) != static_cast<std::uint8_t>(pattern.tail[1])))) {
    more_.clear();
    attempt_.MatchUpToTail(compiled.behind_prefix, static_cast<int>(tail_round));
    return true;
  }
  return TryRounds(compiled, offset, nul_round, tail_round);
}

// Runs the attempt round by round, but skips the rounds inside the span.
bool RowAttempts::TryRounds(const CompiledAttempt& compiled, std::uint64_t offset,
                            std::uint64_t nul_round, std::uint64_t tail_round) {
  const PatternRow& pattern = compiled.pattern;
  const auto span_end = static_cast<int>(
      std::min<std::uint64_t>({nul_round, tail_round, std::uint64_t{MatchAttempt::kLastRound}}));
  attempt_ = compiled.behind_prefix;
  more_.clear();
  for (;;) {
    if (attempt_.InOpenSpan(pattern) && span_end > attempt_.round()) {
      attempt_.SkipTo(pattern, span_end);
    }
    pace_->AddSteps(1);
    const auto round = static_cast<std::uint64_t>(attempt_.round());
    const std::uint64_t at = offset + round - 1;
    undecided_ = IsStillToCome(at);
    if (undecided_) return false;
    const std::uint8_t byte = at < input_->end() ? *input_->At(at) : 0;
    if (!attempt_.Round(pattern, byte, round == tail_round, more_)) break;
  }
  return attempt_.Matched(pattern);
}

}  // namespace morvex
