// Which files are processed: those whose extension is an entry of the options window's list,
// selected.
#pragma once

#include <string>
#include <string_view>

#include "core/program/program.h"

namespace morvex {

// The two passes of a folder run look a name up under different keys.
enum class FolderPassKind {
  kPrepass,  // "." and the extension: the files that lie directly in the source folder
  kWalk,     // the last four characters of the name: the files of every sub-folder
};

// The characters after the first "." of the name; empty when there is none.
std::string_view FileExtension(std::string_view name);

// Comparison is exact, letter case included. With AllFilesSelected every file is.
bool IsSelectedExtension(const Program& program, std::string_view name, FolderPassKind pass);

}  // namespace morvex
