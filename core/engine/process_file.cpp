#include "core/engine/process_file.h"

#include <memory>
#include <optional>

#include "core/engine/input_window.h"
#include "core/engine/positioned_output.h"
#include "core/engine/progress.h"
#include "core/engine/skip_rules.h"
#include "core/engine/substitution.h"
#include "core/program/paths.h"
#include "core/program/run_log.h"

namespace morvex {
namespace {

// Keeps the counters, the labels and the window alive while a file is substituted.
class RunWatcher : public SubstitutionWatcher {
 public:
  explicit RunWatcher(Program& program) : program_(program) {}

  void OnHit() override {
    // The label shows the hits before this one.
    hits_shown_ = program_.run.HitsTotal;
    any_hit_ = true;
    ++program_.run.Hits_Per_File;
    ++program_.run.HitsTotal;
  }

  bool KeepGoing(std::uint64_t read) override {
    program_.run.FileOffset = static_cast<std::int64_t>(read);
    if (any_hit_) ShowHits(program_, hits_shown_);
    ShowProgress(program_, program_.run.FileOffset + program_.run.BytesBefore);
    YieldToWindows(program_);
    return !program_.Beeindigd;
  }

 private:
  Program& program_;
  std::int64_t hits_shown_ = 0;
  bool any_hit_ = false;
};

ProcessResult Failed(ErrorNumber error) { return {ProcessEnd::kFailed, error}; }

// Substitutes from the one open file into the other.
ProcessResult SubstituteFile(Program& program, InputFile& source, OutputFile& temporary) {
  InputWindow input(source);
  PositionedOutput output(temporary);
  RunWatcher watcher(program);
  Substitution substitution(program.tables, program.settings.gJoker, program.capture);
  const SubstitutionEnd end = substitution.Run(input, output, watcher);
  const ErrorNumber writing = output.Finish();
  if (end == SubstitutionEnd::kReadFailed) return Failed(substitution.read_error());
  if (writing != ErrorNumber::kNone) return Failed(writing);
  if (end == SubstitutionEnd::kNoProgress) program.Beeindigd = true;
  return {end == SubstitutionEnd::kWholeFile ? ProcessEnd::kProcessed : ProcessEnd::kStopped,
          ErrorNumber::kNone};
}

}  // namespace

std::string TemporaryPath(const Program& program, const std::string& folder) {
  return Normaliseer(program, JoinPath(program, folder, kTemporaryName));
}

ErrorNumber DeleteLeftOver(const Program& program, const std::string& folder) {
  const ErrorNumber error = program.host.files.DeleteFile(TemporaryPath(program, folder));
  return error == ErrorNumber::kFileNotFound ? ErrorNumber::kNone : error;
}

ProcessResult ProcessFile(Program& program, const std::string& name, const std::string& folder) {
  FileService& files = program.host.files;
  const Result<FileInfo> source = files.LookUpFile(JoinPath(program, folder, name));
  switch (DecideSkip(program, name, folder,
                     source ? std::optional(source.value.modified) : std::nullopt)) {
    case SkipDecision::kSkipCounted:
      gLog(program, "SKIP " + name);
      ++program.run.FilesSkipped;
      return {ProcessEnd::kSkipped, ErrorNumber::kFileNotFound};
    case SkipDecision::kSkipSilently:
      return {ProcessEnd::kSkipped, ErrorNumber::kFileNotFound};
    case SkipDecision::kProcess:
      break;
  }
  if (!source) return Failed(source.error);
  program.frmMorvex.lblFiles.caption = source.value.path;
  YieldToWindows(program);

  const std::string source_path = Normaliseer(program, JoinPath(program, folder, name));
  const std::string temporary_path = TemporaryPath(program, folder);
  const Result<std::unique_ptr<InputFile>> input = files.OpenForReading(source_path);
  if (!input) return Failed(input.error);
  const Result<std::unique_ptr<OutputFile>> output =
      files.CreateFile(temporary_path, source.value.permissions);
  if (!output) return Failed(output.error);

  const ProcessResult result = SubstituteFile(program, *input.value, *output.value);
  if (result.end == ProcessEnd::kFailed) files.DeleteFile(temporary_path);
  if (result.end != ProcessEnd::kProcessed) return result;

  ShowFileCounts(program, "Sipped: ");
  ShowHits(program, program.run.HitsTotal);
  gLog(program, source.value.path + "  ----  Hits: " + std::to_string(program.run.Hits_Per_File));
  YieldToWindows(program);
  return result;
}

}  // namespace morvex
