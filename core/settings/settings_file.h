// The settings file "Init.dat", taken over into settings and forms, and written from them. Its
// lines: core/settings/init_file.h.
#pragma once

#include <string>
#include <vector>

#include "core/program/program.h"

namespace morvex {

inline constexpr const char* kInitFileName = "Init.dat";

// Reads the settings file that the command line named, else the one in the program's folder. Takes
// its values over into the settings and forms, and imports and applies the list that it names.
// Values that the file does not have stay as they are. When a named file is missing, that is logged
// and Beeindigd set.
void ReadInitFile(Program& program);

// Writes the settings file into the program's folder, even when another one was read. Writes
// nothing once the program is to stop. A failure is ignored.
void WriteInitFile(Program& program);

// The log's message for a named settings file that is missing.
std::string MissingInitFileText(const std::string& path);

// Returns why the settings file that the command line named started no run, one sentence per
// element; empty if it started one or if none was named. Control characters in paths are not
// replaced.
std::vector<std::string> WhyNoRun(const Program& program);

}  // namespace morvex
