// Files and folders that have no copy in the target: what the log and the console tell of them.
#pragma once

#include <string>

#include "core/program/program.h"

namespace morvex {

// The two lines of the run log: the path, then the error.
void LogError(const Program& program, const std::string& path, ErrorNumber error);

// Counts a file or folder that could not be copied; of the first it keeps path and error.
void CountFailure(Program& program, const std::string& path, ErrorNumber error);

}  // namespace morvex
