// The system can copy from file to file without passing the bytes through this process; on some
// file systems the two files then share their blocks on the disk. Where the system cannot copy in
// this way, or reports the end of a file too early, plain reading and writing takes over: only a
// read of 0 bytes tells where the file ends.
#include "host/posix/posix_copy_data.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "host/posix/posix_descriptor.h"

namespace morvex::posix {
namespace {

constexpr std::uint64_t kKernelPiece = 8u << 20;
constexpr std::uint64_t kMemoryPiece = 1u << 20;
constexpr std::uint64_t kBytesBetweenQuestions = kMemoryPiece;

// The unit of st_blocks, in bytes.
constexpr std::uint64_t kBlock = 512;

class DataCopier {
 public:
  DataCopier(int from, int to, const KeepGoing& keep_going, bool in_kernel)
      : from_(from), to_(to), keep_going_(keep_going), in_kernel_(in_kernel) {}

  // Copies the bytes from offset `begin` to `end`, or to the file's end.
  ErrorNumber CopyRange(std::uint64_t begin, std::uint64_t end);
  // Copies the bytes from offset 0 to `size`; a hole in the source becomes a hole in the copy.
  ErrorNumber CopyAroundHoles(std::uint64_t size);

 private:
  bool MayGoOn();
  // Copies one piece of the bytes from `at` to `end`. Returns the piece's size in bytes; 0 at the
  // file's end.
  Result<std::size_t> CopyPiece(std::uint64_t at, std::uint64_t end);
  Result<std::size_t> CopyThroughMemory(std::uint64_t at, std::uint64_t end);
  // Returns the piece's size in bytes, or -1 with errno set.
  ssize_t CopyInKernel(std::uint64_t at, std::uint64_t end) const;
  // Extends the copy by the hole at the end of the source, if there is one.
  ErrorNumber SetLength(std::uint64_t size) const;

  const int from_;
  const int to_;
  const KeepGoing& keep_going_;
  bool in_kernel_;
  bool ended_ = false;         // the end of the source was reached
  std::uint64_t reached_ = 0;  // offset behind the last copied byte
  std::uint64_t since_question_ = 0;
  std::vector<char> buffer_;
};

bool DataCopier::MayGoOn() {
  if (!keep_going_ || since_question_ < kBytesBetweenQuestions) return true;
  since_question_ = 0;
  return keep_going_();
}

ssize_t DataCopier::CopyInKernel(std::uint64_t at, std::uint64_t end) const {
  const auto piece = static_cast<std::size_t>(std::min(end - at, kKernelPiece));
  ssize_t moved = -1;
  do {
    auto read_at = static_cast<off_t>(at);
    auto write_at = static_cast<off_t>(at);
    moved = copy_file_range(from_, &read_at, to_, &write_at, piece, 0);
  } while (moved < 0 && errno == EINTR);
  return moved;
}

Result<std::size_t> DataCopier::CopyThroughMemory(std::uint64_t at, std::uint64_t end) {
  if (buffer_.empty()) {
    posix_fadvise(from_, static_cast<off_t>(at), 0, POSIX_FADV_SEQUENTIAL);
    buffer_.resize(kMemoryPiece);
  }
  const auto piece = static_cast<std::size_t>(std::min(end - at, kMemoryPiece));
  const Transfer read = ReadAllAt(from_, at, buffer_.data(), piece);
  if (read.code != 0) return ErrorFromCode(read.code, Missing::kFile);
  const int code = WriteAllAt(to_, at, std::string_view(buffer_.data(), read.done));
  if (code != 0) return ErrorFromCode(code, Missing::kPath);
  return read.done;
}

// Whether `code` is one by which the system reports that it cannot copy between these two files.
bool IsUnableToCopy(int code) {
  return code == EXDEV || code == EINVAL || code == ENOSYS || code == EOPNOTSUPP || code == EPERM;
}

Result<std::size_t> DataCopier::CopyPiece(std::uint64_t at, std::uint64_t end) {
  if (in_kernel_) {
    const ssize_t moved = CopyInKernel(at, end);
    if (moved > 0) return static_cast<std::size_t>(moved);
    if (moved < 0 && !IsUnableToCopy(errno)) return LastError(Missing::kFile);
    in_kernel_ = false;
  }
  return CopyThroughMemory(at, end);
}

ErrorNumber DataCopier::CopyRange(std::uint64_t begin, std::uint64_t end) {
  std::uint64_t at = begin;
  while (at < end && !ended_) {
    if (!MayGoOn()) return ErrorNumber::kInvalidCall;
    const Result<std::size_t> moved = CopyPiece(at, end);
    if (!moved) return moved.error;
    ended_ = moved.value == 0;
    at += moved.value;
    reached_ = std::max(reached_, at);
    since_question_ += moved.value;
  }
  return ErrorNumber::kNone;
}

ErrorNumber DataCopier::CopyAroundHoles(std::uint64_t size) {
  std::uint64_t at = 0;
  while (at < size && !ended_) {
    const off_t data = lseek(from_, static_cast<off_t>(at), SEEK_DATA);
    if (data < 0 && errno == ENXIO) break;               // only a hole from here on
    if (data < 0 && at == 0) return CopyRange(0, size);  // this file system does not report holes
    if (data < 0) return LastError(Missing::kFile);
    const off_t hole = lseek(from_, data, SEEK_HOLE);
    if (hole < 0 && errno == ENXIO) break;  // the file was shortened just now
    if (hole < 0) return LastError(Missing::kFile);
    const ErrorNumber error =
        CopyRange(std::min<std::uint64_t>(static_cast<std::uint64_t>(data), size),
                  std::min<std::uint64_t>(static_cast<std::uint64_t>(hole), size));
    if (error != ErrorNumber::kNone) return error;
    at = static_cast<std::uint64_t>(hole);
  }
  return SetLength(size);
}

ErrorNumber DataCopier::SetLength(std::uint64_t size) const {
  if (ended_) return ErrorNumber::kNone;
  struct stat now {};
  if (fstat(from_, &now) != 0) return LastError(Missing::kFile);
  const std::uint64_t end = std::min(size, static_cast<std::uint64_t>(now.st_size));
  if (end <= reached_) return ErrorNumber::kNone;
  if (ftruncate(to_, static_cast<off_t>(end)) != 0) return LastError(Missing::kPath);
  return ErrorNumber::kNone;
}

}  // namespace

ErrorNumber CopyData(int from, int to, const struct stat& status, const KeepGoing& keep_going,
                     bool in_kernel) {
  DataCopier copier(from, to, keep_going, in_kernel);
  const auto size = static_cast<std::uint64_t>(status.st_size);
  const bool has_holes = static_cast<std::uint64_t>(status.st_blocks) * kBlock < size;
  return has_holes ? copier.CopyAroundHoles(size) : copier.CopyRange(0, size);
}

}  // namespace morvex::posix
