// The file system of a POSIX system. Names are passed to the system as they are, byte for byte; the
// separator is "/".
//
// Beyond the contract of FileService:
// - Paths may be longer than the system takes per call, except in RealPath and LookUpDrive.
// - A path with a NUL byte returns error 52. The empty path returns 53 where a file is expected and
// 76 where a folder is expected. A path that leads through a file returns 76.
// - Writing beyond the process's file size limit returns 61 if the process ignores SIGXFSZ, which
// the constructor of PosixSystemService arranges.
// - Calls may come from several threads.
//
// If there is a second processor, a thread of the service writes large files while the caller goes
// on. The thread starts with the first large file and ends when the service and its last open work
// file are gone.
#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "core/host/file_service.h"

namespace morvex {

namespace posix {
class WriteBehind;
}

class PosixFileService : public FileService {
 public:
  PosixFileService();

  char Separator() const override { return '/'; }

  Result<FileInfo> LookUpFile(const std::string& path) override;
  Result<FolderInfo> LookUpFolder(const std::string& path) override;
  Result<std::vector<FolderEntry>> ListFolder(const std::string& path) override;
  Result<std::string> LinkText(const std::string& path) override;
  Result<std::string> RealPath(const std::string& path) override;
  Result<DriveSpace> LookUpDrive(const std::string& path) override;

  ErrorNumber CreateFolder(const std::string& path) override;
  ErrorNumber CreateFolderLike(const std::string& path, const FolderInfo& like) override;

  // Copies at most as many bytes as the source has when it is opened. Replaces only a file, a link
  // to a file or a link to nothing at `to`; anything else returns 75.
  ErrorNumber CopyFile(const std::string& from, const std::string& to,
                       const KeepGoing& keep_going) override;
  ErrorNumber MoveFile(const std::string& from, const std::string& to,
                       const KeepGoing& keep_going) override;
  ErrorNumber MoveToFreeName(const std::string& from, const std::string& to) override;
  ErrorNumber DeleteFile(const std::string& path) override;

  Result<std::unique_ptr<InputFile>> OpenForReading(const std::string& path) override;
  Result<std::unique_ptr<WorkFile>> CreateWorkFile(const std::string& path,
                                                   std::uint32_t permissions) override;
  ErrorNumber AppendToFile(const std::string& path, std::string_view bytes) override;
  ErrorNumber ReplaceFile(const std::string& path, std::string_view bytes) override;

 private:
  const std::shared_ptr<posix::WriteBehind> write_behind_;  // null: all writes are direct

  std::mutex mutex_;  // guards the members below
  // Paths that the last look-up or append showed to be ordinary files. They are opened without
  // another look-up.
  std::string last_found_;
  std::string last_appended_;
};

}  // namespace morvex
