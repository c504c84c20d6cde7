// Where a stream pauses, a prefix may have begun whose rest is still to come. Everything in front
// of its first byte can be decided with the bytes that are there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/engine/matching/compiled_list.h"
#include "core/engine/matching/input_window.h"

namespace morvex {

class UnfinishedPrefixes {
 public:
  // `rows_by_prefix` as in PrefixIndex; both must outlive the object.
  UnfinishedPrefixes(const std::vector<CompiledRow>& rows,
                     const std::vector<std::int32_t>& rows_by_prefix);

  // Another source begins.
  void Reset() { settled_ = 0; }

  // The first offset at or behind `from` from which the window's bytes are the beginning of a
  // prefix but not all of it; the window's end when there is none. `from` never goes back. Each
  // offset is ruled out once, however often the stream pauses.
  std::uint64_t FirstOffset(const InputWindow& window, std::uint64_t from);

 private:
  bool IsBeginning(std::string_view bytes) const;

  const std::vector<CompiledRow>& rows_;
  const std::vector<std::int32_t>& rows_by_prefix_;
  std::size_t longest_ = 0;    // prefix, in bytes
  std::uint64_t settled_ = 0;  // no unfinished prefix begins in front of this offset
};

}  // namespace morvex
