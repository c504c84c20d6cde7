#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "host/system/standard_streams.h"
#include "host/windows/windows_api.h"
#include "host/windows/windows_errors.h"

namespace morvex {
namespace {

constexpr std::size_t kMostAtOnce = std::size_t{1} << 20;

DWORD Piece(std::size_t left) { return static_cast<DWORD>(std::min(left, kMostAtOnce)); }

class PipeInput : public InputFile {
 public:
  Result<std::size_t> ReadAt(std::uint64_t offset, char* into, std::size_t size) override {
    if (offset != done_) return ErrorNumber::kInvalidCall;
    DWORD moved = 0;
    while (!ended_ && moved == 0) {
      const bool good = ::ReadFile(stream_, into, Piece(size), &moved, nullptr) != 0;
      const windows::Code code = good ? ERROR_SUCCESS : GetLastError();
      // The writer has closed the pipe.
      if (code == ERROR_BROKEN_PIPE) {
        ended_ = true;
      } else if (!good &&
                 code != ERROR_MORE_DATA) {  // ERROR_MORE_DATA: the rest of a message follows
        return windows::ErrorFromCode(code, windows::Missing::kFile);
      } else if (moved == 0 && !is_pipe_) {
        // A read of 0 bytes means the end, except for a pipe, which may deliver a piece of 0 bytes.
        ended_ = true;
      }
    }
    done_ += moved;
    return std::size_t{moved};
  }

  // A console delivers whole lines, so the next read waits until the user has typed the next line.
  bool MustWait() override {
    if (ended_) return false;
    if (is_console_) return true;
    DWORD there = 0;
    // If the writer has closed the pipe, this call fails, and the next read reports the end.
    return is_pipe_ && PeekNamedPipe(stream_, nullptr, 0, nullptr, &there, nullptr) != 0 &&
           there == 0;
  }

 private:
  void* stream_ = GetStdHandle(STD_INPUT_HANDLE);
  // The type of the handle is not enough: network connections have the same type as pipes.
  const bool is_pipe_ = GetNamedPipeInfo(stream_, nullptr, nullptr, nullptr, nullptr) != 0;
  const bool is_console_ = GetFileType(stream_) == FILE_TYPE_CHAR;
  std::uint64_t done_ = 0;
  bool ended_ = false;
};

class PipeOutput : public OutputFile {
 public:
  ErrorNumber WriteAt(std::uint64_t offset, std::string_view bytes) override {
    if (offset != done_) return ErrorNumber::kInvalidCall;
    done_ += bytes.size();
    while (!bytes.empty()) {
      DWORD moved = 0;
      if (::WriteFile(stream_, bytes.data(), Piece(bytes.size()), &moved, nullptr) == 0) {
        return windows::LastError(windows::Missing::kFile);
      }
      bytes.remove_prefix(moved);
    }
    return ErrorNumber::kNone;
  }

  // The system passes every write on at once.
  ErrorNumber Close() override { return ErrorNumber::kNone; }

 private:
  void* stream_ = GetStdHandle(STD_OUTPUT_HANDLE);
  std::uint64_t done_ = 0;
};

}  // namespace

std::unique_ptr<InputFile> StandardInput() { return std::make_unique<PipeInput>(); }

std::unique_ptr<OutputFile> StandardOutput() { return std::make_unique<PipeOutput>(); }

}  // namespace morvex
