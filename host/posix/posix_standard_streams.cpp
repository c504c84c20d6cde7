#include "host/posix/posix_standard_streams.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "host/posix/posix_descriptor.h"

namespace morvex {
namespace {

// A larger pipe buffer makes reader and writer wait for each other less often. If the system
// refuses this size, the pipe keeps its own.
constexpr int kPipeSize = 1 << 20;

void Widen(int stream) {
#ifdef F_SETPIPE_SZ
  fcntl(stream, F_SETPIPE_SZ, kPipeSize);
#endif
}

class PipeInput : public InputFile {
 public:
  explicit PipeInput(int stream) : stream_(stream) { Widen(stream); }

  Result<std::size_t> ReadAt(std::uint64_t offset, char* into, std::size_t size) override {
    if (offset != done_) return ErrorNumber::kInvalidCall;
    if (ended_) return std::size_t{0};
    ssize_t read = 0;
    do {
      read = ::read(stream_, into, size);
    } while (read < 0 && errno == EINTR);
    if (read < 0) return posix::LastError(posix::Missing::kFile);
    ended_ = read == 0;
    done_ += static_cast<std::uint64_t>(read);
    return static_cast<std::size_t>(read);
  }

  bool MustWait() override {
    if (ended_) return false;
    pollfd stream{stream_, POLLIN, 0};
    return poll(&stream, 1, 0) == 0;
  }

 private:
  const int stream_;
  std::uint64_t done_ = 0;
  bool ended_ = false;
};

class PipeOutput : public OutputFile {
 public:
  explicit PipeOutput(int stream) : stream_(stream) { Widen(stream); }

  ErrorNumber WriteAt(std::uint64_t offset, std::string_view bytes) override {
    if (offset != done_) return ErrorNumber::kInvalidCall;
    done_ += bytes.size();
    return posix::ErrorFromCode(posix::WriteAll(stream_, bytes).code, posix::Missing::kFile);
  }

  ErrorNumber Close() override {
    return posix::ErrorFromCode(::close(stream_) == 0 ? 0 : errno, posix::Missing::kFile);
  }

 private:
  const int stream_;
  std::uint64_t done_ = 0;
};

}  // namespace

std::unique_ptr<InputFile> StandardInput() { return std::make_unique<PipeInput>(STDIN_FILENO); }

std::unique_ptr<OutputFile> StandardOutput() { return std::make_unique<PipeOutput>(STDOUT_FILENO); }

void OccupyMissingStandardStreams() {
  // A descriptor opened with O_PATH can be neither read nor written, and started programs do not
  // inherit it.
  for (;;) {
    posix::Descriptor held(open("/", O_PATH | O_CLOEXEC));
    if (held.Get() > STDERR_FILENO || !held.IsOpen()) return;
    held.Release();
  }
}

}  // namespace morvex
