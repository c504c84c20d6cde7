// How a folder run finds its way in a source tree that may hold links and may overlap with the
// target.
//
// A link to a folder is followed, unless it leads to a folder on the current path, which would
// never end. The target is never walked into, and nothing of a copy is written into the source
// folder itself or through a link. Folders are compared by identity, not by name.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/program/program.h"
#include "core/program/run_observer.h"

namespace morvex {

class TreeRules {
 public:
  // Either folder may be missing; what is missing is met nowhere.
  TreeRules(Program& program, const std::string& source, const std::string& target);

  // Why one of the two folders could not be looked up. Without both the rules protect nothing.
  ErrorNumber error() const;

  // Why the folder is not entered from the current path; kNo: it is.
  PassedOver WhyNotEntered(const FolderInfo& folder) const;
  // Copies may be written into the folder, one below the target.
  bool MayWriteInto(const FolderInfo& folder) const;

  // Keeps a folder on the current path as long as the object lives.
  class Visit {
   public:
    Visit(TreeRules& rules, const FolderInfo& folder) : rules_(rules) {
      rules_.current_path_.push_back(folder.identity);
    }
    ~Visit() { rules_.current_path_.pop_back(); }
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;

   private:
    TreeRules& rules_;
  };

 private:
  bool InsideTarget(const std::string& path) const;

  Program& program_;
  Result<FolderInfo> source_;
  Result<FolderInfo> target_;
  Result<std::string> target_real_path_;
  std::vector<FileIdentity> current_path_;
};

// The bytes of all files below `folder`. An error of any folder or file below gives that error.
Result<std::uint64_t> FolderSize(Program& program, TreeRules& rules, const FolderInfo& folder);

}  // namespace morvex
