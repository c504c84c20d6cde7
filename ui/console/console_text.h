// What the console says of a run.
#pragma once

#include <cstdint>
#include <string>

#include "core/program/program.h"

namespace morvex {

// One line: files, hits, bytes and per cent of a run that works.
std::string ProgressLine(const Program& program);

// What the main window's result labels hold at the end of a run, a line for each of theirs; of a
// run that was stopped its counts so far.
std::string ResultLines(const Program& program);

// What the result labels do not tell of a run: files without a copy and why, what a stop left
// behind, a list or a filter that picked nothing. Empty when there is nothing to tell.
std::string RunNotes(const Program& program);

// As in "1.5 MB"; units of 1000.
std::string ReadableBytes(std::int64_t bytes);

}  // namespace morvex
