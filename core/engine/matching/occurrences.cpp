#include "core/engine/matching/occurrences.h"

#include <algorithm>
#include <cstring>

namespace morvex {
namespace {

// A search may read up to this many bytes beyond its limit. The limits of the next searches lie
// only a little further on, so these searches find their bytes already searched.
constexpr std::uint64_t kStep = 4096;

// Returns the offset of the first `byte` at or behind `from` and in front of `end`, or `end`.
std::uint64_t FindByte(const InputWindow& window, std::uint8_t byte, std::uint64_t from,
                       std::uint64_t end) {
  const std::uint8_t* const begin = window.At(from);
  const void* const found = std::memchr(begin, byte, static_cast<std::size_t>(end - from));
  if (found == nullptr) return end;
  return from + static_cast<std::uint64_t>(static_cast<const std::uint8_t*>(found) - begin);
}

}  // namespace

std::uint64_t NextNul::Find(const InputWindow& window, std::uint64_t from, std::uint64_t limit) {
  if (found_ == kNowhere || found_ < from) {
    found_ = kNowhere;
    searched_ = std::max(searched_, from);
    const std::uint64_t end = window.end();
    while (found_ == kNowhere && searched_ < std::min(limit, end)) {
      const std::uint64_t step_end = std::min(searched_ + kStep, end);
      const std::uint64_t offset = FindByte(window, 0, searched_, step_end);
      if (offset < step_end) found_ = offset;
      searched_ = std::min(offset + 1, step_end);
    }
    if (found_ == kNowhere && window.ended() && searched_ >= end) found_ = end;
  }
  return found_ < limit ? found_ : kNowhere;
}

NextTail::NextTail(std::string_view tail) : tail_(tail), fallback_(tail.size() + 1) {
  std::uint32_t length = 0;
  for (std::size_t at = 1; at < tail.size(); ++at) {
    while (length > 0 && tail[at] != tail[length]) length = fallback_[length];
    if (tail[at] == tail[length]) ++length;
    fallback_[at + 1] = length;
  }
}

void NextTail::Reset() {
  found_ = kNowhere;
  searched_ = 0;
  fitting_ = 0;
}

std::uint64_t NextTail::FindEnd(const InputWindow& window, std::uint64_t from,
                                std::uint64_t limit) {
  if (found_ == kNowhere || found_ - tail_.size() < from) {
    found_ = kNowhere;
    if (searched_ < from) {
      searched_ = from;
      fitting_ = 0;
    }
    const std::uint64_t end = std::min(limit + kStep, window.end());
    while (searched_ < std::min(limit, end)) {
      if (fitting_ == 0) {
        searched_ = FindByte(window, static_cast<std::uint8_t>(tail_[0]), searched_, end);
        if (searched_ == end) break;
      }
      const auto byte = static_cast<char>(*window.At(searched_));
      while (fitting_ > 0 && byte != tail_[fitting_]) fitting_ = fallback_[fitting_];
      if (byte == tail_[fitting_]) ++fitting_;
      ++searched_;
      if (fitting_ < tail_.size()) continue;
      fitting_ = fallback_[fitting_];
      if (searched_ - tail_.size() >= from) {
        found_ = searched_;
        break;
      }
    }
  }
  return found_ <= limit ? found_ : kNowhere;
}

}  // namespace morvex
