#include "core/engine/passes/process_file.h"

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "core/engine/passes/file_bytes.h"
#include "core/engine/passes/outcomes.h"
#include "core/engine/passes/progress.h"
#include "core/engine/passes/run_engine.h"
#include "core/engine/passes/skip_rules.h"
#include "core/program/paths.h"
#include "core/program/run_log.h"

namespace morvex {
namespace {

// Updates the counters and labels, and handles window events, while a file is substituted.
class RunWatcher : public SubstitutionWatcher {
 public:
  explicit RunWatcher(Program& program) : program_(program) {}

  void OnHits(std::int64_t count) override {
    if (count == 0) return;
    any_hit_ = true;
    program_.run.Hits_Per_File += count;
    program_.run.HitsTotal += count;
    // While a file is substituted, the label shows one hit less than there are.
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

// Writes the result of substituting the bytes of `source` to `work` and closes `work`. Sets `error`
// to the error of reading `source` or of writing `work`, or to kNone.
SubstitutionEnd SubstituteFile(Program& program, InputFile& source, OutputFile& work,
                               ErrorNumber& error) {
  RunEngine& engine = EngineOf(program);
  FileSource from(source);
  FileSink to(work);
  engine.input.Open(from);
  engine.output.Open(to);
  RunWatcher watcher(program);
  const SubstitutionEnd end =
      engine.substitution.Run(engine.input, engine.output, program.capture, watcher);
  error = engine.output.Finish();
  if (end == SubstitutionEnd::kReadFailed) error = engine.substitution.read_error();
  return end;
}

// Remembers the counts of replacements before a file. If the file's copy comes to nothing, Restore
// takes the file's replacements out of the counts.
class HitsBefore {
 public:
  explicit HitsBefore(const RunState& run)
      : per_file_(run.Hits_Per_File), of_rows_(run.hits_of_rows) {}

  void Restore(RunState& run) {
    run.HitsTotal -= run.Hits_Per_File - per_file_;
    run.Hits_Per_File = per_file_;
    run.hits_of_rows = std::move(of_rows_);
  }

 private:
  std::int64_t per_file_;
  std::vector<std::int64_t> of_rows_;
};

}  // namespace

SourceFile LookUpSource(const Program& program, const std::string& folder,
                        const std::string& name) {
  const std::string path = JoinPath(program, folder, name);
  SourceFile source{folder, name, program.host.files.LookUpFile(path), {}};
  // In a drive's root JoinPath doubles the separator.
  source.path = source.info ? source.info.value.path : FolderPathClean(program, path);
  return source;
}

Outcome OutcomeOf(const SourceFile& source) {
  Outcome outcome;
  outcome.path = source.path;
  if (source.info) outcome.bytes = static_cast<std::int64_t>(source.info.value.size);
  return outcome;
}

std::string WorkFilePath(const Program& program, const std::string& folder) {
  return Normaliseer(program, JoinPath(program, folder, kWorkFileName));
}

Outcome WorkFileFailed(const Program& program, const SourceFile& source, ErrorNumber error) {
  const std::string path = WorkFilePath(program, source.folder);
  if (error == ErrorNumber::kPermissionDenied) {
    return Failed(OutcomeOf(source), error, FolderOf(program, path), FailureCause::kSourceFolder);
  }
  return Failed(OutcomeOf(source), error, path, FailureCause::kWorkFile);
}

ErrorNumber DeleteStaleWorkFile(Program& program, const SourceFile& source, bool name_is_taken) {
  FileService& files = program.host.files;
  const std::string path = WorkFilePath(program, source.folder);
  if (IsWorkFileName(program, source.info.value.name)) return ErrorNumber::kPathFileAccess;
  const Result<FileInfo> found = files.LookUpFile(path);
  if (found.error == ErrorNumber::kFileNotFound) {
    if (!name_is_taken) return ErrorNumber::kNone;
  } else if (!found) {
    return found.error;
  } else if (found.value.identity == source.info.value.identity) {
    return ErrorNumber::kPathFileAccess;
  }
  const ErrorNumber error = files.DeleteFile(path);
  if (error != ErrorNumber::kNone && error != ErrorNumber::kFileNotFound) return error;
  if (program.run.left_work_file == path) program.run.left_work_file.clear();
  return ErrorNumber::kNone;
}

void DiscardWorkFile(Program& program, WorkFile& work) {
  if (work.Discard() != ErrorNumber::kNone) program.run.left_work_file = work.path();
}

Outcome ProcessFile(Program& program, const SourceFile& source, std::unique_ptr<WorkFile>& work) {
  FileService& files = program.host.files;
  Outcome outcome = OutcomeOf(source);
  const Result<FileInfo>& info = source.info;
  const PassedOver why = WhyPassedOver(program, source.name, source.folder,
                                       info ? std::optional(info.value.modified) : std::nullopt);
  if (why == PassedOver::kNameEnding) {
    gLog(program, "SKIP " + source.name);
    ++program.run.FilesSkipped;
  }
  if (why != PassedOver::kNo) return PassedOverFor(std::move(outcome), why);
  if (!info) return Failed(std::move(outcome), info.error, source.path);
  program.frmMorvex.lblFiles.caption = source.path;
  YieldToWindows(program);

  const std::string source_path =
      Normaliseer(program, JoinPath(program, source.folder, source.name));
  const std::string work_path = WorkFilePath(program, source.folder);
  const Result<std::unique_ptr<InputFile>> input = files.OpenForReading(source_path);
  if (!input) return Failed(std::move(outcome), input.error, source.path);
  Result<std::unique_ptr<WorkFile>> made = files.CreateWorkFile(work_path, info.value.permissions);
  if (!made) return WorkFileFailed(program, source, made.error);

  HitsBefore hits_before(program.run);
  ErrorNumber error = ErrorNumber::kNone;
  const SubstitutionEnd end = SubstituteFile(program, *input.value, *made.value, error);
  if (end == SubstitutionEnd::kNoProgress) program.Beeindigd = true;
  if (error == ErrorNumber::kNone && end != SubstitutionEnd::kWholeFile) {
    work = std::move(made.value);
    outcome.kind = OutcomeKind::kStopped;
    return outcome;
  }
  const Result<bool> changed = input.value->HasChanged();
  if (error != ErrorNumber::kNone || !changed || changed.value) {
    hits_before.Restore(program.run);
    DiscardWorkFile(program, *made.value);
    if (error != ErrorNumber::kNone && end != SubstitutionEnd::kReadFailed) {
      return Failed(std::move(outcome), error, work_path, FailureCause::kWorkFile);
    }
    if (error == ErrorNumber::kNone) error = changed.error;
    if (error != ErrorNumber::kNone) return Failed(std::move(outcome), error, source.path);
    return PassedOverFor(std::move(outcome), PassedOver::kChangedMeanwhile);
  }

  ShowFileCounts(program, "Sipped: ");
  ShowHits(program, program.run.HitsTotal);
  gLog(program, source.path + "  ----  Hits: " + std::to_string(program.run.Hits_Per_File));
  YieldToWindows(program);
  work = std::move(made.value);
  return outcome;
}

}  // namespace morvex
