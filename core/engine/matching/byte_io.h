// Where a substitution reads its bytes and where it writes them. Whoever has files adapts them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/host/error.h"

namespace morvex {

class ByteSource {
 public:
  virtual ~ByteSource() = default;
  // Reads up to `size` bytes from the 0-based `offset`; returns how many it read, 0 only at the
  // end.
  virtual Result<std::size_t> ReadAt(std::uint64_t offset, char* into, std::size_t size) = 0;
  // The next bytes are not there yet, as in a stream that somebody else still writes: a read would
  // wait for them.
  virtual bool MustWait() { return false; }
};

class ByteSink {
 public:
  virtual ~ByteSink() = default;
  // Writes all of `bytes` at the 0-based `offset`, over what stands there. An error may be that of
  // an earlier call; nothing more is written after one.
  virtual ErrorNumber WriteAt(std::uint64_t offset, std::string_view bytes) = 0;
  // Ends the writing and returns the first error of a delayed write. The last call.
  virtual ErrorNumber Close() = 0;
};

}  // namespace morvex
