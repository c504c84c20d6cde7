// The file system of Windows. Names are bytes in the system's code page; "\" parts them, and "/" is
// taken for it.
//
// The file that was made last is claimed until it is moved or deleted: DeleteFile of another
// process gives kFileAlreadyOpen for it.
//
// Beyond the contract of FileService: paths may be as long as the file system lets them be; the
// empty path gives 53 where a file is asked for and 76 where a folder is; names that are no names,
// see windows_paths.h, give 52, and so does an entry of a listing that the code page cannot spell.
// A file that another program has open and does not share gives 70. The permission bits are the
// attributes read-only, hidden and system; who else may read a new file or folder is what the
// folder that it is made in hands down. Read-only files are replaced and deleted like others.
// Nothing but a file's own bytes is copied: no alternate streams. Calls may come from several
// threads.
#pragma once

#include <memory>
#include <string>

#include "core/host/file_service.h"

namespace morvex {

class WindowsFileService : public FileService {
 public:
  // From the first one on a drive without a medium gives the process an error number, and nobody a
  // message that has to be closed before the call goes on.
  WindowsFileService();

  char Separator() const override { return '\\'; }
  bool IsSameName(const std::string& one, const std::string& other) const override;

  Result<FileInfo> LookUpFile(const std::string& path) override;
  Result<FolderInfo> LookUpFolder(const std::string& path) override;
  Result<std::vector<FolderEntry>> ListFolder(const std::string& path) override;
  Result<std::string> LinkText(const std::string& path) override;
  Result<std::string> RealPath(const std::string& path) override;
  Result<DriveSpace> LookUpDrive(const std::string& path) override;

  ErrorNumber CreateFolder(const std::string& path) override;

  // Copying stops at the size that the source has at the start, or earlier when it shrinks.
  // Nothing but a file, a link to one or a link to nothing is ever replaced at `to` (75), nor is a
  // file for which `to` is but the short name that the system gave it ("REPORT~1.TXT").
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
};

}  // namespace morvex
