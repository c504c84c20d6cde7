// Goes through a tree and looks for leftovers in every name and every file's bytes, several files
// at a time. What is found is told in the order of the tree.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "core/host/file_service.h"
#include "core/leftovers/leftover_search.h"
#include "core/leftovers/sought.h"

namespace morvex {

// What a finding stands in.
enum class Within { kName, kLink, kContents };

// A leftover with its own copy of what stands around.
struct Finding {
  Leftover leftover;
  std::string around;
  Within within = Within::kContents;
};

enum class CheckedKind {
  kFile,
  kFolder,
  // Only the name of these is searched, and of a link the text that says where it leads:
  kFolderElsewhere,  // it is gone through under another path
  kBrokenLink,       // leads to nothing
  kSpecial,          // a pipe, socket or device
};

// Something with a name in the tree.
struct CheckedEntry {
  // So many findings of one file are kept; what is beyond is only counted.
  static constexpr std::size_t kMostKept = 100'000;

  std::string path;
  std::string name;  // of the file or folder itself
  CheckedKind kind = CheckedKind::kFile;
  bool is_link = false;
  std::string link_text = {};          // where a link leads, as it was written
  std::vector<Finding> findings = {};  // first those of the name, then those of the link's text
  std::uint64_t not_kept = 0;
  std::uint64_t bytes = 0;
  ErrorNumber error = ErrorNumber::kNone;  // why it could not be read to its end
};

using TakeEntry = std::function<void(const CheckedEntry&)>;

// `tree` is a folder or a file. Links are followed, but every folder is gone through once: one in
// the tree under its own path, one outside of it under the first link that leads there. Every entry
// is told, also one that holds nothing. False when `keep_going`, which may be empty and is asked by
// several threads at a time, ended it.
bool CheckTree(FileService& files, const std::string& tree, const Sought& sought,
               const KeepGoing& keep_going, const TakeEntry& take);

}  // namespace morvex
