// The run for a source that is one file.
#pragma once

#include <string>

#include "core/program/program.h"

namespace morvex {

// `target` is the full path of the copy, no folder. Gives the error that kept the copy from being
// made: nothing else tells of it.
ErrorNumber SingleFileRun(Program& program, const std::string& source, const std::string& target);

}  // namespace morvex
