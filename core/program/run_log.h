// The two logs in the program's own folder: "Morvex.log" of the runs, "Debug.log" for diagnosis.
// Each record is one line: time of day, a blank and the message, all in double quotes, ended by CR
// LF. A log is opened and closed for every record, so that other programs can read it meanwhile.
//
// Errors are ignored: a run must not fail because of its log. Once the program is to stop, nothing
// is written, because Normaliseer returns no path.
#pragma once

#include <string_view>

#include "core/program/program.h"

namespace morvex {

inline constexpr const char* kRunLogName = "Morvex.log";
inline constexpr const char* kDebugLogName = "Debug.log";

// Writes a record to the run log, if logging is on. An empty message writes no record but creates a
// missing file.
void gLog(const Program& program, std::string_view message);

// Writes a record to the debug log as gLog does, but whether logging is on or not.
void gDebug(const Program& program, std::string_view message);

}  // namespace morvex
