// A window that slides forward over a source, so that one of any size is read in constant memory:
// from where it stands it shows at least `kLookAhead` bytes, or all that the file still has. Of a
// stream whose next bytes are not there yet it shows what there is, and waits only when it is told.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "core/engine/matching/byte_io.h"

namespace morvex {

class InputWindow {
 public:
  // The bytes that the longest match attempt can look at.
  static constexpr std::size_t kLookAhead = 32768;
  // So many bytes behind the last one shown may be read too; behind the file's end they are NUL.
  static constexpr std::size_t kPadding = 64;
  // What is read at once. Small enough to stay in a core's own cache between reading, matching and
  // writing.
  static constexpr std::size_t kBufferSize = (std::size_t{128} << 10) + kLookAhead;

  InputWindow();

  // Shows another file from its start, which must outlive its time in the window.
  void Open(ByteSource& source);

  // Moves the window's start to the 0-based `offset`, which never lies before the last one. An
  // error of the file leaves the window empty. Never waits for a stream.
  ErrorNumber MoveTo(std::uint64_t offset) {
    if (!Holds(offset)) return Refill(offset);
    start_ = static_cast<std::size_t>(offset - base_);
    return ErrorNumber::kNone;
  }

  // Waits until the stream gives more bytes or ends, and shows them too. Only while IsShort.
  ErrorNumber Wait();

  // Whether a move to `offset` needs no refill, so that At goes on giving the same bytes.
  bool Holds(std::uint64_t offset) const {
    const bool held = offset >= base_ && offset - base_ <= filled_;
    return held && (ended_ || filled_ - (offset - base_) >= kLookAhead);
  }

  const std::uint8_t* data() const { return buffer_.get() + start_; }
  // 0: the file has ended, or a stream gives nothing for the moment.
  std::size_t size() const { return filled_ - start_; }
  // The byte at an offset of the file, from that of the last refill on to the last one shown.
  const std::uint8_t* At(std::uint64_t offset) const { return buffer_.get() + (offset - base_); }
  std::uint64_t offset() const { return base_ + start_; }
  std::uint64_t end() const { return base_ + filled_; }
  bool ended() const { return ended_; }  // the window reaches to the file's end
  // A stream gives nothing for the moment, and an attempt may want to look further than the window.
  bool IsShort() const { return !ended_ && size() < kLookAhead; }

 private:
  ErrorNumber Refill(std::uint64_t offset);
  ErrorNumber Read();

  ByteSource* source_ = nullptr;
  std::unique_ptr<std::uint8_t[]> buffer_;
  std::uint64_t base_ = 0;  // the file's offset of buffer_[0]
  std::size_t filled_ = 0;  // bytes of the buffer that are read
  std::size_t start_ = 0;   // the window's start in the buffer
  bool ended_ = false;      // the buffer holds the file's last byte
};

}  // namespace morvex
