// Bytes that are written at positions, into a stream that cannot go back. What a right text with
// the wildcard may still write over is held back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/engine/matching/byte_io.h"
#include "core/host/file_service.h"

namespace morvex {

class StreamOutput : public ByteSink {
 public:
  // `stream` must outlive the output. The last `held` bytes are held back: so far the writing may
  // go back, and no further (kInvalidCall). Places that are left out are NUL.
  StreamOutput(OutputFile& stream, std::size_t held) : stream_(stream), most_held_(held) {}

  ErrorNumber WriteAt(std::uint64_t offset, std::string_view bytes) override;
  // Sends the rest and closes the stream.
  ErrorNumber Close() override;

 private:
  ErrorNumber Send(std::size_t size);

  OutputFile& stream_;
  const std::size_t most_held_;
  std::uint64_t sent_ = 0;
  std::string held_;  // the bytes from sent_ on
};

}  // namespace morvex
