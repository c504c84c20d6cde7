// A window that slides forward over a source, so that one of any size is read in constant memory:
// from its start it shows at least `kLookAhead` bytes, or all that the source still has. Of a
// stream that pauses it shows the bytes that are there, and waits only when it is told to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "core/engine/matching/byte_io.h"

namespace morvex {

class InputWindow {
 public:
  // The most bytes that a match attempt can read.
  static constexpr std::size_t kLookAhead = 32768;
  // So many bytes behind the last one shown may be read too; behind the source's end they are NUL.
  static constexpr std::size_t kPadding = 64;
  // The bytes of one read. Few enough to stay in a core's own cache between reading, matching and
  // writing.
  static constexpr std::size_t kBufferSize = (std::size_t{128} << 10) + kLookAhead;

  InputWindow();

  // Shows another source from its start. It must outlive its time in the window.
  void Open(ByteSource& source);

  // Moves the window's start to the 0-based `offset`, which never lies before the last one. After
  // an error of the source the window is empty. Never waits for a stream.
  ErrorNumber MoveTo(std::uint64_t offset) {
    if (!Holds(offset)) return Refill(offset);
    start_ = static_cast<std::size_t>(offset - base_);
    return ErrorNumber::kNone;
  }

  // Waits until the stream has more bytes or ends, and shows them too. Only while IsShort.
  ErrorNumber Wait();

  // Whether a move to `offset` needs no refill, so that pointers from At stay valid.
  bool Holds(std::uint64_t offset) const {
    const bool held = offset >= base_ && offset - base_ <= filled_;
    return held && (ended_ || filled_ - (offset - base_) >= kLookAhead);
  }

  const std::uint8_t* data() const { return buffer_.get() + start_; }
  // 0: the source has ended, or a stream pauses.
  std::size_t size() const { return filled_ - start_; }
  // The byte at an offset of the source, between the start of the last refill and the last byte
  // shown.
  const std::uint8_t* At(std::uint64_t offset) const { return buffer_.get() + (offset - base_); }
  std::uint64_t end() const { return base_ + filled_; }
  bool ended() const { return ended_; }  // the window reaches to the source's end
  // A stream pauses, and an attempt may need more bytes than the window shows.
  bool IsShort() const { return !ended_ && size() < kLookAhead; }

 private:
  ErrorNumber Refill(std::uint64_t offset);
  ErrorNumber Read();

  ByteSource* source_ = nullptr;
  std::unique_ptr<std::uint8_t[]> buffer_;
  std::uint64_t base_ = 0;  // the source's offset of buffer_[0]
  std::size_t filled_ = 0;  // bytes of the buffer that are read
  std::size_t start_ = 0;   // the window's start in the buffer
  bool ended_ = false;      // the buffer holds the source's last byte
};

}  // namespace morvex
