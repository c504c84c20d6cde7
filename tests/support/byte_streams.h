// Open files that are nothing but bytes in memory, for tests and benchmarks that need no file
// system.
#pragma once

#include <algorithm>
#include <cstring>
#include <functional>
#include <string>
#include <string_view>

#include "core/host/file_service.h"

namespace morvex::test {

class BytesInput : public InputFile {
 public:
  // The bytes must outlive the file.
  explicit BytesInput(std::string_view bytes) : bytes_(bytes) {}

  Result<std::size_t> ReadAt(std::uint64_t offset, char* into, std::size_t size) override {
    if (offset >= bytes_.size()) return std::size_t{0};
    const std::string_view rest = bytes_.substr(static_cast<std::size_t>(offset), size);
    std::memcpy(into, rest.data(), rest.size());
    return rest.size();
  }

 private:
  std::string_view bytes_;
};

// The same as a stream that pauses behind every piece of it.
class PiecesInput : public InputFile {
 public:
  // The bytes and `next_size`, which gives the size of each piece, 1 or more, must outlive the
  // file.
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
    const std::string_view piece = bytes_.substr(done_, std::min(size, left_));
    std::memcpy(into, piece.data(), piece.size());
    done_ += piece.size();
    left_ -= piece.size();
    return piece.size();
  }
  bool MustWait() override { return left_ == 0; }

 private:
  std::string_view bytes_;
  std::function<std::size_t()> next_size_;
  std::size_t done_ = 0;
  std::size_t left_ = 0;  // of the piece
};

class BytesOutput : public OutputFile {
 public:
  // Writes into `bytes`, which must outlive the file.
  explicit BytesOutput(std::string& bytes) : bytes_(bytes) {}

  ErrorNumber WriteAt(std::uint64_t offset, std::string_view bytes) override {
    const auto at = static_cast<std::size_t>(offset);
    bytes_.resize(std::max(bytes_.size(), at + bytes.size()));
    std::memcpy(bytes_.data() + at, bytes.data(), bytes.size());
    return ErrorNumber::kNone;
  }
  ErrorNumber Close() override { return ErrorNumber::kNone; }

 private:
  std::string& bytes_;
};

}  // namespace morvex::test
