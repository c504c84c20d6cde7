#include "core/engine/input_window.h"

#include <algorithm>
#include <cstring>

namespace morvex {
namespace {

constexpr std::size_t kBufferSize = (std::size_t{1} << 20) + InputWindow::kLookAhead;

}  // namespace

InputWindow::InputWindow(InputFile& file)
    : file_(file), buffer_(std::make_unique_for_overwrite<std::uint8_t[]>(kBufferSize)) {}

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
  char* const into = reinterpret_cast<char*>(buffer_.get() + kept);
  const std::size_t room = kBufferSize - kept;
  const Result<std::size_t> read = file_.ReadAt(base_ + kept, into, room);
  if (!read) {
    filled_ = 0;
    return read.error;
  }
  filled_ += read.value;
  ended_ = read.value < room;
  return ErrorNumber::kNone;
}

}  // namespace morvex
