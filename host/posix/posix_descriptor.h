// Open files: who closes them, how one is opened without surprises, and whole transfers out of the
// system's partial ones.
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
  // Gives up the ownership: somebody else closes it now.
  int Release() { return std::exchange(number_, -1); }
  // 0, or the error code of a write that failed only now. Closed it is in any case.
  int Close();

 private:
  int number_ = -1;
};

// openat, taken up again after a signal. When the descriptor is not open, errno says why. What it
// opens is closed in programs that are started.
Descriptor OpenAt(int folder, const char* name, int flags, mode_t permissions = 0);

// Opens what `path` leads to when that is an ordinary file, or, with O_CREAT, when nothing is
// there. Never waits for the other end of a pipe and never touches a device. A folder gives 75, any
// other thing 53 for reading and 75 for writing.
// `opened`, unless null, becomes the file's status.
Result<Descriptor> OpenOrdinary(const std::string& path, int flags, Missing missing,
                                struct stat* opened = nullptr);
// The same for a path that a look has just shown to be an ordinary file.
Result<Descriptor> OpenLookedUp(const std::string& path, int flags, Missing missing,
                                struct stat* opened = nullptr);

// The error that stands against using a file of this status so; kNone for an ordinary file.
ErrorNumber CheckOrdinary(const struct stat& status, int flags);

inline bool IsSameFile(const struct stat& one, const struct stat& other) {
  return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

// The file of the one status holds the bytes that it had at the other, as far as size and time
// tell.
inline bool IsUnchanged(const struct stat& then, const struct stat& now) {
  return then.st_size == now.st_size && then.st_mtim.tv_sec == now.st_mtim.tv_sec &&
         then.st_mtim.tv_nsec == now.st_mtim.tv_nsec;
}

// Codes with which a file system says that it keeps no permission bits or times of a kind. A copy
// is none the worse for that.
inline bool IsNotKept(int code) { return code == EPERM || code == EOPNOTSUPP || code == ENOSYS; }

// The place of a file that is to appear: an open folder and a name in it.
struct Place {
  Descriptor folder;
  std::string name;
};
// 76 when the folder is not there, or when `path` ends in what can only be a folder.
Result<Place> OpenPlace(const std::string& path);

struct Transfer {
  std::size_t done = 0;
  int code = 0;  // 0, or the error code that ended it
};

// Repeats `step(done, left)`, one read or write, until `size` bytes are done, goes on after signals
// and gives up with the code `at_nothing` when a step moves nothing.
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
// Writes all of `bytes`, or gives the error code; a write that takes nothing counts as a full disk.
int WriteAllAt(int file, std::uint64_t offset, std::string_view bytes);
// The same at the position that the system keeps for the file; tells how far it came.
Transfer WriteAll(int file, std::string_view bytes);

}  // namespace morvex::posix
