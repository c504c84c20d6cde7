#include "ui/console/console_text.h"

#include <algorithm>
#include <array>
#include <vector>

#include "core/engine/passes/outcomes.h"
#include "core/engine/passes/target_files.h"
#include "core/list/list_file.h"
#include "core/text/shown_text.h"

namespace morvex {
namespace {

std::string Counted(std::int64_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

// Returns the numbers of failures, as in "2 for Error 70: Permission denied, 1 for Error 57: Device
// I/O error".
std::string FailuresByError(const RunState& run) {
  std::string text;
  for (const auto& [error, count] : run.failed_by_error) {
    text += (text.empty() ? "" : ", ") + std::to_string(count) + " for " + ErrorLine(error);
  }
  return text;
}

// Returns the note on a failure, as in "/s/a.txt: Error 70: Permission denied: the source folder
// must be writable: /s".
std::string FailureNote(const Outcome& failure) {
  std::string note = Printable(failure.path) + ": " + ErrorLine(failure.error);
  if (failure.cause != FailureCause::kNone) {
    note += ": " + std::string(CauseText(failure.cause)) + ": " + Printable(failure.error_path);
  }
  return note;
}

std::string MissingCopyNotes(const RunState& run) {
  std::string notes;
  for (const auto& [why, count] : run.passed_over_by_reason) {
    notes += Counted(count, "file was", "files were") +
             " passed over and not copied: " + std::string(ReasonText(why)) + ".\n";
  }
  for (const auto& [why, count] : run.left_out_by_reason) {
    notes += Counted(count, "folder was", "folders were") +
             " left out: " + std::string(ReasonText(why)) + ".\n";
  }
  if (run.failed_files > 0) {
    notes += Counted(run.failed_files, "file or folder", "files or folders") +
             " could not be copied" +
             (run.failed_by_error.size() > 1 ? ": " + FailuresByError(run) : std::string()) +
             ". The first: " + FailureNote(run.first_failure) + "\n";
  }
  return notes;
}

std::string TargetNotes(const RunState& run) {
  const std::string note = OtherFilesNote(run);
  if (note.empty()) return "";
  return note +
         " Copies made with an earlier list may hold names: look at them, or run into an "
         "empty folder.\n";
}

std::string StopNotes(const RunState& run) {
  std::string notes;
  if (run.disk_full)
    notes += "The disk is full: the run ended there, the target is not complete.\n";
  if (!run.cut_short.empty()) notes += "Cut short: " + Printable(run.cut_short) + "\n";
  if (!run.left_work_file.empty()) {
    notes += "Left in the source: " + Printable(run.left_work_file) + "\n";
  }
  return notes;
}

bool HasUsableRow(const Program& program) {
  const std::vector<std::string>& left_texts = program.tables.LeftTexts;
  return std::any_of(left_texts.begin(), left_texts.end(),
                     [](const std::string& text) { return !text.empty(); });
}

std::string NothingToDoNotes(const Program& program) {
  const Settings& settings = program.settings;
  std::string notes;
  if (settings.list_file_error != ErrorNumber::kNone) {
    notes += UnreadListText(Printable(settings.SubstitutieFile), settings.list_file_error) + "\n";
  }
  if (program.run.end != RunEnd::kFinished) return notes;
  if (!HasUsableRow(program)) {
    notes += "Nothing was anonymised: the replacement list has no row, or does not exist: " +
             Printable(settings.SubstitutieFile) + "\n";
  } else if (program.run.FilesDone == 0) {
    notes += "Nothing was anonymised: no file has a selected extension.\n";
  }
  return notes;
}

}  // namespace

std::string ProgressLine(const Program& program) {
  const RunState& run = program.run;
  const ProgressBar& bar = program.frmMorvex.ProgressBar1;
  const std::int64_t percent = bar.maximum() == 0 ? 0 : bar.value() * 100 / bar.maximum();
  return Counted(run.FilesDone + run.FilesSkipped, "file", "files") + "  " +
         Counted(run.HitsTotal, "hit", "hits") + "  " +
         ReadableBytes(run.BytesBefore + run.FileOffset) + "  " + std::to_string(percent) + " %";
}

std::string ResultLines(const Program& program) {
  const MainForm& form = program.frmMorvex;
  const RunState& run = program.run;
  // After a stop the result labels may lack the last file's counts.
  if (run.end == RunEnd::kStopped) {
    if (run.FilesDone + run.FilesSkipped == 0) return "";
    return "Scanned: " + std::to_string(run.FilesDone) +
           "\nSkipped: " + std::to_string(run.FilesSkipped) +
           "\nHits: " + std::to_string(run.HitsTotal) + "\n";
  }
  std::string lines;
  for (const Label* label : {&form.lblTotalFiles, &form.lblTijd, &form.lblPercentage}) {
    const std::string& caption = label->caption;
    if (!caption.empty()) lines.append(PrintableLines(caption)).append("\n");
  }
  return lines;
}

std::string RunNotes(const Program& program) {
  return MissingCopyNotes(program.run) + TargetNotes(program.run) + StopNotes(program.run) +
         NothingToDoNotes(program);
}

std::string ReadableBytes(std::int64_t bytes) {
  constexpr std::array<const char*, 5> kUnits = {"kB", "MB", "GB", "TB", "PB"};
  constexpr std::int64_t kStep = 1000;
  if (bytes < kStep) return Counted(bytes, "byte", "bytes");
  std::size_t unit = 0;
  std::int64_t tenths = bytes / (kStep / 10);
  while (tenths >= kStep * 10 && unit + 1 < kUnits.size()) {
    tenths /= kStep;
    ++unit;
  }
  return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " " + kUnits[unit];
}

}  // namespace morvex
