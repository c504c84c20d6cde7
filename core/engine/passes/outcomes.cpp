#include "core/engine/passes/outcomes.h"

#include <utility>

#include "core/program/run_log.h"

namespace morvex {
namespace {

// Whether somebody may miss the file or folder in the target. Nobody misses a stale work file, the
// target folder, or a folder that a link leads back to.
bool IsMissed(PassedOver why) {
  return why != PassedOver::kStaleWorkFile && why != PassedOver::kTargetFolder &&
         why != PassedOver::kLoop;
}

}  // namespace

Outcome Failed(Outcome outcome, ErrorNumber error, const std::string& error_path,
               FailureCause cause) {
  outcome.kind = OutcomeKind::kFailed;
  outcome.error = error;
  outcome.error_path = error_path;
  outcome.cause = cause;
  return outcome;
}

Outcome PassedOverFor(Outcome outcome, PassedOver why) {
  outcome.kind = OutcomeKind::kPassedOver;
  outcome.why = why;
  return outcome;
}

void NoteOutcome(Program& program, const Outcome& outcome) {
  RunState& run = program.run;
  if (outcome.kind == OutcomeKind::kProcessed || outcome.kind == OutcomeKind::kCopied) {
    ++run.copies;
  }
  if (outcome.kind == OutcomeKind::kPassedOver) {
    if (IsMissed(outcome.why)) ++(outcome.is_folder ? run.left_out_folders : run.passed_over_files);
    ++(outcome.is_folder ? run.left_out_by_reason : run.passed_over_by_reason)[outcome.why];
  }
  if (outcome.kind == OutcomeKind::kFailed) {
    if (run.failed_files++ == 0) run.first_failure = outcome;
    ++run.failed_by_error[outcome.error];
  }
  if (program.observer != nullptr) program.observer->OnOutcome(outcome);
}

std::string_view ReasonText(PassedOver why) {
  switch (why) {
    case PassedOver::kNo:
      break;
    case PassedOver::kOwnFile:
      return "a file of the program's own, by its name";
    case PassedOver::kRecycleBin:
      return "a recycle-bin, restore or system folder, by its path or the target's";
    case PassedOver::kChangedMeanwhile:
      return "changed after the run started";
    case PassedOver::kNameEnding:
      return "the name ends in \"cle\"";
    case PassedOver::kStaleWorkFile:
      return "the temporary file of an earlier run, by its name";
    case PassedOver::kTargetFolder:
      return "the target folder";
    case PassedOver::kLoop:
      return "a link to a folder that it lies in";
    case PassedOver::kBrokenLink:
      return "a link that leads nowhere";
    case PassedOver::kSpecialFile:
      return "a pipe, socket or device";
    case PassedOver::kLinkedTooOften:
      return "a folder that links had led to a thousand times";
  }
  return "";
}

std::string_view CauseText(FailureCause cause) {
  switch (cause) {
    case FailureCause::kNone:
      break;
    case FailureCause::kSourceFolder:
      return "the source folder must be writable";
    case FailureCause::kWorkFile:
      return "the temporary file beside it";
    case FailureCause::kTarget:
      return "no copy could be made at";
    case FailureCause::kTargetIsSource:
      return "the target is the source";
  }
  return "";
}

void NoteFailedFolder(Program& program, const std::string& path, ErrorNumber error) {
  Outcome outcome;
  outcome.path = path;
  outcome.is_folder = true;
  NoteOutcome(program, Failed(std::move(outcome), error, path));
}

void LogError(const Program& program, const std::string& path, ErrorNumber error) {
  gLog(program, path);
  gLog(program, ErrorLine(error));
}

}  // namespace morvex
