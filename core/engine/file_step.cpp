#include "core/engine/file_step.h"

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

// The same file under another name, or through a link.
bool IsSameFile(const Program& program, const std::string& source, const std::string& target) {
  const Result<FileInfo> source_info = program.host.files.LookUpFile(source);
  const Result<FileInfo> target_info = program.host.files.LookUpFile(target);
  return source_info && target_info && source_info.value.identity == target_info.value.identity;
}

ProcessResult ProcessSelected(Program& program, const std::string& name,
                              const std::string& folder) {
  ++program.run.FilesDone;
  program.run.Hits_Per_File = 0;
  const ErrorNumber left_over = DeleteLeftOver(program, folder);
  if (left_over != ErrorNumber::kNone) return {ProcessEnd::kFailed, left_over};
  return ProcessFile(program, name, folder);
}

StepEnd CopyProcessed(Program& program, const std::string& folder, const std::string& name,
                      const std::string& path, const std::string& target) {
  const ProcessResult result = ProcessSelected(program, name, folder);
  const bool stopped = program.Beeindigd;
  const ErrorNumber error = DeliverResult(program, result, folder, path, target, stopped);
  if (stopped || program.Beeindigd) return StepEnd::kStopped;
  if (result.end == ProcessEnd::kSkipped) {
    ++program.run.passed_over_files;
  } else if (error != ErrorNumber::kNone) {
    CountFailure(program, path, error);
  }
  if (error == ErrorNumber::kDiskFull) return StepEnd::kDiskFull;
  if (error != ErrorNumber::kNone) {
    LogError(program, path, error);
    return StepEnd::kNotCopied;
  }
  program.frmMorvex.lblFiles.caption = path;
  YieldToWindows(program);
  return StepEnd::kCopied;
}

// A copy that fails is not logged: the log tells of the files that were to be processed.
void CopyUnchanged(Program& program, const std::string& path, const std::string& target) {
  const ErrorNumber error = program.host.files.CopyFile(path, target, UntilStopped(program));
  if (error != ErrorNumber::kNone && !program.Beeindigd) CountFailure(program, path, error);
  ++program.run.FilesSkipped;
}

}  // namespace

ErrorNumber DeliverResult(Program& program, const ProcessResult& result, const std::string& folder,
                          const std::string& source, const std::string& target,
                          bool keep_temporary) {
  if (result.error != ErrorNumber::kNone) return result.error;
  FileService& files = program.host.files;
  const std::string temporary = JoinPath(program, folder, kTemporaryName);
  ErrorNumber error = ErrorNumber::kNone;
  if (IsSameFile(program, source, target)) {
    error = ErrorNumber::kPathFileAccess;
  } else if (keep_temporary) {
    error = files.CopyFile(temporary, target, {});
  } else {
    error = files.MoveFile(temporary, target, UntilStopped(program));
  }
  if (error != ErrorNumber::kNone && !keep_temporary) files.DeleteFile(temporary);
  return error;
}

StepEnd HandleFile(Program& program, const std::string& folder, const std::string& name,
                   const std::string& target_folder, FolderPassKind pass) {
  const bool selected = IsSelectedExtension(program, name, pass);
  if (program.Beeindigd) return StepEnd::kStopped;
  const std::string target = JoinPath(program, target_folder, name);
  const Result<FileInfo> info = program.host.files.LookUpFile(JoinPath(program, folder, name));
  const std::string path = info ? info.value.path : JoinPath(program, folder, name);
  program.run.BytesBefore = program.run.BytesTotal;
  program.run.FileOffset = 0;
  if (info) program.run.BytesTotal += static_cast<std::int64_t>(info.value.size);

  if (selected) {
    const StepEnd end = CopyProcessed(program, folder, name, path, target);
    if (end != StepEnd::kCopied) return end;
  } else {
    CopyUnchanged(program, path, target);
  }
  ShowFileCounts(program, "Skipped: ");
  ShowHits(program, program.run.HitsTotal);
  ShowProgress(program, program.run.BytesTotal);
  YieldToWindows(program);
  return StepEnd::kCopied;
}

}  // namespace morvex
