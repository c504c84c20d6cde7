#include "core/engine/substitution.h"

#include <algorithm>
#include <string_view>

namespace morvex {
namespace {

constexpr std::uint64_t kStepsBetweenQuestions = 65'536;
constexpr std::uint64_t kStepsOfAnAttempt = 32;
constexpr std::int64_t kNoRow = -1;

}  // namespace

Substitution::Substitution(const SubstitutionTables& tables, std::uint8_t joker, Kernel kernel)
    : list_(tables, joker),
      index_(list_.rows),
      filter_(index_, list_.rows, kernel),
      captures_(list_.cutting_rows),
      next_tails_(list_.tails.begin() + 1, list_.tails.end()) {}

void Substitution::Open(CaptureState& state) {
  captures_.Open(state);
  next_nul_ = NextNul();
  for (NextTail& tail : next_tails_) tail.Reset();
  for (CompiledAttempt& attempt : list_.attempts) attempt.hopeless_until = 0;
  copied_ = 0;
  write_position_ = 1;
  hits_ = 0;
  steps_ = kStepsBetweenQuestions;
  stopped_ = false;
  no_progress_ = false;
}

SubstitutionEnd Substitution::Run(InputWindow& input, PositionedOutput& output, CaptureState& state,
                                  SubstitutionWatcher& watcher) {
  input_ = &input;
  output_ = &output;
  watcher_ = &watcher;
  Open(state);
  SubstitutionEnd end = SubstitutionEnd::kWholeFile;
  for (std::uint64_t place = 0;;) {
    if (steps_ >= kStepsBetweenQuestions && !AskWatcher(place)) {
      stopped_ = true;
      CopyUpTo(place);
    }
    if (stopped_ || no_progress_ || output.error() != ErrorNumber::kNone) {
      end = stopped_       ? SubstitutionEnd::kStopped
            : no_progress_ ? SubstitutionEnd::kNoProgress
                           : SubstitutionEnd::kWriteFailed;
      break;
    }
    if (!input.Holds(place)) {
      CopyUpTo(place);
      captures_.TriedUpTo(input, place);
      captures_.Settle(input);
    }
    read_error_ = input.MoveTo(place);
    if (read_error_ != ErrorNumber::kNone) {
      end = SubstitutionEnd::kReadFailed;
      break;
    }
    if (input.size() == 0) {
      CopyUpTo(place);
      captures_.TriedUpTo(input, place);
      break;
    }
    place = RunBlock(place);
  }
  if (read_error_ == ErrorNumber::kNone) captures_.Settle(input);
  watcher.OnHits(hits_);
  return end;
}

bool Substitution::AskWatcher(std::uint64_t read) {
  steps_ = 0;
  watcher_->OnHits(hits_);
  hits_ = 0;
  return watcher_->KeepGoing(read);
}

inline void Substitution::Write(std::string_view bytes) {
  if (bytes.empty()) return;
  output_->Put(write_position_, bytes);
  write_position_ += static_cast<std::int64_t>(bytes.size());
}

inline void Substitution::CopyUpTo(std::uint64_t place) {
  if (place == copied_) return;
  const char* const begin = reinterpret_cast<const char*>(input_->At(copied_));
  const auto size = static_cast<std::size_t>(place - copied_);
  copied_ = place;
  if (size <= PositionedOutput::kShort) {
    output_->PutShort(write_position_, begin, size);
    write_position_ += static_cast<std::int64_t>(size);
  } else {
    Write({begin, size});
  }
}

inline Substitution::Match Substitution::MatchAt(std::uint64_t place) {
  const auto size = static_cast<std::size_t>(input_->end() - place);
  found_.clear();
  const std::int32_t plain = index_.Find(input_->At(place), size, found_);
  if (!found_.empty()) {
    return IsHopeless(place, plain) ? Match{} : TryAttempts(place, plain);
  }
  if (plain == KeyIndex::kNone) return {};
  captures_.Cut();
  return {plain, list_.effects[static_cast<std::size_t>(plain)].key_size};
}

// Whether all that can happen is that one attempt catches bytes up to its last round, in vain. That
// is then noted. A wildcard whose tail never comes is tried in vain at very many places.
inline bool Substitution::IsHopeless(std::uint64_t place, std::int32_t plain) {
  if (found_.size() != 1 || plain != KeyIndex::kNone) return false;
  const CompiledRow& row = list_.rows[static_cast<std::size_t>(found_.front())];
  const CompiledAttempt& compiled = list_.attempts[static_cast<std::size_t>(row.attempt)];
  if (place >= compiled.hopeless_until) return false;
  steps_ += kStepsOfAnAttempt;
  if (compiled.pattern.flag != PatternRow::Flag::kWildcard) return true;
  more_.clear();
  attempt_.FailInSpan(compiled.pattern, compiled.behind_key);
  captures_.Caught(place, attempt_, more_);
  if (AnyCutBetween(*input_->At(place), row.table_row, list_.table_size)) captures_.Cut();
  captures_.StartAt(place + 1);
  return true;
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
  const auto span_end = static_cast<int>(
      std::min<std::uint64_t>({nul_round, tail_round, std::uint64_t{MatchAttempt::kLastRound}}));

  attempt_ = compiled.behind_key;
  more_.clear();
  for (;;) {
    if (attempt_.InOpenSpan(pattern) && span_end > attempt_.round()) {
      attempt_.SkipTo(pattern, span_end);
    }
    const auto round = static_cast<std::uint64_t>(attempt_.round());
    const std::uint64_t at = place + round - 1;
    const std::uint8_t byte = at < input_->end() ? *input_->At(at) : std::uint8_t{0};
    if (!attempt_.Round(pattern, byte, round == tail_round, more_)) break;
  }
  return attempt_.Matched(pattern);
}

inline void Substitution::WriteRightText(std::int32_t row) {
  const auto index = static_cast<std::size_t>(row);
  const RowEffect& effect = list_.effects[index];
  const char* const text = list_.right_bytes.data() + effect.right_begin;
  if (effect.has_jokers) {
    WriteWithCaught(list_.rows[index], {text, effect.right_size});
  } else if (effect.right_size <= PositionedOutput::kShort) {
    output_->PutShort(write_position_, text, effect.right_size);
    write_position_ += static_cast<std::int64_t>(effect.right_size);
  } else {
    Write({text, effect.right_size});
  }
}

void Substitution::WriteWithCaught(const CompiledRow& row, std::string_view text) {
  std::size_t from = 0;
  for (const std::size_t joker : row.jokers) {
    Write(text.substr(from, joker - from));
    from = joker;
    // The caught bytes 0 to n; those of the tail, caught before it was recognised, are left out.
    const std::string_view caught = captures_.Bytes(*input_);
    const auto bound = static_cast<std::int64_t>(caught.size()) - 1;
    const std::int64_t n = bound - static_cast<std::int64_t>(row.tail_size) + 1;
    const std::int64_t written = std::min(n, bound) + 1;
    if (written > 0) {
      output_->Put(write_position_, caught.substr(0, static_cast<std::size_t>(written)));
    }
    write_position_ += n;
    if (n > bound) return;  // the copy ran out of the buffer, which ends the right text here
    ++write_position_;
  }
  Write(text.substr(from));
}

std::uint64_t Substitution::RunBlock(std::uint64_t place) {
  const std::uint8_t* const bytes = input_->data();
  // Places from which an attempt sees as far as it may.
  const std::size_t open =
      input_->ended() ? input_->size() : input_->size() - InputWindow::kLookAhead + 1;
  const std::size_t count = std::min(open, CandidateFilter::kBlock);
  const std::size_t found = filter_.Find(bytes, count, places_.data());
  const std::uint64_t block = place;
  steps_ += count;
  for (std::size_t i = 0; i < found; ++i) {
    if (i % KeyIndex::kPrefetched == 0) {
      index_.Prefetch(bytes, places_.data() + i, std::min(found - i, KeyIndex::kPrefetched),
                      list_.effects.data());
    }
    const std::uint64_t candidate = block + places_[i];
    if (candidate < place) continue;
    place = candidate;
    const Match match = MatchAt(place);
    if (stopped_) break;
    if (match.row == KeyIndex::kNone) continue;
    if (match.length == 0) {
      no_progress_ = true;
      break;
    }
    CopyUpTo(place);
    WriteRightText(match.row);
    ++hits_;
    place += match.length;
    copied_ = place;
    captures_.StartAt(place);
  }
  if (stopped_ || no_progress_) {
    CopyUpTo(place);
    return place;
  }
  return std::max(place, block + count);
}

}  // namespace morvex
