// An absolute path keeps the names that the user typed, links included. Only ".." needs a look at
// the disk, because after a link it means the parent of the link's target.
#include "host/posix/posix_paths.h"

#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

namespace morvex::posix {
namespace {

// The most links in a row that are followed; the system has the same limit.
constexpr int kLongestChain = 40;

// Takes ownership of the text that a system call has allocated, and returns the text. If `text` is
// null, returns the call's error.
Result<std::string> TakeText(char* text) {
  if (text == nullptr) return LastError(Missing::kPath);
  const std::unique_ptr<char, decltype(&free)> owner(text, &free);
  return std::string(text);
}

// Replaces `path` by its parent; for a link, by the parent of the link's target. `path` is absolute
// and has no separator at its end; "" means the root and stays.
ErrorNumber GoUp(std::string& path) {
  if (path.empty()) return ErrorNumber::kNone;
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0) return LastError(Missing::kPath);
  if (S_ISLNK(status.st_mode)) {
    Result<std::string> target = ResolvedPath(path);
    if (!target) return target.error;
    path = std::move(target.value);
  }
  path.erase(path.rfind('/'));
  return ErrorNumber::kNone;
}

// Whether a look at the names shows that AbsolutePath would return `path` unchanged. The paths of a
// tree walk are tidy.
bool IsTidy(const std::string& path) {
  for (std::size_t at = 0; at < path.size();) {
    if (path[at] != '/') return false;
    const std::size_t end = std::min(path.find('/', at + 1), path.size());
    const std::string_view name = std::string_view(path).substr(at + 1, end - at - 1);
    if (name.empty() || name == "." || name == "..") return false;
    at = end;
  }
  return true;
}

}  // namespace

ErrorNumber CheckPath(const std::string& path, Missing missing) {
  if (path.empty()) return ErrorFromCode(ENOENT, missing);
  if (path.find('\0') != std::string::npos) return ErrorNumber::kBadFileName;
  return ErrorNumber::kNone;
}

PathParts SplitPath(const std::string& path) {
  const std::size_t separator = path.rfind('/');
  if (separator == std::string::npos) return {".", path};
  const std::size_t last = path.find_last_not_of('/', separator);
  PathParts parts;
  parts.folder = last == std::string::npos ? "/" : path.substr(0, last + 1);
  parts.name = path.substr(separator + 1);
  return parts;
}

Result<std::string> AbsolutePath(const std::string& path) {
  if (IsTidy(path)) return path;
  std::string absolute;
  if (path.front() != '/') {
    Result<std::string> current = TakeText(getcwd(nullptr, 0));
    if (!current) return current;
    if (current.value != "/") absolute = std::move(current.value);
  }
  std::size_t start = 0;
  while (start < path.size()) {
    const std::size_t end = std::min(path.find('/', start), path.size());
    const std::string name = path.substr(start, end - start);
    start = end + 1;
    if (name.empty() || name == ".") continue;
    if (name == "..") {
      const ErrorNumber error = GoUp(absolute);
      if (error != ErrorNumber::kNone) return error;
    } else {
      absolute.append("/").append(name);
    }
  }
  if (absolute.empty()) absolute.push_back('/');
  return absolute;
}

Result<std::string> ResolvedPath(const std::string& path) {
  return TakeText(realpath(path.c_str(), nullptr));
}

Result<std::string> ReadLink(const std::string& path) {
  std::string target(256, '\0');
  for (;;) {
    const ssize_t length = readlink(path.c_str(), target.data(), target.size());
    if (length < 0) return LastError(Missing::kFile);
    const auto taken = static_cast<std::size_t>(length);
    if (taken < target.size()) {
      target.resize(taken);
      return target;
    }
    target.resize(target.size() * 2);
  }
}

Result<std::string> FollowLinks(const std::string& path) {
  std::string at = path;
  for (int link = 0; link < kLongestChain; ++link) {
    struct stat status {};
    if (lstat(at.c_str(), &status) != 0) {
      if (errno == ENOENT) return at;
      return LastError(Missing::kPath);
    }
    if (!S_ISLNK(status.st_mode)) return at;
    const Result<std::string> target = ReadLink(at);
    if (!target) return target;
    const bool from_root = !target.value.empty() && target.value.front() == '/';
    at = from_root ? target.value : SplitPath(at).folder + "/" + target.value;
  }
  return ErrorNumber::kPathFileAccess;
}

}  // namespace morvex::posix
