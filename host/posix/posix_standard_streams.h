// Keeps files from getting the descriptor numbers of the three standard streams.
#pragma once

#include "host/system/standard_streams.h"

namespace morvex {

// Occupies the numbers of the standard streams that the process was started without. Otherwise a
// file of the run could get such a number, and the program's messages would be written into that
// file. Reading and writing such a stream still fails. Call this before anything else is opened.
void OccupyMissingStandardStreams();

}  // namespace morvex
