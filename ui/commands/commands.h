// The commands of the console program, beside its form with a settings file.
#pragma once

#include <string>
#include <vector>

#include "ui/commands/command_console.h"

namespace morvex {

// The program's arguments, of which the first is a command (see IsCommand). Gives the exit status.
int RunCommandLine(const std::vector<std::string>& arguments, const CommandConsole& console);

}  // namespace morvex
