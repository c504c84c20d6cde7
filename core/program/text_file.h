// Reading a text file line by line. A line ends at LF; one CR before it is not part of the line; a
// last line without LF counts. Bytes are taken as they stand.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "core/host/file_service.h"

namespace morvex {

class LineReader {
 public:
  // kNone, or why the file could not be opened: Next then gives no line.
  ErrorNumber Open(FileService& files, const std::string& path);

  // False at the end of the file, and from an error of it on; a line that the error cut is not
  // given.
  bool Next(std::string& line);

  // Why the file could not be opened or not be read to its end.
  ErrorNumber error() const { return error_; }

 private:
  bool Refill();

  std::unique_ptr<InputFile> file_;
  std::string block_;
  std::size_t start_ = 0;     // of what is not handed out yet, in block_
  std::uint64_t offset_ = 0;  // in the file, behind block_
  ErrorNumber error_ = ErrorNumber::kNone;
};

}  // namespace morvex
