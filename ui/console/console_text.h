// Texts as a terminal shows them.
#pragma once

#include <string>
#include <string_view>

#include "core/program/program.h"

namespace morvex {

// Control characters as \xHH, so that a file's name cannot steer the terminal or break its line:
// those of ASCII and those behind it, in UTF-8 or as single bytes. Other bytes stay.
std::string Printable(std::string_view text);

// The same for a text of two lines: the last CR LF becomes a line break. One before it is a name's.
std::string PrintableLines(std::string_view text);

// The progress of a run in one line: files, hits, bytes and per cent.
std::string ProgressLine(const Program& program);

// The texts of the main window's result labels at the end of a run, line by line. Of a run that was
// stopped, its counts so far.
std::string ResultLines(const Program& program);

// What the result labels do not say: files without a copy and why, what a stop left behind, a list
// or filter that selected nothing. Empty when there is nothing to say.
std::string RunNotes(const Program& program);

// As in "1.5 MB"; units of 1000.
std::string ReadableBytes(std::int64_t bytes);

}  // namespace morvex
