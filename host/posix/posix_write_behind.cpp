#include "host/posix/posix_write_behind.h"

#include <signal.h>

#include <algorithm>
#include <cstring>
#include <exception>

#include "host/posix/posix_descriptor.h"

namespace morvex::posix {
namespace {

// Blocks all signals while the thread is created, so that the system delivers signals only to the
// program's other threads, which handle them.
class SignalsHeldBack {
 public:
  SignalsHeldBack() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  SignalsHeldBack(const SignalsHeldBack&) = delete;
  SignalsHeldBack& operator=(const SignalsHeldBack&) = delete;
  ~SignalsHeldBack() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_{};
};

}  // namespace

WriteBehind::~WriteBehind() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  work_.notify_one();
  thread_.join();
}

bool WriteBehind::Begin(int file) {
  const std::lock_guard lock(mutex_);
  if (busy_ || !Start()) return false;
  busy_ = true;
  file_ = file;
  handed_over_ = 0;
  written_ = 0;
  failed_ = 0;
  code_ = 0;
  return true;
}

bool WriteBehind::Start() {
  if (thread_.joinable()) return true;
  try {
    for (Buffer& buffer : buffers_) {
      if (buffer.bytes == nullptr)
        buffer.bytes = std::make_unique_for_overwrite<char[]>(kBufferSize);
    }
    const SignalsHeldBack held_back;
    thread_ = std::thread([this] { Work(); });
  } catch (const std::exception&) {
    return false;
  }
  return true;
}

int WriteBehind::WaitForBuffer() {
  std::unique_lock lock(mutex_);
  waited_for_ = true;
  done_.wait(lock, [this] { return handed_over_ - written_ < kBuffers; });
  waited_for_ = false;
  return code_ != 0 && handed_over_ - failed_ >= kBuffers ? code_ : 0;
}

void WriteBehind::HandOver() {
  filling_ = false;
  {
    const std::lock_guard lock(mutex_);
    ++handed_over_;
  }
  work_.notify_one();
}

int WriteBehind::Write(std::uint64_t offset, std::string_view bytes) {
  while (!bytes.empty()) {
    if (filling_ && offset != Filled().offset + Filled().size) HandOver();
    if (!filling_) {
      const int code = WaitForBuffer();
      if (code != 0) return code;
      filling_ = true;
      Filled().offset = offset;
      Filled().size = 0;
    }
    Buffer& buffer = Filled();
    const std::size_t taken = std::min(bytes.size(), kBufferSize - buffer.size);
    std::memcpy(buffer.bytes.get() + buffer.size, bytes.data(), taken);
    buffer.size += taken;
    offset += taken;
    bytes.remove_prefix(taken);
    if (buffer.size == kBufferSize) HandOver();
  }
  return 0;
}

int WriteBehind::Finish() {
  if (filling_) HandOver();
  std::unique_lock lock(mutex_);
  waited_for_ = true;
  done_.wait(lock, [this] { return handed_over_ == written_; });
  waited_for_ = false;
  busy_ = false;
  return code_;
}

void WriteBehind::Work() {
  std::unique_lock lock(mutex_);
  for (;;) {
    work_.wait(lock, [this] { return ending_ || written_ < handed_over_; });
    if (written_ == handed_over_) return;
    if (code_ == 0) {
      const Buffer& buffer = buffers_[written_ % kBuffers];
      lock.unlock();
      const int code = WriteAllAt(file_, buffer.offset, {buffer.bytes.get(), buffer.size});
      lock.lock();
      code_ = code;
      failed_ = written_;
    }
    ++written_;
    if (waited_for_) done_.notify_one();
  }
}

}  // namespace morvex::posix
