// Adapts the random cases of the whole-run tests to a Windows program: names that Windows can hold,
// and paths as Windows spells them. Paths that the program writes are changed back to paths as the
// model of the whole-run tests writes them.
#pragma once

#include <string>

#include "random_case.h"

namespace morvex::whole_run {

// The drive on which Wine shows this machine's whole disk.
inline constexpr const char* kDrive = "Z:";

// Returns the case with names that Windows can hold, in the tree and in the settings. If several
// entries have names that differ only in letter case, only the first entry remains. Times become
// whole steps of 100 nanoseconds.
RandomCase ForWindows(RandomCase made);

// Returns "/a/b" as "Z:\a\b"; a relative path gets no drive.
std::string WindowsPath(const std::string& path);

// Returns settings bytes with their three paths as Windows paths.
std::string WindowsSettings(const std::string& bytes);

// Returns text with all Windows paths as the model writes them.
std::string ModelText(std::string text);

// Returns settings bytes with their three paths as the model writes them.
std::string ModelSettings(const std::string& bytes);

// Returns whether Windows lists the name `one` before `other`. Windows compares the names in
// capital letters.
bool ComesBefore(const std::string& one, const std::string& other);

}  // namespace morvex::whole_run
