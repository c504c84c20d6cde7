#include "ui/commands/source_remarks.h"

#include <vector>

#include "core/program/paths.h"
#include "ui/commands/real_place.h"
#include "ui/commands/run_report.h"
#include "ui/commands/shown_text.h"

namespace morvex {
namespace {

// The files that may be reports.
std::vector<std::string> ReportsIn(const Program& program, const std::string& source) {
  FileService& files = program.host.files;
  std::vector<std::string> reports;
  const Result<std::vector<FolderEntry>> listing = files.ListFolder(source);
  if (!listing) return reports;
  for (const FolderEntry& entry : listing.value) {
    if (entry.kind != EntryKind::kFile || !UpperCase(entry.name).ends_with(".JSON")) continue;
    std::string path = JoinPath(program, source, entry.name);
    if (HoldsRunReport(files, path)) reports.push_back(std::move(path));
  }
  return reports;
}

}  // namespace

void WarnOfOwnFilesInSource(const Program& program, const std::string& settings_file,
                            CommandMessages& messages) {
  const std::string source = program.frmMorvex.Text1(kSourceBox).text;
  const std::string target = program.frmMorvex.Text1(kTargetBox).text;
  const bool is_single_file = FileExists(program, source);
  const auto is_copied = [&](const std::string& path) {
    if (!FileExists(program, path)) return false;
    if (is_single_file) return IsSamePlace(program, source, path);
    // A target in the source is no part of it.
    const bool is_target = WayFrom(program, source, target) && WayFrom(program, target, path);
    return WayFrom(program, source, path) && !is_target;
  };
  const auto warn = [&](const std::string& path, const char* what) {
    messages.Warn(
        ShownPath(path),
        std::string(what) + (is_single_file ? " is the source" : " lies in the source") +
            ", so it will be copied with what it says of the names: move it out of there.");
  };
  if (is_copied(program.settings.SubstitutieFile)) {
    warn(program.settings.SubstitutieFile, "the replacement list");
  }
  if (is_copied(settings_file)) warn(settings_file, "the settings file");
  if (is_single_file) {
    if (HoldsRunReport(program.host.files, source)) warn(source, "an older report");
    return;
  }
  for (const std::string& report : ReportsIn(program, source)) warn(report, "an older report");
}

}  // namespace morvex
