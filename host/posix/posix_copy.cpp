// A copy gets its name only when it is whole. The copy is filled as a nameless file in the target's
// folder, so nothing is left of the copy if the copying fails or is stopped, or if the process is
// killed. On file systems without nameless files the copy is filled under the name of a work file
// and then renamed; if the process is killed, the next run deletes the unfinished copy.
#include "host/posix/posix_copy.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <utility>

#include "host/posix/posix_calls.h"
#include "host/posix/posix_claim.h"
#include "host/posix/posix_copy_data.h"
#include "host/posix/posix_descriptor.h"
#include "host/posix/posix_paths.h"

namespace morvex::posix {
namespace {

constexpr const char* kPartialName = "tijdel.enc";
// Used if the target itself has the name kPartialName.
constexpr const char* kOtherPartialName = ".tijdel.enc";

// How often another process may take the target's name just after this process has freed it.
constexpr int kNamingAttempts = 8;

constexpr mode_t kOwnerReadsAndWrites = 0600;

struct Copying {
  Descriptor source;
  struct stat status {};  // of the source, when it was opened
  Place target;
  const KeepGoing& keep_going;
  CopyWays ways;

  mode_t FirstBits() const { return status.st_mode & kOwnerReadsAndWrites; }
};

ErrorNumber CheckPaths(const std::string& from, const std::string& to) {
  const ErrorNumber error = CheckPath(from, Missing::kFile);
  return error != ErrorNumber::kNone ? error : CheckPath(to, Missing::kFile);
}

// A copy may replace any ordinary file except the source, and any link except one that leads to the
// source, a folder or a device.
ErrorNumber CheckTarget(const std::string& to, const struct stat& source) {
  struct stat found {};
  if (Stat(to, &found) == 0) {
    const bool replaceable = S_ISREG(found.st_mode) && !IsSameFile(found, source);
    return replaceable ? ErrorNumber::kNone : ErrorNumber::kPathFileAccess;
  }
  const int code = errno;
  if (code == ENOENT) return ErrorNumber::kNone;
  if (LinkStat(to, &found) == 0 && S_ISLNK(found.st_mode)) return ErrorNumber::kNone;
  return ErrorFromCode(code, Missing::kPath);
}

ErrorNumber Fill(const Copying& copying, int file) {
  const ErrorNumber error = CopyData(copying.source.Get(), file, copying.status, copying.keep_going,
                                     copying.ways.copy_in_kernel);
  if (error != ErrorNumber::kNone) return error;
  struct stat now {};
  if (fstat(copying.source.Get(), &now) != 0) return LastError(Missing::kFile);
  // The source changed meanwhile: the copy may mix old and new contents.
  if (!IsUnchanged(copying.status, now)) return ErrorNumber::kFileAlreadyOpen;
  if (fchmod(file, copying.status.st_mode & kPermissionBits) != 0 && !IsNotKept(errno)) {
    return LastError(Missing::kPath);
  }
  timespec times[2] = {};
  times[0].tv_nsec = UTIME_OMIT;
  times[1] = copying.status.st_mtim;
  if (futimens(file, times) != 0 && !IsNotKept(errno)) return LastError(Missing::kPath);
  return ErrorNumber::kNone;
}

// Whether `code` is one by which the system reports that it cannot create nameless files in this
// folder, or cannot name them.
bool HasNoUnnamedFiles(int code) {
  return code == EOPNOTSUPP || code == EISDIR || code == EINVAL || code == ENOENT;
}

// Gives the target's name to a nameless file, after deleting the file or link that has that name.
// `handle` is the path of the nameless file's link in /proc/self/fd. Returns nothing if the system
// cannot name such a file.
std::optional<ErrorNumber> GiveName(const std::string& handle, const Place& target) {
  const int folder = target.folder.Get();
  const char* name = target.name.c_str();
  for (int attempt = 0; attempt < kNamingAttempts; ++attempt) {
    if (linkat(AT_FDCWD, handle.c_str(), folder, name, AT_SYMLINK_FOLLOW) == 0) {
      return ErrorNumber::kNone;
    }
    if (HasNoUnnamedFiles(errno) || errno == EPERM || errno == EXDEV) return std::nullopt;
    if (errno != EEXIST) return LastError(Missing::kPath);
    if (unlinkat(folder, name, 0) != 0 && errno != ENOENT) return LastError(Missing::kPath);
  }
  return ErrorNumber::kFileAlreadyExists;
}

// Fills a nameless file and then names it. Returns nothing if the system cannot create or name such
// a file in the target's folder.
std::optional<ErrorNumber> CopyUnnamed(const Copying& copying) {
  const int folder = copying.target.folder.Get();
  Descriptor file = OpenAt(folder, ".", O_TMPFILE | O_WRONLY, copying.FirstBits());
  if (!file.IsOpen()) {
    if (HasNoUnnamedFiles(errno)) return std::nullopt;
    return LastError(Missing::kPath);
  }
  const std::string handle = "/proc/self/fd/" + std::to_string(file.Get());
  struct stat status {};
  if (lstat(handle.c_str(), &status) != 0) return std::nullopt;

  const ErrorNumber error = Fill(copying, file.Get());
  if (error != ErrorNumber::kNone) return error;
  const std::optional<ErrorNumber> named = GiveName(handle, copying.target);
  if (named != ErrorNumber::kNone) return named;
  const int code = file.Close();
  if (code != 0) unlinkat(folder, copying.target.name.c_str(), 0);
  return ErrorFromCode(code, Missing::kPath);
}

// Deletes the file `name` of a folder when it goes out of scope, unless Keep was called.
class ScopedName {
 public:
  ScopedName(int folder, const char* name) : folder_(folder), name_(name) {}
  ScopedName(const ScopedName&) = delete;
  ScopedName& operator=(const ScopedName&) = delete;
  ~ScopedName() {
    if (!kept_) unlinkat(folder_, name_, 0);
  }
  void Keep() { kept_ = true; }

 private:
  const int folder_;
  const char* const name_;
  bool kept_ = false;
};

// Deletes a stale partial copy named `name`. Never deletes the source, neither when the source has
// this name nor when a link of this name leads to the source.
ErrorNumber RemoveStalePartial(int folder, const char* name, const struct stat& source) {
  struct stat found {};
  if (fstatat(folder, name, &found, AT_SYMLINK_NOFOLLOW) != 0) {
    return errno == ENOENT ? ErrorNumber::kNone : LastError(Missing::kPath);
  }
  const bool is_link = S_ISLNK(found.st_mode);
  if (!is_link && !S_ISREG(found.st_mode)) return ErrorNumber::kPathFileAccess;
  struct stat end {};
  const bool leads_to_source = fstatat(folder, name, &end, 0) == 0 && IsSameFile(end, source);
  if (leads_to_source) return ErrorNumber::kPathFileAccess;
  const ErrorNumber error = DeleteUnclaimed(folder, name);
  return error == ErrorNumber::kFileNotFound ? ErrorNumber::kNone : error;
}

ErrorNumber CopyNamed(const Copying& copying) {
  const int folder = copying.target.folder.Get();
  const char* name = copying.target.name.c_str();
  const char* partial = copying.target.name == kPartialName ? kOtherPartialName : kPartialName;
  ErrorNumber error = RemoveStalePartial(folder, partial, copying.status);
  if (error != ErrorNumber::kNone) return error;

  Descriptor file = CreateClaimed(folder, partial, copying.FirstBits());
  if (!file.IsOpen()) return LastError(Missing::kPath);
  const Descriptor claim = KeepClaim(file);
  ScopedName scoped_name(folder, partial);
  if (!claim.IsOpen()) return LastError(Missing::kPath);
  error = Fill(copying, file.Get());
  if (error != ErrorNumber::kNone) return error;
  const int code = file.Close();
  if (code != 0) return ErrorFromCode(code, Missing::kPath);
  if (renameat(folder, partial, folder, name) != 0) return LastError(Missing::kPath);
  scoped_name.Keep();
  return ErrorNumber::kNone;
}

}  // namespace

ErrorNumber CopyWholeFile(const std::string& from, const std::string& to,
                          const KeepGoing& keep_going, CopyWays ways, Descriptor source) {
  ErrorNumber error = CheckPaths(from, to);
  if (error != ErrorNumber::kNone) return error;
  Copying copying{std::move(source), {}, {}, keep_going, ways};
  if (copying.source.IsOpen()) {
    if (fstat(copying.source.Get(), &copying.status) != 0) return LastError(Missing::kFile);
  } else {
    Result<Descriptor> opened = OpenOrdinary(from, O_RDONLY, Missing::kFile, &copying.status);
    if (!opened) return opened.error;
    copying.source = std::move(opened.value);
  }

  error = CheckTarget(to, copying.status);
  if (error != ErrorNumber::kNone) return error;
  Result<Place> target = OpenPlace(to);
  if (!target) return target.error;
  copying.target = std::move(target.value);
  if (ways.unnamed_file) {
    const std::optional<ErrorNumber> copied = CopyUnnamed(copying);
    if (copied) return *copied;
  }
  return CopyNamed(copying);
}

ErrorNumber MoveWholeFile(const std::string& from, const std::string& to,
                          const KeepGoing& keep_going, Descriptor source) {
  ErrorNumber error = CheckPaths(from, to);
  if (error != ErrorNumber::kNone) return error;
  struct stat own {};
  if (LinkStat(from, &own) != 0) return LastError(Missing::kFile);
  struct stat moved = own;
  if (S_ISLNK(own.st_mode) && Stat(from, &moved) != 0) return LastError(Missing::kFile);
  error = CheckOrdinary(moved, O_RDONLY);
  if (error == ErrorNumber::kNone) error = CheckTarget(to, moved);
  if (error != ErrorNumber::kNone) return error;

  if (!S_ISLNK(own.st_mode)) {
    // `from` exists, so only the target's folder can be missing here.
    if (Rename(from, to) == 0) return ErrorNumber::kNone;
    if (errno != EXDEV) return LastError(Missing::kPath);
  }
  const bool claimed = source.IsOpen();
  error = CopyWholeFile(from, to, keep_going, {}, std::move(source));
  if (error != ErrorNumber::kNone) return error;
  return claimed ? DeleteClaimed(from) : DeleteOneFile(from);
}

ErrorNumber MoveFileToFreeName(const std::string& from, const std::string& to) {
  const ErrorNumber error = CheckPaths(from, to);
  if (error != ErrorNumber::kNone) return error;
  struct stat own {};
  if (LinkStat(from, &own) != 0) return LastError(Missing::kFile);
  if (!S_ISREG(own.st_mode)) return ErrorNumber::kPathFileAccess;
  if (Rename(from, to, RENAME_NOREPLACE) == 0) return ErrorNumber::kNone;
  return LastError(Missing::kPath);
}

ErrorNumber DeleteOneFile(const std::string& path) {
  const ErrorNumber error = CheckPath(path, Missing::kFile);
  if (error != ErrorNumber::kNone) return error;
  const Reach at(path);
  return at.Found() ? DeleteUnclaimed(at.Folder(), at.Name()) : LastError(Missing::kFile);
}

ErrorNumber DeleteClaimed(const std::string& path) {
  return Unlink(path) == 0 ? ErrorNumber::kNone : LastError(Missing::kFile);
}

}  // namespace morvex::posix
