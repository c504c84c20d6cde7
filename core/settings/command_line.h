// The command line of an unattended start: "-if" names a settings file, "-dy" a delay.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/program/program.h"

namespace morvex {

// Splits the line at every " -". Element 0 is a marker: "InitFile" if the line holds no " -", or
// begins with " -" or "-if"; else "NoInitFile". The pieces follow. The first piece keeps its
// leading "-"; every later piece starts with the option's name. If the line begins with " -", an
// additional first piece is the whole line.
std::vector<std::string> SplitCommandLine(std::string_view line);

// Applies the options to the settings. Unknown options are ignored; of two options with the same
// name the later one wins. Returns kTypeMismatch or kOverflow for a delay that is not a 16-bit
// number: the program must then end.
ErrorNumber ApplyCommandLine(Program& program, const std::vector<std::string>& arguments);

// The pieces that ApplyCommandLine ignores, each with the hyphen that it had.
std::vector<std::string> IgnoredPieces(const std::vector<std::string>& arguments);

// Returns `name` if it leads to a file; else the path of `name` in `folder`, if that leads to a
// file; else `name`.
std::string ResolveInitFilePath(const Program& program, const std::string& folder,
                                const std::string& name);

}  // namespace morvex
