#include "core/settings/settings_file.h"

#include <string_view>
#include <vector>

#include "core/list/list_file.h"
#include "core/list/list_operations.h"
#include "core/program/main_window_paths.h"
#include "core/program/paths.h"
#include "core/program/run_log.h"
#include "core/program/text_file.h"
#include "core/settings/character_code.h"
#include "core/settings/numbers.h"
#include "core/settings/options.h"

namespace morvex {
namespace {

// What follows the first "="; the whole line when there is none.
std::string ValueOf(const std::string& line) {
  const std::size_t equals = line.find('=');
  return equals == std::string::npos ? line : line.substr(equals + 1);
}

// The first six lines, each taken by its place. A line that the file does not have changes nothing.
void ReadPlacedLines(Program& program, LineReader& reader) {
  Settings& settings = program.settings;
  std::string line;
  if (reader.Next(line)) Text1_Change(program, kSourceBox, line);
  if (reader.Next(line)) Text1_Change(program, kTargetBox, line);
  if (reader.Next(line)) settings.SubstitutieFile = line;
  if (reader.Next(line)) {
    const Result<std::int16_t> logging = LeadingInteger16(ValueOf(line));
    if (logging) chkLoggen_Click(program, logging.value);
  }
  settings.LoggingStatusText =
      program.frmOpties.chkLoggen.value() == 1 ? "Logging: enabled" : "Logging: disabled";
  if (reader.Next(line)) settings.gSeparator = ValueOf(line);
  if (reader.Next(line)) settings.gJoker = CharacterCode(program, ValueOf(line));
}

// An empty line ends the list.
void ReadExtensions(Program& program, LineReader& reader) {
  std::vector<ListEntry> entries = program.frmOpties.lstExtensie.entries;
  std::string selected_texts = program.frmMorvex.lblExtensions.caption;
  std::size_t index = 0;
  std::string line;
  while (reader.Next(line) && !line.empty()) {
    ListEntry entry{line.substr(1), line.front() != '0'};
    if (entry.selected) {
      ++program.settings.N_Extension_Selected;
      selected_texts += entry.text;
    }
    if (index < entries.size()) {
      entries[index] = std::move(entry);
    } else {
      entries.push_back(std::move(entry));
    }
    ++index;
    ++program.settings.N_Extension_Total;
  }
  program.frmOpties.lstExtensie.entries = std::move(entries);
  program.frmMorvex.lblExtensions.caption = std::move(selected_texts);
}

// A list that does not exist is none. One of which that cannot be told is one that cannot be read.
void ReadList(Program& program) {
  Settings& settings = program.settings;
  const ErrorNumber found = program.host.files.LookUpFile(settings.SubstitutieFile).error;
  if (found == ErrorNumber::kNone) {
    ImportReplacementList(program, settings.SubstitutieFile);
    cmdOK_Click(program);
  } else if (found != ErrorNumber::kFileNotFound && found != ErrorNumber::kPathNotFound) {
    settings.list_file_error = found;
  }
}

// The file to read; false when there is none.
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
  LineReader reader;
  const ErrorNumber opening = reader.Open(program.host.files, path);
  if (settings.CommandLine_SET && opening == ErrorNumber::kNone) {
    settings.AutoRunFromInitFile = true;
  }
  ReadPlacedLines(program, reader);
  ReadList(program);
  program.frmMorvex.lblFiles.colour = Colour::kSystemHighlight;
  program.frmMorvex.lblFiles.caption = std::string(12, ' ');
  ReadExtensions(program, reader);
  settings.init_file_error = reader.error();
  // A file that could only be read in part describes no run: a row that is missing would be a name
  // that stays.
  const bool whole = settings.init_file_error == ErrorNumber::kNone &&
                     settings.list_file_error == ErrorNumber::kNone;
  if (!whole) settings.AutoRunFromInitFile = false;
  settings.ReadingInitFile = false;
}

void WriteInitFile(Program& program) {
  Settings& settings = program.settings;
  if (settings.gSeparator.empty()) settings.gSeparator = kDefaultSeparator;
  if (program.Beeindigd) return;
  const MainForm& window = program.frmMorvex;
  std::vector<std::string> lines = {
      window.Text1(kSourceBox).text, window.Text1(kTargetBox).text,
      settings.SubstitutieFile,      "log=" + std::to_string(program.frmOpties.chkLoggen.value()),
      "sep=" + settings.gSeparator,  "jok=" + std::string(1, static_cast<char>(settings.gJoker)),
  };
  for (const ListEntry& entry : program.frmOpties.lstExtensie.entries.get()) {
    lines.push_back((entry.selected ? "1" : "0") + entry.text);
  }
  std::string content;
  for (const std::string& line : lines) content.append(line).append("\r\n");
  program.host.files.ReplaceFile(InProgramFolder(program, kInitFileName), content);
}

}  // namespace morvex
