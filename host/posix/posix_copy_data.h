// Moving the bytes of one open file into another.
#pragma once

#include <sys/stat.h>

#include "core/host/file_service.h"

namespace morvex::posix {

// Copies the bytes of `from`, of the status that it had when it was opened, into the empty file
// `to`; holes stay holes. A file that grows meanwhile is copied up to its size in `status`, one
// that shrinks up to the end that is found. `in_kernel` false does without the system's own
// copying, which is otherwise used where it works. kInvalidCall when `keep_going`, which may be
// empty, ended it; it is asked about every mebibyte to eight, never for a file of one piece.
ErrorNumber CopyData(int from, int to, const struct stat& status, const KeepGoing& keep_going,
                     bool in_kernel);

}  // namespace morvex::posix
