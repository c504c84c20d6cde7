// A window that slides forward over a source, so that a source of any size is read in constant
// memory. The window shows at least kLookAhead bytes from its start, or all that the source still
// has. While a source that is a stream pauses, the window shows only the bytes that have arrived;
// only Wait waits for more.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "core/engine/matching/byte_io.h"

namespace morvex {

class InputWindow {
 public:
  // No match attempt reads more bytes than this.
  static constexpr std::size_t kLookAhead = 32768;
  // This many bytes behind the last byte shown are readable, too. They are NULs.
  static constexpr std::size_t kPadding = 64;
  // The size of the buffer in bytes: small enough to stay in a core's own cache while the bytes are
  // read, matched and written.
  static constexpr std::size_t kBufferSize = (std::size_t{128} << 10) + kLookAhead;

  InputWindow();

  // Turns to another source, which must outlive its use here. The window is empty until MoveTo is
  // called.
  void Open(ByteSource& source);

  // Moves the window's start to the 0-based `offset`, which must not lie in front of the current
  // start. After an error of the source the window is empty. Never waits for a stream.
  ErrorNumber MoveTo(std::uint64_t offset) {
    if (!Holds(offset)) return Refill(offset);
    start_ = static_cast<std::size_t>(offset - base_);
    return ErrorNumber::kNone;
  }

  // Waits until the stream has more bytes or ends, and adds the bytes to the window. Call only
  // while IsShort.
  ErrorNumber Wait();

  // Whether a move to `offset` needs no refill, so that pointers from At stay valid.
  bool Holds(std::uint64_t offset) const {
    const bool held = offset >= base_ && offset - base_ <= filled_;
    return held && (ended_ || filled_ - (offset - base_) >= kLookAhead);
  }

  const std::uint8_t* data() const { return buffer_.get() + start_; }
  // The number of bytes shown. 0 at the end of the source, and while a stream has no byte to show.
  std::size_t size() const { return filled_ - start_; }
  // Points to the source's byte at `offset`. The offset must not lie in front of the offset of the
  // last move that needed a refill, nor behind end().
  const std::uint8_t* At(std::uint64_t offset) const { return buffer_.get() + (offset - base_); }
  std::uint64_t end() const { return base_ + filled_; }
  bool ended() const { return ended_; }  // the window reaches to the source's end
  // Whether a stream pauses and an attempt may need more bytes than the window shows.
  bool IsShort() const { return !ended_ && size() < kLookAhead; }

 private:
  ErrorNumber Refill(std::uint64_t offset);
  ErrorNumber Read();

  ByteSource* source_ = nullptr;
  std::unique_ptr<std::uint8_t[]> buffer_;
  std::uint64_t base_ = 0;  // offset in the source of buffer_[0]
  std::size_t filled_ = 0;  // bytes read into the buffer
  std::size_t start_ = 0;   // the window's start in the buffer
  bool ended_ = false;      // the buffer reaches to the source's end
};

}  // namespace morvex
