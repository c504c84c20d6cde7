// Copying and moving whole files.
#pragma once

#include <string>

#include "core/host/file_service.h"
#include "host/posix/posix_descriptor.h"

namespace morvex::posix {

// Which special abilities of the system a copy may use. Where the system lacks one, the copy is
// made without it. Tests turn them off to test a copy without them.
struct CopyWays {
  bool unnamed_file = true;    // fill a nameless file and name it when it is whole
  bool copy_in_kernel = true;  // let the system copy from file to file
};

// As FileService::CopyFile. The paths need not have passed CheckPath. If `source` is open, it must
// be the file at `from`, claimed by this process; the bytes are then read from `source`. Otherwise
// `from` is opened.
ErrorNumber CopyWholeFile(const std::string& from, const std::string& to,
                          const KeepGoing& keep_going, CopyWays ways = {}, Descriptor source = {});

// As FileService::MoveFile. If `from` is a link, the file that the link leads to is copied to `to`,
// and the link is deleted. `source` as for CopyWholeFile.
ErrorNumber MoveWholeFile(const std::string& from, const std::string& to,
                          const KeepGoing& keep_going, Descriptor source = {});

// As FileService::MoveToFreeName.
ErrorNumber MoveFileToFreeName(const std::string& from, const std::string& to);

// As FileService::DeleteFile.
ErrorNumber DeleteOneFile(const std::string& path);
// Deletes a file that this process claims.
ErrorNumber DeleteClaimed(const std::string& path);

}  // namespace morvex::posix
