// A listing is read completely before it is returned. The system reports the kind of most names;
// only links, and names whose kind the file system does not report, need another call.
#include "host/posix/posix_listing.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <string_view>

#include "host/posix/posix_calls.h"
#include "host/posix/posix_errors.h"

namespace morvex::posix {
namespace {

struct FolderCloser {
  void operator()(DIR* folder) const { closedir(folder); }
};
using FolderHandle = std::unique_ptr<DIR, FolderCloser>;

EntryKind KindOfMode(mode_t mode) {
  if (S_ISREG(mode)) return EntryKind::kFile;
  return S_ISDIR(mode) ? EntryKind::kFolder : EntryKind::kSpecial;
}

// Whether `code` proves that a link's target does not exist.
bool LeadsNowhere(int code) {
  return code == ENOENT || code == ENOTDIR || code == ELOOP || code == ENAMETOOLONG;
}

Examined ExamineLink(int folder, const char* name) {
  Examined examined;
  examined.is_link = true;
  struct stat status {};
  if (fstatat(folder, name, &status, 0) == 0) {
    examined.kind = KindOfMode(status.st_mode);
  } else {
    // After any other error the link counts as a link to a file; opening the link will report the
    // reason.
    examined.kind = LeadsNowhere(errno) ? EntryKind::kBrokenLink : EntryKind::kFile;
  }
  return examined;
}

Result<Examined> ExamineUnknown(int folder, const char* name) {
  struct stat status {};
  if (fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
    if (errno == ENOENT) return Examined{};  // deleted after it was listed
    return LastError(Missing::kPath);
  }
  if (S_ISLNK(status.st_mode)) return ExamineLink(folder, name);
  return Examined{KindOfMode(status.st_mode), false};
}

}  // namespace

Result<Examined> ExamineEntry(int folder, const char* name, unsigned char type) {
  switch (type) {
    case DT_REG:
      return Examined{EntryKind::kFile, false};
    case DT_DIR:
      return Examined{EntryKind::kFolder, false};
    case DT_LNK:
      return ExamineLink(folder, name);
    case DT_UNKNOWN:
      return ExamineUnknown(folder, name);
    default:
      return Examined{EntryKind::kSpecial, false};
  }
}

Result<std::vector<FolderEntry>> ReadFolder(const std::string& path) {
  Descriptor opened = Open(path, O_RDONLY | O_DIRECTORY | O_NONBLOCK);
  if (!opened.IsOpen()) return LastError(Missing::kPath);
  const FolderHandle folder(fdopendir(opened.Get()));
  if (folder == nullptr) return LastError(Missing::kPath);
  opened.Release();
  std::vector<FolderEntry> entries;
  for (;;) {
    errno = 0;  // an errno that stays 0 tells the end from an error
    const dirent* entry = readdir(folder.get());
    if (entry == nullptr) break;
    const std::string_view name = entry->d_name;
    if (name == "." || name == "..") continue;
    const Result<Examined> examined =
        ExamineEntry(dirfd(folder.get()), entry->d_name, entry->d_type);
    if (!examined) return examined.error;
    if (!examined.value.kind) continue;
    entries.push_back({std::string(name), *examined.value.kind, examined.value.is_link});
  }
  if (errno != 0) return LastError(Missing::kPath);
  return entries;
}

Result<std::string> ReadLinkText(const std::string& path) {
  const Reach reach(path);
  if (!reach.Found()) return LastError(Missing::kFile);
  constexpr std::size_t kUsualSize = 256;
  std::string text(kUsualSize, '\0');
  for (;;) {
    const ssize_t size = readlinkat(reach.Folder(), reach.Name(), text.data(), text.size());
    if (size < 0 && errno == EINVAL) return ErrorNumber::kPathFileAccess;
    if (size < 0) return LastError(Missing::kFile);
    // A text that fills the buffer may be incomplete.
    if (static_cast<std::size_t>(size) < text.size()) {
      text.resize(static_cast<std::size_t>(size));
      return text;
    }
    text.resize(text.size() * 2);
  }
}

}  // namespace morvex::posix
