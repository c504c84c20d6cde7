// Showing a folder to the user.
#pragma once

#include <string>

namespace morvex::posix {

// Opens the desktop's file browser on the folder of `file`, which need not exist. Does not wait for
// the browser, leaves no child process, and reports no error if there is no browser.
void OpenFolderOf(const std::string& file);

}  // namespace morvex::posix
