// System calls on paths of any length. The system takes only PATH_MAX bytes (4096 on Linux) per
// call; a longer path is walked piece by piece, from one open folder to the next. Each function
// returns the result of the system call that it is named after, and sets errno as that call does.
#pragma once

#include <sys/stat.h>

#include <string>

#include "host/posix/posix_descriptor.h"

namespace morvex::posix {

// A path in the form that the *at calls take: an open folder and the path from that folder.
class Reach {
 public:
  // `path` must outlive this object and contain no NUL byte.
  explicit Reach(const std::string& path);

  // False, with errno set, if a piece of the path is not a folder.
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
// `flags` are those of renameat2.
int Rename(const std::string& from, const std::string& to, unsigned flags = 0);

}  // namespace morvex::posix
