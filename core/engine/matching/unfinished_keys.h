// Where a stream pauses, a key may have begun whose rest is still to come. Whatever stands in front
// of its first byte is settled by the bytes that are there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/engine/matching/compiled_list.h"
#include "core/engine/matching/input_window.h"

namespace morvex {

class UnfinishedKeys {
 public:
  // `rows_by_key` as in KeyIndex; both must outlive the object.
  UnfinishedKeys(const std::vector<CompiledRow>& rows,
                 const std::vector<std::int32_t>& rows_by_key);

  // Another file begins.
  void Reset() { settled_ = 0; }

  // The first place at or behind `from` from which the window's bytes are the beginning of a key
  // and not all of it; the window's end when there is none. `from` never goes back. Each place is
  // ruled out once, however often the stream pauses.
  std::uint64_t FirstPlace(const InputWindow& window, std::uint64_t from);

 private:
  bool IsBeginning(std::string_view bytes) const;

  const std::vector<CompiledRow>& rows_;
  const std::vector<std::int32_t>& rows_by_key_;
  std::size_t longest_ = 0;    // key
  std::uint64_t settled_ = 0;  // no key that begins in front of it goes on behind the window
};

}  // namespace morvex
