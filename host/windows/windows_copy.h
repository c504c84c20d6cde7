// Copies, moves and deletes whole files. The paths are bytes in the code page; these functions
// apply SystemPath to them.
//
// `claimed`, unless null, must be the open work file at the function's first path, claimed by this
// process. The function then uses this handle and does not open the path.
#pragma once

#include <string>

#include "core/host/file_service.h"
#include "host/windows/windows_handle.h"

namespace morvex::windows {

// As FileService::CopyFile.
ErrorNumber CopyWholeFile(const std::string& from, const std::string& to,
                          const KeepGoing& keep_going, const Handle* claimed = nullptr);

// As FileService::MoveFile. If `from` is a link, the file that the link leads to is copied to `to`,
// and the link is deleted.
ErrorNumber MoveWholeFile(const std::string& from, const std::string& to,
                          const KeepGoing& keep_going, const Handle* claimed = nullptr);

// As FileService::MoveToFreeName.
ErrorNumber MoveFileToFreeName(const std::string& from, const std::string& to,
                               const Handle* claimed = nullptr);

// As FileService::DeleteFile.
ErrorNumber DeleteOneFile(const std::string& path, const Handle* claimed = nullptr);

}  // namespace morvex::windows
