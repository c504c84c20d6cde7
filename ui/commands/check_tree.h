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

// A leftover with its own copy of what stands around.
struct Finding {
  Leftover leftover;
  std::string around;
  bool in_name = false;
};

// A file or folder that was gone through.
struct CheckedEntry {
  // So many findings of one file are kept; what is beyond is only counted.
  static constexpr std::size_t kMostKept = 100'000;

  std::string path;
  std::string name;  // of the file or folder itself
  bool is_folder = false;
  std::vector<Finding> findings;  // first those of the name
  std::uint64_t not_kept = 0;
  std::uint64_t bytes = 0;
  ErrorNumber error = ErrorNumber::kNone;  // why it could not be read to its end
};

using TakeEntry = std::function<void(const CheckedEntry&)>;

// `tree` is a folder or a file. Links are followed, unless they lead to a folder on the way to
// them. Every entry is told, also one that holds nothing.
void CheckTree(FileService& files, const std::string& tree, const Sought& sought,
               const TakeEntry& take);

}  // namespace morvex
