// The commands of the console program: run, check and filter.
#pragma once

#include <string>
#include <vector>

#include "ui/commands/command_console.h"

namespace morvex {

// Runs the command that the first of the program's arguments names (see IsCommand). Returns the
// exit status.
int RunCommandLine(const std::vector<std::string>& arguments, const CommandConsole& console);

}  // namespace morvex
