// Files under names that several runs of the program use: the temporary file beside a source, the
// partial copy of a target. Whoever makes one has it to himself as long as he keeps it open, until
// he gives it its final name or deletes it; nobody else deletes it in the meantime and puts his own
// in its place. A file that nobody keeps is a left-over. The claim is a lock on the open file,
// which ends with the process; where a file system has no locks every file is free.
#pragma once

#include <sys/types.h>

#include "core/host/error.h"
#include "host/posix/posix_descriptor.h"

namespace morvex::posix {

// Makes the file and claims it. Not open: errno says why, EEXIST when the name is taken or was
// taken away again at once.
Descriptor CreateClaimed(int folder, const char* name, mode_t permissions);

// Another descriptor of an open file, which keeps its claim after the first one is closed.
Descriptor KeepClaim(const Descriptor& file);

// Deletes what goes by the name, a folder excepted, unless somebody claims it: then
// kFileAlreadyOpen. kFileNotFound when there is nothing.
ErrorNumber DeleteUnclaimed(int folder, const char* name);

}  // namespace morvex::posix
