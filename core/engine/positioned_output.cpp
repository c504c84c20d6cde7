#include "core/engine/positioned_output.h"

namespace morvex {

void PositionedOutput::Put(std::int64_t position, std::string_view bytes) {
  if (position < 1) {
    const auto dropped = static_cast<std::uint64_t>(1 - position);
    if (dropped >= bytes.size()) return;
    bytes.remove_prefix(static_cast<std::size_t>(dropped));
    position = 1;
  }
  if (position != next_ || pending_.size() >= kBlock) {
    Flush();
    first_ = position;
  }
  pending_.append(bytes);
  next_ = position + static_cast<std::int64_t>(bytes.size());
}

ErrorNumber PositionedOutput::Finish() {
  Flush();
  const ErrorNumber closing = file_.Close();
  if (error_ == ErrorNumber::kNone) error_ = closing;
  return error_;
}

void PositionedOutput::Flush() {
  if (error_ == ErrorNumber::kNone && !pending_.empty()) {
    error_ = file_.WriteAt(static_cast<std::uint64_t>(first_ - 1), pending_);
  }
  pending_.clear();
  first_ = next_;
}

}  // namespace morvex
