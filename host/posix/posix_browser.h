// Showing a folder to the user.
#pragma once

#include <string>

namespace morvex::posix {

// Opens the desktop's file browser on the folder of `file`, which need not exist. Does not wait for
// it, leaves no child process behind and says nothing when there is none to start.
void OpenFolderOf(const std::string& file);

}  // namespace morvex::posix
