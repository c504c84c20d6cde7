// What lies ahead of a match attempt: the next NUL, and the next occurrence of a row's tail. Each
// byte is searched once for each of them, however many attempts ask, because what was found, or not
// found, is remembered. Offsets are those of the source.
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
  // The first NUL at or behind `from`, if it lies in front of `limit`, or kNowhere; the source's
  // end counts as one. `from` never goes back; `limit` is in the window or behind the source's end.
  std::uint64_t Find(const InputWindow& window, std::uint64_t from, std::uint64_t limit);

  // There is none from the last `from` up to here.
  std::uint64_t known_up_to() const { return found_ == kNowhere ? searched_ : found_; }

 private:
  std::uint64_t found_ = kNowhere;
  std::uint64_t searched_ = 0;  // no other NUL lies between the last `from` and here
};

class NextTail {
 public:
  // `tail` is not empty and must outlive the object.
  explicit NextTail(std::string_view tail);

  // Forgets what was found: another source begins.
  void Reset();

  // The end of the first occurrence that begins at or behind `from`, if it ends at `limit` or in
  // front of it, or kNowhere. As for NextNul::Find.
  std::uint64_t FindEnd(const InputWindow& window, std::uint64_t from, std::uint64_t limit);

  // None has ended from the last `from` up to here.
  std::uint64_t known_up_to() const { return found_ == kNowhere ? searched_ : found_ - 1; }

 private:
  std::string_view tail_;
  // As in a Knuth-Morris-Pratt search. fallback_[n]: the size of the longest beginning of the tail
  // that its first n bytes also end with and that is shorter than n.
  std::vector<std::uint32_t> fallback_;
  std::uint64_t found_ = kNowhere;  // an end
  std::uint64_t searched_ = 0;      // the bytes in front of it are searched
  std::size_t fitting_ = 0;         // so many of the tail's first bytes end at searched_
};

}  // namespace morvex
