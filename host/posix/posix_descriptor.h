// Open files: ownership, opening without side effects, and transfers that are repeated until all
// bytes are done.
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "core/host/error.h"
#include "host/posix/posix_errors.h"

namespace morvex::posix {

inline constexpr mode_t kPermissionBits = 0777;

// Owns a file descriptor.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(other.number_) { other.number_ = -1; }
  Descriptor& operator=(Descriptor&& other) noexcept;
  ~Descriptor() { Close(); }

  bool IsOpen() const { return number_ >= 0; }
  int Get() const { return number_; }
  // Gives up ownership; the caller must close it.
  int Release() { return std::exchange(number_, -1); }
  // Returns 0, or the error code of a delayed write. The descriptor is closed in any case.
  int Close();

 private:
  int number_ = -1;
};

// openat, repeated after a signal. If the result is not open, errno tells why. Programs that this
// process starts do not inherit the descriptor.
Descriptor OpenAt(int folder, const char* name, int flags, mode_t permissions = 0);

// Opens the ordinary file that `path` leads to; with O_CREAT creates it if nothing is there. Never
// waits for the other end of a pipe and never touches a device. A folder returns error 75; a pipe,
// socket or device returns 53 for reading and 75 for writing. `opened`, unless null, receives the
// file's status.
Result<Descriptor> OpenOrdinary(const std::string& path, int flags, Missing missing,
                                struct stat* opened = nullptr);
// As OpenOrdinary, for a path that a look-up has just shown to be an ordinary file.
Result<Descriptor> OpenLookedUp(const std::string& path, int flags, Missing missing,
                                struct stat* opened = nullptr);

// The error for opening a file of this status with these flags; kNone for an ordinary file.
ErrorNumber CheckOrdinary(const struct stat& status, int flags);

inline bool IsSameFile(const struct stat& one, const struct stat& other) {
  return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

// Whether size and modification time are equal, which suggests that the contents are equal, too.
inline bool IsUnchanged(const struct stat& then, const struct stat& now) {
  return then.st_size == now.st_size && then.st_mtim.tv_sec == now.st_mtim.tv_sec &&
         then.st_mtim.tv_nsec == now.st_mtim.tv_nsec;
}

// Whether `code` is one by which a file system reports that it does not store permission bits or
// times. Such a code does not make a copy fail.
inline bool IsNotKept(int code) { return code == EPERM || code == EOPNOTSUPP || code == ENOSYS; }

// Where a file is to appear: an open folder and a name in it.
struct Place {
  Descriptor folder;
  std::string name;
};
// Opens the folder of `path`. Returns error 76 if the folder does not exist, or if `path` ends in a
// name that only a folder can have ("", "." or "..").
Result<Place> OpenPlace(const std::string& path);

struct Transfer {
  std::size_t done = 0;
  int code = 0;  // 0, or the error code that stopped the transfer
};

// Repeats `step(done, left)`, one read or write, until `size` bytes are done. Continues after
// signals. If a step moves no byte, stops with the code `at_nothing`.
template <class Step>
Transfer TransferAll(std::size_t size, int at_nothing, Step step) {
  Transfer transfer;
  while (transfer.done < size) {
    const ssize_t moved = step(transfer.done, size - transfer.done);
    if (moved > 0) {
      transfer.done += static_cast<std::size_t>(moved);
    } else if (moved == 0 || errno != EINTR) {
      transfer.code = moved == 0 ? at_nothing : errno;
      return transfer;
    }
  }
  return transfer;
}

// Reads until `size` bytes, the file's end or an error.
Transfer ReadAllAt(int file, std::uint64_t offset, char* into, std::size_t size);
// Writes all of `bytes`. Returns 0 or an error code; a write that takes no byte counts as a full
// disk.
int WriteAllAt(int file, std::uint64_t offset, std::string_view bytes);
// Writes all of `bytes` at the file's current position. Stops after an error.
Transfer WriteAll(int file, std::string_view bytes);

}  // namespace morvex::posix
