#include "core/run/start_up.h"

#include <chrono>
#include <string_view>

#include "core/list/editor.h"
#include "core/program/paths.h"
#include "core/run/main_window_events.h"
#include "core/run/run_driver.h"
#include "core/settings/command_line.h"
#include "core/settings/options.h"
#include "core/settings/settings_file.h"

namespace morvex {
namespace {

constexpr std::string_view kLocalAppDataEntry = "LOCALAPPDATA=";
constexpr std::string_view kCommonFilesEntry = "CommonProgramFiles(x86)=";

// A key code and shift state that the entry field ignores.
constexpr int kNoKey = 1;
constexpr int kNoShift = 0;

void PrepareWindows(Program& program) {
  program.frmOpties.visible = false;
  program.frmMorvex.cmdGo.enabled = false;
  program.frmOpties.chkLoggen.tool_tip = "Logging disabled";
  program.frmOpties.lstExtensie.visible = false;
  txtExtensie_KeyDown(program, kNoKey, kNoShift);
  program.frmMorvex.ProgressBar1.visible = false;
  program.frmMorvex.visible = true;
}

void UnloadAll(Program& program) {
  Unload(program.frmMorvex);
  Unload(program.frmReplacements);
  Unload(program.frmOpties);
}

// Closes what the user opened during the delay, because it would cover the window that shows the
// run, or change the paths of the run.
void CloseWhatIsOpen(Program& program) {
  frmOpties_Close(program);
  if (program.frmReplacements.visible) frmReplacements_Close(program);
  if (program.frmMorvex.FolderTreeview1.visible) FolderTreeview1_Cancelled(program);
}

void RunUnattended(Program& program) {
  if (program.settings.AutoRunDelay > 0) {
    Wait(program, std::chrono::milliseconds(program.settings.AutoRunDelay));
    CloseWhatIsOpen(program);
  }
  // The user may have clicked Exit during the delay.
  if (program.Beeindigd) return;
  cmdAnonymize_Click(program);
  cmdGo_Click(program);
  cmdExit_Click(program);
}

}  // namespace

std::string FindLocalAppData(SystemService& system) {
  for (int index = 1;; ++index) {
    const std::string entry = system.EnvironmentEntry(index);
    if (entry.starts_with(kLocalAppDataEntry)) return entry.substr(kLocalAppDataEntry.size());
    if (entry.empty()) return "";
  }
}

std::string FindCommonFilesLocation(SystemService& system) {
  std::string found;
  for (int index = 1;; ++index) {
    const std::string entry = system.EnvironmentEntry(index);
    if (entry.empty()) break;
    if (!entry.starts_with(kCommonFilesEntry)) continue;
    found = entry.substr(kCommonFilesEntry.size());
    if (found.empty()) break;
  }
  const std::size_t first = found.find('\\');
  if (first == std::string::npos) return "";
  const std::size_t second = found.find('\\', first + 1);
  return second == std::string::npos ? "" : found.substr(0, second + 1);
}

ErrorNumber StartUp(Program& program) {
  program.frmMorvex.loaded = true;
  program.locations.help_file = InProgramFolder(program, "MorvexHELP.chm");
  program.locations.gLocalAppData = FindLocalAppData(program.host.system);
  program.locations.gCommonFilesLocation = FindCommonFilesLocation(program.host.system);
  if (program.settings.gSeparator.empty()) program.settings.gSeparator = kDefaultSeparator;
  if (program.Beeindigd) return ErrorNumber::kNone;
  program.settings.AutoRunDelay = 0;
  const ErrorNumber error =
      ApplyCommandLine(program, SplitCommandLine(program.host.system.CommandLineText()));
  if (error != ErrorNumber::kNone) {
    UnloadAll(program);
    return error;
  }
  ReadInitFile(program);
  program.frmOpties.loaded = true;
  // An unattended start that cannot run ends the program, because nobody is there to use an idle
  // form.
  if (!WhyNoRun(program).empty()) program.Beeindigd = true;
  if (program.Beeindigd) {
    UnloadAll(program);
    return ErrorNumber::kNone;
  }
  PrepareWindows(program);
  if (program.settings.AutoRunFromInitFile) RunUnattended(program);
  return ErrorNumber::kNone;
}

bool HasEnded(const Program& program) {
  return !program.frmMorvex.loaded && !program.frmOpties.loaded && !program.frmReplacements.loaded;
}

int ExitStatus(const Program& program) {
  constexpr int kAllDone = 0;
  constexpr int kNotDone = 1;
  constexpr int kCopiesLack = 3;
  if (program.run.end != RunEnd::kFinished) return kNotDone;
  return program.run.LacksCopies() ? kCopiesLack : kAllDone;
}

}  // namespace morvex
