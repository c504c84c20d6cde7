// An output file on a stream that cannot seek. The last bytes are held back, because a right text
// with the wildcard may overwrite them.
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
  // `stream` must outlive the output. A write may begin up to `held` bytes in front of the end of
  // the bytes written; one that begins further back may fail with kInvalidCall. Bytes that are
  // skipped become NUL.
  StreamOutput(OutputFile& stream, std::size_t held) : stream_(stream), most_held_(held) {}

  ErrorNumber WriteAt(std::uint64_t offset, std::string_view bytes) override;
  // Sends the held bytes and closes the stream.
  ErrorNumber Close() override;

 private:
  ErrorNumber Send(std::size_t size);

  OutputFile& stream_;
  const std::size_t most_held_;
  std::uint64_t sent_ = 0;
  std::string held_;  // the bytes from sent_ on
};

}  // namespace morvex
