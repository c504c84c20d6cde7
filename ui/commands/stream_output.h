// An output file on a stream that cannot seek. Writes may go back a little: the last bytes, which a
// right text with the wildcard may overwrite, are held back.
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
  // what is written; further back it fails with kInvalidCall. Bytes that are skipped become NUL.
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
