// Shows a file to the user in the system's file browser.
#pragma once

#include <string>

namespace morvex::windows {

// Starts the program `program` with the command line `command` in a minimised window that takes the
// focus. Does not wait for the program and reports no error.
void StartMinimised(const std::wstring& program, std::wstring command);

// Opens the file browser on `file`, a path in the code page.
void OpenBrowserOn(const std::string& file);

}  // namespace morvex::windows
