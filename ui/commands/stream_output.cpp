#include "ui/commands/stream_output.h"

#include <algorithm>

namespace morvex {

ErrorNumber StreamOutput::WriteAt(std::uint64_t offset, std::string_view bytes) {
  if (offset < sent_) return ErrorNumber::kInvalidCall;
  const auto at = static_cast<std::size_t>(offset - sent_);
  if (most_held_ == 0 && at == 0 && held_.empty()) {
    const ErrorNumber error = stream_.WriteAt(offset, bytes);
    sent_ += bytes.size();
    return error;
  }
  if (held_.size() < at) held_.resize(at);
  held_.replace(at, std::min(bytes.size(), held_.size() - at), bytes);
  return held_.size() > 2 * most_held_ ? Send(held_.size() - most_held_) : ErrorNumber::kNone;
}

ErrorNumber StreamOutput::Close() {
  const ErrorNumber sending = Send(held_.size());
  const ErrorNumber closing = stream_.Close();
  return sending != ErrorNumber::kNone ? sending : closing;
}

ErrorNumber StreamOutput::Send(std::size_t size) {
  const ErrorNumber error = stream_.WriteAt(sent_, std::string_view(held_).substr(0, size));
  held_.erase(0, size);
  sent_ += size;
  return error;
}

}  // namespace morvex
