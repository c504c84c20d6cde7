// The command "filter": reads standard input, replaces the texts of the list and writes standard
// output, in constant memory.
#pragma once

#include "ui/commands/command_console.h"
#include "ui/commands/command_options.h"

namespace morvex {

// Returns the exit status.
int RunFilter(const FilterOptions& options, const CommandConsole& console);

}  // namespace morvex
