// What became of a file or folder, in one place: the run's counts of what has no copy, its
// observer, and the lines that the run log holds of an error.
#pragma once

#include <string>

#include "core/program/program.h"
#include "core/program/run_observer.h"

namespace morvex {

// Counts a file or folder that has no copy (of the first failure it keeps path and error), and
// tells the run's observer of every outcome.
void NoteOutcome(Program& program, const Outcome& outcome);

// A folder that could not be copied, for itself.
void NoteFailedFolder(Program& program, const std::string& path, ErrorNumber error);

// The two lines of the run log: the path, then the error.
void LogError(const Program& program, const std::string& path, ErrorNumber error);

}  // namespace morvex
