// Copies the bytes of one open file into another.
#pragma once

#include <sys/stat.h>

#include "core/host/file_service.h"

namespace morvex::posix {

// Copies the bytes of `from` into the empty file `to`; holes stay holes. `status` is the status of
// `from` when it was opened: if the file grows meanwhile, its bytes up to the old size are copied;
// if it shrinks, its bytes up to the new end. With `in_kernel` false the system's own copying is
// not used. Asks `keep_going` (may be empty) about every 1 to 8 MiB, but never if the file is
// copied in one piece. Returns kInvalidCall if `keep_going` ended the copy.
ErrorNumber CopyData(int from, int to, const struct stat& status, const KeepGoing& keep_going,
                     bool in_kernel);

}  // namespace morvex::posix
