// The numbers of the three standard streams, which are nobody else's.
#pragma once

#include "host/system/standard_streams.h"

namespace morvex {

// Takes the numbers of those standard streams that the process was started without, before a file
// of the run gets one and finds the program's messages in it. Reading and writing there fails, as
// it does without. Before anything else is opened.
void OccupyMissingStandardStreams();

}  // namespace morvex
