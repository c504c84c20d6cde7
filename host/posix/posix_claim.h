// Claims on files whose names several runs of the program use: the work file beside a source, the
// partial copy in a target folder. The run that creates such a file claims it until the run
// renames, deletes or closes the file; until then no other run deletes it. A file of such a name
// that nobody claims is stale.
//
// The claim is a lock on the open file. The lock ends with the process. On a file system without
// locks no file is claimed.
#pragma once

#include <sys/types.h>

#include "core/host/error.h"
#include "host/posix/posix_descriptor.h"

namespace morvex::posix {

// Creates and claims the file. If the result is not open, errno tells why: EEXIST if the name is
// taken, or if another run has deleted the new file or is about to delete it.
Descriptor CreateClaimed(int folder, const char* name, mode_t permissions);

// Returns a second descriptor of the open file. The claim lasts until both descriptors are closed.
Descriptor KeepClaim(const Descriptor& file);

// Deletes the file, link or other entry of this name; a folder returns an error. Returns
// kFileAlreadyOpen if another run claims the file, kFileNotFound if there is nothing.
ErrorNumber DeleteUnclaimed(int folder, const char* name);

}  // namespace morvex::posix
