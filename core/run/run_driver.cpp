#include "core/run/run_driver.h"

#include <string>

#include "core/engine/passes/folder_passes.h"
#include "core/engine/passes/outcomes.h"
#include "core/engine/passes/progress.h"
#include "core/engine/passes/single_file_run.h"
#include "core/engine/passes/target_files.h"
#include "core/program/elapsed_time.h"
#include "core/program/paths.h"
#include "core/program/run_log.h"
#include "core/settings/settings_file.h"

namespace morvex {
namespace {

void EnablePathBoxes(Program& program, bool enabled) {
  program.frmMorvex.Text1(kSourceBox).enabled = enabled;
  program.frmMorvex.Text1(kTargetBox).enabled = enabled;
}

void ShowText(Program& program, const std::string& text) {
  program.host.user.ShowMessage(text, MessageButtons::kOk, MessageIcon::kNone);
}

void ResetCounters(RunState& run) {
  run.FilesDone = 0;
  run.FilesSkipped = 0;
  run.HitsTotal = 0;
  run.BytesTotal = 0;
  run.BytesBefore = 0;
  run.ScaleFixed = false;
  run.disk_full = false;
  run.cut_short.clear();
  run.left_work_file.clear();
  run.passed_over_files = 0;
  run.left_out_folders = 0;
  run.failed_files = 0;
  run.passed_over_by_reason.clear();
  run.left_out_by_reason.clear();
  run.failed_by_error.clear();
  run.first_failure = {};
  run.copies = 0;
  run.target_was_empty = false;
  run.other_files = 0;
  run.other_files_error = ErrorNumber::kNone;
  run.hits_of_rows.clear();
  run.RunStarted = true;
}

// Clears the labels, because an earlier run's result could be mistaken for this run's. Before the
// first run the labels keep what start-up wrote.
void ClearResult(Program& program) {
  MainForm& form = program.frmMorvex;
  if (program.run.end == RunEnd::kNone) return;
  for (Label* label :
       {&form.lblFiles, &form.lblTotalFiles, &form.lblTijd, &form.lblPercentage, &form.lblNote}) {
    label->caption = "";
  }
  form.ProgressBar1.SetValue(0);
}

void LogHeader(Program& program) {
  const std::string dashes(25, '-');
  gLog(program, dashes + program.host.system.ShortDate() + dashes);
}

void LogSummary(Program& program) {
  const RunState& run = program.run;
  gLog(program, "  ");
  gLog(program, "Initialisatie-bestand: " + program.request.settings_file);
  gLog(program, "Substitutie-bestand: " + program.request.list);
  gLog(program, "gemorvexeerd: " + std::to_string(run.FilesDone) + " bestanden");
  gLog(program, "Overgeslagen: " + std::to_string(run.FilesSkipped) + " bestanden");
  gLog(program, "Vervangingen: " + std::to_string(run.HitsTotal));
  gLog(program, "Totaal: " + std::to_string(run.BytesTotal) + " bytes");
  gLog(program, "Verstreken tijd: " + MinutesAndSeconds(run.elapsed));
}

void RefuseSource(Program& program, const std::string& source) {
  MainForm& form = program.frmMorvex;
  EnablePathBoxes(program, true);
  form.Text1(kSourceBox).colour = Colour::kRed;
  ShowText(program, source + "\r\nSource folder doesn't exist.");
  form.cmdGo.caption = kGoIdle;
  form.cmdGo.enabled = false;
  form.cmdAnonymize.enabled = true;
  form.focus = &form.Text1(kSourceBox);
  form.mouse_pointer = MousePointer::kDefault;
}

enum class TargetCheck { kReady, kRefused, kCannotCreate };

// Makes a missing target folder if the user agrees.
TargetCheck CheckTarget(Program& program, const std::string& target) {
  if (FolderExists(program, target)) return TargetCheck::kReady;
  MainForm& form = program.frmMorvex;
  TextBox& box = form.Text1(kTargetBox);
  box.colour = Colour::kRed;
  const Answer answer = program.host.user.ShowMessage("Target folder doesn't exist. Create?",
                                                      MessageButtons::kYesNo, MessageIcon::kNone);
  box.colour = Colour::kBlack;
  if (answer != Answer::kYes) {
    form.focus = &box;
    form.cmdExit.enabled = true;
    EnablePathBoxes(program, true);
    form.mouse_pointer = MousePointer::kDefault;
    return TargetCheck::kRefused;
  }
  if (MakeFolderTree(program, target).empty()) {
    box.colour = Colour::kRed;
    ShowText(program, target + "\r\nCan't create target folder.");
    return TargetCheck::kCannotCreate;
  }
  return TargetCheck::kReady;
}

void ShowResult(Program& program) {
  MainForm& form = program.frmMorvex;
  form.cmdAnonymize.enabled = true;
  form.cmdExit.enabled = true;
  program.frmOpties.chkLoggen.enabled = true;
  form.lblTijd.caption = MinutesAndSeconds(program.run.elapsed);
  form.lblPercentage.caption = "Hits: " + std::to_string(program.run.HitsTotal) + "\r\nDone !";
  ShowProgress(program, program.run.BytesTotal);
}

RunEnd RunFolder(Program& program, const std::string& source, const std::string& target) {
  SystemService& system = program.host.system;
  program.run.FilesDone = 0;
  const int start = SecondsOfDay(system.LocalTimeOfDay());
  program.frmMorvex.cmdGo.enabled = false;
  program.frmMorvex.ProgressBar1.visible = true;
  LookAtTarget(program, target);
  ErrorNumber error = FolderPrepass(program, source, target);
  if (program.Beeindigd) {
    // Nothing is to be done here about a work file: the passes have deleted it, or left it beside
    // its source and noted its path.
    Unload(program.frmMorvex);
    Unload(program.frmOpties);
    Unload(program.frmReplacements);
    return RunEnd::kStopped;
  }
  if (error == ErrorNumber::kNone) error = FolderWalk(program, source, target);
  if (program.Beeindigd) return RunEnd::kStopped;
  program.run.elapsed = ElapsedBetween(start, SecondsOfDay(system.LocalTimeOfDay()));
  ShowResult(program);
  if (program.run.LoggingOn) LogSummary(program);
  if (error == ErrorNumber::kNone) {
    CountOtherFiles(program, target);
    program.frmMorvex.lblNote.caption = OtherFilesNote(program.run);
    return RunEnd::kFinished;
  }
  const bool target_is_there = program.host.files.LookUpFolder(target).error == ErrorNumber::kNone;
  NoteFailedFolder(program, target_is_there ? source : target, error);
  return RunEnd::kCouldNotRun;
}

void BackToIdle(Program& program) {
  MainForm& form = program.frmMorvex;
  form.mouse_pointer = MousePointer::kDefault;
  form.cmdGo.enabled = false;
  form.cmdGo.visible = true;
  form.cmdAnonymize.enabled = true;
  EnablePathBoxes(program, true);
}

RunEnd RunSingleFile(Program& program, const std::string& source, const std::string& target) {
  program.frmMorvex.ProgressBar1.visible = true;
  const Outcome outcome = SingleFileRun(program, source, target);
  program.frmMorvex.mouse_pointer = MousePointer::kDefault;
  if (program.Beeindigd) return RunEnd::kStopped;
  return outcome.kind == OutcomeKind::kProcessed ? RunEnd::kFinished : RunEnd::kCouldNotRun;
}

RunEnd Go(Program& program) {
  MainForm& form = program.frmMorvex;
  ClearResult(program);
  form.Text1(kSourceBox).colour = Colour::kBlack;
  ResetCounters(program.run);
  form.mouse_pointer = MousePointer::kHourglass;
  program.run.LoggingOn = program.request.logging;
  program.frmOpties.chkLoggen.enabled = false;
  if (program.run.LoggingOn) LogHeader(program);

  const std::string& source = program.request.source;
  const std::string& target = program.request.target;
  if (FileExists(program, source)) return RunSingleFile(program, source, target);
  if (!FolderExists(program, source)) {
    RefuseSource(program, source);
    return RunEnd::kCouldNotRun;
  }
  switch (CheckTarget(program, target)) {
    case TargetCheck::kRefused:
      return RunEnd::kCouldNotRun;
    case TargetCheck::kCannotCreate:
      BackToIdle(program);
      form.focus = &form.Text1(kTargetBox);
      return RunEnd::kCouldNotRun;
    case TargetCheck::kReady:
      break;
  }
  const RunEnd end = RunFolder(program, source, target);
  if (end != RunEnd::kStopped) {
    BackToIdle(program);
    form.focus = &form.cmdAnonymize;
  }
  return end;
}

}  // namespace

void cmdAnonymize_Click(Program& program) {
  if (IsBusy(program)) return;
  ArmRun(program);
  WriteInitFile(program);
}

void ArmRun(Program& program) {
  if (IsBusy(program)) return;
  program.run.ArmedAt = program.host.system.Now();
  program.run.elapsed = {};
  program.run.RunStarted = false;
  MainForm& form = program.frmMorvex;
  form.cmdGo.caption = kGoArmed;
  form.cmdGo.enabled = true;
  form.cmdGo.visible = true;
  form.cmdAnonymize.enabled = false;
  EnablePathBoxes(program, false);
}

void cmdGo_Click(Program& program) {
  if (IsBusy(program)) return;
  // The other windows would cover the main window, which shows the run.
  program.frmReplacements.visible = false;
  program.frmOpties.visible = false;
  program.frmMorvex.visible = program.frmMorvex.loaded.get();
  program.request = RequestFromForms(program);
  PerformRun(program);
}

RunRequest RequestFromForms(const Program& program) {
  const Settings& settings = program.settings;
  RunRequest request;
  request.source = program.frmMorvex.Text1(kSourceBox).text;
  request.target = program.frmMorvex.Text1(kTargetBox).text;
  request.list = settings.SubstitutieFile;
  request.settings_file = settings.AutoRunFromInitFile ? settings.InitFilePath
                                                       : InProgramFolder(program, kInitFileName);
  for (const ListEntry& entry : program.frmOpties.lstExtensie.entries.get()) {
    if (entry.selected) request.extensions.push_back(entry.text);
  }
  request.logging = program.frmOpties.chkLoggen.value() == 1;
  return request;
}

void PerformRun(Program& program) {
  if (IsBusy(program)) return;
  program.run.working = true;
  program.run.end = Go(program);
  program.frmMorvex.ProgressBar1.visible = false;
  program.run.working = false;
}

}  // namespace morvex
