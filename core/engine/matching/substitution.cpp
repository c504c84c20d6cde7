#include "core/engine/matching/substitution.h"

#include <algorithm>

namespace morvex {
namespace {

constexpr std::uint64_t kStepsPerProbe = 16;

static_assert(PrefixIndex::kReadAhead <= InputWindow::kPadding);
static_assert(ScanTables::kReadAhead <= InputWindow::kPadding);

}  // namespace

Substitution::Substitution(const SubstitutionTables& tables, std::uint8_t wildcard, Kernel kernel,
                           SearchMethod method)
    : list_(tables, wildcard),
      index_(list_.rows),
      search_(index_, list_.rows, kernel, method),
      unfinished_(list_.rows, index_.rows_by_prefix()),
      attempts_(list_),
      writer_(list_) {}

void Substitution::Open(InputWindow& input, PositionedOutput& output, CaptureState& state,
                        SubstitutionWatcher& watcher) {
  input_ = &input;
  hits_of_rows_ = watcher.HitsOfRows();
  pace_.Open(watcher);
  search_.Reset();
  unfinished_.Reset();
  attempts_.Open(input, state, pace_);
  writer_.Open(input, output);
  no_progress_ = false;
}

SubstitutionEnd Substitution::Run(InputWindow& input, PositionedOutput& output, CaptureState& state,
                                  SubstitutionWatcher& watcher) {
  Open(input, output, state, watcher);
  CaptureMemory& captures = attempts_.captures();
  SubstitutionEnd end = SubstitutionEnd::kWholeFile;
  for (std::uint64_t offset = 0;;) {
    end = ReasonToEnd(offset);
    if (end != SubstitutionEnd::kWholeFile) break;
    if (!input.Holds(offset)) {
      writer_.CopyUpTo(offset);
      captures.TriedUpTo(offset);
      captures.Settle();
    }
    read_error_ = input.MoveTo(offset);
    if (read_error_ == ErrorNumber::kNone) {
      if (input.size() == 0 && input.ended()) {
        writer_.CopyUpTo(offset);
        captures.TriedUpTo(offset);
        break;
      }
      offset = RunBlock(offset);
    }
    if (read_error_ != ErrorNumber::kNone) {
      end = SubstitutionEnd::kReadFailed;
      break;
    }
  }
  if (read_error_ == ErrorNumber::kNone) captures.Settle();
  pace_.TellHits();
  return end;
}

SubstitutionEnd Substitution::ReasonToEnd(std::uint64_t offset) {
  if (!pace_.MayGoOn(offset)) {
    writer_.CopyUpTo(offset);
    return SubstitutionEnd::kStopped;
  }
  if (no_progress_) return SubstitutionEnd::kNoProgress;
  return writer_.has_failed() ? SubstitutionEnd::kWriteFailed : SubstitutionEnd::kWholeFile;
}

std::uint64_t Substitution::RunBlock(std::uint64_t offset) {
  // The number of offsets that can be searched: those from which the window shows all bytes that an
  // attempt may need or, while a stream pauses, those in front of the first prefix whose bytes have
  // not all arrived.
  std::size_t open = input_->size();
  if (input_->IsShort()) {
    open = static_cast<std::size_t>(unfinished_.FirstOffset(*input_, offset) - offset);
  } else if (!input_->ended()) {
    open -= InputWindow::kLookAhead - 1;
  }
  if (open == 0) {
    WaitForMore(offset);
    return offset;
  }
  attempts_.OpenBlock();
  const std::size_t count = std::min(open, search_.block());
  pace_.AddSteps(count);
  std::uint64_t next = offset;
  const std::size_t searched =
      search_.Search(input_->data(), count, input_->size(), offset, [&](auto& batch) {
        if (!batch.kIsWholeBlock && !pace_.MayGoOn(next)) return false;
        pace_.AddSteps(batch.extra_probes() * kStepsPerProbe);
        batch.Prefetch(list_.effects);
        next = RunCandidates(next, batch);
        return !MustLeaveBlock();
      });
  if (!MustLeaveBlock()) return std::max(next, offset + searched);
  writer_.CopyUpTo(next);
  if (attempts_.undecided()) WaitForMore(next);
  return next;
}

// Writes out the results of all bytes in front of `offset`, then waits for more bytes.
void Substitution::WaitForMore(std::uint64_t offset) {
  writer_.CopyUpTo(offset);
  writer_.Flush();
  if (!writer_.has_failed()) read_error_ = input_->Wait();
}

// Processes the candidates of a batch from `offset` on. Returns the first offset that is not
// decided.
template <class Batch>
std::uint64_t Substitution::RunCandidates(std::uint64_t offset, Batch& batch) {
  CaptureMemory& captures = attempts_.captures();
  const bool counts_rows = hits_of_rows_ != nullptr;
  ResultWriter::Burst burst(writer_);
  Candidate candidate;
  bool has_more = batch.Next(offset, candidate);
  while (has_more) {
    offset = candidate.offset;
    if (!candidate.needs_attempts) {
      const RowEffect& effect = list_.effects[static_cast<std::size_t>(candidate.plain)];
      if (burst.Replace(offset, effect)) {
        captures.Cut();
        offset += effect.prefix_size;
        if (counts_rows) CountRow(candidate.plain);
        has_more = batch.Next(offset, candidate);
        continue;
      }
    } else if (candidate.only_attempt != Candidate::kNone) {
      const std::uint64_t hopeless_until = attempts_.HopelessUntil(candidate.only_attempt);
      if (offset < hopeless_until) {
        has_more = SkipHopeless(batch, candidate, hopeless_until);
        offset = candidate.offset + (has_more ? 0 : 1);
        continue;
      }
    }
    pace_.AddHits(burst.End());
    RunCandidate(candidate);
    burst.Begin();
    if (MustLeaveBlock()) return offset;
    offset = std::max(offset + 1, writer_.copied());
    has_more = batch.Next(offset, candidate);
  }
  pace_.AddHits(burst.End());
  return offset;
}

// Skips `candidate` and the candidates behind it, as long as they lie in front of `hopeless_until`
// and have the same row as their only row. That row fails at all skipped offsets, and only its last
// failure matters to the capture buffer. Sets `candidate` to the first candidate that is not
// skipped. Returns false if the batch has no such candidate; `candidate` then has the last offset
// that was skipped.
template <class Batch>
bool Substitution::SkipHopeless(Batch& batch, Candidate& candidate, std::uint64_t hopeless_until) {
  const std::int32_t row = candidate.only_attempt;
  std::uint64_t last = 0;
  bool has_more = true;
  do {
    last = candidate.offset;
    has_more = batch.Next(last + 1, candidate);
  } while (has_more && candidate.only_attempt == row && candidate.offset < hopeless_until);
  attempts_.FailedUpTo(row, last);
  if (!has_more) candidate.offset = last;
  return has_more;
}

void Substitution::RunCandidate(Candidate candidate) {
  RowAttempts::Match match;
  if (!candidate.needs_attempts) {
    attempts_.captures().Cut();
    match = {candidate.plain, list_.effects[static_cast<std::size_t>(candidate.plain)].prefix_size};
  } else if (candidate.only_attempt != Candidate::kNone) {
    match = attempts_.FirstMatch(candidate.offset, &candidate.only_attempt, 1, candidate.plain);
  } else {
    match = attempts_.FirstMatch(candidate.offset, search_.found().data(), search_.found().size(),
                                 candidate.plain);
  }
  if (match.row == RowAttempts::kNone) return;
  if (match.length == 0) {
    no_progress_ = true;
    return;
  }
  writer_.CopyUpTo(candidate.offset);
  writer_.WriteRightText(match.row, attempts_.captures(), pace_);
  pace_.AddHits(1);
  CountRow(match.row);
  writer_.SkipTo(candidate.offset + match.length);
  attempts_.captures().StartAt(writer_.copied());
}

}  // namespace morvex
