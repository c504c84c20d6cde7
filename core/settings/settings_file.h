// The settings file "Init.dat": one value a line, the first six by their place, then the extension
// list.
#pragma once

#include <string>
#include <vector>

#include "core/program/program.h"

namespace morvex {

inline constexpr const char* kInitFileName = "Init.dat";

// Reads the settings file that the command line named, else the one in the program's folder, into
// the settings and windows, and has the list that it names imported and applied. Values that the
// file does not give stay as they are. A named file that is missing is logged and sets Beeindigd.
void ReadInitFile(Program& program);

// Writes the settings file into the program's folder, whichever was read. Not once the program is
// to stop; a failure is ignored.
void WriteInitFile(Program& program);

// What is logged of a named settings file that is missing.
std::string MissingInitFileText(const std::string& path);

// Why the settings file that the command line named started no run, a sentence a line; empty when
// it started one. Paths stand there as they are, control characters and all.
std::vector<std::string> WhyNoRun(const Program& program);

}  // namespace morvex
