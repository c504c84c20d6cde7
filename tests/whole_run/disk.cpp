// Snapshots of a disk: how they are taken, read and changed. A snapshot keeps the order in which
// the system lists a folder, since a run handles the files in that order.

#include "disk.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <stdexcept>
#include <utility>

namespace morvex::whole_run {
namespace {

constexpr unsigned kPermissionBits = 0777;
constexpr std::int64_t kNanoseconds = 1'000'000'000;

std::vector<std::string> NamesIn(const std::string& path) {
  DIR* folder = opendir(path.c_str());
  if (folder == nullptr) {
    return {};
  }
  std::vector<std::string> names;
  while (const dirent* entry = readdir(folder)) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") {
      names.push_back(name);
    }
  }
  closedir(folder);
  return names;
}

std::string LinkText(const std::string& path) {
  std::array<char, 4096> text{};
  const ssize_t length = readlink(path.c_str(), text.data(), text.size());
  return length < 0 ? std::string() : std::string(text.data(), static_cast<std::size_t>(length));
}

}  // namespace

Disk Disk::Snapshot(const std::string& root) {
  Disk disk;
  disk.Read(root);
  return disk;
}

void Disk::Read(const std::string& path) {
  struct stat info {};
  if (lstat(path.c_str(), &info) != 0) {
    return;
  }
  Node node;
  node.permissions = static_cast<unsigned>(info.st_mode) & kPermissionBits;
  if (S_ISDIR(info.st_mode)) {
    node.kind = NodeKind::kFolder;
    node.listing = NamesIn(path);
  } else if (S_ISLNK(info.st_mode)) {
    node.kind = NodeKind::kLink;
    node.bytes = LinkText(path);
  } else {
    node.modified_ns = std::int64_t{info.st_mtim.tv_sec} * kNanoseconds + info.st_mtim.tv_nsec;
    if (S_ISREG(info.st_mode) && access(path.c_str(), R_OK) == 0) {
      node.bytes = ReadWholeFile(path);
    }
  }
  const std::vector<std::string> names = node.listing;
  nodes_[path] = std::move(node);
  for (const std::string& name : names) {
    Read(path + "/" + name);
  }
}

const Node* Disk::Find(const std::string& path) const {
  const auto found = nodes_.find(path);
  return found == nodes_.end() ? nullptr : &found->second;
}

bool Disk::IsFile(const std::string& path) const {
  const Node* node = Find(path);
  return node != nullptr && node->kind == NodeKind::kFile;
}

bool Disk::IsFolder(const std::string& path) const {
  const Node* node = Find(path);
  return node != nullptr && node->kind == NodeKind::kFolder;
}

bool Disk::MakeFolder(const std::string& path) {
  if (Find(path) != nullptr || !(nodes_.empty() || IsFolder(ParentPath(path)))) {
    return false;
  }
  Node folder;
  folder.kind = NodeKind::kFolder;
  Add(path, std::move(folder));
  return true;
}

void Disk::Add(const std::string& path, Node node) {
  const auto parent = nodes_.find(ParentPath(path));
  if (parent != nodes_.end() && Find(path) == nullptr) {
    parent->second.listing.push_back(NameOf(path));
  }
  nodes_[path] = std::move(node);
}

bool Disk::PutFile(const std::string& path, Node file) {
  if (IsFolder(path) || !IsFolder(ParentPath(path))) {
    return false;
  }
  Add(path, std::move(file));
  return true;
}

void Disk::SortListings(bool (*comes_before)(const std::string&, const std::string&)) {
  for (auto& [path, node] : nodes_) {
    std::sort(node.listing.begin(), node.listing.end(), comes_before);
  }
}

void Disk::ForgetPermissions() {
  for (auto& [path, node] : nodes_) {
    node.permissions.reset();
  }
}

void Disk::RemoveFile(const std::string& path) {
  if (IsFile(path)) {
    nodes_.erase(path);
  }
}

std::string LookedUpPath(std::string_view text, const std::string& current_folder) {
  if (text.empty()) {
    return {};
  }
  std::string whole(text);
  if (whole.front() != '/') {
    whole = current_folder + "/" + whole;
  }
  std::vector<std::string> steps;
  std::size_t begin = 0;
  while (begin < whole.size()) {
    std::size_t end = whole.find('/', begin);
    end = end == std::string::npos ? whole.size() : end;
    const std::string step = whole.substr(begin, end - begin);
    if (step == "..") {
      if (!steps.empty()) {
        steps.pop_back();
      }
    } else if (!step.empty() && step != ".") {
      steps.push_back(step);
    }
    begin = end + 1;
  }
  std::string path;
  for (const std::string& step : steps) {
    path += "/" + step;
  }
  return path.empty() ? "/" : path;
}

std::string ParentPath(const std::string& path) { return path.substr(0, path.rfind('/')); }

std::string NameOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

}  // namespace morvex::whole_run
