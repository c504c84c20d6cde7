// What became of a file or folder, in one place: the run's counts of what has no copy, its
// observer, and the lines that the run log holds of an error.
#pragma once

#include <string>
#include <string_view>

#include "core/program/program.h"
#include "core/program/run_observer.h"

namespace morvex {

// Counts a file or folder that has no copy (of the first failure it keeps path and error), and
// tells the run's observer of every outcome.
void NoteOutcome(Program& program, const Outcome& outcome);

// Why a file or folder was passed over, in words that follow a colon; empty for kNo.
std::string_view ReasonText(PassedOver why);

// What stands behind a failure, in words behind which the path that the error is about may follow;
// empty for kNone.
std::string_view CauseText(FailureCause cause);

// A folder that could not be copied, for itself.
void NoteFailedFolder(Program& program, const std::string& path, ErrorNumber error);

// The two lines of the run log: the path, then the error.
void LogError(const Program& program, const std::string& path, ErrorNumber error);

}  // namespace morvex
