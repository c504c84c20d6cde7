// What becomes of every file and folder of a run, told one by one to whoever listens: a report, a
// count by reason, an exit status. Without an observer nothing is collected.
#pragma once

#include <cstdint>
#include <string_view>

#include "core/host/error.h"

namespace morvex {

enum class OutcomeKind {
  kProcessed,   // its copy holds the list's right texts
  kCopied,      // unchanged: its extension is not selected
  kPassedOver,  // no copy, on purpose
  kFailed,      // no copy, for an error
  kStopped,     // a stop request or a full disk came first; a copy may be cut short
  kNotReached,  // the run ended before its turn came
};

enum class PassedOver {
  kNo,
  kOwnFile,           // the program's own, by its name
  kRecycleBin,        // the path holds the name of a recycle-bin, restore or system folder
  kChangedMeanwhile,  // after the run was armed
  kNameEnding,        // "cle"
  kTemporaryFile,     // the name is the temporary file's: an earlier run left it
  kTargetFolder,      // the target, which lies in the source
  kLoop,              // a link to a folder that the link lies in
  kBrokenLink,        // a link that leads to nothing
  kSpecialFile,       // a pipe, socket or device
  kLinkedTooOften,    // a folder that links have led to many times already
};

// What stands behind a failure, where its error number and path alone would not tell.
enum class FailureCause {
  kNone,
  kSourceFolder,    // no temporary file can be made or deleted there
  kTemporaryFile,   // it could not be written, or its name is taken
  kTarget,          // nothing can be put there
  kTargetIsSource,  // the copy would take the place of its own source
};

// Valid during the call alone.
struct Outcome {
  OutcomeKind kind = OutcomeKind::kProcessed;
  std::string_view path;  // in the source
  bool is_folder = false;
  PassedOver why = PassedOver::kNo;
  ErrorNumber error = ErrorNumber::kNone;  // of kFailed
  FailureCause cause = FailureCause::kNone;
  std::string_view error_path;  // of the file or folder that the error is about
  std::string_view leads_to;    // of kBrokenLink: the link's text, when the run has an observer
  std::int64_t bytes = 0;       // of the source file; of kStopped: those that its copy has
  std::int64_t hits = 0;
};

class RunObserver {
 public:
  virtual ~RunObserver() = default;
  // Each file once, as soon as it is done with; of folders only those that are passed over, failed
  // or not reached, without what lies in them. The program may not be changed.
  virtual void OnOutcome(const Outcome& outcome) = 0;
};

}  // namespace morvex
