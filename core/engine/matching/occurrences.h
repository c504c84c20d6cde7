// What lies ahead of a match attempt: the next NUL, and the next place where a row's tail ends.
// Each byte is looked at once for each question, however many attempts ask: what was found, or not
// found, is remembered as the run moves on. Places are offsets in the file.
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
  // The first NUL at or behind `from`, if it lies in front of `limit`, or kNowhere; a file's end is
  // one. `from` never goes back; `limit` is within the window or behind the file's end.
  std::uint64_t Find(const InputWindow& window, std::uint64_t from, std::uint64_t limit);

  // From the last `from` up to here there is none.
  std::uint64_t known_up_to() const { return found_ == kNowhere ? searched_ : found_; }

 private:
  std::uint64_t found_ = kNowhere;
  std::uint64_t searched_ = 0;  // no other NUL lies between the last `from` and here
};

class NextTail {
 public:
  // `tail` is not empty and must outlive the object.
  explicit NextTail(std::string_view tail);

  // Forgets what was found: another file begins.
  void Reset();

  // The end of the first occurrence that begins at or behind `from`, if it ends at `limit` or in
  // front of it, or kNowhere. As for NextNul::Find.
  std::uint64_t FindEnd(const InputWindow& window, std::uint64_t from, std::uint64_t limit);

  // From the last `from` up to here none has ended.
  std::uint64_t known_up_to() const { return found_ == kNowhere ? searched_ : found_ - 1; }

 private:
  std::string_view tail_;
  // fallback_[n]: the longest beginning of the tail that also ends its first n bytes, n excluded.
  std::vector<std::uint32_t> fallback_;
  std::uint64_t found_ = kNowhere;  // an end
  std::uint64_t searched_ = 0;      // the bytes in front of it have been looked at
  std::size_t fitting_ = 0;         // so many of the tail's bytes end at searched_
};

}  // namespace morvex
