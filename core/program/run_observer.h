// The outcome of each file and folder of a run, and the observer that is told of every outcome, for
// example a report. Without an observer only the counts and the first failure are kept, in
// RunState.
#pragma once

#include <cstdint>
#include <string>

#include "core/host/error.h"

namespace morvex {

enum class OutcomeKind {
  kProcessed,   // its copy was made with the list
  kCopied,      // its copy is unchanged: its extension is not selected
  kPassedOver,  // no copy, on purpose
  kFailed,      // no copy, because of an error
  kStopped,     // the run was stopped meanwhile; the copy may be cut short or missing
  kNotReached,  // the run ended before reaching it
};

enum class PassedOver {
  kNo,
  kOwnFile,           // a file of the program itself, by its name
  kRecycleBin,        // in a recycle-bin, restore or system folder, by its path or the target's
  kChangedMeanwhile,  // modified after the run was armed
  kNameEnding,        // the name ends in "cle"
  kStaleWorkFile,     // the work file of an earlier run, by its name
  kTargetFolder,      // the target, which lies in the source
  kLoop,              // a link to a folder that contains the link
  kBrokenLink,        // a link to nothing
  kSpecialFile,       // a pipe, socket or device
  kLinkedTooOften,    // a folder that many links have led to already
};

// Explains a failure that its error number and path alone do not explain.
enum class FailureCause {
  kNone,
  kSourceFolder,    // no work file can be created or deleted in the source's folder
  kWorkFile,        // the work file could not be written, or its name is taken
  kTarget,          // no copy can be put into the target
  kTargetIsSource,  // the copy would take the place of its own source
};

// What became of one file or folder of the source. Each step that a file goes through adds to the
// file's outcome; at last the outcome is counted and passed to the observer.
struct Outcome {
  OutcomeKind kind = OutcomeKind::kProcessed;
  std::string path;  // in the source; the target folder's if that is missing
  bool is_folder = false;
  PassedOver why = PassedOver::kNo;        // only for kPassedOver
  ErrorNumber error = ErrorNumber::kNone;  // this and the next two: only for kFailed
  FailureCause cause = FailureCause::kNone;
  std::string error_path;  // the file or folder that the error is about
  std::string leads_to;    // only for kBrokenLink: the link's text, if the run has an observer
  std::int64_t bytes = 0;  // size of the source file; for kStopped, of its copy in the target
  std::int64_t hits = 0;
};

class RunObserver {
 public:
  virtual ~RunObserver() = default;
  // Called once for each file, when its outcome is known. Called for a folder only if it was passed
  // over, failed or not reached; from then on it is not called for the folder's contents. Must not
  // change the program.
  virtual void OnOutcome(const Outcome& outcome) = 0;
};

}  // namespace morvex
