// Each call is guarded against exceptions and checks its paths. Look-ups are done here; each longer
// task has its own file.
#include "host/posix/posix_files.h"

#include <sys/stat.h>
#include <sys/statvfs.h>

#include <cerrno>
#include <limits>
#include <thread>
#include <utility>

#include "host/posix/posix_calls.h"
#include "host/posix/posix_copy.h"
#include "host/posix/posix_descriptor.h"
#include "host/posix/posix_errors.h"
#include "host/posix/posix_listing.h"
#include "host/posix/posix_paths.h"
#include "host/posix/posix_replace.h"
#include "host/posix/posix_streams.h"
#include "host/posix/posix_time.h"

namespace morvex {
namespace {

using posix::Guarded;
using posix::LastError;
using posix::Missing;

FileIdentity IdentityOf(const struct stat& status) { return {status.st_dev, status.st_ino}; }

Result<FileInfo> FindFile(const std::string& path) {
  struct stat status {};
  if (posix::Stat(path, &status) != 0) return LastError(Missing::kFile);
  if (!S_ISREG(status.st_mode)) return ErrorNumber::kFileNotFound;
  Result<std::string> absolute = posix::AbsolutePath(path);
  if (!absolute) return absolute.error;
  posix::PathParts parts = posix::SplitPath(absolute.value);
  FileInfo info;
  info.path = std::move(absolute.value);
  info.folder = std::move(parts.folder);
  info.name = std::move(parts.name);
  info.size = static_cast<std::uint64_t>(status.st_size);
  info.modified = posix::ToWallTime(status.st_mtim);
  info.permissions = status.st_mode & posix::kPermissionBits;
  info.identity = IdentityOf(status);
  return info;
}

Result<FolderInfo> FindFolder(const std::string& path) {
  struct stat status {};
  if (posix::Stat(path, &status) != 0) return LastError(Missing::kPath);
  if (!S_ISDIR(status.st_mode)) return ErrorNumber::kPathNotFound;
  Result<std::string> absolute = posix::AbsolutePath(path);
  if (!absolute) return absolute.error;
  FolderInfo info;
  info.path = std::move(absolute.value);
  info.identity = IdentityOf(status);
  struct stat own {};
  if (posix::LinkStat(info.path, &own) != 0) return LastError(Missing::kPath);
  info.is_link = S_ISLNK(own.st_mode);
  info.permissions = status.st_mode & posix::kPermissionBits;
  return info;
}

// Returns blocks * block_size; the greatest number if the product overflows, as it does for file
// systems that claim to be endless.
std::uint64_t BytesIn(std::uint64_t blocks, std::uint64_t block_size) {
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
  if (block_size != 0 && blocks > kMost / block_size) return kMost;
  return blocks * block_size;
}

Result<DriveSpace> MeasureDrive(const std::string& path) {
  struct statvfs drive {};
  int result = 0;
  do {
    result = statvfs(path.c_str(), &drive);
  } while (result != 0 && errno == EINTR);
  if (result != 0) return LastError(Missing::kPath);
  return DriveSpace{BytesIn(drive.f_blocks, drive.f_frsize),
                    BytesIn(drive.f_bavail, drive.f_frsize)};
}

ErrorNumber MakeOneFolder(const std::string& path, mode_t permissions) {
  if (posix::MakeDirectory(path, permissions) == 0) return ErrorNumber::kNone;
  return LastError(Missing::kPath);
}

// Checks `path`, then runs `call` with it. Turns exceptions into errors.
template <class Call>
auto GuardedOn(const std::string& path, Missing missing, Call call) noexcept
    -> decltype(call(path)) {
  return Guarded([&]() -> decltype(call(path)) {
    const ErrorNumber error = posix::CheckPath(path, missing);
    if (error != ErrorNumber::kNone) return error;
    return call(path);
  });
}

std::shared_ptr<posix::WriteBehind> MakeWriteBehind() {
  if (std::thread::hardware_concurrency() < 2) return nullptr;
  return std::make_shared<posix::WriteBehind>();
}

}  // namespace

PosixFileService::PosixFileService() : write_behind_(MakeWriteBehind()) {}

Result<FileInfo> PosixFileService::LookUpFile(const std::string& path) {
  {
    const std::lock_guard lock(mutex_);
    last_found_.clear();
  }
  return GuardedOn(path, Missing::kFile, [this](const std::string& file) {
    Result<FileInfo> found = FindFile(file);
    const std::lock_guard lock(mutex_);
    if (found) last_found_ = file;
    return found;
  });
}

Result<FolderInfo> PosixFileService::LookUpFolder(const std::string& path) {
  return GuardedOn(path, Missing::kPath, FindFolder);
}

Result<std::vector<FolderEntry>> PosixFileService::ListFolder(const std::string& path) {
  return GuardedOn(path, Missing::kPath, posix::ReadFolder);
}

Result<std::string> PosixFileService::LinkText(const std::string& path) {
  return GuardedOn(path, Missing::kFile, posix::ReadLinkText);
}

Result<std::string> PosixFileService::RealPath(const std::string& path) {
  return GuardedOn(path, Missing::kPath, posix::ResolvedPath);
}

Result<DriveSpace> PosixFileService::LookUpDrive(const std::string& path) {
  return GuardedOn(path, Missing::kPath, MeasureDrive);
}

ErrorNumber PosixFileService::CreateFolder(const std::string& path) {
  return GuardedOn(path, Missing::kPath, [](const std::string& folder) {
    return MakeOneFolder(folder, posix::kPermissionBits);
  });
}

ErrorNumber PosixFileService::CreateFolderLike(const std::string& path, const FolderInfo& like) {
  return GuardedOn(path, Missing::kPath, [&](const std::string& folder) {
    // The owner must be able to put files into the new folder.
    return MakeOneFolder(folder, (like.permissions & posix::kPermissionBits) | S_IRWXU);
  });
}

ErrorNumber PosixFileService::CopyFile(const std::string& from, const std::string& to,
                                       const KeepGoing& keep_going) {
  return Guarded([&] { return posix::CopyWholeFile(from, to, keep_going); });
}

ErrorNumber PosixFileService::MoveFile(const std::string& from, const std::string& to,
                                       const KeepGoing& keep_going) {
  return Guarded([&] { return posix::MoveWholeFile(from, to, keep_going); });
}

ErrorNumber PosixFileService::MoveToFreeName(const std::string& from, const std::string& to) {
  return Guarded([&] { return posix::MoveFileToFreeName(from, to); });
}

ErrorNumber PosixFileService::DeleteFile(const std::string& path) {
  return Guarded([&] { return posix::DeleteOneFile(path); });
}

Result<std::unique_ptr<InputFile>> PosixFileService::OpenForReading(const std::string& path) {
  return GuardedOn(path, Missing::kFile, [this](const std::string& file) {
    bool looked_up = false;
    {
      const std::lock_guard lock(mutex_);
      looked_up = file == last_found_;
    }
    return posix::OpenInput(file, looked_up);
  });
}

Result<std::unique_ptr<WorkFile>> PosixFileService::CreateWorkFile(const std::string& path,
                                                                   std::uint32_t permissions) {
  return GuardedOn(path, Missing::kFile, [&](const std::string& file) {
    return posix::CreateWorkFile(file, permissions, write_behind_);
  });
}

ErrorNumber PosixFileService::AppendToFile(const std::string& path, std::string_view bytes) {
  return Guarded([&] {
    bool looked_up = false;
    {
      const std::lock_guard lock(mutex_);
      looked_up = path == last_appended_;
    }
    const ErrorNumber error = posix::AppendRecord(path, bytes, looked_up);
    const std::lock_guard lock(mutex_);
    last_appended_ = error == ErrorNumber::kNone ? path : std::string();
    return error;
  });
}

ErrorNumber PosixFileService::ReplaceFile(const std::string& path, std::string_view bytes) {
  return Guarded([&] { return posix::ReplaceContent(path, bytes); });
}

}  // namespace morvex
