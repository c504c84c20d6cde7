#pragma once

#include <cstdint>

namespace morvex {

// Follows a substitution as it runs.
class SubstitutionWatcher {
 public:
  virtual ~SubstitutionWatcher() = default;
  // So many matches since the last call; called at least once more before the end.
  virtual void OnHits(std::int64_t count) = 0;
  // Called at the first byte and then every few ten thousand steps, each of which takes some
  // nanoseconds: a byte passed, a part of a look-up or of an attempt. `read` bytes are done.
  // Returning false stops the substitution.
  virtual bool KeepGoing(std::uint64_t read) = 0;
  // Counters by row of the tables, each raised by one at a match of its row; null when nobody wants
  // to know. Asked once, at the start.
  virtual std::int64_t* HitsOfRows() { return nullptr; }
};

}  // namespace morvex
