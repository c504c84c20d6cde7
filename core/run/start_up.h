// Start-up: from the main window's loading to an idle window, or, when the command line names a
// settings file, through a whole unattended run to the program's end.
#pragma once

#include <string>

#include "core/program/program.h"

namespace morvex {

// Value of the first environment entry "LOCALAPPDATA="; empty when there is none.
std::string FindLocalAppData(SystemService& system);

// Value of the last environment entry "CommonProgramFiles(x86)=", cut behind its second backslash;
// empty when there is none or it has fewer than two.
std::string FindCommonFilesLocation(SystemService& system);

// Runs once, on a new program. An error is one of the command line's: the program has then ended
// without having run or written anything. Whether the program has ended otherwise, the windows
// tell; it has when a settings file that the command line named could not be read, or its list.
ErrorNumber StartUp(Program& program);

// All windows are unloaded.
bool HasEnded(const Program& program);

// Exit status of an unattended run: 0 when all is done, 1 when it could not run or did not finish,
// 3 when it finished but something of the source has no copy.
int ExitStatus(const Program& program);

}  // namespace morvex
