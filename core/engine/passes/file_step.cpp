#include "core/engine/passes/file_step.h"

#include <chrono>

#include "core/engine/passes/outcomes.h"
#include "core/engine/passes/process_file.h"
#include "core/engine/passes/progress.h"
#include "core/program/paths.h"

namespace morvex {
namespace {

// How long a temporary file of another run is waited for: about five seconds.
constexpr std::chrono::milliseconds kWait{15};
constexpr int kMostWaits = 333;

KeepGoing UntilStopped(Program& program) {
  return [&program] {
    YieldToWindows(program);
    return !program.Beeindigd;
  };
}

// Processes the file once the name of the temporary file is free: of what an earlier run left, or
// of another run's that works on the same source at this moment and is waited for.
ProcessResult ProcessInTurn(Program& program, const std::string& folder, const std::string& name,
                            const Result<FileInfo>& info, LeftOver left_over) {
  bool taken = false;
  for (int waits = 0;; ++waits) {
    ErrorNumber freed = ErrorNumber::kNone;
    if (info && (taken || left_over == LeftOver::kMayBe)) {
      freed = DeleteLeftOver(program, folder, info.value, taken);
    }
    const ProcessResult result =
        freed == ErrorNumber::kNone
            ? ProcessFile(program, name, folder, info)
            : TemporaryFailed(program, freed, TemporaryPath(program, folder));
    taken = result.error == ErrorNumber::kFileAlreadyExists;
    const bool in_use = freed == ErrorNumber::kFileAlreadyOpen;
    if ((!taken && !in_use) || program.Beeindigd || waits == kMostWaits) return result;
    if (in_use) program.host.user.WaitForEvents(kWait);
  }
}

// Whether a copy at `target`, a name that may be taken, would take the place of its own source.
Result<bool> IsOwnSource(const Program& program, const FileInfo& source, const std::string& target,
                         bool taken) {
  const Result<bool> same = IsSameFile(program, source, target);
  if (!same || same.value || !taken) return same;
  // Something is there that was not found: a link that leads nowhere, it seems. The source is not
  // staked on that.
  if (NameIn(program, target) != source.name) return false;
  FileService& files = program.host.files;
  const Result<FolderInfo> target_folder = files.LookUpFolder(FolderOf(program, target));
  if (!target_folder) return target_folder.error;
  const Result<FolderInfo> source_folder = files.LookUpFolder(source.folder);
  if (!source_folder) return source_folder.error;
  return target_folder.value.identity == source_folder.value.identity;
}

// A stop request cuts the file short: what there is of it still reaches the target.
CopyResult DeliverAtStop(Program& program, const std::string& temporary, const std::string& target,
                         TemporaryAtStop at_stop) {
  FileService& files = program.host.files;
  const bool stays = at_stop == TemporaryAtStop::kStays;
  const Result<FileInfo> partial = files.LookUpFile(temporary);
  const ErrorNumber error =
      stays ? files.CopyFile(temporary, target, {}) : files.MoveFile(temporary, target, {});
  if (!stays && error != ErrorNumber::kNone) DropTemporary(program, temporary);
  if (error == ErrorNumber::kNone) program.run.cut_short = target;
  if (stays) program.run.left_temporary = temporary;
  const bool is_there = error == ErrorNumber::kNone && partial;
  return {CopyEnd::kStopped,
          error,
          target,
          PassedOver::kNo,
          FailureCause::kNone,
          is_there ? static_cast<std::int64_t>(partial.value.size) : 0};
}

CopyResult Deliver(Program& program, const std::string& temporary, const std::string& target) {
  FileService& files = program.host.files;
  const ErrorNumber error = files.MoveFile(temporary, target, UntilStopped(program));
  if (error == ErrorNumber::kNone) return {CopyEnd::kCopied, error, "", PassedOver::kNo};
  if (program.Beeindigd) {
    program.run.left_temporary = temporary;
    return {CopyEnd::kStopped, error, target, PassedOver::kNo};
  }
  DropTemporary(program, temporary);
  return {CopyEnd::kFailed, error, target, PassedOver::kNo, FailureCause::kTarget};
}

// Logs a copy that failed or was passed over. False when the disk is full, which ends the run.
bool Report(Program& program, const CopyResult& copy, const std::string& path) {
  if (copy.error == ErrorNumber::kDiskFull) {
    program.Beeindigd = true;
    program.run.disk_full = true;
    return false;
  }
  LogError(program, path, copy.error);
  return true;
}

// The total has the whole file from its start; of one that was stopped it keeps what its copy has.
void CountStopped(Program& program, std::int64_t written) {
  program.run.BytesTotal = program.run.BytesBefore + written;
}

// A copy that fails is not logged: the log tells of the files that were to be processed.
void CopyUnchanged(Program& program, const std::string& path, const Result<FileInfo>& info,
                   const std::string& target, std::int64_t bytes) {
  Outcome outcome;
  outcome.kind = OutcomeKind::kCopied;
  outcome.path = outcome.error_path = path;
  outcome.bytes = bytes;
  outcome.error = program.host.files.CopyFile(path, target, UntilStopped(program));
  if (outcome.error != ErrorNumber::kNone && program.Beeindigd) {
    outcome.kind = OutcomeKind::kStopped;
    outcome.bytes = 0;
    CountStopped(program, 0);
  } else if (outcome.error != ErrorNumber::kNone) {
    outcome.kind = OutcomeKind::kFailed;
    const bool may_be_itself = info && outcome.error == ErrorNumber::kPathFileAccess;
    if (may_be_itself && IsSameFile(program, info.value, target).value) {
      outcome.cause = FailureCause::kTargetIsSource;
      outcome.error_path = target;
    }
  }
  NoteOutcome(program, outcome);
  ++program.run.FilesSkipped;
}

OutcomeKind KindOf(CopyEnd end) {
  switch (end) {
    case CopyEnd::kCopied:
      return OutcomeKind::kProcessed;
    case CopyEnd::kPassedOver:
      return OutcomeKind::kPassedOver;
    case CopyEnd::kFailed:
      return OutcomeKind::kFailed;
    case CopyEnd::kStopped:
      break;
  }
  return OutcomeKind::kStopped;
}

}  // namespace

CopyResult MakeProcessedCopy(Program& program, const std::string& folder, const std::string& name,
                             const Result<FileInfo>& info, const std::string& target,
                             TemporaryAtStop at_stop, LeftOver left_over) {
  const std::string source = JoinPath(program, folder, name);
  const std::string temporary = TemporaryPath(program, folder);
  const ProcessResult result = ProcessInTurn(program, folder, name, info, left_over);
  switch (result.end) {
    case ProcessEnd::kSkipped:
      return {CopyEnd::kPassedOver, ErrorNumber::kFileNotFound, source, result.why};
    case ProcessEnd::kFailed:
      return {CopyEnd::kFailed, result.error, result.path, PassedOver::kNo, result.cause};
    case ProcessEnd::kProcessed:
    case ProcessEnd::kStopped:
      break;
  }
  FileService& files = program.host.files;
  bool taken = true;
  if (!program.Beeindigd) {
    const ErrorNumber moved = files.MoveToFreeName(temporary, target);
    if (moved == ErrorNumber::kNone) {
      return {CopyEnd::kCopied, ErrorNumber::kNone, "", PassedOver::kNo};
    }
    taken = moved == ErrorNumber::kFileAlreadyExists;
  }
  const Result<bool> same = IsOwnSource(program, info.value, target, taken);
  if (!same || same.value) {
    DropTemporary(program, temporary);
    if (!same) {
      return {CopyEnd::kFailed, same.error, target, PassedOver::kNo, FailureCause::kTarget};
    }
    return {CopyEnd::kFailed, ErrorNumber::kPathFileAccess, target, PassedOver::kNo,
            FailureCause::kTargetIsSource};
  }
  return program.Beeindigd ? DeliverAtStop(program, temporary, target, at_stop)
                           : Deliver(program, temporary, target);
}

Outcome OutcomeOf(const CopyResult& copy, std::string_view path, std::int64_t bytes,
                  std::int64_t hits) {
  Outcome outcome;
  outcome.kind = KindOf(copy.end);
  outcome.path = path;
  outcome.why = copy.why;
  if (copy.end == CopyEnd::kFailed) {
    outcome.error = copy.error;
    outcome.cause = copy.cause;
    outcome.error_path = copy.path;
  }
  outcome.bytes = copy.end == CopyEnd::kStopped ? copy.written : bytes;
  outcome.hits = hits;
  return outcome;
}

bool HandleFile(Program& program, const std::string& folder, const std::string& name,
                const std::string& target_folder, FolderPassKind pass, LeftOver left_over) {
  const bool selected = IsSelectedExtension(program, name, pass);
  if (program.Beeindigd) return false;
  const std::string target = JoinPath(program, target_folder, name);
  const std::string source = JoinPath(program, folder, name);
  const Result<FileInfo> info = program.host.files.LookUpFile(source);
  // In a drive's root the separator is doubled.
  const std::string path = info ? info.value.path : FolderPathClean(program, source);
  program.run.BytesBefore = program.run.BytesTotal;
  program.run.FileOffset = 0;
  const std::int64_t bytes = info ? static_cast<std::int64_t>(info.value.size) : 0;
  program.run.BytesTotal += bytes;

  if (selected) {
    ++program.run.FilesDone;
    program.run.Hits_Per_File = 0;
    const CopyResult copy =
        MakeProcessedCopy(program, folder, name, info, target, TemporaryAtStop::kStays, left_over);
    NoteOutcome(program, OutcomeOf(copy, path, bytes, program.run.Hits_Per_File));
    if (copy.end == CopyEnd::kStopped) CountStopped(program, copy.written);
    if (program.Beeindigd) return false;
    if (copy.end != CopyEnd::kCopied && !Report(program, copy, path)) return false;
    program.frmMorvex.lblFiles.caption = path;
    YieldToWindows(program);
  } else {
    CopyUnchanged(program, path, info, target, bytes);
  }
  ShowFileCounts(program, "Skipped: ");
  ShowHits(program, program.run.HitsTotal);
  ShowProgress(program, program.run.BytesTotal);
  YieldToWindows(program);
  return true;
}

}  // namespace morvex
