// Which folders a folder run enters, in a source tree that may contain links and may overlap with
// the target.
//
// The current path leads from the source to the folder that the walk is in. A link to a folder is
// followed, unless that folder is on the current path, because then the walk would never end.
// Folders that link to each other can be reached on very many paths, so links are followed into the
// same folder only kMostVisitsByLinks times. The target is never entered. Below the target, copies
// are never written into the source folder itself, nor into a folder that is a link. Folders are
// compared by identity, not by name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "core/program/program.h"
#include "core/program/run_observer.h"

namespace morvex {

class TreeRules {
 public:
  // The most times that one folder is entered on paths that contain a link.
  static constexpr std::int64_t kMostVisitsByLinks = 1000;

  // Either folder may be missing. A rule about a folder that is missing never applies.
  TreeRules(Program& program, const std::string& source, const std::string& target);

  // The first error of looking up the two folders. Rely on the rules only if it is kNone.
  ErrorNumber error() const;

  // Returns why the folder must not be entered from the current path, and kNo if it may be entered.
  // Returns an error if that cannot be decided.
  Result<PassedOver> WhyNotEntered(const FolderInfo& folder) const;
  // Whether copies may be written into `folder`, which lies below the target.
  bool MayWriteInto(const FolderInfo& folder) const;

  // Enter adds a folder to the end of the current path, Leave removes the last folder.
  void Enter(const FolderInfo& folder);
  void Leave() { current_path_.pop_back(); }

 private:
  struct Step {
    FileIdentity identity;
    bool by_link = false;  // this folder, or one above it on the path, is a link
  };
  bool IsByLink(const FolderInfo& folder) const {
    return folder.is_link || (!current_path_.empty() && current_path_.back().by_link);
  }
  Result<bool> InsideTarget(const std::string& path) const;

  Program& program_;
  Result<FolderInfo> source_;
  Result<FolderInfo> target_;
  Result<std::string> target_real_path_;
  std::vector<Step> current_path_;
  // The key is the folder's device and number.
  std::map<std::pair<std::uint64_t, std::uint64_t>, std::int64_t> visits_by_links_;
};

// A walk through a tree in pre-order. It keeps its state on the heap, because a tree may be deeper
// than the program's stack allows.
class FolderStack {
 public:
  // `rules` must have been created for the folder at which the walk starts, and must outlive the
  // walk.
  explicit FolderStack(TreeRules& rules) : rules_(rules) {}

  struct Level {
    std::string source;
    std::string target;                // may be empty
    std::vector<FolderEntry> listing;  // of `source`
    std::size_t next = 0;              // index in `listing`
  };

  // Makes Next return the entries of this folder before the remaining entries of the folder above.
  void Enter(Level level, const FolderInfo& folder);
  // Starts the walk with the entries of this folder.
  void Start(Level level) { levels_.push_back(std::move(level)); }

  // Returns the next entry of the current folder; after the folder's last entry, the next entry of
  // the folder above; null at the end of the walk. The entry is valid until the next call.
  const FolderEntry* Next();
  // The folder of the entry that Next returned.
  const Level& level() const { return levels_.back(); }

 private:
  TreeRules& rules_;
  std::vector<Level> levels_;
};

// Returns the total size in bytes of all files below `folder` that `rules` let a walk reach. A file
// that is deleted meanwhile counts as empty. Ends at the first other error and returns that error.
// After a stop request, returns the size so far.
Result<std::uint64_t> FolderSize(Program& program, TreeRules& rules, const FolderInfo& folder);

}  // namespace morvex
