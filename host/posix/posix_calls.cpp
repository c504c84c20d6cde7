#include "host/posix/posix_calls.h"

#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <utility>

namespace morvex::posix {

Reach::Reach(const std::string& path) : folder_(AT_FDCWD), name_(path.c_str()) {
  constexpr std::size_t kMost = PATH_MAX - 1;
  std::size_t start = 0;
  while (path.size() - start > kMost) {
    const std::size_t end = path.rfind('/', start + kMost - 1);
    if (end == std::string::npos || end <= start) {
      code_ = ENAMETOOLONG;
      return;
    }
    const std::string piece = path.substr(start, end + 1 - start);
    Descriptor next = OpenAt(folder_, piece.c_str(), O_PATH | O_DIRECTORY);
    if (!next.IsOpen()) {
      code_ = errno;
      return;
    }
    opened_ = std::move(next);
    folder_ = opened_.Get();
    start = path.find_first_not_of('/', end);
    if (start == std::string::npos) start = path.size();
  }
  name_ = start == path.size() && start > 0 ? "." : path.c_str() + start;
}

bool Reach::Found() const {
  if (code_ != 0) errno = code_;
  return code_ == 0;
}

int Stat(const std::string& path, struct stat* status) {
  const Reach at(path);
  return at.Found() ? fstatat(at.Folder(), at.Name(), status, 0) : -1;
}

int LinkStat(const std::string& path, struct stat* status) {
  const Reach at(path);
  return at.Found() ? fstatat(at.Folder(), at.Name(), status, AT_SYMLINK_NOFOLLOW) : -1;
}

Descriptor Open(const std::string& path, int flags, mode_t permissions) {
  const Reach at(path);
  return at.Found() ? OpenAt(at.Folder(), at.Name(), flags, permissions) : Descriptor();
}

int MakeDirectory(const std::string& path, mode_t permissions) {
  const Reach at(path);
  return at.Found() ? mkdirat(at.Folder(), at.Name(), permissions) : -1;
}

int Unlink(const std::string& path) {
  const Reach at(path);
  return at.Found() ? unlinkat(at.Folder(), at.Name(), 0) : -1;
}

int Rename(const std::string& from, const std::string& to, unsigned flags) {
  const Reach source(from);
  const Reach target(to);
  if (!source.Found() || !target.Found()) return -1;
  // Old kernels and some file systems support only the call without flags.
  if (flags == 0) return renameat(source.Folder(), source.Name(), target.Folder(), target.Name());
  return renameat2(source.Folder(), source.Name(), target.Folder(), target.Name(), flags);
}

}  // namespace morvex::posix
