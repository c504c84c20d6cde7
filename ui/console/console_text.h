// What the console says of a run.
#pragma once

#include <cstdint>
#include <string>

#include "core/program/program.h"

namespace morvex {

// The progress of a run in one line: files, hits, bytes and per cent.
std::string ProgressLine(const Program& program);

// The texts of the main window's result labels at the end of a run, line by line. For a run that
// was stopped, its counts so far.
std::string ResultLines(const Program& program);

// What the result labels do not say: files without a copy and why, what a stop left behind, a list
// or filter that selected nothing. Empty when there is nothing to say.
std::string RunNotes(const Program& program);

// As in "1.5 MB"; units of 1000.
std::string ReadableBytes(std::int64_t bytes);

}  // namespace morvex
