#include "ui/commands/source_remarks.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <deque>
#include <set>
#include <utility>
#include <vector>

#include "core/program/paths.h"
#include "core/text/shown_text.h"
#include "ui/commands/real_place.h"
#include "ui/commands/run_report.h"

namespace morvex {
namespace {

// Calls `take` with the path of every file in the source, and follows links. Each folder is visited
// once. A target inside the source is left out.
template <typename TakeFile>
void ForEachFile(const Program& program, const std::string& source, const std::string& target,
                 const TakeFile& take) {
  FileService& files = program.host.files;
  std::set<std::pair<std::uint64_t, std::uint64_t>> entered;  // device and number
  const auto enter = [&entered](const FileIdentity& folder) {
    return entered.emplace(folder.device, folder.number).second;
  };
  const Result<FolderInfo> left_out = files.LookUpFolder(target);
  if (left_out && WayFrom(program, source, target)) enter(left_out.value.identity);
  std::deque<std::string> waiting = {source};  // taken from the back; links go to the front
  while (!waiting.empty()) {
    const std::string folder = std::move(waiting.back());
    waiting.pop_back();
    const Result<FolderInfo> found = files.LookUpFolder(folder);
    if (!found || !enter(found.value.identity)) continue;
    const Result<std::vector<FolderEntry>> listing = files.ListFolder(folder);
    if (!listing) continue;
    for (const FolderEntry& entry : listing.value) {
      std::string path = JoinPath(program, folder, entry.name);
      if (entry.kind == EntryKind::kFile) take(path);
      if (entry.kind != EntryKind::kFolder) continue;
      if (entry.is_link) {
        waiting.push_front(std::move(path));
      } else {
        waiting.push_back(std::move(path));
      }
    }
  }
}

// Whether the name ends as a report's does.
bool IsReportName(const std::string& path) { return UpperCase(path).ends_with(".JSON"); }

}  // namespace

void WarnOfOwnFilesInSource(const Program& program, const std::string& settings_file,
                            CommandMessages& messages) {
  const std::string source = program.request.source;
  const std::string target = program.request.target;
  FileService& files = program.host.files;
  const bool is_single_file = FileExists(program, source);
  const auto warn = [&](const std::string& path, const char* what) {
    messages.Warn(ShownPath(path),
                  std::string(what) +
                      (is_single_file ? " is the source" : " is in the source folder") +
                      ", so it will be copied, with the names that it holds: move it elsewhere.");
  };
  const std::array<std::pair<std::string, const char*>, 2> own = {
      {{program.settings.SubstitutieFile, "the replacement list"},
       {settings_file, "the settings file"}}};
  if (is_single_file) {
    for (const auto& [path, what] : own) {
      if (IsSamePlace(program, source, path)) warn(path, what);
    }
    if (HoldsRunReport(files, source)) warn(source, "an older report");
    return;
  }
  std::array<Result<FileInfo>, 2> own_files;
  std::transform(own.begin(), own.end(), own_files.begin(),
                 [&](const auto& each) { return files.LookUpFile(each.first); });
  ForEachFile(program, source, target, [&](const std::string& path) {
    const Result<FileInfo> file = files.LookUpFile(path);
    for (std::size_t i = 0; i < own.size(); ++i) {
      const Result<FileInfo>& each = own_files.at(i);
      if (file && each && file.value.identity == each.value.identity) warn(path, own.at(i).second);
    }
    if (IsReportName(path) && HoldsRunReport(files, path)) warn(path, "an older report");
  });
}

}  // namespace morvex
