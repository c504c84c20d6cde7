#include "core/engine/outcomes.h"

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
  if (outcome.kind == OutcomeKind::kPassedOver && IsMissed(outcome.why)) {
    ++(outcome.is_folder ? run.left_out_folders : run.passed_over_files);
    if (!outcome.is_folder) ++run.passed_over_by_reason[outcome.why];
  }
  if (outcome.kind == OutcomeKind::kFailed) {
    if (run.failed_files++ == 0) {
      run.first_failure = {std::string(outcome.error_path), outcome.error};
    }
    ++run.failed_by_error[outcome.error];
  }
  if (program.observer != nullptr) program.observer->OnOutcome(outcome);
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
