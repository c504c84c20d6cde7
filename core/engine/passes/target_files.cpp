#include "core/engine/passes/target_files.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "core/program/paths.h"

namespace morvex {
namespace {

// Counts the entries in the folder and below that are not folders. A link counts, even one to a
// folder.
Result<std::int64_t> CountFiles(Program& program, const std::string& folder) {
  std::vector<std::string> folders = {folder};
  std::int64_t count = 0;
  while (!folders.empty()) {
    YieldToWindows(program);
    if (program.Beeindigd) return count;
    const std::string path = std::move(folders.back());
    folders.pop_back();
    const Result<std::vector<FolderEntry>> listing = program.host.files.ListFolder(path);
    if (!listing) return listing.error;
    for (const FolderEntry& entry : listing.value) {
      if (entry.kind == EntryKind::kFolder && !entry.is_link) {
        folders.push_back(JoinPath(program, path, entry.name));
      } else {
        ++count;
      }
    }
  }
  return count;
}

}  // namespace

void LookAtTarget(Program& program, const std::string& target) {
  const Result<std::vector<FolderEntry>> listing = program.host.files.ListFolder(target);
  program.run.target_was_empty = listing && listing.value.empty();
}

void CountOtherFiles(Program& program, const std::string& target) {
  RunState& run = program.run;
  if (run.target_was_empty) return;
  const Result<std::int64_t> count = CountFiles(program, target);
  if (program.Beeindigd) return;
  run.other_files_error = count.error;
  // Two files of the source may have the same name in the target, so the difference can be
  // negative.
  if (count) run.other_files = std::max(count.value - run.copies, std::int64_t{0});
}

std::string OtherFilesNote(const RunState& run) {
  if (run.other_files_error != ErrorNumber::kNone) {
    return "The target held files before, and what is not of this run could not be counted: " +
           ErrorLine(run.other_files_error) + ".";
  }
  if (run.other_files == 0) return "";
  const bool is_one = run.other_files == 1;
  return std::to_string(run.other_files) + (is_one ? " file" : " files") + " in the target " +
         (is_one ? "is" : "are") + " not of this run.";
}

}  // namespace morvex
