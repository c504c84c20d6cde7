// The command "run": a run whose settings stand on the command line. The program's own settings
// file is neither read nor written.
#pragma once

#include "ui/commands/command_console.h"
#include "ui/commands/command_options.h"

namespace morvex {

// Gives the exit status.
int RunRun(const RunOptions& options, const CommandConsole& console);

}  // namespace morvex
