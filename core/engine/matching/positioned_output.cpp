#include "core/engine/matching/positioned_output.h"

#include <algorithm>
#include <cstring>

namespace morvex {

PositionedOutput::PositionedOutput() : pending_(std::make_unique_for_overwrite<char[]>(kBlock)) {}

void PositionedOutput::Open(ByteSink& sink) {
  sink_ = &sink;
  first_ = 1;
  used_ = 0;
  error_ = ErrorNumber::kNone;
}

void PositionedOutput::Put(std::int64_t position, std::string_view bytes) {
  if (position < 1) {
    const auto dropped = static_cast<std::uint64_t>(1 - position);
    if (dropped >= bytes.size()) return;
    bytes.remove_prefix(static_cast<std::size_t>(dropped));
    position = 1;
  }
  // A short piece that begins within the pending bytes, or directly behind them, is added to them
  // if there is room.
  const std::int64_t at = position - first_;
  if (at >= 0 && at <= static_cast<std::int64_t>(used_) && bytes.size() < kDirect &&
      static_cast<std::size_t>(at) + bytes.size() <= kBlock) {
    std::memcpy(pending_.get() + at, bytes.data(), bytes.size());
    used_ = std::max(used_, static_cast<std::size_t>(at) + bytes.size());
    return;
  }
  Flush();
  if (bytes.size() >= kDirect) {
    Write(position, bytes);
    first_ = position + static_cast<std::int64_t>(bytes.size());
  } else {
    std::memcpy(pending_.get(), bytes.data(), bytes.size());
    first_ = position;
    used_ = bytes.size();
  }
}

ErrorNumber PositionedOutput::Finish() {
  Flush();
  const ErrorNumber closing = sink_->Close();
  if (error_ == ErrorNumber::kNone) error_ = closing;
  return error_;
}

void PositionedOutput::Write(std::int64_t position, std::string_view bytes) {
  if (error_ == ErrorNumber::kNone) {
    error_ = sink_->WriteAt(static_cast<std::uint64_t>(position - 1), bytes);
  }
}

void PositionedOutput::Flush() {
  if (used_ > 0) Write(first_, {pending_.get(), used_});
  first_ += static_cast<std::int64_t>(used_);
  used_ = 0;
}

}  // namespace morvex
