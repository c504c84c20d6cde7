// Opens files without touching pipes and devices, because opening a pipe can block for ever and
// opening a device can start it. The path is checked before opening, and the open file again
// afterwards, because the path may lead elsewhere by then.
#include "host/posix/posix_descriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <limits>
#include <utility>

#include "host/posix/posix_calls.h"
#include "host/posix/posix_paths.h"

namespace morvex::posix {
namespace {

// The permission bits of a new user file, before the process's mask.
constexpr mode_t kNewFileBits = 0666;

constexpr std::uint64_t kLastOffset = std::numeric_limits<off_t>::max();

}  // namespace

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  if (this != &other) {
    Close();
    number_ = std::exchange(other.number_, -1);
  }
  return *this;
}

int Descriptor::Close() {
  if (number_ < 0) return 0;
  return close(std::exchange(number_, -1)) == 0 ? 0 : errno;
}

Descriptor OpenAt(int folder, const char* name, int flags, mode_t permissions) {
  int number = -1;
  do {
    number = openat(folder, name, flags | O_CLOEXEC | O_NOCTTY, permissions);
  } while (number < 0 && errno == EINTR);
  return Descriptor(number);
}

ErrorNumber CheckOrdinary(const struct stat& status, int flags) {
  if (S_ISREG(status.st_mode)) return ErrorNumber::kNone;
  if (S_ISDIR(status.st_mode)) return ErrorNumber::kPathFileAccess;
  const bool reads = (flags & O_ACCMODE) == O_RDONLY;
  return reads ? ErrorNumber::kFileNotFound : ErrorNumber::kPathFileAccess;
}

Result<Descriptor> OpenOrdinary(const std::string& path, int flags, Missing missing,
                                struct stat* opened) {
  struct stat status {};
  ErrorNumber error = ErrorNumber::kNone;
  if (Stat(path, &status) == 0) error = CheckOrdinary(status, flags);
  if (error != ErrorNumber::kNone) return error;
  return OpenLookedUp(path, flags, missing, opened);
}

Result<Descriptor> OpenLookedUp(const std::string& path, int flags, Missing missing,
                                struct stat* opened) {
  Descriptor file = Open(path, flags | O_NONBLOCK, kNewFileBits);
  if (!file.IsOpen() && errno == EWOULDBLOCK) {
    // Another process holds a lease on the file and has now been told to give it up: wait for that.
    file = Open(path, flags, kNewFileBits);
  }
  if (!file.IsOpen()) return LastError(missing);
  struct stat status {};
  if (fstat(file.Get(), &status) != 0) return LastError(missing);
  const ErrorNumber error = CheckOrdinary(status, flags);
  if (error != ErrorNumber::kNone) return error;
  if (opened != nullptr) *opened = status;
  return file;
}

Result<Place> OpenPlace(const std::string& path) {
  PathParts parts = SplitPath(path);
  if (parts.name.empty() || parts.name == "." || parts.name == "..") {
    return ErrorNumber::kPathNotFound;
  }
  Place place;
  place.folder = Open(parts.folder, O_PATH | O_DIRECTORY);
  if (!place.folder.IsOpen()) return LastError(Missing::kPath);
  place.name = std::move(parts.name);
  return place;
}

Transfer ReadAllAt(int file, std::uint64_t offset, char* into, std::size_t size) {
  if (offset > kLastOffset) return {};
  const auto reachable =
      static_cast<std::size_t>(std::min<std::uint64_t>(size, kLastOffset - offset));
  return TransferAll(reachable, 0, [&](std::size_t done, std::size_t left) {
    return pread(file, into + done, left, static_cast<off_t>(offset + done));
  });
}

int WriteAllAt(int file, std::uint64_t offset, std::string_view bytes) {
  if (bytes.size() > kLastOffset || offset > kLastOffset - bytes.size()) return EFBIG;
  const auto step = [&](std::size_t done, std::size_t left) {
    return pwrite(file, bytes.data() + done, left, static_cast<off_t>(offset + done));
  };
  return TransferAll(bytes.size(), ENOSPC, step).code;
}

Transfer WriteAll(int file, std::string_view bytes) {
  const auto step = [&](std::size_t done, std::size_t left) {
    return write(file, bytes.data() + done, left);
  };
  return TransferAll(bytes.size(), ENOSPC, step);
}

}  // namespace morvex::posix
