// The system's calls on paths, for paths of any length. The system itself takes only some thousand
// bytes at a time (PATH_MAX), which a deep tree outgrows; a longer path is walked in pieces from
// one open folder to the next. Results and errno are those of the call that each is named after.
#pragma once

#include <sys/stat.h>

#include <string>

#include "host/posix/posix_descriptor.h"

namespace morvex::posix {

// A path as the *at calls take it.
class Reach {
 public:
  // `path` must outlive it and hold no NUL byte.
  explicit Reach(const std::string& path);

  // False, with errno set, when a piece of the path leads to no folder.
  bool Found() const;
  int Folder() const { return folder_; }
  const char* Name() const { return name_; }

 private:
  Descriptor opened_;
  int folder_;
  const char* name_;
  int code_ = 0;
};

int Stat(const std::string& path, struct stat* status);
int LinkStat(const std::string& path, struct stat* status);
Descriptor Open(const std::string& path, int flags, mode_t permissions = 0);
int MakeDirectory(const std::string& path, mode_t permissions);
int Unlink(const std::string& path);
// `flags` as those of renameat2.
int Rename(const std::string& from, const std::string& to, unsigned flags = 0);

}  // namespace morvex::posix
