// The command "run": a run that the command line describes. It neither reads nor writes "Init.dat".
#pragma once

#include "ui/commands/command_console.h"
#include "ui/commands/command_options.h"

namespace morvex {

// Returns the exit status.
int RunRun(const RunOptions& options, const CommandConsole& console);

}  // namespace morvex
