// Warns of files in a run's source that were hardly meant to be handed over.
#pragma once

#include <string>

#include "core/program/program.h"
#include "ui/commands/command_messages.h"

namespace morvex {

// Warns when the source holds the list, `settings_file` (may be empty) or an older report, in any
// folder and through any link: the run would copy them. The program holds source, target and list.
// Only files whose names end in ".json" are tried as reports.
void WarnOfOwnFilesInSource(const Program& program, const std::string& settings_file,
                            CommandMessages& messages);

}  // namespace morvex
