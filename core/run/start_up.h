// Start-up: ends in an idle main window or, when the command line names a settings file, performs
// an unattended run and ends the program.
#pragma once

#include <string>

#include "core/program/program.h"

namespace morvex {

// Returns the value of the first environment entry "LOCALAPPDATA="; empty if there is no such
// entry.
std::string FindLocalAppData(SystemService& system);

// Returns the value of the last environment entry "CommonProgramFiles(x86)=" up to and including
// its second backslash; empty if there is no such entry or its value has fewer than two
// backslashes. An entry with an empty value counts as the last one.
std::string FindCommonFilesLocation(SystemService& system);

// Call once, on a new program. If the command line is wrong, returns the error; the program has
// then ended without running or writing anything. The program can also have ended without an error
// (see HasEnded): after an unattended run, or when the named settings file or its list could not be
// read.
ErrorNumber StartUp(Program& program);

// Whether the program has ended: no form is loaded.
bool HasEnded(const Program& program);

// The exit status of an unattended run: 0 when all is done, 1 when it could not run or did not
// finish, 3 when it finished but some file or folder has no copy.
int ExitStatus(const Program& program);

}  // namespace morvex
