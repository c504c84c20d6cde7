// How a folder run finds its way in a source tree that may hold links and may overlap with the
// target.
//
// A link to a folder is followed, unless it leads to a folder on the current path, which would
// never end. Folders that link to each other can be reached on more paths than anybody could copy:
// links lead into one and the same folder a bounded number of times. The target is never walked
// into, and nothing of a copy is written into the source folder itself or through a link. Folders
// are compared by identity, not by name.
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
  // So many times a folder is entered on paths with a link in them.
  static constexpr std::int64_t kMostVisitsByLinks = 1000;

  // Either folder may be missing; what is missing is met nowhere.
  TreeRules(Program& program, const std::string& source, const std::string& target);

  // Why one of the two folders could not be looked up. Without both the rules protect nothing.
  ErrorNumber error() const;

  // Why the folder is not entered from the current path, kNo: it is; an error where that cannot be
  // told.
  Result<PassedOver> WhyNotEntered(const FolderInfo& folder) const;
  // Copies may be written into the folder, one below the target.
  bool MayWriteInto(const FolderInfo& folder) const;

  // The current path grows by a folder that is entered, and shrinks again when it is left.
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
  // By device and number of the folder.
  std::map<std::pair<std::uint64_t, std::uint64_t>, std::int64_t> visits_by_links_;
};

// A walk through a tree in pre-order. It keeps what it has still to do in memory of its own: a tree
// may be deeper than a program's stack.
class FolderStack {
 public:
  // `rules` starts at the folder in which the walk starts, and must outlive the walk.
  explicit FolderStack(TreeRules& rules) : rules_(rules) {}

  struct Level {
    std::string source;
    std::string target;                // may be empty
    std::vector<FolderEntry> listing;  // of `source`
    std::size_t next = 0;              // of it
  };

  // The next folder to look at is one of this folder.
  void Enter(Level level, const FolderInfo& folder);
  // The same for the folder in which the walk starts.
  void Start(Level level) { levels_.push_back(std::move(level)); }

  // The next name of the folder that is being looked at, and behind its last one of the folder
  // above; null at the end of the walk. Valid until the next call.
  const FolderEntry* Next();
  // The folder that the name is of.
  const Level& level() const { return levels_.back(); }

 private:
  TreeRules& rules_;
  std::vector<Level> levels_;
};

// The bytes of all files below `folder`. An error of any folder or file below gives that error.
Result<std::uint64_t> FolderSize(Program& program, TreeRules& rules, const FolderInfo& folder);

}  // namespace morvex
