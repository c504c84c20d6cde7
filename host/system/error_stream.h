// Standard error, for a program with windows.
#pragma once

namespace morvex {

// Whether somebody can see what is written to standard error from now on. A program with windows
// has no terminal of its own on some systems: it is then given that of its starter, if there is one
// to be had.
bool ReachErrorStream();

}  // namespace morvex
