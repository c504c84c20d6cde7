#include "core/settings/options.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "core/forms/keys.h"
#include "core/program/paths.h"
#include "core/program/run_log.h"
#include "core/settings/character_code.h"
#include "core/settings/settings_file.h"

namespace morvex {
namespace {

constexpr const char* kRedirectedStore = "\\VirtualStore\\Program Files (x86)\\Morvex";

// Counts the extension list: sets the counters, the options window's label of the counts, and the
// main window's label of the selected extensions.
void CountExtensions(Program& program) {
  Settings& settings = program.settings;
  const std::vector<ListEntry>& entries = program.frmOpties.lstExtensie.entries;
  settings.N_Extension_Total = static_cast<std::int64_t>(entries.size());
  settings.N_Extension_Selected = std::count_if(
      entries.begin(), entries.end(), [](const ListEntry& entry) { return entry.selected; });
  program.frmOpties.lblExtensies.caption = "extensions " +
                                           std::to_string(settings.N_Extension_Selected) + "(" +
                                           std::to_string(settings.N_Extension_Total) + ")";
  std::string selected_texts;
  for (const ListEntry& entry : entries) {
    if (entry.selected) selected_texts += entry.text;
  }
  program.frmMorvex.lblExtensions.caption = selected_texts;
}

void AddTypedExtension(Program& program) {
  OptionsForm& form = program.frmOpties;
  const std::string entry = FormatExtensie(program, form.txtExtensie.text);
  if (entry.empty()) return;
  form.txtExtensie.text = "";
  std::vector<ListEntry> entries = form.lstExtensie.entries;
  const bool known = std::any_of(entries.begin(), entries.end(),
                                 [&](const ListEntry& other) { return other.text == entry; });
  if (known) return;
  entries.push_back({entry, true});
  form.lstExtensie.entries = std::move(entries);
  CountExtensions(program);
}

void RemoveCurrentExtension(Program& program) {
  ListBox& list = program.frmOpties.lstExtensie;
  std::vector<ListEntry> entries = list.entries;
  const int current = list.current;
  if (current < 0 || current >= static_cast<int>(entries.size())) return;
  entries.erase(entries.begin() + current);
  list.current = std::min(current, static_cast<int>(entries.size()) - 1);
  list.entries = std::move(entries);
  CountExtensions(program);
}

// Handles the keys that add and remove an extension, in the entry field and in the list. Returns
// whether `key` was one of them.
bool HandleListCommand(Program& program, int key, int shift) {
  if (shift != kShiftControl) return false;
  if (key == kKeyEnter) AddTypedExtension(program);
  if (key == kKeyDelete) RemoveCurrentExtension(program);
  return key == kKeyEnter || key == kKeyDelete;
}

}  // namespace

std::string FormatExtensie(Program& program, const std::string& typed) {
  const std::size_t point = typed.find('.');
  const std::string entry = point == std::string::npos ? "." + typed : typed.substr(point);
  if (entry.find('.', 1) == std::string::npos) return entry;
  program.host.user.ShowMessage("Incorrect input format ! ", MessageButtons::kOk,
                                MessageIcon::kNone);
  return "";
}

void imOpties_Click(Program& program) {
  if (IsBusy(program)) return;
  program.frmOpties.visible = true;
  frmOpties_Activate(program);
}

void frmOpties_Activate(Program& program) {
  OptionsForm& form = program.frmOpties;
  form.txtSeparator.text = program.settings.gSeparator;
  form.txtJoker.text = WildcardText(program.settings.gJoker);
  CountExtensions(program);
  form.focus = &form.txtExtensie;
}

void frmOpties_Close(Program& program) { program.frmOpties.visible = false; }

void txtExtensie_KeyDown(Program& program, int key, int shift) {
  ListBox& list = program.frmOpties.lstExtensie;
  if (HandleListCommand(program, key, shift)) return;
  if (key == kKeyDown && shift == kShiftAlt) list.visible = !list.visible;
  if (key == kKeyEscape) list.visible = false;
}

void txtExtensie_GotFocus(Program& program) {
  program.frmOpties.txtExtensie.tool_tip = "add: CTRL + <enter>  ;  delete:  CTRL + <delete>";
}

void lstExtensie_KeyDown(Program& program, int key, int shift) {
  HandleListCommand(program, key, shift);
}

void lstExtensie_Select(Program& program, std::size_t index, bool selected) {
  ListBox& list = program.frmOpties.lstExtensie;
  std::vector<ListEntry> entries = list.entries;
  if (index >= entries.size()) return;
  entries[index].selected = selected;
  list.entries = std::move(entries);
  list.current = static_cast<int>(index);
  CountExtensions(program);
}

void lstExtensie_Validate(Program& program) { CountExtensions(program); }

void cmdListExtensie_Down_Click(Program& program) {
  OptionsForm& form = program.frmOpties;
  form.lstExtensie.visible = !form.lstExtensie.visible;
  form.focus = &form.txtExtensie;
}

void chkLoggen_Click(Program& program, int value) {
  CheckBox& box = program.frmOpties.chkLoggen;
  if (!box.SetValue(value)) return;
  box.tool_tip = box.value() == 1 ? Normaliseer(program, InProgramFolder(program, kRunLogName))
                                  : std::string("Logging disabled");
}

void cmdToepassen_Click(Program& program) {
  if (IsBusy(program)) return;
  OptionsForm& form = program.frmOpties;
  const std::string& separator = form.txtSeparator.text;
  program.settings.gSeparator = separator.empty() ? kDefaultSeparator : separator;
  program.settings.gJoker = CharacterCode(program, form.txtJoker.text.get());
  form.visible = false;
}

void imOptionsToFolder_Click(Program& program) {
  SystemService& system = program.host.system;
  const std::string program_folder = system.ProgramFolder();
  const bool redirected =
      system.HasRedirectedStore() &&
      program_folder.find(program.locations.gCommonFilesLocation) != std::string::npos;
  const std::string folder =
      redirected ? program.locations.gLocalAppData + kRedirectedStore : program_folder;
  program.host.user.ShowMessage("(Required) location Init.dat file: \r\n\r\n" + folder,
                                MessageButtons::kOk, MessageIcon::kInformation);
  const std::string file = Normaliseer(program, JoinPath(program, folder, kInitFileName));
  if (FileExists(program, file)) system.StartFileBrowser(file);
}

}  // namespace morvex
