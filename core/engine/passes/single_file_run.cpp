#include "core/engine/passes/single_file_run.h"

#include <utility>

#include "core/engine/passes/file_step.h"
#include "core/engine/passes/outcomes.h"
#include "core/engine/passes/progress.h"
#include "core/program/elapsed_time.h"
#include "core/program/paths.h"
#include "core/program/run_log.h"

namespace morvex {

Outcome SingleFileRun(Program& program, const std::string& source, const std::string& target) {
  RunState& run = program.run;
  MainForm& window = program.frmMorvex;
  const int start = SecondsOfDay(program.host.system.LocalTimeOfDay());
  const Result<FileInfo> info = program.host.files.LookUpFile(source);
  run.ProgressScale = ScaleFor(info.value.size);
  window.ProgressBar1.SetMaximum(Scaled(info.value.size, run.ProgressScale));
  window.ProgressBar1.SetValue(0);
  Outcome outcome;
  outcome.path = source;
  if (program.Beeindigd) {
    outcome.kind = OutcomeKind::kStopped;
    return outcome;
  }
  if (info) {
    const SourceFile file{info.value.folder, info.value.name, info, info.value.path};
    run.BytesTotal += static_cast<std::int64_t>(info.value.size);
    gLog(program, JoinPath(program, file.folder, file.name));
    outcome =
        MakeProcessedCopy(program, file, target, WorkFileAtStop::kGoes, StaleWorkFile::kListed);
    if (outcome.kind == OutcomeKind::kStopped) run.BytesTotal = outcome.bytes;
  } else {
    outcome = Failed(std::move(outcome), info.error, source);
  }
  outcome.hits = run.HitsTotal;
  NoteOutcome(program, outcome);
  run.FilesDone = 1;
  run.elapsed = ElapsedBetween(start, SecondsOfDay(program.host.system.LocalTimeOfDay()));
  window.lblTotalFiles.caption = "Scanned: 1 ";
  window.lblTijd.caption = MinutesAndSeconds(run.elapsed);
  window.lblPercentage.caption = "Hits: " + std::to_string(run.HitsTotal) + "\r\nDone !";
  ShowProgress(program, run.BytesTotal);
  YieldToWindows(program);
  return outcome;
}

}  // namespace morvex
