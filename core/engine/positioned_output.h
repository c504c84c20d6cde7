// Collects bytes that are written at explicit positions, nearly always one behind the other, and
// hands them to a file in large blocks. The position may also go back: what is written last stands.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/host/file_service.h"

namespace morvex {

class PositionedOutput {
 public:
  // `file` must outlive the output.
  explicit PositionedOutput(OutputFile& file) : file_(file) { pending_.reserve(kBlock); }

  // Writes at the 1-based `position`. Bytes below position 1 have no place and are dropped.
  void Put(std::int64_t position, char byte) {
    if (position == next_ && pending_.size() < kBlock) {
      pending_.push_back(byte);
      ++next_;
    } else {
      Put(position, std::string_view(&byte, 1));
    }
  }
  void Put(std::int64_t position, std::string_view bytes);

  // The first error of the file, if any; nothing is written after it.
  ErrorNumber error() const { return error_; }

  // Writes what is pending and closes the file. The last call.
  ErrorNumber Finish();

 private:
  static constexpr std::size_t kBlock = std::size_t{1} << 20;

  void Flush();

  OutputFile& file_;
  std::string pending_;     // stands in the file from first_ on
  std::int64_t first_ = 1;  // position of pending_[0]
  std::int64_t next_ = 1;   // position behind the last pending byte
  ErrorNumber error_ = ErrorNumber::kNone;
};

}  // namespace morvex
