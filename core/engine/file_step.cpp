#include "core/engine/file_step.h"

#include "core/engine/outcomes.h"
#include "core/engine/process_file.h"
#include "core/engine/progress.h"
#include "core/program/paths.h"

namespace morvex {
namespace {

KeepGoing UntilStopped(Program& program) {
  return [&program] {
    YieldToWindows(program);
    return !program.Beeindigd;
  };
}

// A stop request cuts the file short: what there is of it still reaches the target.
CopyResult DeliverAtStop(Program& program, const std::string& temporary, const std::string& target,
                         TemporaryAtStop at_stop) {
  FileService& files = program.host.files;
  const bool stays = at_stop == TemporaryAtStop::kStays;
  const ErrorNumber error =
      stays ? files.CopyFile(temporary, target, {}) : files.MoveFile(temporary, target, {});
  if (!stays && error != ErrorNumber::kNone) files.DeleteFile(temporary);
  if (error == ErrorNumber::kNone) program.run.cut_short = target;
  if (stays) program.run.left_temporary = temporary;
  return {CopyEnd::kStopped, error, target, PassedOver::kNo};
}

CopyResult Deliver(Program& program, const std::string& temporary, const std::string& target) {
  FileService& files = program.host.files;
  const ErrorNumber error = files.MoveFile(temporary, target, UntilStopped(program));
  if (error == ErrorNumber::kNone) return {CopyEnd::kCopied, error, "", PassedOver::kNo};
  if (program.Beeindigd) {
    program.run.left_temporary = temporary;
    return {CopyEnd::kStopped, error, target, PassedOver::kNo};
  }
  files.DeleteFile(temporary);
  return {CopyEnd::kFailed, error, target, PassedOver::kNo};
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

// A copy that fails is not logged: the log tells of the files that were to be processed.
void CopyUnchanged(Program& program, const std::string& path, const std::string& target,
                   std::int64_t bytes) {
  Outcome outcome;
  outcome.kind = OutcomeKind::kCopied;
  outcome.path = outcome.error_path = path;
  outcome.bytes = bytes;
  outcome.error = program.host.files.CopyFile(path, target, UntilStopped(program));
  if (outcome.error != ErrorNumber::kNone) {
    outcome.kind = program.Beeindigd ? OutcomeKind::kStopped : OutcomeKind::kFailed;
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
  ErrorNumber freed = ErrorNumber::kNone;
  if (left_over == LeftOver::kMayBe) freed = DeleteLeftOver(program, folder, name);
  ProcessResult result;
  if (freed == ErrorNumber::kNone) result = ProcessFile(program, name, folder, info);
  if (result.error == ErrorNumber::kFileAlreadyExists) {
    freed = DeleteLeftOver(program, folder, name);
    if (freed == ErrorNumber::kNone) result = ProcessFile(program, name, folder, info);
  }
  if (freed != ErrorNumber::kNone) return {CopyEnd::kFailed, freed, temporary, PassedOver::kNo};
  switch (result.end) {
    case ProcessEnd::kSkipped:
      return {CopyEnd::kPassedOver, ErrorNumber::kFileNotFound, source, result.why};
    case ProcessEnd::kFailed:
      return {CopyEnd::kFailed, result.error, result.path, PassedOver::kNo};
    case ProcessEnd::kProcessed:
    case ProcessEnd::kStopped:
      break;
  }
  FileService& files = program.host.files;
  if (!program.Beeindigd && files.MoveToFreeName(temporary, target) == ErrorNumber::kNone) {
    return {CopyEnd::kCopied, ErrorNumber::kNone, "", PassedOver::kNo};
  }
  const Result<bool> same = IsSameFile(program, info.value, target);
  if (!same || same.value) {
    files.DeleteFile(temporary);
    return {CopyEnd::kFailed, same ? ErrorNumber::kPathFileAccess : same.error, target,
            PassedOver::kNo};
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
    outcome.error_path = copy.path;
  }
  outcome.bytes = bytes;
  outcome.hits = hits;
  return outcome;
}

bool HandleFile(Program& program, const std::string& folder, const std::string& name,
                const std::string& target_folder, FolderPassKind pass, LeftOver left_over) {
  const bool selected = IsSelectedExtension(program, name, pass);
  if (program.Beeindigd) return false;
  const std::string target = JoinPath(program, target_folder, name);
  const Result<FileInfo> info = program.host.files.LookUpFile(JoinPath(program, folder, name));
  const std::string path = info ? info.value.path : JoinPath(program, folder, name);
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
    if (program.Beeindigd) return false;
    if (copy.end != CopyEnd::kCopied) return Report(program, copy, path);
    program.frmMorvex.lblFiles.caption = path;
    YieldToWindows(program);
  } else {
    CopyUnchanged(program, path, target, bytes);
  }
  ShowFileCounts(program, "Skipped: ");
  ShowHits(program, program.run.HitsTotal);
  ShowProgress(program, program.run.BytesTotal);
  YieldToWindows(program);
  return true;
}

}  // namespace morvex
