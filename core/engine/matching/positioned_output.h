// Collects bytes that are written at explicit positions and passes them to a sink in large blocks.
// Nearly every write follows directly behind the last one, but a write may also go back and
// overwrite bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

#include "core/engine/matching/byte_io.h"

namespace morvex {

class PositionedOutput {
 public:
  // The most bytes that can be pending: written, but not passed to the sink yet.
  static constexpr std::size_t kBlock = std::size_t{128} << 10;

  PositionedOutput();

  // Starts to write to another sink, which must be empty and must live until Finish.
  void Open(ByteSink& sink);

  // Writes `bytes` from the 1-based `position` on. Bytes that would lie below position 1 are
  // dropped.
  void Put(std::int64_t position, std::string_view bytes);
  // Memory into which the caller may write the bytes that belong at `position` and behind. `at` is
  // null if these bytes must go through Put instead. The bytes count only after a call of Fill with
  // their end; that call must come before the next Put, Flush or Finish.
  struct Room {
    char* at = nullptr;
    char* end = nullptr;
  };
  Room RoomAt(std::int64_t position) {
    if (position != first_ + static_cast<std::int64_t>(used_)) return {};
    return {pending_.get() + used_, pending_.get() + kBlock};
  }
  void Fill(const char* end) { used_ = static_cast<std::size_t>(end - pending_.get()); }

  // Passes the pending bytes to the sink.
  void Flush();

  // The first error of the sink, if any; nothing is written after it.
  ErrorNumber error() const { return error_; }

  // Writes the pending bytes, closes the sink and returns its first error. No other call for this
  // sink may follow.
  ErrorNumber Finish();

 private:
  // A piece of this many bytes or more is passed to the sink directly.
  static constexpr std::size_t kDirect = std::size_t{64} << 10;

  void Write(std::int64_t position, std::string_view bytes);

  ByteSink* sink_ = nullptr;
  std::unique_ptr<char[]> pending_;
  std::int64_t first_ = 1;  // position of pending_[0]
  std::size_t used_ = 0;    // bytes pending
  ErrorNumber error_ = ErrorNumber::kNone;
};

}  // namespace morvex
