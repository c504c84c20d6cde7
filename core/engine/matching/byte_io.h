// The source from which a substitution reads bytes, and the sink to which it writes them. Callers
// adapt their files to these interfaces.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/host/error.h"

namespace morvex {

class ByteSource {
 public:
  virtual ~ByteSource() = default;
  // Reads up to `size` bytes from the 0-based `offset` into `into`. Returns the number of bytes
  // read, which is 0 only at the end of the source.
  virtual Result<std::size_t> ReadAt(std::uint64_t offset, char* into, std::size_t size) = 0;
  // Whether the next read would block: the source is a stream, such as a pipe, and its next bytes
  // have not been written yet.
  virtual bool MustWait() { return false; }
};

class ByteSink {
 public:
  virtual ~ByteSink() = default;
  // Writes all of `bytes` at the 0-based `offset` and overwrites what is there. The returned error
  // may belong to an earlier, delayed write. After an error the caller must not write again.
  virtual ErrorNumber WriteAt(std::uint64_t offset, std::string_view bytes) = 0;
  // Completes delayed writes and returns their first error. No call may follow.
  virtual ErrorNumber Close() = 0;
};

}  // namespace morvex
