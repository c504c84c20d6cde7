// Which files are never processed, although their extension is selected.
#pragma once

#include <optional>
#include <string>

#include "core/program/program.h"
#include "core/program/run_observer.h"

namespace morvex {

struct SkipDecision {
  PassedOver why = PassedOver::kNo;  // kNo: the file is processed
  bool counted = false;              // logged as "SKIP " and the name, and counted in FilesSkipped
  bool operator==(const SkipDecision&) const = default;
};

// Never processed: the program's own files, files in recycle-bin and restore folders, files that
// changed after the run was armed (`modified`; without it that test is passed over), names that end
// in "cle". Comparisons are exact, letter case included; `folder` is the full path of the file's
// folder.
SkipDecision DecideSkip(const Program& program, const std::string& name, const std::string& folder,
                        const std::optional<WallTime>& modified);

}  // namespace morvex
