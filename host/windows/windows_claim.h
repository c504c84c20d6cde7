// Files under names that several runs of the program use: the temporary file beside a source, the
// partial copy of a target. Whoever makes one has it to himself as long as he keeps it open, until
// he gives it its final name or deletes it; nobody else deletes it in the meantime and puts his own
// in its place. A file that nobody keeps is a left-over. The claim is the open file itself, which
// nobody else may then delete or rename; it ends with the process.
//
// Renaming and deleting go through an open file, so that they cannot hit another one that took its
// name. Paths are those of SystemPath.
#pragma once

#include <string>

#include "core/host/error.h"
#include "host/windows/windows_handle.h"

namespace morvex::windows {

// Makes the file with these attributes and claims it. Not open: GetLastError says why,
// ERROR_FILE_EXISTS when the name is taken.
Handle CreateClaimed(const std::wstring& path, DWORD permissions);

// Opens a file, or a link itself, so that it can be renamed and deleted.
Handle OpenToRename(const std::wstring& path);

// Deletes the open file or link, a read-only one too. Gives 0 or an error code.
Code DeleteOpen(const Handle& file);

// The open file goes with its handle, even when the process is killed; or stays, as it was.
bool SetPassing(const Handle& file, bool passing);

// Gives the open file the name `path`; with `replace` in one step in place of a file or link of
// that name, a read-only one too. Gives 0 or an error code.
Code RenameOpen(const Handle& file, const std::wstring& path, bool replace);

// Deletes what goes by the name, a folder excepted (75), unless somebody claims it: then
// kFileAlreadyOpen. kFileNotFound when there is nothing.
ErrorNumber DeleteUnclaimed(const std::wstring& path);

}  // namespace morvex::windows
