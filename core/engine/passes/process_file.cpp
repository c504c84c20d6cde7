#include "core/engine/passes/process_file.h"

#include <memory>
#include <optional>
#include <vector>

#include "core/engine/passes/file_bytes.h"
#include "core/engine/passes/progress.h"
#include "core/engine/passes/run_engine.h"
#include "core/engine/passes/skip_rules.h"
#include "core/program/paths.h"
#include "core/program/run_log.h"

namespace morvex {
namespace {

// Keeps the counters, the labels and the window alive while a file is substituted.
class RunWatcher : public SubstitutionWatcher {
 public:
  explicit RunWatcher(Program& program) : program_(program) {}

  void OnHits(std::int64_t count) override {
    if (count == 0) return;
    any_hit_ = true;
    program_.run.Hits_Per_File += count;
    program_.run.HitsTotal += count;
    // The label shows the hits before the last one.
    hits_shown_ = program_.run.HitsTotal - 1;
  }

  bool KeepGoing(std::uint64_t read) override {
    program_.run.FileOffset = static_cast<std::int64_t>(read);
    if (any_hit_) ShowHits(program_, hits_shown_);
    ShowProgress(program_, program_.run.FileOffset + program_.run.BytesBefore);
    YieldToWindows(program_);
    return !program_.Beeindigd;
  }

  std::int64_t* HitsOfRows() override {
    if (program_.observer == nullptr) return nullptr;
    program_.run.hits_of_rows.resize(static_cast<std::size_t>(program_.tables.PairCount));
    return program_.run.hits_of_rows.data();
  }

 private:
  Program& program_;
  std::int64_t hits_shown_ = 0;
  bool any_hit_ = false;
};

ProcessResult Failed(ErrorNumber error, const std::string& path) {
  return {ProcessEnd::kFailed, error, path, PassedOver::kNo};
}

// Substitutes from the one open file into the other; `error` is that of either file.
SubstitutionEnd SubstituteFile(Program& program, InputFile& source, OutputFile& temporary,
                               ErrorNumber& error) {
  RunEngine& engine = EngineOf(program);
  FileSource from(source);
  FileSink to(temporary);
  engine.input.Open(from);
  engine.output.Open(to);
  RunWatcher watcher(program);
  const SubstitutionEnd end =
      engine.substitution.Run(engine.input, engine.output, program.capture, watcher);
  error = engine.output.Finish();
  if (end == SubstitutionEnd::kReadFailed) error = engine.substitution.read_error();
  return end;
}

}  // namespace

std::string TemporaryPath(const Program& program, const std::string& folder) {
  return Normaliseer(program, JoinPath(program, folder, kTemporaryName));
}

ProcessResult TemporaryFailed(const Program& program, ErrorNumber error,
                              const std::string& temporary) {
  if (error == ErrorNumber::kPermissionDenied) {
    return {ProcessEnd::kFailed, error, FolderOf(program, temporary), PassedOver::kNo,
            FailureCause::kSourceFolder};
  }
  return {ProcessEnd::kFailed, error, temporary, PassedOver::kNo, FailureCause::kTemporaryFile};
}

ErrorNumber DeleteLeftOver(Program& program, const std::string& folder, const FileInfo& source,
                           bool taken) {
  FileService& files = program.host.files;
  const std::string temporary = TemporaryPath(program, folder);
  if (IsTemporaryName(program, source.name)) return ErrorNumber::kPathFileAccess;
  const Result<FileInfo> found = files.LookUpFile(temporary);
  if (found.error == ErrorNumber::kFileNotFound) {
    if (!taken) return ErrorNumber::kNone;
  } else if (!found) {
    return found.error;
  } else if (found.value.identity == source.identity) {
    return ErrorNumber::kPathFileAccess;
  }
  const ErrorNumber error = files.DeleteFile(temporary);
  if (error != ErrorNumber::kNone && error != ErrorNumber::kFileNotFound) return error;
  if (program.run.left_temporary == temporary) program.run.left_temporary.clear();
  return ErrorNumber::kNone;
}

void DropTemporary(Program& program, const std::string& temporary) {
  if (program.host.files.DeleteFile(temporary) != ErrorNumber::kNone) {
    program.run.left_temporary = temporary;
  }
}

ProcessResult ProcessFile(Program& program, const std::string& name, const std::string& folder) {
  return ProcessFile(program, name, folder,
                     program.host.files.LookUpFile(JoinPath(program, folder, name)));
}

ProcessResult ProcessFile(Program& program, const std::string& name, const std::string& folder,
                          const Result<FileInfo>& source) {
  FileService& files = program.host.files;
  const SkipDecision skip = DecideSkip(
      program, name, folder, source ? std::optional(source.value.modified) : std::nullopt);
  if (skip.counted) {
    gLog(program, "SKIP " + name);
    ++program.run.FilesSkipped;
  }
  if (skip.why != PassedOver::kNo) return {ProcessEnd::kSkipped, ErrorNumber::kNone, "", skip.why};
  if (!source) {
    return Failed(source.error, FolderPathClean(program, JoinPath(program, folder, name)));
  }
  program.frmMorvex.lblFiles.caption = source.value.path;
  YieldToWindows(program);

  const std::string source_path = Normaliseer(program, JoinPath(program, folder, name));
  const std::string temporary_path = TemporaryPath(program, folder);
  const Result<std::unique_ptr<InputFile>> input = files.OpenForReading(source_path);
  if (!input) return Failed(input.error, source.value.path);
  const Result<std::unique_ptr<OutputFile>> output =
      files.CreateFile(temporary_path, source.value.permissions);
  if (!output) return TemporaryFailed(program, output.error, temporary_path);

  const std::int64_t hits_before = program.run.Hits_Per_File;
  const std::vector<std::int64_t> hits_of_rows_before = program.run.hits_of_rows;
  ErrorNumber error = ErrorNumber::kNone;
  const SubstitutionEnd end = SubstituteFile(program, *input.value, *output.value, error);
  if (end == SubstitutionEnd::kNoProgress) program.Beeindigd = true;
  const bool stopped = error == ErrorNumber::kNone && end != SubstitutionEnd::kWholeFile;
  if (stopped) return {ProcessEnd::kStopped, ErrorNumber::kNone, "", PassedOver::kNo};
  const Result<bool> changed = input.value->HasChanged();
  if (error != ErrorNumber::kNone || !changed || changed.value) {
    // A copy that comes to nothing has no replacements.
    program.run.HitsTotal -= program.run.Hits_Per_File - hits_before;
    program.run.Hits_Per_File = hits_before;
    program.run.hits_of_rows = hits_of_rows_before;
    DropTemporary(program, temporary_path);
    const bool of_output = error != ErrorNumber::kNone && end != SubstitutionEnd::kReadFailed;
    if (error == ErrorNumber::kNone) error = changed.error;
    if (error == ErrorNumber::kNone) {
      return {ProcessEnd::kSkipped, error, "", PassedOver::kChangedMeanwhile};
    }
    if (!of_output) return Failed(error, source.value.path);
    return {ProcessEnd::kFailed, error, temporary_path, PassedOver::kNo,
            FailureCause::kTemporaryFile};
  }

  ShowFileCounts(program, "Sipped: ");
  ShowHits(program, program.run.HitsTotal);
  gLog(program, source.value.path + "  ----  Hits: " + std::to_string(program.run.Hits_Per_File));
  YieldToWindows(program);
  return {ProcessEnd::kProcessed, ErrorNumber::kNone, "", PassedOver::kNo};
}

}  // namespace morvex
