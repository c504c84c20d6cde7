// The model of the run driver: it reads the settings and the list, checks the paths, has the files
// handled, and ends with the summary.

#include "run_model.h"

#include <utility>

#include "engine_model.h"
#include "folder_model.h"

namespace morvex::whole_run {
namespace {

EngineModel MakeEngine(const RunInput& input, const Settings& settings) {
  const std::string list_path = LookedUpPath(settings.list_path, input.current_folder);
  const Node* list = input.disk.Find(list_path);
  if (list == nullptr || list->kind != NodeKind::kFile) {
    return {{}, settings.joker};
  }
  return {ReadGrid(list->bytes, settings.separator), settings.joker};
}

// Predicts a run whose source is a single file. The target setting is the path of the copy.
void RunSingleFile(const RunInput& input, const Settings& settings, const std::string& source,
                   FolderModel* files, RunOutcome* outcome) {
  const std::string target = LookedUpPath(settings.target, input.current_folder);
  files->Log(source);
  const std::string temporary = ParentPath(source) + "/" + kTemporaryName;
  files->disk().RemoveFile(temporary);
  const ProcessedFile processed = files->ProcessFile(ParentPath(source), NameOf(source));
  bool written = false;
  if (processed.made && target != source && !target.empty()) {
    Node copy;
    copy.bytes = processed.bytes;
    copy.permissions = files->disk().Find(source)->permissions;
    written = files->disk().PutFile(target, std::move(copy));
  }
  outcome->captions = {"Scanned: 1 ", kElapsedCaption,
                       "Hits: " + std::to_string(files->hits_total()) + "\r\nDone !"};
  outcome->exit_status = written ? 0 : 1;
}

std::int64_t FilesBelow(const Disk& disk, const std::string& folder) {
  const std::string start = folder == "/" ? folder : folder + "/";
  std::int64_t count = 0;
  for (const auto& [path, node] : disk.nodes()) {
    count += path.rfind(start, 0) == 0 && node.kind != NodeKind::kFolder ? 1 : 0;
  }
  return count;
}

void LogSummary(const RunInput& input, const Settings& settings, FolderModel* files) {
  files->Log("  ");
  files->Log("Initialisatie-bestand: " + input.settings_path);
  files->Log("Substitutie-bestand: " + settings.list_path);
  files->Log("gemorvexeerd: " + std::to_string(files->files_done()) + " bestanden");
  files->Log("Overgeslagen: " + std::to_string(files->files_skipped()) + " bestanden");
  files->Log("Vervangingen: " + std::to_string(files->hits_total()));
  files->Log("Totaal: " + std::to_string(files->bytes_total()) + " bytes");
  files->LogPattern(LogKind::kElapsed, "Verstreken tijd: ");
}

void RunFolder(const RunInput& input, const Settings& settings, FolderModel* files,
               RunOutcome* outcome) {
  const std::string source = LookedUpPath(settings.source, input.current_folder);
  const std::string target = LookedUpPath(settings.target, input.current_folder);
  if (source.empty()) {
    // For an empty source path, the program finds neither the folder nor its drive. So it cannot
    // scale the progress bar, and it ends with this message.
    outcome->messages = "Errors occurred.\nProgramm will be terminated.";
    outcome->exit_status = 1;
    return;
  }
  const Node* before = files->disk().Find(target);
  const bool was_empty = before != nullptr && before->listing.empty();
  files->HandleTopFiles(source, target);
  files->Walk(source, target);
  if (!was_empty && !target.empty()) {
    outcome->other_files = FilesBelow(files->disk(), target) - files->copies();
  }
  outcome->exit_status = files->missed() > 0 ? 3 : 0;
  outcome->captions[0] = files->total_files_caption();
  outcome->captions[1] = kElapsedCaption;
  outcome->captions[2] = "Hits: " + std::to_string(files->hits_total()) + "\r\nDone !";
  LogSummary(input, settings, files);
}

}  // namespace

RunOutcome PredictRun(const RunInput& input) {
  const Settings settings = ReadSettings(input.settings_bytes);
  RunOutcome outcome;
  outcome.init_dat = InitDatBytes(settings);
  FolderModel files(input, settings, MakeEngine(input, settings));
  if (input.delay_ms > 0) {
    outcome.captions[0] = "Bezig met scannen...";
    files.set_total_files_caption(outcome.captions[0]);
  }
  files.LogPattern(LogKind::kHeader, "");
  const std::string source = LookedUpPath(settings.source, input.current_folder);
  const std::string target = LookedUpPath(settings.target, input.current_folder);
  if (files.disk().IsFile(source)) {
    RunSingleFile(input, settings, source, &files, &outcome);
  } else if (!source.empty() && !files.disk().IsFolder(source)) {
    outcome.messages = settings.source + "\nSource folder doesn't exist.";
    outcome.exit_status = 1;
  } else if (!target.empty() && !files.disk().IsFolder(target)) {
    outcome.messages = "Target folder doesn't exist. Create?";
    outcome.exit_status = 1;
  } else {
    RunFolder(input, settings, &files, &outcome);
  }
  outcome.occasion_for_remarks = outcome.exit_status != 0 || files.left_out() > 0 ||
                                 files.hits_total() == 0 || outcome.other_files > 0;
  outcome.disk = files.disk();
  outcome.log = files.log();
  return outcome;
}

}  // namespace morvex::whole_run
