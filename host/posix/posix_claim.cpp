#include "host/posix/posix_claim.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace morvex::posix {
namespace {

enum class Lock { kTaken, kHeldByAnother, kUnknown };

Lock TryLock(int file, int kind) {
  int result = 0;
  do {
    result = flock(file, kind | LOCK_NB);
  } while (result != 0 && errno == EINTR);
  if (result == 0) return Lock::kTaken;
  return errno == EWOULDBLOCK ? Lock::kHeldByAnother : Lock::kUnknown;
}

// On a network file system, a file that is open only for reading may allow only a shared lock.
Lock TryAnyLock(int file) {
  const Lock lock = TryLock(file, LOCK_EX);
  return lock == Lock::kUnknown && errno == EBADF ? TryLock(file, LOCK_SH) : lock;
}

// Takes the lock. Returns whether the file has been deleted, or another run holds the lock and is
// about to delete the file.
bool IsLost(int file) {
  if (TryLock(file, LOCK_EX) == Lock::kHeldByAnother) return true;
  struct stat status {};
  return fstat(file, &status) == 0 && status.st_nlink == 0;
}

bool GoesByName(int file, int folder, const char* name) {
  struct stat open {};
  struct stat named {};
  return fstat(file, &open) == 0 && fstatat(folder, name, &named, AT_SYMLINK_NOFOLLOW) == 0 &&
         IsSameFile(open, named);
}

}  // namespace

Descriptor CreateClaimed(int folder, const char* name, mode_t permissions) {
  Descriptor file = OpenAt(folder, name, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW, permissions);
  if (file.IsOpen() && IsLost(file.Get())) {
    file.Close();
    errno = EEXIST;
  }
  return file;
}

Descriptor KeepClaim(const Descriptor& file) {
  return Descriptor(fcntl(file.Get(), F_DUPFD_CLOEXEC, 0));
}

ErrorNumber DeleteUnclaimed(int folder, const char* name) {
  struct stat status {};
  if (fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return LastError(Missing::kFile);
  Descriptor file;
  if (S_ISREG(status.st_mode)) {
    file = OpenAt(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    // A work file has the permission bits of a source that could be read, so a file that this
    // process may not open is no work file; delete it without testing for a claim. If the file was
    // deleted meanwhile, return an error, because a new, claimed file may already have the name.
    const bool forbidden = errno == EACCES || errno == EPERM;
    if (!file.IsOpen() && !forbidden) return LastError(Missing::kFile);
  }
  if (file.IsOpen()) {
    const bool held = TryAnyLock(file.Get()) == Lock::kHeldByAnother;
    if (held || !GoesByName(file.Get(), folder, name)) return ErrorNumber::kFileAlreadyOpen;
  }
  if (unlinkat(folder, name, 0) == 0) return ErrorNumber::kNone;
  return LastError(Missing::kFile);
}

}  // namespace morvex::posix
