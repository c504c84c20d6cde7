#include "core/engine/matching/substitution.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace morvex {
namespace {

constexpr std::uint64_t kStepsOfALook = 16;
constexpr std::uint64_t kWrittenBytesOfAStep = 16;

// With more than one look a place in so many, the places after them are left to the automaton.
constexpr std::size_t kFewLooks = 4;
constexpr std::size_t kPlacesForAutomaton = std::size_t{1} << 16;
constexpr std::size_t kAllPlaces = ~std::size_t{0};
constexpr std::size_t kAutomatonBlock = std::size_t{1} << 16;  // twice the longest key
// Keys of so many bytes in all take 100 ms and some 25 MiB to make an automaton of.
constexpr std::size_t kMostAutomatonBytes = std::size_t{1} << 20;

// A piece is copied in steps of so many bytes: the last one may read and write too much.
constexpr std::size_t kCopyStep = 32;
// Longer pieces are left to the library.
constexpr std::size_t kLongPiece = 1024;

// Both must have room for kCopyStep more bytes.
static_assert(kCopyStep <= InputWindow::kPadding && kCopyStep <= CompiledList::kRightPadding);
static_assert(KeyIndex::kReadAhead <= InputWindow::kPadding);
static_assert(ScanTables::kReadAhead <= InputWindow::kPadding);
inline void CopyShort(char* to, const std::uint8_t* from, std::size_t size) {
  if (size > kLongPiece) {
    std::memcpy(to, from, size);
    return;
  }
  for (std::size_t at = 0; at < size; at += kCopyStep) std::memcpy(to + at, from + at, kCopyStep);
}

}  // namespace

Substitution::Substitution(const SubstitutionTables& tables, std::uint8_t joker, Kernel kernel,
                           Search search)
    : list_(tables, joker),
      index_(list_.rows),
      filter_(index_, list_.rows, kernel),
      unfinished_(list_.rows, index_.rows_by_key()),
      search_(search),
      captures_(list_.cutting_rows),
      next_tails_(list_.tails.begin() + 1, list_.tails.end()) {
  std::size_t bytes = 0;
  for (const std::int32_t row : index_.rows_by_key()) {
    bytes += list_.rows[static_cast<std::size_t>(row)].key.size();
  }
  automaton_refused_ = bytes > kMostAutomatonBytes;
}

void Substitution::Open(CaptureState& state) {
  captures_.Open(state);
  next_nul_ = NextNul();
  for (NextTail& tail : next_tails_) tail.Reset();
  unfinished_.Reset();
  for (CompiledAttempt& attempt : list_.attempts) attempt.hopeless_until = 0;
  places_for_automaton_ = search_ == Search::kAutomaton ? kAllPlaces : 0;
  copied_ = 0;
  write_position_ = 1;
  hits_ = 0;
  steps_ = kStepsBetweenQuestions;
  undecided_ = false;
  stopped_ = false;
  no_progress_ = false;
}

SubstitutionEnd Substitution::Run(InputWindow& input, PositionedOutput& output, CaptureState& state,
                                  SubstitutionWatcher& watcher) {
  input_ = &input;
  output_ = &output;
  watcher_ = &watcher;
  hits_of_rows_ = watcher.HitsOfRows();
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
    if (input.size() == 0 && input.ended()) {
      CopyUpTo(place);
      captures_.TriedUpTo(input, place);
      break;
    }
    place = RunBlock(place);
    if (read_error_ != ErrorNumber::kNone) {
      end = SubstitutionEnd::kReadFailed;
      break;
    }
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

// The same for bytes behind which kCopyStep more may be read.
inline void Substitution::WritePadded(const std::uint8_t* bytes, std::size_t size) {
  const PositionedOutput::Room room = output_->RoomAt(write_position_);
  if (room.at != nullptr && size + kCopyStep <= static_cast<std::size_t>(room.end - room.at)) {
    CopyShort(room.at, bytes, size);
    output_->Fill(room.at + size);
    write_position_ += static_cast<std::int64_t>(size);
  } else {
    Write({reinterpret_cast<const char*>(bytes), size});
  }
}

inline void Substitution::CopyUpTo(std::uint64_t place) {
  if (place == copied_) return;
  WritePadded(input_->At(copied_), static_cast<std::size_t>(place - copied_));
  copied_ = place;
}

void Substitution::WriteRightText(std::int32_t row) {
  const auto index = static_cast<std::size_t>(row);
  const RowEffect& effect = list_.effects[index];
  const auto* const text =
      reinterpret_cast<const std::uint8_t*>(list_.right_bytes.data()) + effect.right_begin;
  if (effect.has_jokers) {
    WriteWithCaught(list_.rows[index], text, effect.right_size);
  } else {
    WritePadded(text, effect.right_size);
  }
}

void Substitution::WriteWithCaught(const CompiledRow& row, const std::uint8_t* text,
                                   std::size_t size) {
  std::size_t from = 0;
  for (const std::size_t joker : row.jokers) {
    WritePadded(text + from, joker - from);
    from = joker;
    // The caught bytes 0 to n; those of the tail, caught before it was recognised, are left out.
    const std::string_view caught = captures_.Bytes(*input_);
    const auto bound = static_cast<std::int64_t>(caught.size()) - 1;
    const std::int64_t n = bound - static_cast<std::int64_t>(row.tail_size) + 1;
    const std::int64_t written = std::min(n, bound) + 1;
    steps_ += caught.size() / kWrittenBytesOfAStep;
    if (written > 0 && written == n + 1 && captures_.AreInWindow()) {
      WritePadded(reinterpret_cast<const std::uint8_t*>(caught.data()),
                  static_cast<std::size_t>(written));
      continue;
    }
    if (written > 0) {
      output_->Put(write_position_, caught.substr(0, static_cast<std::size_t>(written)));
    }
    write_position_ += n;
    if (n > bound) return;  // the copy ran out of the buffer, which ends the right text here
    ++write_position_;
  }
  WritePadded(text + from, size - from);
}

std::uint64_t Substitution::RunBlock(std::uint64_t place) {
  // Places from which an attempt sees as far as it may, or in a stream that pauses as far as the
  // next beginning of a key.
  std::size_t open = input_->size();
  if (input_->IsShort()) {
    open = static_cast<std::size_t>(unfinished_.FirstPlace(*input_, place) - place);
  } else if (!input_->ended()) {
    open -= InputWindow::kLookAhead - 1;
  }
  if (open == 0) {
    WaitForMore(place);
    return place;
  }
  undecided_ = false;
  const std::uint64_t next = places_for_automaton_ > 0
                                 ? RunByAutomaton(place, std::min(open, kAutomatonBlock))
                                 : RunByIndex(place, std::min(open, CandidateFilter::kBlock));
  if (stopped_ || no_progress_) CopyUpTo(next);
  if (undecided_) WaitForMore(next);
  return next;
}

// Everything decided so far, the results of the bytes in front of `place`, is written out first.
void Substitution::WaitForMore(std::uint64_t place) {
  CopyUpTo(place);
  output_->Flush();
  if (output_->error() == ErrorNumber::kNone) read_error_ = input_->Wait();
}

// The `count` places from `place` on.
std::uint64_t Substitution::RunByIndex(std::uint64_t place, std::size_t count) {
  const std::uint8_t* const bytes = input_->data();
  const std::size_t size = input_->size();
  const std::size_t found = filter_.Find(bytes, count, places_.data());
  const std::uint64_t begin = place;
  steps_ += count;
  std::size_t looks = 0;
  std::array<std::int32_t, KeyIndex::kBatch> rows;
  for (std::size_t first = 0; first < found; first += KeyIndex::kBatch) {
    const std::uint16_t* const places = places_.data() + first;
    const std::size_t batch = std::min(found - first, KeyIndex::kBatch);
    if (steps_ >= kStepsBetweenQuestions && !AskWatcher(place)) {
      stopped_ = true;
      return place;
    }
    const std::size_t extra_looks = index_.LookAt(bytes, size, places, batch, rows.data());
    looks += extra_looks;
    steps_ += extra_looks * kStepsOfALook;
    if (index_.is_large()) {
      for (std::size_t i = 0; i < batch; ++i) {
        if (rows[i] >= 0) __builtin_prefetch(&list_.effects[static_cast<std::size_t>(rows[i])]);
      }
    }
    std::size_t i = 0;
    place = RunCandidates(begin, place, [&](std::uint64_t from, Candidate& candidate) {
      for (; i < batch; ++i) {
        candidate.place = begin + places[i];
        candidate.plain = rows[i];
        if (candidate.place < from || candidate.plain == KeyIndex::kNone) continue;
        candidate.needs_attempts = candidate.plain < KeyIndex::kNone;
        candidate.only_attempt = KeyIndex::kNone;
        if (candidate.plain == KeyIndex::kUndecided) {
          found_.clear();
          candidate.plain = index_.Find(bytes + places[i], size - places[i], found_);
        } else if (candidate.needs_attempts) {
          candidate.only_attempt = KeyIndex::OnlyAttempt(candidate.plain);
          candidate.plain = KeyIndex::kNone;
        }
        ++i;
        return true;
      }
      return false;
    });
    if (stopped_ || no_progress_ || undecided_) return place;
    if (looks > count / kFewLooks && !automaton_refused_) {
      places_for_automaton_ = kPlacesForAutomaton;
      return std::max(place, begin + places[batch - 1] + 1);
    }
  }
  return std::max(place, begin + count);
}

// The same, where so many rows nearly match that a look at each place would cost too much.
std::uint64_t Substitution::RunByAutomaton(std::uint64_t place, std::size_t count) {
  if (!automaton_) automaton_.emplace(list_.rows, index_.rows_by_key());
  const std::uint64_t begin = place;
  steps_ += count;
  places_for_automaton_ -= std::min(places_for_automaton_, count);
  found_by_automaton_.clear();
  automaton_->Find(input_->data(), count, input_->size(), found_by_automaton_);
  auto next = found_by_automaton_.rbegin();  // they are in descending order
  place = RunCandidates(begin, place, [&](std::uint64_t from, Candidate& candidate) {
    while (next != found_by_automaton_.rend() && begin + next->place < from) ++next;
    if (next == found_by_automaton_.rend()) return false;
    found_.clear();
    candidate.place = begin + next->place;
    candidate.plain = automaton_->RowsAt(next->state, found_);
    candidate.needs_attempts = !found_.empty();
    const bool is_only = found_.size() == 1 && candidate.plain == KeyIndex::kNone;
    candidate.only_attempt = is_only ? found_.front() : KeyIndex::kNone;
    ++next;
    return true;
  });
  if (stopped_ || no_progress_ || undecided_) return place;
  return std::max(place, begin + count);
}

// Goes through the candidates from `place` on, which the window's first byte, at `begin`, is not
// behind; `next_candidate` gives the next one that is not in front of a place, if there is one.
// Gives the place behind the last match.
template <class NextCandidate>
std::uint64_t Substitution::RunCandidates(std::uint64_t begin, std::uint64_t place,
                                          NextCandidate next_candidate) {
  // Short pieces go straight to the output's memory. Nothing else may be asked of the output before
  // `leave` has told it of them.
  const std::uint8_t* const bytes = input_->data();
  PositionedOutput::Room room = output_->RoomAt(write_position_);
  const char* room_begin = room.at;
  std::uint64_t copied = copied_;
  std::int64_t hits = 0;
  const bool counts_rows = hits_of_rows_ != nullptr;
  // A wildcard whose tail never comes is tried in vain at very many places, of which only the last
  // one matters.
  std::int32_t vain = KeyIndex::kNone;
  std::uint64_t vain_place = 0;
  const auto note_vain = [&] {
    if (vain != KeyIndex::kNone) NoteVain(vain, vain_place);
    vain = KeyIndex::kNone;
  };
  const auto leave = [&] {
    note_vain();
    copied_ = copied;
    if (hits == 0) return;
    hits_ += hits;
    hits = 0;
    output_->Fill(room.at);
    write_position_ += room.at - room_begin;
  };
  Candidate candidate;
  while (next_candidate(place, candidate)) {
    place = candidate.place;
    if (!candidate.needs_attempts) {
      const RowEffect& effect = list_.effects[static_cast<std::size_t>(candidate.plain)];
      const auto before = static_cast<std::size_t>(place - copied);
      if (effect.is_short && room.at != nullptr &&
          before + kCopyStep + RowEffect::kShort <= static_cast<std::size_t>(room.end - room.at)) {
        note_vain();
        captures_.Cut();
        CopyShort(room.at, bytes + static_cast<std::ptrdiff_t>(copied - begin), before);
        room.at += before;
        std::memcpy(room.at, effect.short_text.data(), RowEffect::kShort);
        room.at += effect.right_size;
        place += effect.key_size;
        copied = place;
        ++hits;
        if (counts_rows) CountRow(candidate.plain);
        continue;
      }
    } else if (candidate.only_attempt != KeyIndex::kNone) {
      const CompiledRow& row = list_.rows[static_cast<std::size_t>(candidate.only_attempt)];
      if (place < list_.attempts[static_cast<std::size_t>(row.attempt)].hopeless_until) {
        if (vain != candidate.only_attempt) note_vain();
        vain = candidate.only_attempt;
        vain_place = place;
        ++place;
        continue;
      }
      found_.assign(1, candidate.only_attempt);
    }
    leave();
    RunCandidate(candidate);
    copied = copied_;
    if (stopped_ || no_progress_ || undecided_) return place;
    place = std::max(place + 1, copied);
    room = output_->RoomAt(write_position_);
    room_begin = room.at;
  }
  leave();
  return place;
}

void Substitution::RunCandidate(Candidate candidate) {
  Match match;
  if (!candidate.needs_attempts) {
    captures_.Cut();
    match = {candidate.plain, list_.effects[static_cast<std::size_t>(candidate.plain)].key_size};
  } else {
    match = TryAttempts(candidate.place, candidate.plain);
  }
  if (stopped_ || undecided_ || match.row == KeyIndex::kNone) return;
  if (match.length == 0) {
    no_progress_ = true;
    return;
  }
  CopyUpTo(candidate.place);
  WriteRightText(match.row);
  ++hits_;
  CountRow(match.row);
  copied_ = candidate.place + match.length;
  captures_.StartAt(copied_);
}

}  // namespace morvex
