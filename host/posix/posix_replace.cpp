// New content is written to a hidden file beside the old file. The hidden file is flushed to the
// disk and renamed over the old file, so that at every moment the old or the new content is there
// whole. If the folder takes no second file, the old file is overwritten. The bytes behind the old
// end are written first, so that the old content is still there if the disk is full.
#include "host/posix/posix_replace.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "host/posix/posix_claim.h"
#include "host/posix/posix_descriptor.h"
#include "host/posix/posix_paths.h"

namespace morvex::posix {
namespace {

constexpr mode_t kNewFileBits = 0666;
constexpr mode_t kOwnerOnly = 0600;
constexpr int kNamingAttempts = 100;

struct HiddenFile {
  Descriptor file;
  Descriptor claim;  // kept until the file is renamed
  std::string name;
};

// Creates a hidden file in the folder of `place`. Tries the names .morvex-1, .morvex-2 and so on
// until one is free. Deletes files that killed processes left under these names. On failure `code`
// receives the system's error code.
Result<HiddenFile> MakeHiddenFile(const Place& place, mode_t permissions, int& code) {
  const int folder = place.folder.Get();
  HiddenFile hidden;
  for (int number = 1; number <= kNamingAttempts; ++number) {
    hidden.name = ".morvex-" + std::to_string(number);
    const char* name = hidden.name.c_str();
    hidden.file = CreateClaimed(folder, name, permissions);
    code = errno;
    if (!hidden.file.IsOpen() && code == EEXIST &&
        DeleteUnclaimed(folder, name) == ErrorNumber::kNone) {
      hidden.file = CreateClaimed(folder, name, permissions);
      code = errno;
    }
    if (hidden.file.IsOpen()) {
      hidden.claim = KeepClaim(hidden.file);
      return hidden;
    }
    if (code != EEXIST) break;
  }
  return ErrorFromCode(code, Missing::kPath);
}

// Flushes the file to the disk. Returns 0 or an error code; 0 also if the file system does not
// support flushing.
int Flush(int file) {
  if (fsync(file) == 0 || errno == EINVAL || errno == EOPNOTSUPP) return 0;
  return errno;
}

// Gives the new file the owner and group of the old file, or at least the group, as far as this
// user may.
void HandOver(int file, const struct stat& old) {
  struct stat status {};
  const bool known = fstat(file, &status) == 0;
  if (known && status.st_uid == old.st_uid && status.st_gid == old.st_gid) return;
  if (fchown(file, old.st_uid, old.st_gid) == 0) return;
  const int group_only = fchown(file, static_cast<uid_t>(-1), old.st_gid);
  static_cast<void>(group_only);
}

// Copies owner and permission bits from `old`. The owner comes first, because changing the owner
// can clear permission bits. Returns 0 or an error code.
int TakeOver(int file, const struct stat& old) {
  HandOver(file, old);
  const mode_t permissions = old.st_mode & kPermissionBits;
  return fchmod(file, permissions) == 0 || IsNotKept(errno) ? 0 : errno;
}

// Whether `code` says that the folder takes no second file, or that a second file may not replace
// the old file there.
bool IsRefusal(int code) {
  return code == EACCES || code == EPERM || code == EROFS || code == EBUSY;
}

// Writes, flushes and closes the hidden file, and gives it the owner and permission bits of `old`.
// `old` is null if there is no old file. Returns 0 or an error code.
int FillHidden(HiddenFile& hidden, const struct stat* old, std::string_view bytes) {
  int code = WriteAllAt(hidden.file.Get(), 0, bytes);
  if (code == 0 && old != nullptr) code = TakeOver(hidden.file.Get(), *old);
  if (code == 0) code = Flush(hidden.file.Get());
  const int close_code = hidden.file.Close();
  return code != 0 ? code : close_code;
}

// Writes a hidden file and renames it to the name of `place`. Returns nothing if the folder does
// not allow that. `old` is null if there is no old file.
std::optional<ErrorNumber> ReplaceBeside(const Place& place, const struct stat* old,
                                         std::string_view bytes) {
  int code = 0;
  const mode_t permissions = old != nullptr ? kOwnerOnly : kNewFileBits;
  Result<HiddenFile> hidden = MakeHiddenFile(place, permissions, code);
  if (!hidden) {
    if (IsRefusal(code)) return std::nullopt;
    return hidden.error;
  }
  const int folder = place.folder.Get();
  const char* hidden_name = hidden.value.name.c_str();
  code = FillHidden(hidden.value, old, bytes);
  bool refused = false;
  if (code == 0 && renameat(folder, hidden_name, folder, place.name.c_str()) != 0) {
    code = errno;
    refused = IsRefusal(code);
  }
  if (code != 0) unlinkat(folder, hidden_name, 0);
  if (refused) return std::nullopt;
  return ErrorFromCode(code, Missing::kPath);
}

// Overwrites the open file with `bytes`. Returns 0 or an error code. If the disk is full, the file
// keeps its old content of `old_size` bytes.
int Overwrite(int file, std::uint64_t old_size, std::string_view bytes) {
  const auto common = static_cast<std::size_t>(std::min<std::uint64_t>(old_size, bytes.size()));
  int code = WriteAllAt(file, common, bytes.substr(common));
  if (code != 0) {
    return ftruncate(file, static_cast<off_t>(old_size)) == 0 ? code : errno;
  }
  code = WriteAllAt(file, 0, bytes.substr(0, common));
  if (code != 0) return code;
  return ftruncate(file, static_cast<off_t>(bytes.size())) == 0 ? 0 : errno;
}

// Appends all of `bytes` to the file. If that fails, cuts off what was written, where possible. The
// file must be open for appending. Returns 0 or an error code.
int AppendWhole(int file, std::string_view bytes) {
  const Transfer written = WriteAll(file, bytes);
  if (written.code == 0 || written.done == 0) return written.code;
  // A part of a record would also spoil the next record. Cut the part off, unless another process
  // has appended behind it.
  const off_t end = lseek(file, 0, SEEK_CUR);
  struct stat status {};
  if (end >= 0 && fstat(file, &status) == 0 && status.st_size == end) {
    static_cast<void>(ftruncate(file, end - static_cast<off_t>(written.done)) == 0);
  }
  return written.code;
}

ErrorNumber ReplaceInPlace(const Place& place, std::string_view bytes) {
  const int flags = O_WRONLY | O_NOFOLLOW | O_NONBLOCK;
  Descriptor file = OpenAt(place.folder.Get(), place.name.c_str(), flags);
  if (!file.IsOpen()) return LastError(Missing::kPath);
  struct stat status {};
  if (fstat(file.Get(), &status) != 0) return LastError(Missing::kPath);
  const ErrorNumber error = CheckOrdinary(status, flags);
  if (error != ErrorNumber::kNone) return error;
  int code = Overwrite(file.Get(), static_cast<std::uint64_t>(status.st_size), bytes);
  if (code == 0) code = Flush(file.Get());
  const int close_code = file.Close();
  return ErrorFromCode(code != 0 ? code : close_code, Missing::kPath);
}

}  // namespace

ErrorNumber ReplaceContent(const std::string& path, std::string_view bytes) {
  const ErrorNumber path_error = CheckPath(path, Missing::kFile);
  if (path_error != ErrorNumber::kNone) return path_error;
  const Result<std::string> end = FollowLinks(path);
  if (!end) return end.error;
  struct stat old {};
  const bool exists = stat(end.value.c_str(), &old) == 0;
  if (!exists && errno != ENOENT) return LastError(Missing::kPath);
  if (exists) {
    const ErrorNumber error = CheckOrdinary(old, O_WRONLY);
    if (error != ErrorNumber::kNone) return error;
    if (faccessat(AT_FDCWD, end.value.c_str(), W_OK, AT_EACCESS) != 0) {
      return LastError(Missing::kPath);
    }
  }
  const Result<Place> place = OpenPlace(end.value);
  if (!place) return place.error;
  const std::optional<ErrorNumber> replaced =
      ReplaceBeside(place.value, exists ? &old : nullptr, bytes);
  if (replaced) return *replaced;
  return exists ? ReplaceInPlace(place.value, bytes) : ErrorNumber::kPermissionDenied;
}

ErrorNumber AppendRecord(const std::string& path, std::string_view bytes, bool looked_up) {
  const ErrorNumber error = CheckPath(path, Missing::kFile);
  if (error != ErrorNumber::kNone) return error;
  const int flags = O_WRONLY | O_APPEND | O_CREAT;
  Result<Descriptor> file = looked_up ? OpenLookedUp(path, flags, Missing::kPath)
                                      : OpenOrdinary(path, flags, Missing::kPath);
  // The path may lead elsewhere by now; a new look-up reports the right error.
  if (!file && looked_up) file = OpenOrdinary(path, flags, Missing::kPath);
  if (!file) return file.error;
  const int code = AppendWhole(file.value.Get(), bytes);
  const int close_code = file.value.Close();
  return ErrorFromCode(code != 0 ? code : close_code, Missing::kPath);
}

}  // namespace morvex::posix
