// The run driver: the main window's button Anonymize arms a run and saves the settings, the button
// Go performs the run.
//
// The forms show what a run does, whether the main window or a command started the run.
#pragma once

#include "core/program/program.h"

namespace morvex {

// The main window's Anonymize: arms a run and writes the settings file. Does nothing while a run
// works or a list is being read.
void cmdAnonymize_Click(Program& program);

// Arms a run: notes the time and shows Go as ready. Does nothing while a run works or a list is
// being read.
void ArmRun(Program& program);

// The main window's Go: hides the other windows and performs the run that the forms describe. Does
// nothing while a run works or a list is being read.
void cmdGo_Click(Program& program);

// Returns the run that the forms and the settings describe.
RunRequest RequestFromForms(const Program& program);

// Performs the armed run that `program.request` describes: checks source and target, calls the
// passes, shows the result and writes the run summary. `program.run.end` then tells how the run
// ended. Does nothing while a run works or a list is being read.
void PerformRun(Program& program);

}  // namespace morvex
