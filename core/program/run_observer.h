// The interface through which a run reports the outcome of every file, as it happens: for a report.
#pragma once

#include <cstdint>
#include <string_view>

#include "core/host/error.h"

namespace morvex {

enum class OutcomeKind {
  kProcessed,   // its copy was made with the list
  kCopied,      // unchanged: its extension is not selected
  kPassedOver,  // no copy, on purpose
  kFailed,      // no copy, because of an error
  kStopped,     // a stop request or a full disk interrupted it; the copy may be cut short
  kNotReached,  // the run ended before
};

enum class PassedOver {
  kNo,
  kOwnFile,           // one of the program's own, by its name
  kRecycleBin,        // the path contains the name of a recycle-bin, restore or system folder
  kChangedMeanwhile,  // modified after the run was armed
  kNameEnding,        // the name ends in "cle"
  kTemporaryFile,     // a stale work file, by its name
  kTargetFolder,      // the target, which lies in the source
  kLoop,              // a link to a folder that contains the link
  kBrokenLink,        // a link to nothing
  kSpecialFile,       // a pipe, socket or device
  kLinkedTooOften,    // a folder that many links have led to already
};

// Explains a failure that its error number and path alone do not explain.
enum class FailureCause {
  kNone,
  kSourceFolder,    // the work file cannot be made or deleted there
  kTemporaryFile,   // the work file cannot be written, or its name is taken
  kTarget,          // no copy can be put there
  kTargetIsSource,  // the copy would replace its own source
};

// Valid only during the call of OnOutcome.
struct Outcome {
  OutcomeKind kind = OutcomeKind::kProcessed;
  std::string_view path;  // in the source
  bool is_folder = false;
  PassedOver why = PassedOver::kNo;
  ErrorNumber error = ErrorNumber::kNone;  // of kFailed
  FailureCause cause = FailureCause::kNone;
  std::string_view error_path;  // the file or folder that caused the error
  std::string_view leads_to;    // of kBrokenLink: the link's text
  std::int64_t bytes = 0;       // of the source file; of kStopped: of the copy
  std::int64_t hits = 0;
};

class RunObserver {
 public:
  virtual ~RunObserver() = default;
  // Called once for each file, as soon as its outcome is known, and for folders that are passed
  // over, failed or not reached, but not for the files in them. Must not change the program.
  virtual void OnOutcome(const Outcome& outcome) = 0;
};

}  // namespace morvex
