// The run for a source that is a single file.
#pragma once

#include <string>

#include "core/program/program.h"
#include "core/program/run_observer.h"

namespace morvex {

// `target` is the full path of the copy, not of a folder. Notes and returns the outcome, which
// alone tells whether the copy was made: labels and log do not. If the program is to stop already,
// does nothing, notes nothing and returns kStopped.
Outcome SingleFileRun(Program& program, const std::string& source, const std::string& target);

}  // namespace morvex
