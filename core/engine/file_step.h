// What a folder pass does with one file, and the copying of a processed file that it shares with
// the single-file run.
#pragma once

#include <string>

#include "core/engine/extension_filter.h"
#include "core/engine/process_file.h"
#include "core/program/program.h"

namespace morvex {

enum class StepEnd {
  kCopied,
  kNotCopied,  // the error is logged; the pass goes on
  kStopped,    // a stop request: leave the pass at once
  kDiskFull,   // leave the pass; the run is over
};

// The pass goes on with the next file.
inline bool GoesOn(StepEnd end) { return end == StepEnd::kCopied || end == StepEnd::kNotCopied; }

// Handles the file `name` of `folder`; its copy goes into `target_folder`. Both are full paths.
StepEnd HandleFile(Program& program, const std::string& folder, const std::string& name,
                   const std::string& target_folder, FolderPassKind pass);

// Brings the result of ProcessFile to `target` and deletes the temporary file of `folder`, if any
// is left. `keep_temporary` leaves it where it is. Gives the error of the processing or of the
// copy.
ErrorNumber DeliverResult(Program& program, const ProcessResult& result, const std::string& folder,
                          const std::string& source, const std::string& target,
                          bool keep_temporary);

}  // namespace morvex
