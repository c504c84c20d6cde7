// What lies in the source of a run and was never meant to be handed over.
#pragma once

#include <string>

#include "core/program/program.h"
#include "ui/commands/command_messages.h"

namespace morvex {

// Warns of the list, of `settings_file` (may be empty) and of older reports that the run would
// copy, as the program's source and list stand, wherever they lie in it and whatever links lead
// there. Reports are looked for in files that end in ".json".
void WarnOfOwnFilesInSource(const Program& program, const std::string& settings_file,
                            CommandMessages& messages);

}  // namespace morvex
