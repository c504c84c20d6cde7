#include "core/engine/matching/capture_memory.h"

#include <algorithm>

namespace morvex {

CaptureMemory::CaptureMemory(const std::array<std::vector<std::int64_t>, 256>& cutting_rows) {
  for (std::size_t byte = 0; byte < cuts_.size(); ++byte) {
    cuts_[byte] = !cutting_rows[byte].empty();
    any_cuts_ = any_cuts_ || cuts_[byte];
  }
}

void CaptureMemory::Open(CaptureState& state) {
  state_ = &state;
  noted_ = false;
  may_be_long_ = state.CaptureBuffer.size() > 1;
  looked_up_to_ = 0;
}

void CaptureMemory::CutLong() {
  may_be_long_ = false;
  if (noted_) {
    count_ = 1;
    more_.clear();
  } else if (state_->CaptureBuffer.size() > 1) {
    state_->CaptureBuffer.resize(1);
  }
}

void CaptureMemory::TriedUpTo(const InputWindow& window, std::uint64_t place) {
  if (any_cuts_ && looked_up_to_ < place && may_be_long_) {
    const std::uint8_t* const begin = window.At(looked_up_to_);
    const std::uint8_t* const end = window.At(place);
    if (std::any_of(begin, end, [this](std::uint8_t byte) { return cuts_[byte]; })) Cut();
  }
  looked_up_to_ = std::max(looked_up_to_, place);
}

std::string_view CaptureMemory::Bytes(const InputWindow& window) {
  if (AreInWindow()) {
    const std::uint8_t* const begin = window.At(first_);
    return {reinterpret_cast<const char*>(begin), count_};
  }
  Settle(window);
  return {reinterpret_cast<const char*>(state_->CaptureBuffer.data()),
          state_->CaptureBuffer.size()};
}

void CaptureMemory::Settle(const InputWindow& window) {
  if (!noted_) return;
  const std::uint8_t* const begin = window.At(first_);
  state_->CaptureBuffer.assign(begin, begin + count_);
  state_->CaptureBuffer.insert(state_->CaptureBuffer.end(), more_.begin(), more_.end());
  noted_ = false;
}

}  // namespace morvex
