// The command line of an unattended start: "-if" names a settings file, "-dy" a delay.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/program/program.h"

namespace morvex {

// Cuts the line at every " -". Element 0 is the marker "InitFile" or "NoInitFile"; the pieces
// follow. The first keeps its leading "-", every later one starts with the option's name.
std::vector<std::string> SplitCommandLine(std::string_view line);

// Takes the options out of the pieces; unknown ones are passed over, a later one of the same name
// wins. kTypeMismatch or kOverflow for a delay that is no 16-bit number: the program must then end.
ErrorNumber ApplyCommandLine(Program& program, const std::vector<std::string>& arguments);

// The pieces that ApplyCommandLine passes over, each with the hyphen that it had.
std::vector<std::string> IgnoredPieces(const std::vector<std::string>& arguments);

// `name` when there is such a file, else the file of that name in `folder` when there is one, else
// `name`.
std::string ResolveInitFilePath(const Program& program, const std::string& folder,
                                const std::string& name);

}  // namespace morvex
