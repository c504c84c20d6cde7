// Random cases of the whole-run tests as a Windows program can be given them: names that Windows
// can hold, paths in its spelling; and what the program then writes, back in the spelling of the
// model.
#pragma once

#include <string>

#include "random_case.h"

namespace morvex::whole_run {

// The drive that shows the whole of the building machine's disk.
inline constexpr const char* kDrive = "Z:";

// The same case with other names where Windows has none such or takes two of them for one, in the
// tree and in the settings. Times are whole steps of 100 nanoseconds.
RandomCase ForWindows(RandomCase made);

// "/a/b" as "Z:\a\b"; a relative path without the drive.
std::string WindowsPath(const std::string& path);

// Settings bytes with their three paths so.
std::string WindowsSettings(const std::string& bytes);

// Text with all Windows paths in it as the model writes them.
std::string ModelText(std::string text);

// The same for the first three lines alone.
std::string ModelSettings(const std::string& bytes);

// The order in which the folders are listed: names in capital letters.
bool ComesBefore(const std::string& one, const std::string& other);

}  // namespace morvex::whole_run
