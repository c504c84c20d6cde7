// Which files are never processed, although their extension is selected.
#pragma once

#include <optional>
#include <string>

#include "core/program/program.h"
#include "core/program/run_observer.h"

namespace morvex {

// Returns why the file is passed over; kNo if it is processed. These are passed over: the program's
// own files; files in recycle-bin and restore folders; files modified since the run was armed (not
// tested if `modified` is empty); files whose name ends in "cle". Folders are recognised in any
// letter case, the names of files only in exact letter case. `folder` is the full path of the
// file's folder.
PassedOver WhyPassedOver(const Program& program, const std::string& name, const std::string& folder,
                         const std::optional<WallTime>& modified);

}  // namespace morvex
