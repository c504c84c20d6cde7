// Collects bytes that are written at explicit positions, nearly always one behind the other, and
// hands them to a file in large blocks. The position may also go back: what is written last stands.
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
  // Pending bytes go to the file when there are so many.
  static constexpr std::size_t kBlock = std::size_t{128} << 10;

  PositionedOutput();

  // Writes to another file, which is empty and must outlive its time here.
  void Open(ByteSink& sink);

  // Writes at the 1-based `position`. Bytes below position 1 have no place and are dropped.
  void Put(std::int64_t position, std::string_view bytes);
  // For many short pieces one behind the other: memory for the bytes from `position` on. It is
  // empty where they must go through Put. Nothing may be called between the two but Fill, with the
  // place behind the last byte that was written there.
  struct Room {
    char* at = nullptr;
    char* end = nullptr;
  };
  Room RoomAt(std::int64_t position) {
    if (position != first_ + static_cast<std::int64_t>(used_)) return {};
    return {pending_.get() + used_, pending_.get() + kBlock};
  }
  void Fill(const char* end) { used_ = static_cast<std::size_t>(end - pending_.get()); }
  void Put(std::int64_t position, char byte) { Put(position, std::string_view(&byte, 1)); }

  // Hands what is pending to the file.
  void Flush();

  // The first error of the file, if any; nothing is written after it.
  ErrorNumber error() const { return error_; }

  // Writes what is pending and closes the file. The last call for it.
  ErrorNumber Finish();

 private:
  // So many bytes are worth a write of their own.
  static constexpr std::size_t kDirect = std::size_t{64} << 10;

  void Write(std::int64_t position, std::string_view bytes);

  ByteSink* sink_ = nullptr;
  std::unique_ptr<char[]> pending_;
  std::int64_t first_ = 1;  // position of pending_[0]
  std::size_t used_ = 0;    // bytes pending
  ErrorNumber error_ = ErrorNumber::kNone;
};

}  // namespace morvex
