// Bytes in memory as a stream that pauses, for tests of code that reads a stream piece by piece.
#pragma once

#include <algorithm>
#include <functional>
#include <string_view>

#include "core/engine/matching/byte_io.h"
#include "core/host/file_service.h"

namespace morvex::test {

// Pauses before each piece and before the end of the stream. Serves as an open file and as the
// source of a substitution.
class PiecesInput : public InputFile, public ByteSource {
 public:
  // `next_size` returns the size of the next piece, 1 or more. `bytes` and `next_size` must outlive
  // this object.
  template <class NextSize>
  PiecesInput(std::string_view bytes, NextSize& next_size)
      : bytes_(bytes), next_size_([&next_size] { return next_size(); }) {}

  // Called when a read waits for the next piece.
  std::function<void()> at_pause;

  Result<std::size_t> ReadAt(std::uint64_t offset, char* into, std::size_t size) override {
    if (offset != done_) return ErrorNumber::kInvalidCall;
    if (left_ == 0) {
      if (at_pause) at_pause();
      left_ = std::min<std::size_t>(next_size_(), bytes_.size() - done_);
      if (left_ == 0) return std::size_t{0};
    }
    const std::size_t size_read = bytes_.copy(into, std::min(size, left_), done_);
    done_ += size_read;
    left_ -= size_read;
    return size_read;
  }
  bool MustWait() override { return left_ == 0; }

 private:
  std::string_view bytes_;
  std::function<std::size_t()> next_size_;
  std::size_t done_ = 0;
  std::size_t left_ = 0;  // bytes left of the current piece
};

}  // namespace morvex::test
