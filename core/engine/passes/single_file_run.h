// The run for a source that is a single file.
#pragma once

#include <string>

#include "core/program/program.h"
#include "core/program/run_observer.h"

namespace morvex {

// `target` is the full path of the copy, not of a folder. Notes the outcome and returns it. Only
// the outcome tells whether the copy was made; the labels and the log do not. If the program is
// already to stop, makes no copy, notes nothing and returns kStopped.
Outcome SingleFileRun(Program& program, const std::string& source, const std::string& target);

}  // namespace morvex
