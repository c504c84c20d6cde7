// Searches a tree for leftovers: every name and the bytes of every file, several files at a time.
// Results come in the order of the tree.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "core/host/file_service.h"
#include "core/leftovers/leftover_search.h"
#include "core/leftovers/sought.h"

namespace morvex {

// Where a finding is: in the entry's name, in the text of a link, or in the file's bytes.
enum class Within { kName, kLink, kContents };

// A leftover with its own copy of the bytes around it.
struct Finding {
  Leftover leftover;  // its `around` is empty
  std::string around;
  Within within = Within::kContents;
};

enum class CheckedKind {
  kFile,
  kFolder,
  // Of the kinds below, only the name is searched, and for a link also the path that it holds:
  kFolderElsewhere,  // a folder that is searched under another path
  kBrokenLink,       // a link that leads to nothing
  kSpecial,          // a pipe, socket or device
};

// A file, folder or other entry of the tree.
struct CheckedEntry {
  // The most findings that one entry keeps; further ones are counted in `not_kept`.
  static constexpr std::size_t kMostKept = 100'000;

  std::string path;
  std::string name;  // the last name of the path
  CheckedKind kind = CheckedKind::kFile;
  bool is_link = false;
  std::string link_text = {};          // the path that a link holds
  std::vector<Finding> findings = {};  // in the name, then in the link's text, then in the bytes
  std::uint64_t not_kept = 0;
  std::uint64_t bytes = 0;                 // bytes searched
  ErrorNumber error = ErrorNumber::kNone;  // why the entry could not be read to its end
};

using TakeEntry = std::function<void(const CheckedEntry&)>;

// `tree` is a folder or a file. Links are followed, and every folder is searched once: a folder of
// the tree under its own path, a folder outside the tree under the first link that leads to it.
// Calls `take` for every entry, also for one without findings. Returns false when `keep_going`
// ended the check; `keep_going` may be empty, and several threads call it at the same time.
bool CheckTree(FileService& files, const std::string& tree, const Sought& sought,
               const KeepGoing& keep_going, const TakeEntry& take);

}  // namespace morvex
