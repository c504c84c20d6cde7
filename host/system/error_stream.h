// Standard error, for a program with windows.
#pragma once

namespace morvex {

// Returns whether the user can see what is written to standard error from now on. On some systems a
// program with windows starts without a terminal; this call then attaches the parent process's
// terminal, if the parent has one.
bool ReachErrorStream();

}  // namespace morvex
