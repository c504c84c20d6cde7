// Writes a large file while the caller goes on. Blocks are copied into a ring of buffers, which a
// thread writes to the file in the same order.
#pragma once

#include <array>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string_view>
#include <thread>

namespace morvex::posix {

// Serves one file at a time; thread and buffers are then reused for the next one. Only the caller
// whose Begin succeeded may call Write and Finish.
//
// When an error is reported does not depend on the thread's speed: by the Write that needs the
// failed buffer again, kBuffers full buffers later, or by Finish. After a failed write nothing more
// is written.
class WriteBehind {
 public:
  static constexpr std::size_t kBuffers = 4;
  static constexpr std::size_t kBufferSize = std::size_t{256} << 10;

  WriteBehind() = default;
  WriteBehind(const WriteBehind&) = delete;
  WriteBehind& operator=(const WriteBehind&) = delete;
  // Every file must have been finished.
  ~WriteBehind();

  // Begins writing to the open file `file`, which the caller owns and keeps open until Finish.
  // False if another file is being written, or if there is no memory or thread for it: the caller
  // then writes directly.
  bool Begin(int file);
  // Returns 0, or the error code of an earlier Write; then it has taken nothing of `bytes`.
  int Write(std::uint64_t offset, std::string_view bytes);
  // Waits until everything is written. Returns 0 or the first error code.
  int Finish();

 private:
  struct Buffer {
    std::unique_ptr<char[]> bytes;
    std::uint64_t offset = 0;
    std::size_t size = 0;
  };

  bool Start();
  void Work();
  // Waits until the next buffer is free. Returns 0, or the error code of the write it was last used
  // for.
  int WaitForBuffer();
  void HandOver();
  Buffer& Filled() { return buffers_[handed_over_ % kBuffers]; }

  // Used only by the caller: a buffer is being filled and not yet handed over.
  bool filling_ = false;

  std::mutex mutex_;
  std::condition_variable work_;  // a buffer was handed over, or ending_ was set
  std::condition_variable done_;  // a buffer was written
  std::array<Buffer, kBuffers> buffers_;
  // About the current file. Buffers are numbered from 0 in the order of HandOver.
  int file_ = -1;
  std::uint64_t handed_over_ = 0;  // changed only by the caller
  std::uint64_t written_ = 0;      // changed only by the thread
  std::uint64_t failed_ = 0;       // number of the buffer whose write failed with `code_`
  int code_ = 0;
  bool busy_ = false;
  bool ending_ = false;
  bool waited_for_ = false;  // the caller waits for done_
  std::thread thread_;
};

}  // namespace morvex::posix
