// A window that slides forward over a file, so that a file of any size is read in constant memory:
// from where it stands it shows at least `kLookAhead` bytes, or all that the file still has.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "core/host/file_service.h"

namespace morvex {

class InputWindow {
 public:
  // The bytes that the longest match attempt can look at.
  static constexpr std::size_t kLookAhead = 32768;

  // `file` must outlive the window.
  explicit InputWindow(InputFile& file);

  // Moves the window's start to the 0-based `offset`, which never lies before the last one. An
  // error of the file leaves the window empty.
  ErrorNumber MoveTo(std::uint64_t offset) {
    const bool held = offset >= base_ && offset - base_ <= filled_;
    if (held && (ended_ || filled_ - (offset - base_) >= kLookAhead)) {
      start_ = static_cast<std::size_t>(offset - base_);
      return ErrorNumber::kNone;
    }
    return Refill(offset);
  }

  const std::uint8_t* data() const { return buffer_.get() + start_; }
  std::size_t size() const { return filled_ - start_; }  // 0: the file has ended

 private:
  ErrorNumber Refill(std::uint64_t offset);

  InputFile& file_;
  std::unique_ptr<std::uint8_t[]> buffer_;
  std::uint64_t base_ = 0;  // the file's offset of buffer_[0]
  std::size_t filled_ = 0;  // bytes of the buffer that are read
  std::size_t start_ = 0;   // the window's start in the buffer
  bool ended_ = false;      // the buffer holds the file's last byte
};

}  // namespace morvex
