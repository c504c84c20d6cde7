#include "core/engine/passes/single_file_run.h"

#include "core/engine/passes/outcomes.h"
#include "core/engine/passes/progress.h"
#include "core/program/elapsed_time.h"
#include "core/program/paths.h"
#include "core/program/run_log.h"

namespace morvex {

CopyResult SingleFileRun(Program& program, const std::string& source, const std::string& target) {
  RunState& run = program.run;
  MainForm& window = program.frmMorvex;
  const int start = SecondsOfDay(program.host.system.LocalTimeOfDay());
  const Result<FileInfo> info = program.host.files.LookUpFile(source);
  run.ProgressScale = ScaleFor(info.value.size);
  window.ProgressBar1.SetMaximum(Scaled(info.value.size, run.ProgressScale));
  window.ProgressBar1.SetValue(0);
  if (program.Beeindigd) return {CopyEnd::kStopped, ErrorNumber::kNone, "", PassedOver::kNo};
  CopyResult copy{CopyEnd::kFailed, info.error, source, PassedOver::kNo};
  if (info) {
    const FileInfo& file = info.value;
    run.BytesTotal += static_cast<std::int64_t>(file.size);
    gLog(program, JoinPath(program, file.folder, file.name));
    copy = MakeProcessedCopy(program, file.folder, file.name, info, target, TemporaryAtStop::kGoes,
                             LeftOver::kMayBe);
    if (copy.end == CopyEnd::kStopped) run.BytesTotal = copy.written;
  }
  NoteOutcome(program, OutcomeOf(copy, info ? info.value.path : source,
                                 static_cast<std::int64_t>(info.value.size), run.HitsTotal));
  run.FilesDone = 1;
  run.elapsed = ElapsedBetween(start, SecondsOfDay(program.host.system.LocalTimeOfDay()));
  window.lblTotalFiles.caption = "Scanned: 1 ";
  window.lblTijd.caption = MinutesAndSeconds(run.elapsed);
  window.lblPercentage.caption = "Hits: " + std::to_string(run.HitsTotal) + "\r\nDone !";
  ShowProgress(program, run.BytesTotal);
  YieldToWindows(program);
  return copy;
}

}  // namespace morvex
