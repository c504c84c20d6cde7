// The file system of Windows. Names are bytes in the system's code page. The separator is "\"; "/"
// is accepted in its place.
//
// Beyond the contract of FileService:
// - Paths may be as long as the file system allows.
// - The empty path returns error 53 where a file is expected and 76 where a folder is expected.
// Invalid names (see windows_paths.h) return 52; so do names in a listing that contain a character
// outside the code page.
// - A file that another program has open without sharing it returns 70.
// - The permission bits are the attributes read-only, hidden and system. A new file or folder
// inherits from its folder who may read it. Read-only files are replaced and deleted like others.
// - Only a file's own bytes are copied, not alternate streams.
// - Calls may come from several threads.
#pragma once

#include <memory>
#include <string>

#include "core/host/file_service.h"

namespace morvex {

class WindowsFileService : public FileService {
 public:
  // From the first object on, calls on a drive without a medium return an error number. Otherwise
  // the system would first show a message that the user must close.
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

  // Copies at most as many bytes as the source has when it is opened. Replaces only a file, a link
  // to a file or a link to nothing at `to`; anything else returns 75, and so does a file for which
  // `to` is only the short name that the system gave it ("REPORT~1.TXT").
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
