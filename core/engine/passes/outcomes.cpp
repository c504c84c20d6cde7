#include "core/engine/passes/outcomes.h"

#include "core/program/run_log.h"

namespace morvex {
namespace {

// A name that only the run itself makes, and folders that are no part of the source, are missed by
// nobody.
bool IsMissed(PassedOver why) {
  return why != PassedOver::kTemporaryFile && why != PassedOver::kTargetFolder &&
         why != PassedOver::kLoop;
}

}  // namespace

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
    if (run.failed_files++ == 0) {
      run.first_failure = {std::string(outcome.path), outcome.error, outcome.cause,
                           std::string(outcome.error_path)};
    }
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
    case PassedOver::kTemporaryFile:
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
    case FailureCause::kTemporaryFile:
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
  outcome.kind = OutcomeKind::kFailed;
  outcome.path = outcome.error_path = path;
  outcome.is_folder = true;
  outcome.error = error;
  NoteOutcome(program, outcome);
}

void LogError(const Program& program, const std::string& path, ErrorNumber error) {
  gLog(program, path);
  gLog(program, ErrorLine(error));
}

}  // namespace morvex
