// Finds what lies ahead of a match attempt: the next NUL, and the next occurrence of a row's tail.
// Each class searches every byte at most once, however many attempts ask, because it remembers how
// far it has searched and what it found. Offsets count from the start of the source.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "core/engine/matching/input_window.h"

namespace morvex {

inline constexpr std::uint64_t kNowhere = ~std::uint64_t{0};

class NextNul {
 public:
  // Returns the offset of the first NUL at or behind `from` and in front of `limit`, or kNowhere.
  // The source's end counts as a NUL. `from` must not decrease from call to call. Only bytes that
  // the window shows are searched.
  std::uint64_t Find(const InputWindow& window, std::uint64_t from, std::uint64_t limit);

  // No NUL lies at or behind the last `from` and in front of this offset.
  std::uint64_t known_up_to() const { return found_ == kNowhere ? searched_ : found_; }

 private:
  std::uint64_t found_ = kNowhere;
  // No NUL but the one at found_ lies at or behind the last `from` and in front of this offset.
  std::uint64_t searched_ = 0;
};

class NextTail {
 public:
  // `tail` must not be empty and must outlive the object.
  explicit NextTail(std::string_view tail);

  // Call when another source begins: forgets what was found.
  void Reset();

  // Returns the offset behind the first occurrence of the tail that begins at or behind `from`, if
  // that offset is at most `limit`; otherwise kNowhere. `from` must not decrease from call to call.
  // Only bytes that the window shows are searched.
  std::uint64_t FindEnd(const InputWindow& window, std::uint64_t from, std::uint64_t limit);

  // Up to this offset no occurrence ends. Occurrences that begin in front of the last `from` do not
  // count.
  std::uint64_t known_up_to() const { return found_ == kNowhere ? searched_ : found_ - 1; }

 private:
  std::string_view tail_;
  // The failure function of a Knuth-Morris-Pratt search. fallback_[n] is the greatest k, less than
  // n, for which the tail's first n bytes end with its first k bytes.
  std::vector<std::uint32_t> fallback_;
  std::uint64_t found_ = kNowhere;  // the offset behind an occurrence
  std::uint64_t searched_ = 0;      // offset of the next byte to search
  // The bytes directly in front of searched_ are the first `fitting_` bytes of the tail.
  std::size_t fitting_ = 0;
};

}  // namespace morvex
