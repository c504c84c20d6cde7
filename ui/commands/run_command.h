// The command "run": a run that the command line describes. The command does not write "Init.dat",
// and reads it only if --from names it.
#pragma once

#include "ui/commands/command_console.h"
#include "ui/commands/command_options.h"

namespace morvex {

// Returns the exit status.
int RunRun(const RunOptions& options, const CommandConsole& console);

}  // namespace morvex
