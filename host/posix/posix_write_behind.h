// Writing a large file while the caller goes on: blocks are copied into a ring of buffers that a
// thread of its own empties into the file, in the order in which they came.
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

// One file at a time is written so; the thread and the buffers then serve the next one. Begin,
// Write and Finish are called by whoever has begun.
//
// What becomes known when does not depend on the thread's pace: the code of a write that failed is
// given by the Write that needs its buffer again, kBuffers full buffers later, or by Finish. Behind
// a failed write nothing more is written.
class WriteBehind {
 public:
  static constexpr std::size_t kBuffers = 4;
  static constexpr std::size_t kBufferSize = std::size_t{256} << 10;

  WriteBehind() = default;
  WriteBehind(const WriteBehind&) = delete;
  WriteBehind& operator=(const WriteBehind&) = delete;
  // Every file must have been finished.
  ~WriteBehind();

  // Takes the open file `file`, which stays the caller's and must stay open until Finish. False
  // when another file is being written, or when there is no memory or no thread to be had: the
  // caller then writes by itself.
  bool Begin(int file);
  // 0, or the error code of an earlier Write; then nothing of `bytes` is taken.
  int Write(std::uint64_t offset, std::string_view bytes);
  // Waits until everything is written. Gives 0 or the first error code.
  int Finish();

 private:
  struct Buffer {
    std::unique_ptr<char[]> bytes;
    std::uint64_t offset = 0;
    std::size_t size = 0;
  };

  bool Start();
  void Work();
  // Waits until the buffer to be filled next is free. 0, or the code of the write that it held.
  int WaitForBuffer();
  void HandOver();
  Buffer& Filled() { return buffers_[handed_over_ % kBuffers]; }

  // Only the caller's: the buffer being filled is not handed over yet.
  bool filling_ = false;

  std::mutex mutex_;
  std::condition_variable work_;  // something was handed over, or the end has come
  std::condition_variable done_;  // a buffer was written
  std::array<Buffer, kBuffers> buffers_;
  // Of the present file. Buffers are numbered from 0 as they are handed over.
  int file_ = -1;
  std::uint64_t handed_over_ = 0;  // changed by the caller alone
  std::uint64_t written_ = 0;      // changed by the thread alone
  std::uint64_t failed_ = 0;       // the number of the buffer whose write gave `code_`
  int code_ = 0;
  bool busy_ = false;
  bool ending_ = false;
  bool waited_for_ = false;  // by the caller
  std::thread thread_;
};

}  // namespace morvex::posix
