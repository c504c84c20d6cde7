// Copying and moving whole files.
#pragma once

#include <string>

#include "core/host/file_service.h"
#include "host/posix/posix_descriptor.h"

namespace morvex::posix {

// Which of the system's special abilities a copy may use. Where one is missing the plain way is
// taken anyway; tests force it.
struct CopyWays {
  bool unnamed_file = true;    // fill a file that gets its name when it is whole
  bool copy_in_kernel = true;  // let the system copy from file to file
};

// As FileService::CopyFile. The paths need not have passed CheckPath. The bytes are those of
// `source` where that is open, a file that this process has made at `from`.
ErrorNumber CopyWholeFile(const std::string& from, const std::string& to,
                          const KeepGoing& keep_going, CopyWays ways = {}, Descriptor source = {});

// As FileService::MoveFile. A link at `from` is moved as the file that it leads to. `source` as for
// CopyWholeFile.
ErrorNumber MoveWholeFile(const std::string& from, const std::string& to,
                          const KeepGoing& keep_going, Descriptor source = {});

// As FileService::MoveToFreeName.
ErrorNumber MoveFileToFreeName(const std::string& from, const std::string& to);

// As FileService::DeleteFile. `own`: this process claims the file.
ErrorNumber DeleteOneFile(const std::string& path, bool own = false);

}  // namespace morvex::posix
