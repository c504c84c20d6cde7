// Warns of files in a run's source that were hardly meant to be handed over.
#pragma once

#include <string>

#include "core/program/program.h"
#include "ui/commands/command_messages.h"

namespace morvex {

// Warns of each file of the source that is the list, `settings_file` (may be empty) or an older
// report, because the run would copy that file. Looks into all folders of the source except the
// target, and follows links. Source, target and list must be set in `program`. If the source is a
// folder, only files whose names end in ".json" are tested for being reports.
void WarnOfOwnFilesInSource(const Program& program, const std::string& settings_file,
                            CommandMessages& messages);

}  // namespace morvex
