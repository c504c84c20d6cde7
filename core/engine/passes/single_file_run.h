// The run for a source that is one file.
#pragma once

#include <string>

#include "core/engine/passes/file_step.h"
#include "core/program/program.h"

namespace morvex {

// `target` is the full path of the copy, no folder. Labels and log do not tell whether the copy was
// made; the result and the outcome that is noted do. kStopped, with nothing done, when the program
// is to stop already.
CopyResult SingleFileRun(Program& program, const std::string& source, const std::string& target);

}  // namespace morvex
