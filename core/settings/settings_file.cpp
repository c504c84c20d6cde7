#include "core/settings/settings_file.h"

#include <utility>
#include <vector>

#include "core/list/list_file.h"
#include "core/list/list_operations.h"
#include "core/program/main_window_paths.h"
#include "core/program/paths.h"
#include "core/program/run_log.h"
#include "core/settings/character_code.h"
#include "core/settings/init_file.h"
#include "core/settings/options.h"

namespace morvex {
namespace {

// Takes over the first six lines. A line that the file lacks changes nothing.
void TakePlacedLines(Program& program, const InitFile& file) {
  Settings& settings = program.settings;
  if (file.source) Text1_Change(program, kSourceBox, *file.source);
  if (file.target) Text1_Change(program, kTargetBox, *file.target);
  if (file.list) settings.SubstitutieFile = *file.list;
  if (file.logging) chkLoggen_Click(program, *file.logging);
  settings.LoggingStatusText =
      program.frmOpties.chkLoggen.value() == 1 ? "Logging: enabled" : "Logging: disabled";
  if (file.separator) settings.gSeparator = *file.separator;
  if (file.wildcard) settings.gJoker = CharacterCode(program, *file.wildcard);
}

void TakeExtensions(Program& program, const InitFile& file) {
  std::vector<ListEntry> entries = program.frmOpties.lstExtensie.entries;
  std::string selected_texts = program.frmMorvex.lblExtensions.caption;
  for (std::size_t i = 0; i < file.extensions.size(); ++i) {
    const ListEntry entry{file.extensions[i].extension, file.extensions[i].selected};
    if (entry.selected) {
      ++program.settings.N_Extension_Selected;
      selected_texts += entry.text;
    }
    if (i < entries.size()) {
      entries[i] = entry;
    } else {
      entries.push_back(entry);
    }
    ++program.settings.N_Extension_Total;
  }
  program.frmOpties.lstExtensie.entries = std::move(entries);
  program.frmMorvex.lblExtensions.caption = std::move(selected_texts);
}

// A missing list file is no error. After any other look-up error the list counts as unreadable.
void TakeList(Program& program) {
  Settings& settings = program.settings;
  const ErrorNumber found = program.host.files.LookUpFile(settings.SubstitutieFile).error;
  if (found == ErrorNumber::kNone) {
    ImportReplacementList(program, settings.SubstitutieFile);
    cmdOK_Click(program);
  } else if (found != ErrorNumber::kFileNotFound && found != ErrorNumber::kPathNotFound) {
    settings.list_file_error = found;
  }
}

// Finds the settings file to read. Returns false if it does not exist.
bool ChooseInitFile(Program& program, std::string& path) {
  Settings& settings = program.settings;
  if (settings.CommandLine_SET) {
    path = settings.InitFilePath;
    if (FileExists(program, path)) return true;
    program.run.LoggingOn = true;
    gLog(program, MissingInitFileText(path));
    program.Beeindigd = true;
    return false;
  }
  path = InProgramFolder(program, kInitFileName);
  if (FileExists(program, path)) return true;
  settings.ReadingInitFile = false;
  return false;
}

}  // namespace

std::string MissingInitFileText(const std::string& path) {
  return "Initialisatiebestand bestaat niet: " + path;
}

std::vector<std::string> WhyNoRun(const Program& program) {
  const Settings& settings = program.settings;
  if (!settings.CommandLine_SET || settings.AutoRunFromInitFile) return {};
  if (settings.init_file_error != ErrorNumber::kNone) {
    return {settings.InitFilePath + ": " + ErrorLine(settings.init_file_error)};
  }
  if (settings.list_file_error != ErrorNumber::kNone) {
    return {UnreadListText(settings.SubstitutieFile, settings.list_file_error),
            "Nothing was run: a row that is missing is a name that stays."};
  }
  return {MissingInitFileText(settings.InitFilePath)};
}

void ReadInitFile(Program& program) {
  Settings& settings = program.settings;
  settings.ReadingInitFile = true;
  std::string path;
  if (!ChooseInitFile(program, path)) return;
  const InitFile file = ParseInitFile(program.host.files, path);
  if (settings.CommandLine_SET && file.is_open) settings.AutoRunFromInitFile = true;
  TakePlacedLines(program, file);
  TakeList(program);
  program.frmMorvex.lblFiles.colour = Colour::kSystemHighlight;
  program.frmMorvex.lblFiles.caption = std::string(12, ' ');
  TakeExtensions(program, file);
  settings.init_file_error = file.error;
  // If a file was read only in part, no unattended run starts, because the texts of a missing row
  // would stay in the copies.
  const bool whole = settings.init_file_error == ErrorNumber::kNone &&
                     settings.list_file_error == ErrorNumber::kNone;
  if (!whole) settings.AutoRunFromInitFile = false;
  settings.ReadingInitFile = false;
}

void WriteInitFile(Program& program) {
  Settings& settings = program.settings;
  if (settings.gSeparator.empty()) settings.gSeparator = kDefaultSeparator;
  if (program.Beeindigd) return;
  const MainForm& form = program.frmMorvex;
  std::vector<std::string> lines = {
      form.Text1(kSourceBox).text,  form.Text1(kTargetBox).text,
      settings.SubstitutieFile,     "log=" + std::to_string(program.frmOpties.chkLoggen.value()),
      "sep=" + settings.gSeparator, "jok=" + std::string(1, static_cast<char>(settings.gJoker)),
  };
  for (const ListEntry& entry : program.frmOpties.lstExtensie.entries.get()) {
    lines.push_back((entry.selected ? "1" : "0") + entry.text);
  }
  std::string content;
  for (const std::string& line : lines) content.append(line).append("\r\n");
  program.host.files.ReplaceFile(InProgramFolder(program, kInitFileName), content);
}

}  // namespace morvex
