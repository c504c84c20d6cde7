// Copying and moving whole files.
#pragma once

#include <string>

#include "core/host/file_service.h"

namespace morvex::posix {

// Which of the system's special abilities a copy may use. Where one is missing the plain way is
// taken anyway; tests force it.
struct CopyWays {
  bool unnamed_file = true;    // fill a file that gets its name when it is whole
  bool copy_in_kernel = true;  // let the system copy from file to file
};

// As FileService::CopyFile. The paths need not have passed CheckPath.
ErrorNumber CopyWholeFile(const std::string& from, const std::string& to,
                          const KeepGoing& keep_going, CopyWays ways = {});

// As FileService::MoveFile. A link at `from` is moved as the file that it leads to.
ErrorNumber MoveWholeFile(const std::string& from, const std::string& to,
                          const KeepGoing& keep_going);

// As FileService::MoveToFreeName.
ErrorNumber MoveFileToFreeName(const std::string& from, const std::string& to);

// As FileService::DeleteFile.
ErrorNumber DeleteOneFile(const std::string& path);

}  // namespace morvex::posix
