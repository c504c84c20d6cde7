// What a target folder holds beside the copies of a run. Copies of an earlier run, made with an
// earlier list, may hold names that this run took out.
#pragma once

#include <cstdint>
#include <string>

#include "core/program/program.h"

namespace morvex {

// Notes whether the folder holds anything, before the run puts its copies there.
void LookAtTarget(Program& program, const std::string& target);

// After the run: how many files in the folder and below are none of its copies. Goes through the
// folder only if it held something before. Nothing is noted when a stop request comes meanwhile.
void CountOtherFiles(Program& program, const std::string& target);

// What the person is told of it, in one sentence; empty when there is nothing to tell.
std::string OtherFilesNote(const RunState& run);

}  // namespace morvex
