// The command "check": is anything of the list left in a tree?
#pragma once

#include "ui/commands/command_console.h"
#include "ui/commands/command_options.h"

namespace morvex {

// Gives the exit status.
int RunCheck(const CheckOptions& options, const CommandConsole& console);

}  // namespace morvex
