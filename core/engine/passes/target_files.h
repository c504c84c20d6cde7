// What a target folder contains besides the copies of a run. Copies from an earlier run, made with
// an earlier list, may contain texts that this run replaced in its own copies.
#pragma once

#include <cstdint>
#include <string>

#include "core/program/program.h"

namespace morvex {

// Notes whether the folder is empty. Call it before the run.
void LookAtTarget(Program& program, const std::string& target);

// Notes how many files in the folder and below are not copies of this run. Call it after the run.
// Does not search a folder that was empty before the run. Notes nothing if a stop request comes
// meanwhile.
void CountOtherFiles(Program& program, const std::string& target);

// Returns one sentence for the user about the files that are not of this run; empty if there are
// none.
std::string OtherFilesNote(const RunState& run);

}  // namespace morvex
