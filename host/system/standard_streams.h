// Standard input and output as files that are read or written once, from the first byte to the
// last.
#pragma once

#include <memory>

#include "core/host/file_service.h"

namespace morvex {

// Each read must start where the last one ended (otherwise kInvalidCall). A read returns the bytes
// that are available and blocks only if there are none. Do not read again after the end, because a
// terminal reports its end only once.
std::unique_ptr<InputFile> StandardInput();

// Each write must start where the last one ended. If the reader has closed the stream, a write ends
// the process on systems where that is usual for filters; on other systems the write fails.
std::unique_ptr<OutputFile> StandardOutput();

}  // namespace morvex
