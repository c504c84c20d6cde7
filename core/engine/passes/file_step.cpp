#include "core/engine/passes/file_step.h"

#include <chrono>
#include <memory>
#include <utility>

#include "core/engine/passes/outcomes.h"
#include "core/engine/passes/progress.h"
#include "core/program/paths.h"

namespace morvex {
namespace {

// How long to wait for another run's work file: kMostWaits times kWait at most, about five seconds.
constexpr std::chrono::milliseconds kWait{15};
constexpr int kMostWaits = 333;

KeepGoing UntilStopped(Program& program) {
  return [&program] {
    YieldToWindows(program);
    return !program.Beeindigd;
  };
}

// Processes the file. First frees the work file's name: deletes a stale work file, and waits while
// another run uses the name.
Outcome ProcessInTurn(Program& program, const SourceFile& source, StaleWorkFile stale,
                      std::unique_ptr<WorkFile>& work) {
  bool name_is_taken = false;
  for (int waits = 0;; ++waits) {
    ErrorNumber freed = ErrorNumber::kNone;
    if (source.info && (name_is_taken || stale == StaleWorkFile::kListed)) {
      freed = DeleteStaleWorkFile(program, source, name_is_taken);
    }
    Outcome outcome = freed == ErrorNumber::kNone ? ProcessFile(program, source, work)
                                                  : WorkFileFailed(program, source, freed);
    name_is_taken = outcome.error == ErrorNumber::kFileAlreadyExists;
    const bool in_use = freed == ErrorNumber::kFileAlreadyOpen;
    if ((!name_is_taken && !in_use) || program.Beeindigd || waits == kMostWaits) return outcome;
    if (in_use) program.host.user.WaitForEvents(kWait);
  }
}

// Whether a copy at `target` would replace its own source. `taken`: false if a move to `target` has
// failed for another reason than a taken name.
Result<bool> IsOwnSource(const Program& program, const FileInfo& source, const std::string& target,
                         bool taken) {
  const Result<bool> same = IsSameFile(program, source, target);
  if (!same || same.value || !taken) return same;
  // The look-up did not find the source at `target`, but the name may be taken, and not every
  // look-up can be trusted. To keep the source safe, compare the names and the folders' identities,
  // too.
  if (NameIn(program, target) != source.name) return false;
  FileService& files = program.host.files;
  const Result<FolderInfo> target_folder = files.LookUpFolder(FolderOf(program, target));
  if (!target_folder) return target_folder.error;
  const Result<FolderInfo> source_folder = files.LookUpFolder(source.folder);
  if (!source_folder) return source_folder.error;
  return target_folder.value.identity == source_folder.value.identity;
}

// After a stop request: copies or moves to `target` what was written to the work file.
Outcome DeliverAtStop(Program& program, Outcome outcome, WorkFile& work, const std::string& target,
                      WorkFileAtStop at_stop) {
  const bool stays = at_stop == WorkFileAtStop::kStays;
  const Result<FileInfo> partial = program.host.files.LookUpFile(work.path());
  const ErrorNumber error = stays ? work.CopyTo(target) : work.MoveTo(target, {});
  if (!stays && error != ErrorNumber::kNone) DiscardWorkFile(program, work);
  if (error == ErrorNumber::kNone) program.run.cut_short = target;
  if (stays) program.run.left_work_file = work.path();
  outcome.kind = OutcomeKind::kStopped;
  const bool is_there = error == ErrorNumber::kNone && partial;
  outcome.bytes = is_there ? static_cast<std::int64_t>(partial.value.size) : 0;
  return outcome;
}

Outcome Deliver(Program& program, Outcome outcome, WorkFile& work, const std::string& target) {
  const ErrorNumber error = work.MoveTo(target, UntilStopped(program));
  if (error == ErrorNumber::kNone) return outcome;
  if (program.Beeindigd) {
    program.run.left_work_file = work.path();
    outcome.kind = OutcomeKind::kStopped;
    outcome.bytes = 0;
    return outcome;
  }
  DiscardWorkFile(program, work);
  return Failed(std::move(outcome), error, target, FailureCause::kTarget);
}

// Logs why a selected file has no copy. If the disk is full, logs nothing, ends the run and returns
// false.
bool LogMissingCopy(Program& program, const Outcome& outcome) {
  if (outcome.error == ErrorNumber::kDiskFull) {
    program.Beeindigd = true;
    program.run.disk_full = true;
    return false;
  }
  const bool passed_over = outcome.kind == OutcomeKind::kPassedOver;
  LogError(program, outcome.path, passed_over ? ErrorNumber::kFileNotFound : outcome.error);
  return true;
}

// BytesTotal already includes the whole file, but of a stopped file only the bytes of its copy
// count.
void CountStopped(Program& program, std::int64_t written) {
  program.run.BytesTotal = program.run.BytesBefore + written;
}

// Does not log a failure, because the log covers only files that were to be processed.
void CopyUnchanged(Program& program, const SourceFile& source, const std::string& target) {
  const std::string path = JoinPath(program, source.folder, source.name);
  Outcome outcome = OutcomeOf(source);
  outcome.kind = OutcomeKind::kCopied;
  const ErrorNumber error = program.host.files.CopyFile(path, target, UntilStopped(program));
  if (error != ErrorNumber::kNone && program.Beeindigd) {
    outcome.kind = OutcomeKind::kStopped;
    outcome.bytes = 0;
    CountStopped(program, 0);
  } else if (error != ErrorNumber::kNone) {
    const bool may_be_itself = source.info && error == ErrorNumber::kPathFileAccess;
    outcome = may_be_itself && IsSameFile(program, source.info.value, target).value
                  ? Failed(std::move(outcome), error, target, FailureCause::kTargetIsSource)
                  : Failed(std::move(outcome), error, source.path);
  }
  NoteOutcome(program, outcome);
  ++program.run.FilesSkipped;
}

}  // namespace

Outcome MakeProcessedCopy(Program& program, const SourceFile& source, const std::string& target,
                          WorkFileAtStop at_stop, StaleWorkFile stale) {
  std::unique_ptr<WorkFile> work;
  Outcome outcome = ProcessInTurn(program, source, stale, work);
  if (work == nullptr) return outcome;
  outcome.kind = OutcomeKind::kProcessed;
  bool taken = true;
  if (!program.Beeindigd) {
    const ErrorNumber moved = work->MoveToFreeName(target);
    if (moved == ErrorNumber::kNone) return outcome;
    taken = moved == ErrorNumber::kFileAlreadyExists;
  }
  const Result<bool> same = IsOwnSource(program, source.info.value, target, taken);
  if (!same || same.value) {
    DiscardWorkFile(program, *work);
    return same ? Failed(std::move(outcome), ErrorNumber::kPathFileAccess, target,
                         FailureCause::kTargetIsSource)
                : Failed(std::move(outcome), same.error, target, FailureCause::kTarget);
  }
  return program.Beeindigd ? DeliverAtStop(program, std::move(outcome), *work, target, at_stop)
                           : Deliver(program, std::move(outcome), *work, target);
}

bool HandleFile(Program& program, const std::string& folder, const std::string& name,
                const std::string& target_folder, FolderPassKind pass, StaleWorkFile stale) {
  const bool selected = IsSelectedExtension(program, name, pass);
  if (program.Beeindigd) return false;
  const std::string target = JoinPath(program, target_folder, name);
  const SourceFile source = LookUpSource(program, folder, name);
  RunState& run = program.run;
  run.BytesBefore = run.BytesTotal;
  run.FileOffset = 0;
  run.BytesTotal += OutcomeOf(source).bytes;

  if (selected) {
    ++run.FilesDone;
    run.Hits_Per_File = 0;
    Outcome outcome = MakeProcessedCopy(program, source, target, WorkFileAtStop::kStays, stale);
    outcome.hits = run.Hits_Per_File;
    NoteOutcome(program, outcome);
    if (outcome.kind == OutcomeKind::kStopped) CountStopped(program, outcome.bytes);
    if (program.Beeindigd) return false;
    if (outcome.kind != OutcomeKind::kProcessed && !LogMissingCopy(program, outcome)) return false;
    program.frmMorvex.lblFiles.caption = source.path;
    YieldToWindows(program);
  } else {
    CopyUnchanged(program, source, target);
  }
  ShowFileCounts(program, "Skipped: ");
  ShowHits(program, run.HitsTotal);
  ShowProgress(program, run.BytesTotal);
  YieldToWindows(program);
  return true;
}

}  // namespace morvex
