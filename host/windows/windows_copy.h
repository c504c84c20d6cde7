// Copying and moving whole files. Paths are the program's, not yet those of SystemPath.
#pragma once

#include <string>

#include "core/host/file_service.h"
#include "host/windows/windows_handle.h"

namespace morvex::windows {

// As FileService::CopyFile. The bytes are those of `claimed` where that is not null: an open file
// that this process has made at `from`.
ErrorNumber CopyWholeFile(const std::string& from, const std::string& to,
                          const KeepGoing& keep_going, const Handle* claimed = nullptr);

// As FileService::MoveFile. A link at `from` is moved as the file that it leads to.
ErrorNumber MoveWholeFile(const std::string& from, const std::string& to,
                          const KeepGoing& keep_going, const Handle* claimed = nullptr);

// As FileService::MoveToFreeName.
ErrorNumber MoveFileToFreeName(const std::string& from, const std::string& to,
                               const Handle* claimed = nullptr);

// As FileService::DeleteFile.
ErrorNumber DeleteOneFile(const std::string& path, const Handle* claimed = nullptr);

}  // namespace morvex::windows
