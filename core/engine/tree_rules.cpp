#include "core/engine/tree_rules.h"

#include <algorithm>

#include "core/program/paths.h"

namespace morvex {

TreeRules::TreeRules(Program& program, const std::string& source, const std::string& target)
    : program_(program),
      source_(program.host.files.LookUpFolder(source)),
      target_(program.host.files.LookUpFolder(target)),
      target_real_path_(program.host.files.RealPath(target)) {
  if (source_) current_path_.push_back(source_.value.identity);
}

ErrorNumber TreeRules::error() const {
  for (const ErrorNumber error : {source_.error, target_.error, target_real_path_.error}) {
    if (error != ErrorNumber::kNone) return error;
  }
  return ErrorNumber::kNone;
}

PassedOver TreeRules::WhyNotEntered(const FolderInfo& folder) const {
  if (std::find(current_path_.begin(), current_path_.end(), folder.identity) !=
      current_path_.end()) {
    return PassedOver::kLoop;
  }
  const bool is_target = target_ && target_.value.identity == folder.identity;
  if (is_target || (folder.is_link && InsideTarget(folder.path))) return PassedOver::kTargetFolder;
  return PassedOver::kNo;
}

bool TreeRules::MayWriteInto(const FolderInfo& folder) const {
  return !folder.is_link && !(source_ && source_.value.identity == folder.identity);
}

bool TreeRules::InsideTarget(const std::string& path) const {
  if (!target_real_path_) return false;
  const Result<std::string> real = program_.host.files.RealPath(path);
  const char separator = program_.host.files.Separator();
  return real && (real.value + separator).starts_with(target_real_path_.value + separator);
}

Result<std::uint64_t> FolderSize(Program& program, TreeRules& rules, const FolderInfo& folder) {
  FileService& files = program.host.files;
  const Result<std::vector<FolderEntry>> listing = files.ListFolder(folder.path);
  if (!listing) return listing.error;
  std::uint64_t size = 0;
  for (const FolderEntry& entry : listing.value) {
    YieldToWindows(program);
    if (program.Beeindigd) return size;
    const std::string path = JoinPath(program, folder.path, entry.name);
    if (entry.kind == EntryKind::kFile) {
      const Result<FileInfo> file = files.LookUpFile(path);
      if (!file && file.error != ErrorNumber::kFileNotFound) return file.error;
      size += file.value.size;
      continue;
    }
    const Result<FolderInfo> below = files.LookUpFolder(path);
    if (!below) return below.error;
    if (rules.WhyNotEntered(below.value) != PassedOver::kNo) continue;
    const TreeRules::Visit visit(rules, below.value);
    const Result<std::uint64_t> size_below = FolderSize(program, rules, below.value);
    if (!size_below) return size_below.error;
    size += size_below.value;
  }
  return size;
}

}  // namespace morvex
