// The run driver: Anonymize arms a run and saves the settings, Go performs it.
#pragma once

#include "core/program/program.h"

namespace morvex {

// Notes the moment, readies Go and writes the settings file. Nothing while a run works.
void cmdAnonymize_Click(Program& program);

// The same without the settings file: for a run that is not the window's. Go may follow.
void ArmRun(Program& program);

// Checks source and target, has the engine do the work, shows the result and writes the run
// summary. Nothing while a run works. How it ended stands in the run state.
void cmdGo_Click(Program& program);

}  // namespace morvex
