#include "core/engine/matching/input_window.h"

#include <cstring>

namespace morvex {

InputWindow::InputWindow()
    : buffer_(std::make_unique_for_overwrite<std::uint8_t[]>(kBufferSize + kPadding)) {}

void InputWindow::Open(ByteSource& source) {
  source_ = &source;
  base_ = 0;
  filled_ = 0;
  start_ = 0;
  ended_ = false;
}

ErrorNumber InputWindow::Refill(std::uint64_t offset) {
  std::size_t kept = 0;
  if (offset >= base_ && offset - base_ < filled_) {
    const auto from = static_cast<std::size_t>(offset - base_);
    kept = filled_ - from;
    std::memmove(buffer_.get(), buffer_.get() + from, kept);
  }
  base_ = offset;
  start_ = 0;
  filled_ = kept;
  ErrorNumber error = ErrorNumber::kNone;
  while (error == ErrorNumber::kNone && !ended_ && filled_ < kBufferSize && !source_->MustWait()) {
    error = Read();
  }
  std::memset(buffer_.get() + filled_, 0, kPadding);
  return error;
}

ErrorNumber InputWindow::Wait() {
  const ErrorNumber error = Read();
  std::memset(buffer_.get() + filled_, 0, kPadding);
  return error;
}

ErrorNumber InputWindow::Read() {
  char* const into = reinterpret_cast<char*>(buffer_.get() + filled_);
  const Result<std::size_t> read = source_->ReadAt(base_ + filled_, into, kBufferSize - filled_);
  if (!read) {
    filled_ = start_;
    return read.error;
  }
  filled_ += read.value;
  ended_ = read.value == 0;
  return ErrorNumber::kNone;
}

}  // namespace morvex
