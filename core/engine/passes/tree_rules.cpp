#include "core/engine/passes/tree_rules.h"

#include <algorithm>

#include "core/program/paths.h"

namespace morvex {

TreeRules::TreeRules(Program& program, const std::string& source, const std::string& target)
    : program_(program),
      source_(program.host.files.LookUpFolder(source)),
      target_(program.host.files.LookUpFolder(target)),
      target_real_path_(program.host.files.RealPath(target)) {
  if (source_) current_path_.push_back({source_.value.identity});
}

ErrorNumber TreeRules::error() const {
  for (const ErrorNumber error : {source_.error, target_.error, target_real_path_.error}) {
    if (error != ErrorNumber::kNone) return error;
  }
  return ErrorNumber::kNone;
}

Result<PassedOver> TreeRules::WhyNotEntered(const FolderInfo& folder) const {
  const bool is_on_the_path =
      std::any_of(current_path_.begin(), current_path_.end(),
                  [&](const Step& step) { return step.identity == folder.identity; });
  if (is_on_the_path) return PassedOver::kLoop;
  if (target_ && target_.value.identity == folder.identity) return PassedOver::kTargetFolder;
  if (folder.is_link) {
    const Result<bool> inside = InsideTarget(folder.path);
    if (!inside) return inside.error;
    if (inside.value) return PassedOver::kTargetFolder;
  }
  if (IsByLink(folder)) {
    const auto visits = visits_by_links_.find({folder.identity.device, folder.identity.number});
    const bool too_often = visits != visits_by_links_.end() && visits->second >= kMostVisitsByLinks;
    if (too_often) return PassedOver::kLinkedTooOften;
  }
  return PassedOver::kNo;
}

void TreeRules::Enter(const FolderInfo& folder) {
  const bool by_link = IsByLink(folder);
  if (by_link) ++visits_by_links_[{folder.identity.device, folder.identity.number}];
  current_path_.push_back({folder.identity, by_link});
}

bool TreeRules::MayWriteInto(const FolderInfo& folder) const {
  return !folder.is_link && !(source_ && source_.value.identity == folder.identity);
}

Result<bool> TreeRules::InsideTarget(const std::string& path) const {
  if (!target_real_path_) return false;
  const Result<std::string> real = program_.host.files.RealPath(path);
  if (!real) return real.error;
  return IsWithin(program_, real.value, target_real_path_.value);
}

void FolderStack::Enter(Level level, const FolderInfo& folder) {
  rules_.Enter(folder);
  levels_.push_back(std::move(level));
}

const FolderEntry* FolderStack::Next() {
  while (!levels_.empty()) {
    Level& level = levels_.back();
    if (level.next < level.listing.size()) return &level.listing[level.next++];
    if (levels_.size() > 1) rules_.Leave();
    levels_.pop_back();
  }
  return nullptr;
}

Result<std::uint64_t> FolderSize(Program& program, TreeRules& rules, const FolderInfo& folder) {
  FileService& files = program.host.files;
  Result<std::vector<FolderEntry>> listing = files.ListFolder(folder.path);
  if (!listing) return listing.error;
  FolderStack walk(rules);
  walk.Start({folder.path, "", std::move(listing.value)});
  std::uint64_t size = 0;
  while (const FolderEntry* entry = walk.Next()) {
    YieldToWindows(program);
    if (program.Beeindigd) return size;
    const std::string path = JoinPath(program, walk.level().source, entry->name);
    if (entry->kind == EntryKind::kFile) {
      const Result<FileInfo> file = files.LookUpFile(path);
      if (!file && file.error != ErrorNumber::kFileNotFound) return file.error;
      size += file.value.size;
    }
    if (entry->kind != EntryKind::kFolder) continue;
    const Result<FolderInfo> below = files.LookUpFolder(path);
    if (!below) return below.error;
    const Result<PassedOver> why = rules.WhyNotEntered(below.value);
    if (!why) return why.error;
    if (why.value != PassedOver::kNo) continue;
    listing = files.ListFolder(below.value.path);
    if (!listing) return listing.error;
    walk.Enter({below.value.path, "", std::move(listing.value)}, below.value);
  }
  return size;
}

}  // namespace morvex
