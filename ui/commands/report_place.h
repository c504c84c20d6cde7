// Where a run's report may lie: in the place of none of the run's own files, and better in neither
// of its folders, for what lies there is handed over.
#pragma once

#include <string>

#include "core/program/program.h"
#include "ui/commands/command_messages.h"

namespace morvex {

// To be called before the run, when source, target and list stand in `program`. False, after a
// message, when the report would take the place of one of them or of `settings_file` (which may be
// empty), or has no folder to lie in. A report in the source's or the target's folder is warned of.
bool MayHoldReport(const Program& program, const std::string& report,
                   const std::string& settings_file, CommandMessages& messages);

}  // namespace morvex
