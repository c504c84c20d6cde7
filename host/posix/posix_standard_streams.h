// Keeps files from getting the descriptor numbers of the three standard streams.
#pragma once

#include "host/system/standard_streams.h"

namespace morvex {

// Occupies the numbers of those standard streams that the process was started without. Otherwise a
// file of the run could get such a number and the program's messages would be written into it.
// Reading and writing there still fails. Call it before anything else is opened.
void OccupyMissingStandardStreams();

}  // namespace morvex
