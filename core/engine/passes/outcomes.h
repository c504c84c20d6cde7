// Counts the outcomes of a run, tells the run's observer of them, and logs errors.
#pragma once

#include <string>
#include <string_view>

#include "core/program/program.h"
#include "core/program/run_observer.h"

namespace morvex {

// Both return `outcome` with the other arguments stored in it and another kind: kFailed for Failed,
// kPassedOver for PassedOverFor.
Outcome Failed(Outcome outcome, ErrorNumber error, const std::string& error_path,
               FailureCause cause = FailureCause::kNone);
Outcome PassedOverFor(Outcome outcome, PassedOver why);

// Adds the outcome to the run's counts, keeps it if it is the run's first failure, and tells the
// run's observer.
void NoteOutcome(Program& program, const Outcome& outcome);

// Returns why a file or folder was passed over, in words to put behind a colon; empty for kNo.
std::string_view ReasonText(PassedOver why);

// Returns the cause of a failure, in words behind which the error's path may follow; empty for
// kNone.
std::string_view CauseText(FailureCause cause);

// Notes that the folder at `path` itself could not be copied.
void NoteFailedFolder(Program& program, const std::string& path, ErrorNumber error);

// Writes two lines to the run log: the path, then the error.
void LogError(const Program& program, const std::string& path, ErrorNumber error);

}  // namespace morvex
