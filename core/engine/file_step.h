// What a folder pass does with one file, and the making of a processed copy, which it shares with
// the single-file run.
#pragma once

#include <string>

#include "core/engine/extension_filter.h"
#include "core/program/program.h"

namespace morvex {

// How the copy of a selected file came out.
enum class CopyEnd {
  kCopied,
  kPassedOver,  // a skip rule: the file gets no copy
  kFailed,
  kStopped,  // the target may hold a copy that is cut short
};

struct CopyResult {
  CopyEnd end = CopyEnd::kCopied;
  ErrorNumber error = ErrorNumber::kNone;  // of the copy; kFileNotFound for a file passed over
  std::string path;                        // of the file that the error is about
};

// What becomes of the temporary file when a stop request cuts the file short. In every other case
// it is gone afterwards.
enum class TemporaryAtStop { kStays, kGoes };

// Processes the file `name` of `folder` and brings the result to the path `target`: whole, or after
// a stop request as far as it got. A target that is the source file itself is kPathFileAccess.
CopyResult MakeProcessedCopy(Program& program, const std::string& folder, const std::string& name,
                             const std::string& target, TemporaryAtStop at_stop);

// Handles the file `name` of `folder`; its copy goes into `target_folder`. Both are full paths.
// False when the pass must be left: Beeindigd is then set, by a stop request or because the disk is
// full.
bool HandleFile(Program& program, const std::string& folder, const std::string& name,
                const std::string& target_folder, FolderPassKind pass);

}  // namespace morvex
