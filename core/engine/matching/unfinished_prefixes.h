// Where a stream pauses, a prefix may have begun whose rest is still to come. Everything in front
// of its first byte can be decided with the bytes that have arrived.
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

  // Returns the first offset at or behind `from` at which a prefix begins but the window's end cuts
  // it off; the window's end if there is none. `from` must not decrease from call to call. Each
  // offset is ruled out once, however often the stream pauses.
  std::uint64_t FirstOffset(const InputWindow& window, std::uint64_t from);

 private:
  bool IsBeginning(std::string_view bytes) const;

  const std::vector<CompiledRow>& rows_;
  const std::vector<std::int32_t>& rows_by_prefix_;
  std::size_t longest_ = 0;    // length of the longest prefix in bytes
  std::uint64_t settled_ = 0;  // no unfinished prefix begins in front of this offset
};

}  // namespace morvex
