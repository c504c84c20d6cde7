// Decides which files a run processes: the files whose extension the run request names. All other
// files are copied unchanged.
#pragma once

#include <string>
#include <string_view>

#include "core/program/program.h"

namespace morvex {

// The two passes of a folder run compare different parts of a name with the extensions.
enum class FolderPassKind {
  kPrepass,  // "." and the extension: for files directly in the source folder
  kWalk,     // the last four bytes of the name: for files in sub-folders
};

// Returns what follows the first "." of the name; empty if it has no ".".
std::string_view FileExtension(std::string_view name);

// Whether the run processes a file of this name. The comparison is exact, letter case included.
bool IsSelectedExtension(const Program& program, std::string_view name, FolderPassKind pass);

}  // namespace morvex
