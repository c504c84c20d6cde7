// What the console says of a run.
#pragma once

#include <cstdint>
#include <string>

#include "core/program/program.h"

namespace morvex {

// Returns the progress of a run in one line: files, hits, bytes and per cent.
std::string ProgressLine(const Program& program);

// Returns the texts of the main window's result labels at the end of a run, line by line. For a run
// that was stopped, returns the counts up to the stop.
std::string ResultLines(const Program& program);

// Returns what the result labels do not say: which files have no copy and why, how many files in
// the target this run did not write, what a stopped run left behind, why nothing was anonymised.
// Returns an empty text when there is nothing to say.
std::string RunNotes(const Program& program);

// Returns a number of bytes as in "1.5 MB"; 1 kB is 1000 bytes.
std::string ReadableBytes(std::int64_t bytes);

}  // namespace morvex
