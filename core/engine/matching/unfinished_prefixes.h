// When a stream pauses, the last bytes that have arrived may be the beginning of a literal prefix.
// This class finds the first offset where such an unfinished prefix begins. Every prefix that
// begins in front of that offset has arrived whole.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/engine/matching/compiled_list.h"
#include "core/engine/matching/input_window.h"

namespace morvex {

class UnfinishedPrefixes {
 public:
  // For `rows_by_prefix` see PrefixIndex. Both must outlive the object.
  UnfinishedPrefixes(const std::vector<CompiledRow>& rows,
                     const std::vector<std::int32_t>& rows_by_prefix);

  // Call when another source begins.
  void Reset() { settled_ = 0; }

  // Returns the first offset, `from` or later, from which the bytes up to the window's end are the
  // beginning of a longer prefix; the window's end if there is no such offset. `from` must not
  // decrease from call to call. An offset that was ruled out is not tested again, however often the
  // stream pauses.
  std::uint64_t FirstOffset(const InputWindow& window, std::uint64_t from);

 private:
  bool IsBeginning(std::string_view bytes) const;

  const std::vector<CompiledRow>& rows_;
  const std::vector<std::int32_t>& rows_by_prefix_;
  std::size_t longest_ = 0;  // length of the longest prefix in bytes
  // No unfinished prefix begins at or behind the last `from` and in front of this offset.
  std::uint64_t settled_ = 0;
};

}  // namespace morvex
