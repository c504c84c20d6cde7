// Texts as a terminal shows them.
#pragma once

#include <string>
#include <string_view>

#include "core/program/program.h"

namespace morvex {

// Control characters as \xHH, so that a file's name cannot steer the terminal. CR LF becomes a line
// break; other bytes stay.
std::string Printable(std::string_view text);

// One line: files, hits, bytes and per cent of a run that works.
std::string ProgressLine(const Program& program);

// What the main window's result labels hold at the end of a run, a line for each of theirs.
std::string ResultLines(const Program& program);

// Of a run: how many files have no copy, and why the first; empty when there is nothing to tell.
std::string FailureLines(const Program& program);

// As in "1.5 MB"; units of 1000.
std::string ReadableBytes(std::int64_t bytes);

}  // namespace morvex
