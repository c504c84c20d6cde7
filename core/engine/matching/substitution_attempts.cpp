// The attempts of a substitution: rows whose key stands at a place and does not decide by itself.
#include <algorithm>

#include "core/engine/matching/substitution.h"

namespace morvex {
namespace {

constexpr std::uint64_t kStepsOfAnAttempt = 32;
constexpr std::int64_t kNoRow = -1;

}  // namespace

// At the place an attempt of the row, the only one there, caught bytes up to its last round, in
// vain.
void Substitution::NoteVain(std::int32_t row, std::uint64_t place) {
  const CompiledRow& compiled_row = list_.rows[static_cast<std::size_t>(row)];
  const CompiledAttempt& compiled = list_.attempts[static_cast<std::size_t>(compiled_row.attempt)];
  more_.clear();
  attempt_.FailInSpan(compiled.pattern, compiled.behind_key);
  if (attempt_.caught_count() == 0) return;
  captures_.Caught(place, attempt_, more_);
  if (AnyCutBetween(*input_->At(place), compiled_row.table_row, list_.table_size)) captures_.Cut();
  captures_.StartAt(place + 1);
}

// The rows in `found_` one by one, then the plain row, if there is one. What they do to the capture
// buffer comes out as if every row of the table had been tried.
Substitution::Match Substitution::TryAttempts(std::uint64_t place, std::int32_t plain) {
  std::int64_t caught_by = kNoRow;
  Match match;
  for (const std::int32_t found : found_) {
    if (steps_ >= kStepsBetweenQuestions && !AskWatcher(place)) {
      stopped_ = true;
      return {};
    }
    steps_ += kStepsOfAnAttempt;
    const CompiledRow& row = list_.rows[static_cast<std::size_t>(found)];
    CompiledAttempt& compiled = list_.attempts[static_cast<std::size_t>(row.attempt)];
    const bool matches = Try(compiled, place);
    // What the rows in front of it caught they will catch again.
    if (undecided_) return {};
    if (attempt_.caught_count() > 0) {
      captures_.Caught(place, attempt_, more_);
      caught_by = row.table_row;
    }
    if (matches) {
      match = {found, static_cast<std::uint64_t>(attempt_.length())};
      break;
    }
  }
  if (match.row == KeyIndex::kNone && plain != KeyIndex::kNone) {
    match = {plain, list_.effects[static_cast<std::size_t>(plain)].key_size};
  }
  const CompiledRow* const winner =
      match.row == KeyIndex::kNone ? nullptr : &list_.rows[static_cast<std::size_t>(match.row)];
  if (winner == nullptr && caught_by == kNoRow) return match;  // as at any other place
  if (winner != nullptr && winner->cuts) {
    captures_.Cut();
    return match;
  }
  if (caught_by == kNoRow) captures_.TriedUpTo(*input_, place);
  const std::int64_t before = winner != nullptr ? winner->table_row : list_.table_size;
  if (AnyCutBetween(*input_->At(place), caught_by, before)) captures_.Cut();
  captures_.StartAt(place + 1);
  return match;
}

bool Substitution::AnyCutBetween(std::uint8_t byte, std::int64_t after, std::int64_t before) const {
  const std::vector<std::int64_t>& rows = list_.cutting_rows[byte];
  if (rows.empty()) return false;
  const auto next = std::upper_bound(rows.begin(), rows.end(), after);
  return next != rows.end() && *next < before;
}

bool Substitution::Try(CompiledAttempt& compiled, std::uint64_t place) {
  const PatternRow& pattern = compiled.pattern;
  if (place < compiled.hopeless_until) {
    more_.clear();
    attempt_.FailInSpan(pattern, compiled.behind_key);
    return false;
  }
  // The rounds that meet a NUL or the end of the tail, if any round can.
  std::uint64_t nul_round = kNowhere;
  std::uint64_t tail_round = kNowhere;
  const std::uint64_t limit = place + MatchAttempt::kLastRound;
  const std::uint64_t nul = next_nul_.Find(*input_, place, limit);
  if (nul != kNowhere) nul_round = nul - place + 1;
  if (compiled.tail > 0) {
    NextTail& tail = next_tails_[static_cast<std::size_t>(compiled.tail - 1)];
    const std::uint64_t end = tail.FindEnd(*input_, place, std::min(nul, limit));
    if (end != kNowhere) tail_round = end - place;
  }
  if (nul_round == kNowhere && tail_round == kNowhere && compiled.opens_span) {
    undecided_ = IsStillToCome(limit - 1);
    if (undecided_) return false;
    // Nothing ends the span in time, nor will it from the next places on.
    std::uint64_t known = next_nul_.known_up_to();
    if (compiled.tail > 0)
      known =
          std::min(known, next_tails_[static_cast<std::size_t>(compiled.tail - 1)].known_up_to());
    compiled.hopeless_until = known - std::min<std::uint64_t>(known, MatchAttempt::kLastRound);
    more_.clear();
    attempt_.FailInSpan(pattern, compiled.behind_key);
    return false;
  }
  if (compiled.is_usual && tail_round < MatchAttempt::kLastRound &&
      tail_round > static_cast<std::uint64_t>(compiled.behind_key.round()) &&
      (pattern.tail.size() == 1 ||
       (!IsStillToCome(place + tail_round) &&
        *input_->At(place + tail_round) != static_cast<std::uint8_t>(pattern.tail[1])))) {
    more_.clear();
    attempt_.MatchUpToTail(compiled.behind_key, static_cast<int>(tail_round));
    return true;
  }
  const auto span_end = static_cast<int>(
      std::min<std::uint64_t>({nul_round, tail_round, std::uint64_t{MatchAttempt::kLastRound}}));

  attempt_ = compiled.behind_key;
  more_.clear();
  for (;;) {
    if (attempt_.InOpenSpan(pattern) && span_end > attempt_.round()) {
      attempt_.SkipTo(pattern, span_end);
    }
    ++steps_;
    const auto round = static_cast<std::uint64_t>(attempt_.round());
    const std::uint64_t at = place + round - 1;
    std::uint8_t byte = 0;
    if (at < input_->end()) {
      byte = *input_->At(at);
    } else if (!input_->ended()) {
      undecided_ = true;
      return false;
    }
    if (!attempt_.Round(pattern, byte, round == tail_round, more_)) break;
  }
  return attempt_.Matched(pattern);
}

}  // namespace morvex
