// The file system of a POSIX system. Names are bytes as the system takes them; "/" parts them.
//
// The file that was made last is claimed until it is moved or deleted: DeleteFile of another
// process gives kFileAlreadyOpen for it.
//
// Beyond the contract of FileService: paths may be longer than the system takes at a time, but
// those given to RealPath and LookUpDrive; a name that holds a NUL byte is a bad one (52); the
// empty path gives 53 where a file is asked for and 76 where a folder is; a path that leads through
// a file gives 76. Writing past the greatest file size the process may have gives 61 only as long
// as SIGXFSZ is ignored, which PosixSystemService sees to. Calls may come from several threads.
//
// A large file is written by a thread of the service while its caller goes on, if there is a second
// processor to run it; the thread is started when the first such file is met and ends with the
// service and its last open file.
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

  // Copying stops at the size that the source has at the start, or earlier when it shrinks.
  // Nothing but a file, a link to one or a link to nothing is ever replaced at `to` (75).
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
  const std::shared_ptr<posix::WriteBehind> write_behind_;  // null: all is written at once

  std::mutex mutex_;  // for what follows
  // Paths that the last call showed to be ordinary files: they are opened without another look.
  std::string last_found_;
  std::string last_appended_;
};

}  // namespace morvex
