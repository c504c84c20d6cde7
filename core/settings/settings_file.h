// Reads the settings file "Init.dat" into settings and forms, and writes it from them.
// core/settings/init_file.h describes its lines.
#pragma once

#include <string>
#include <vector>

#include "core/program/program.h"

namespace morvex {

inline constexpr const char* kInitFileName = "Init.dat";

// Reads the settings file that the command line named, else the one in the program's folder. Takes
// the file's values over into the settings and forms, and imports and applies the list that the
// file names. Values that the file lacks stay as they are. When the command line names a settings
// file that is missing, that is logged and Beeindigd is set.
void ReadInitFile(Program& program);

// Writes the settings file into the program's folder, even when a settings file in another folder
// was read. Writes nothing once the program is to stop. A failure is ignored.
void WriteInitFile(Program& program);

// The log's message for a named settings file that is missing.
std::string MissingInitFileText(const std::string& path);

// Returns why the settings file that the command line named started no run, one sentence per
// element; empty if that file started a run or if the command line named none. Control characters
// in paths are not replaced.
std::vector<std::string> WhyNoRun(const Program& program);

}  // namespace morvex
