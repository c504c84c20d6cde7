#include "ui/commands/report_place.h"

#include "core/program/paths.h"
#include "ui/commands/shown_text.h"

namespace morvex {
namespace {

// The folder in which a path's last name lies, without links; as it stands where it is none yet.
std::string RealFolderOf(const Program& program, const std::string& path) {
  const std::string folder = FolderOf(program, path);
  const Result<std::string> real = program.host.files.RealPath(folder);
  return real ? real.value : folder;
}

// Whether or not there are such files.
bool IsSamePlace(const Program& program, const std::string& one, const std::string& other) {
  const Result<bool> same = IsSameFile(program, one, other);
  if (same && same.value) return true;
  return NameIn(program, one) == NameIn(program, other) &&
         RealFolderOf(program, one) == RealFolderOf(program, other);
}

bool LiesBelow(const Program& program, const std::string& path, const std::string& folder) {
  if (folder.empty()) return false;
  const Result<std::string> real = program.host.files.RealPath(folder);
  return IsWithin(program, RealFolderOf(program, path), real ? real.value : folder) ||
         IsWithin(program, path, folder);
}

}  // namespace

bool MayHoldReport(const Program& program, const std::string& report,
                   const std::string& settings_file, CommandMessages& messages) {
  const std::string place = ShownPath(report);
  const std::string source = program.frmMorvex.Text1(kSourceBox).text;
  const std::string target = program.frmMorvex.Text1(kTargetBox).text;
  const bool is_single_file = FileExists(program, source);
  const auto takes = [&](const std::string& other, const char* what) {
    if (other.empty() || !IsSamePlace(program, report, other)) return false;
    messages.Error(
        place, std::string("is ") + what + ": name another file for the report. Nothing was run.");
    return true;
  };
  if (takes(program.settings.SubstitutieFile, "the replacement list") ||
      takes(settings_file, "the settings file") ||
      (is_single_file && (takes(source, "the source") || takes(target, "the target")))) {
    return false;
  }
  if (!is_single_file &&
      (LiesBelow(program, report, source) || LiesBelow(program, report, target))) {
    messages.Warn(place,
                  "the report will lie among the files of the source or the target and holds the "
                  "list's texts: name a place outside of both, or take it out before you hand the "
                  "copies over.");
    return true;
  }
  const Result<FolderInfo> folder = program.host.files.LookUpFolder(FolderOf(program, report));
  if (!folder) messages.Error(place, ErrorLine(folder.error) + ". Nothing was run.");
  return static_cast<bool>(folder);
}

}  // namespace morvex
