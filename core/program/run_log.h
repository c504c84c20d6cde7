// The two append-only logs in the program's own folder: "Morvex.log" of the runs, "Debug.log" for
// diagnosis. Each record is one line, the time of day, a blank and the message between double
// quotes, ended by CR LF. A log is opened and closed for every record, so another program may read
// along.
//
// Errors while writing a log are ignored: a run must not fail for its log. Once the program is to
// stop no path can be made any more and nothing is written.
#pragma once

#include <string_view>

#include "core/program/program.h"

namespace morvex {

inline constexpr const char* kRunLogName = "Morvex.log";
inline constexpr const char* kDebugLogName = "Debug.log";

// Writes to the run log while logging is on. An empty message only makes the file when it is
// missing.
void gLog(const Program& program, std::string_view message);

// The same to the debug log, always.
void gDebug(const Program& program, std::string_view message);

}  // namespace morvex
