#include "core/engine/matching/match_attempt.h"

#include <limits>

namespace morvex {

bool MatchAttempt::Round(const PatternRow& row, std::uint8_t byte, bool tail_ends_here,
                         std::vector<std::uint8_t>& more) {
  const int cell = row.Cell(position_);
  if (cell < 0) {
    failed_ = true;
  } else if (byte != cell && !row.IsWildcardAt(position_) && !span_open_) {
    return false;
  }
  if (byte == 0 || failed_) {
    span_open_ = false;
    return false;
  }
  tail_seen_ = tail_seen_ || tail_ends_here;
  if (tail_seen_) {
    // Every later round does both steps again, because tail_seen_ stays set.
    span_open_ = false;
    Count(extra_, 1 - static_cast<std::int64_t>(row.tail.size()));
  }
  if (row.flag == PatternRow::Flag::kMissing) {
    failed_ = true;
  } else if (row.flag == PatternRow::Flag::kWildcard &&
             (span_open_ || row.IsWildcard(row.Cell(position_)))) {
    Capture(byte, more);
  }
  if (span_open_) {
    Count(position_, -1);
    Count(extra_, 1);
  }
  if (row.IsWildcard(row.Cell(position_))) span_open_ = true;
  Count(round_, 1);
  Count(position_, 1);
  return true;
}

void MatchAttempt::SkipTo(const PatternRow& row, int round) {
  const int skipped = round - round_;
  if (row.flag == PatternRow::Flag::kWildcard) {
    if (captured_count_ == 0) captured_first_ = round_;
    captured_count_ += skipped;
  }
  extra_ += skipped;
  round_ = round;
}

void MatchAttempt::FailInSpan(const PatternRow& row, const MatchAttempt& behind_prefix) {
  round_ = kLastRound;
  captured_count_ = 0;
  if (row.flag == PatternRow::Flag::kWildcard) {
    captured_first_ = behind_prefix.round_;
    captured_count_ = kLastRound - behind_prefix.round_ + 1;
  }
  failed_ = true;
  overflowed_ = true;
}

void MatchAttempt::Count(int& counter, std::int64_t by) {
  using Limits = std::numeric_limits<std::int16_t>;
  const std::int64_t next = counter + by;
  if (next < Limits::min() || next > Limits::max()) {
    failed_ = true;
    overflowed_ = true;
  } else {
    counter = static_cast<int>(next);
  }
}

void MatchAttempt::Capture(std::uint8_t byte, std::vector<std::uint8_t>& more) {
  if (captured_count_ == 0) captured_first_ = round_;
  if (more.empty() && captured_first_ + captured_count_ == round_) {
    ++captured_count_;
  } else {
    more.push_back(byte);
  }
}

}  // namespace morvex
