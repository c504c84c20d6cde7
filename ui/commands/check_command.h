// The command "check": searches a tree for texts of the list.
#pragma once

#include "ui/commands/command_console.h"
#include "ui/commands/command_options.h"

namespace morvex {

// Returns the exit status.
int RunCheck(const CheckOptions& options, const CommandConsole& console);

}  // namespace morvex
