#pragma once

#include <cstdint>

namespace morvex {

// Follows a substitution as it runs.
class SubstitutionWatcher {
 public:
  virtual ~SubstitutionWatcher() = default;
  // Tells that `count` matches were made since the last call. Called once more at the end.
  virtual void OnHits(std::int64_t count) = 0;
  // Called at the first byte and then each time at least 65,536 steps have been made since the last
  // call. A step is a byte passed, or a part of a look-up or of an attempt, and takes some
  // nanoseconds. `read` is the number of input bytes done. Returning false stops the substitution.
  virtual bool KeepGoing(std::uint64_t read) = 0;
  // Returns counters by row of the tables: each match of a row adds 1 to its counter. Returns null
  // if matches need not be counted by row. Called once, at the start.
  virtual std::int64_t* HitsOfRows() { return nullptr; }
};

}  // namespace morvex
