// Claims on files whose names several runs of the program use: the work file beside a source, the
// partial copy in a target folder. The run that creates such a file claims it until it renames,
// deletes or closes it; meanwhile no other run deletes it. A file of such a name that nobody claims
// is stale. The claim is the open file itself, which nobody else may delete or rename; it ends with
// the process.
//
// Renaming and deleting work on the open file, so they cannot hit another file that has taken its
// name. Paths are those of SystemPath.
#pragma once

#include <string>

#include "core/host/error.h"
#include "host/windows/windows_handle.h"

namespace morvex::windows {

// Creates the file with these attributes and claims it. If the result is not open, GetLastError
// tells why: ERROR_FILE_EXISTS if the name is taken.
Handle CreateClaimed(const std::wstring& path, DWORD permissions);

// Opens a file, or a link itself, for renaming and deleting.
Handle OpenToRename(const std::wstring& path);

// Deletes the open file or link, even if it is read-only. Returns 0 or an error code.
Code DeleteOpen(const Handle& file);

// With `passing` the system deletes the open file when its handle is closed, even if the process is
// killed. Without it the file is kept again. False on failure.
bool SetPassing(const Handle& file, bool passing);

// Renames the open file to `path`. With `replace` it replaces a file or link of that name in one
// step, even a read-only one. Returns 0 or an error code.
Code RenameOpen(const Handle& file, const std::wstring& path, bool replace);

// Deletes what has this name; 75 if it is a folder. kFileAlreadyOpen if another run claims it,
// kFileNotFound if there is nothing.
ErrorNumber DeleteUnclaimed(const std::wstring& path);

}  // namespace morvex::windows
