// Standard input and output as files that are gone through once, from their first byte to their
// last.
#pragma once

#include <memory>

#include "core/host/file_service.h"

namespace morvex {

// Each read starts where the last one ended (kInvalidCall otherwise), gives what is there, and
// waits only when that is nothing. The end is asked for once: a terminal gives it for one key.
std::unique_ptr<InputFile> StandardInput();

// The same for writing. A reader that has gone away ends the process where it does so with any
// filter, and fails the call elsewhere.
std::unique_ptr<OutputFile> StandardOutput();

}  // namespace morvex
