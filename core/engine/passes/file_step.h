// What a folder pass does with one file, and the making of a processed copy, which it shares with
// the single-file run.
#pragma once

#include <string>

#include "core/engine/passes/extension_filter.h"
#include "core/program/program.h"
#include "core/program/run_observer.h"

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
  PassedOver why = PassedOver::kNo;        // it was passed over
  FailureCause cause = FailureCause::kNone;
  std::int64_t written = 0;  // of kStopped: bytes that the target's copy has
};

// What becomes of the temporary file when a stop request cuts the file short. In every other case
// it is gone afterwards.
enum class TemporaryAtStop { kStays, kGoes };

// Whether the folder of a file may hold a temporary file that an earlier run left. Where it may,
// the left-over is deleted before the file is looked at; elsewhere when its name turns out to be
// taken.
enum class LeftOver { kMayBe, kNotListed };

// Processes the file `name` of `folder` and brings the result to the path `target`: whole, or after
// a stop request as far as it got. A target that is the source file itself is kPathFileAccess.
// `info` is what a look at the file just gave.
CopyResult MakeProcessedCopy(Program& program, const std::string& folder, const std::string& name,
                             const Result<FileInfo>& info, const std::string& target,
                             TemporaryAtStop at_stop, LeftOver left_over);

// The same as an outcome of the file at `path`; it points into `copy`.
Outcome OutcomeOf(const CopyResult& copy, std::string_view path, std::int64_t bytes,
                  std::int64_t hits);

// Handles the file `name` of `folder`; its copy goes into `target_folder`. Both are full paths. The
// outcome is noted. False when the pass must be left: Beeindigd is then set, by a stop request or
// because the disk is full.

bool HandleFile(Program& program, const std::string& folder, const std::string& name,
                const std::string& target_folder, FolderPassKind pass,
                LeftOver left_over = LeftOver::kMayBe);

}  // namespace morvex
