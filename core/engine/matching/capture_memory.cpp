#include "core/engine/matching/capture_memory.h"

#include <algorithm>

namespace morvex {

CaptureMemory::CaptureMemory(const CompiledList& list) : list_(list) {
  for (std::size_t byte = 0; byte < cuts_.size(); ++byte) {
    cuts_[byte] = !list.cutting_rows[byte].empty();
    any_cuts_ = any_cuts_ || cuts_[byte];
  }
}

void CaptureMemory::Open(const InputWindow& input, CaptureState& state) {
  input_ = &input;
  state_ = &state;
  may_be_long_ = state.CaptureBuffer.size() > 1;
  accounted_up_to_ = 0;
  vain_row_ = kNone;
  tried_ = {};
  in_window_ = false;
  more_.clear();
}

void CaptureMemory::TriedUpTo(std::uint64_t offset) {
  WorkOut();
  if (any_cuts_ && accounted_up_to_ < offset && may_be_long_) {
    const std::uint8_t* const begin = input_->At(accounted_up_to_);
    const std::uint8_t* const end = input_->At(offset);
    if (std::any_of(begin, end, [this](std::uint8_t byte) { return cuts_[byte]; })) Cut();
  }
  accounted_up_to_ = std::max(accounted_up_to_, offset);
}

// Cuts the buffer down to its first byte. The rows recorded in tried_ could only do the same, so
// tried_ is emptied.
void CaptureMemory::CutLong() {
  if (vain_row_ != kNone) WorkOut();
  may_be_long_ = false;
  tried_ = {};
  if (in_window_) {
    count_ = 1;
    more_.clear();
  } else if (state_->CaptureBuffer.size() > 1) {
    state_->CaptureBuffer.resize(1);
  }
}

// Applies the recorded events to the buffer.
void CaptureMemory::WorkOut() {
  if (vain_row_ != kNone) {
    const CompiledRow& row = list_.rows[static_cast<std::size_t>(vain_row_)];
    const CompiledAttempt& compiled = list_.attempts[static_cast<std::size_t>(row.attempt)];
    MatchAttempt attempt;
    attempt.FailInSpan(compiled.pattern, compiled.behind_prefix);
    Captured(vain_offset_, attempt, {});
    tried_ = {vain_offset_, row.table_row, list_.table_size};
    accounted_up_to_ = vain_offset_ + 1;
  }
  const bool cuts = may_be_long_ && tried_.before > 0 && AnyCuts(tried_);
  tried_ = {};
  if (cuts) CutLong();
}

bool CaptureMemory::AnyCuts(const Tried& tried) const {
  const std::vector<std::int64_t>& rows = list_.cutting_rows[*input_->At(tried.offset)];
  if (rows.empty()) return false;
  const auto next = std::upper_bound(rows.begin(), rows.end(), tried.after);
  return next != rows.end() && *next < tried.before;
}

std::string_view CaptureMemory::Bytes() {
  if (HasRecords()) WorkOut();
  if (AreInWindow()) return {reinterpret_cast<const char*>(input_->At(first_)), count_};
  Settle();
  return {reinterpret_cast<const char*>(state_->CaptureBuffer.data()),
          state_->CaptureBuffer.size()};
}

void CaptureMemory::Settle() {
  WorkOut();
  if (!in_window_) return;
  const std::uint8_t* const begin = input_->At(first_);
  state_->CaptureBuffer.assign(begin, begin + count_);
  state_->CaptureBuffer.insert(state_->CaptureBuffer.end(), more_.begin(), more_.end());
  in_window_ = false;
  more_.clear();
}

}  // namespace morvex
