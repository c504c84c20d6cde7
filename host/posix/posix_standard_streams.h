// Standard input and output as files that are gone through once, from their first byte to their
// last; and the numbers of the three standard streams, which are nobody else's.
#pragma once

#include <memory>

#include "core/host/file_service.h"

namespace morvex {

// Each read starts where the last one ended (kInvalidCall otherwise) and waits until all that it
// asks for is there, or the end.
std::unique_ptr<InputFile> StandardInput();

// The same for writing. A reader that has gone away ends the process, as it does any filter.
std::unique_ptr<OutputFile> StandardOutput();

// Takes the numbers of those standard streams that the process was started without, before a file
// of the run gets one and finds the program's messages in it. Reading and writing there fails, as
// it does without. Before anything else is opened.
void OccupyMissingStandardStreams();

}  // namespace morvex
