#include <stdio.h>

#include "host/system/error_stream.h"
#include "host/windows/windows_api.h"

namespace morvex {

// A program with windows starts detached from the console of its parent, and has no standard error
// unless the parent redirected it.
bool ReachErrorStream() {
  void* stream = GetStdHandle(STD_ERROR_HANDLE);
  if (stream != nullptr && stream != INVALID_HANDLE_VALUE &&
      GetFileType(stream) != FILE_TYPE_UNKNOWN) {
    return true;
  }
  return AttachConsole(ATTACH_PARENT_PROCESS) != 0 && freopen("CONOUT$", "w", stderr) != nullptr;
}

}  // namespace morvex
