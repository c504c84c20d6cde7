// Reading a text file line by line. A line ends at LF; one CR before the LF is not part of the
// line; a last line without LF counts. Bytes are not converted.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "core/host/file_service.h"

namespace morvex {

class LineReader {
 public:
  // Returns why the file could not be opened, or kNone. Without a file Next returns no line.
  ErrorNumber Open(FileService& files, const std::string& path);

  // Returns false at the end of the file and after a read error; a line that the error cut short is
  // dropped.
  bool Next(std::string& line);

  // Why the file could not be opened or read to its end.
  ErrorNumber error() const { return error_; }

 private:
  bool Refill();

  std::unique_ptr<InputFile> file_;
  std::string block_;
  std::size_t start_ = 0;     // offset in block_ of the first byte not yet returned
  std::uint64_t offset_ = 0;  // offset in the file of the end of block_
  ErrorNumber error_ = ErrorNumber::kNone;
};

}  // namespace morvex
