// Claims on files whose names several runs of the program use: the work file beside a source, the
// partial copy in a target folder. The run that creates such a file claims it until the run
// renames, deletes or closes the file; until then no other run deletes it. A file of such a name
// that nobody claims is stale. The claim is the open file itself: while it is open, no other
// process can delete or rename it. The claim ends with the process.
//
// Renaming and deleting work on the open file, so they cannot hit another file that has taken the
// open file's name. All paths are results of SystemPath.
#pragma once

#include <string>

#include "core/host/error.h"
#include "host/windows/windows_handle.h"

namespace morvex::windows {

// Creates the file with these attributes and claims it. If the result is not open, GetLastError
// tells why: ERROR_FILE_EXISTS if the name is taken.
Handle CreateClaimed(const std::wstring& path, DWORD permissions);

// Opens a file for renaming and deleting. For a link, opens the link itself.
Handle OpenToRename(const std::wstring& path);

// Deletes the open file or link, even if it is read-only. Returns 0 or an error code.
Code DeleteOpen(const Handle& file);

// With `passing` true, the system will delete the open file when its handle is closed, also when
// the process is killed; with false, the system will keep it. Returns false on failure.
bool SetPassing(const Handle& file, bool passing);

// Renames the open file to `path`. With `replace` a file or link of that name, even a read-only
// one, is replaced in one step. Returns 0 or an error code.
Code RenameOpen(const Handle& file, const std::wstring& path, bool replace);

// Deletes the file or link at `path`. Returns error 75 for a folder, kFileAlreadyOpen if another
// run claims the file, kFileNotFound if there is nothing.
ErrorNumber DeleteUnclaimed(const std::wstring& path);

}  // namespace morvex::windows
