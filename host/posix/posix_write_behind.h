// Writes a large file while the caller goes on. The caller's blocks are copied into a ring of
// buffers, and a thread writes the buffers to the file in the order in which they were filled.
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

// Serves one file at a time; the thread and the buffers are then reused for the next file. Only the
// caller whose Begin succeeded may call Write and Finish.
//
// An error is reported by the Write that needs the failed buffer again, kBuffers full buffers
// later, or by Finish if there is no such Write. So the moment of the report does not depend on the
// thread's speed. After a failed write nothing more is written.
class WriteBehind {
 public:
  static constexpr std::size_t kBuffers = 4;
  static constexpr std::size_t kBufferSize = std::size_t{256} << 10;

  WriteBehind() = default;
  WriteBehind(const WriteBehind&) = delete;
  WriteBehind& operator=(const WriteBehind&) = delete;
  // Finish must have been called for every file.
  ~WriteBehind();

  // Begins writing to the open file `file`, which the caller owns and keeps open until Finish.
  // Returns false if another file is being written, or if memory or a thread is lacking: the caller
  // then writes directly.
  bool Begin(int file);
  // Returns 0, or the error code of an earlier write to the file.
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
  // Waits until the next buffer is free. Returns 0, or an error code if the last write of this
  // buffer or an earlier write failed.
  int WaitForBuffer();
  void HandOver();
  Buffer& Filled() { return buffers_[handed_over_ % kBuffers]; }

  // A buffer is being filled and not yet handed over. Used only by the caller's thread.
  bool filling_ = false;

  std::mutex mutex_;
  std::condition_variable work_;  // a buffer was handed over, or ending_ was set
  std::condition_variable done_;  // a buffer was written
  std::array<Buffer, kBuffers> buffers_;
  // The state of the current file. Buffers are numbered from 0 in the order of HandOver.
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
