// Copies, moves and deletes whole files. The paths are the program's; SystemPath is applied here.
//
// `claimed`, unless null, is the open work file at the function's first path, which this process
// claims. It is used instead of opening that path.
#pragma once

#include <string>

#include "core/host/file_service.h"
#include "host/windows/windows_handle.h"

namespace morvex::windows {

// As FileService::CopyFile.
ErrorNumber CopyWholeFile(const std::string& from, const std::string& to,
                          const KeepGoing& keep_going, const Handle* claimed = nullptr);

// As FileService::MoveFile. If `from` is a link, the file it leads to is copied to `to` and the
// link deleted.
ErrorNumber MoveWholeFile(const std::string& from, const std::string& to,
                          const KeepGoing& keep_going, const Handle* claimed = nullptr);

// As FileService::MoveToFreeName.
ErrorNumber MoveFileToFreeName(const std::string& from, const std::string& to,
                               const Handle* claimed = nullptr);

// As FileService::DeleteFile.
ErrorNumber DeleteOneFile(const std::string& path, const Handle* claimed = nullptr);

}  // namespace morvex::windows
