#include "tests/support/memory_files.h"

#include <algorithm>
#include <utility>

namespace morvex::test {
namespace {

constexpr int kMostLinks = 16;

class MemoryInput : public InputFile {
 public:
  MemoryInput(MemoryFiles& files, std::string path, std::shared_ptr<std::string> bytes)
      : files_(files), path_(std::move(path)), bytes_(std::move(bytes)), size_(bytes_->size()) {}
  Result<bool> HasChanged() override { return bytes_->size() != size_; }
  Result<std::size_t> ReadAt(std::uint64_t offset, char* into, std::size_t size) override {
    const ErrorNumber error = files_.Asked("ReadAt", path_);
    if (error != ErrorNumber::kNone) return error;
    if (offset >= bytes_->size()) return std::size_t{0};
    return bytes_->copy(into, size, offset);
  }

 private:
  MemoryFiles& files_;
  std::string path_;
  std::shared_ptr<std::string> bytes_;
  std::size_t size_;  // when it was opened
};

}  // namespace

// Moves, copies and deletes by the file's path, as the calls of the service do.
class MemoryWorkFile : public WorkFile {
 public:
  MemoryWorkFile(MemoryFiles& files, const std::string& path, std::shared_ptr<std::string> bytes)
      : WorkFile(path), files_(files), bytes_(std::move(bytes)) {}
  ErrorNumber WriteAt(std::uint64_t offset, std::string_view bytes) override {
    const ErrorNumber error = files_.Asked("WriteAt", path());
    if (error != ErrorNumber::kNone) return error;
    if (bytes_->size() < offset + bytes.size()) bytes_->resize(offset + bytes.size());
    bytes_->replace(offset, bytes.size(), bytes);
    return ErrorNumber::kNone;
  }
  ErrorNumber Close() override { return files_.Asked("Close", path()); }
  ErrorNumber CopyTo(const std::string& to) override {
    const ErrorNumber error = files_.Asked("CopyTo", to);
    return error != ErrorNumber::kNone ? error : files_.Copy(path(), to, {});
  }
  ErrorNumber MoveTo(const std::string& to, const KeepGoing& keep_going) override {
    const ErrorNumber error = files_.Asked("MoveTo", to);
    return error != ErrorNumber::kNone ? error : files_.Move(path(), to, keep_going);
  }
  ErrorNumber MoveToFreeName(const std::string& to) override {
    // `fail` is asked about "MoveTo", so an error for MoveTo also hits MoveToFreeName.
    const ErrorNumber error = files_.Asked("MoveTo", to);
    return error != ErrorNumber::kNone ? error : files_.MoveToFree(path(), to);
  }
  ErrorNumber Discard() override {
    const ErrorNumber error = files_.Asked("Discard", path());
    return error != ErrorNumber::kNone ? error : files_.Delete(path());
  }

 private:
  MemoryFiles& files_;
  std::shared_ptr<std::string> bytes_;
};

MemoryFiles::MemoryFiles(char separator) : separator_(separator) { AddFolder(Root()); }

std::string MemoryFiles::Root() const { return separator_ == '/' ? "/" : "C:\\"; }

std::string MemoryFiles::Parent(const std::string& path) const {
  const std::size_t end = path.rfind(separator_);
  if (end == std::string::npos || path.size() <= Root().size()) return "";
  return end < Root().size() ? path.substr(0, Root().size()) : path.substr(0, end);
}

std::string MemoryFiles::Name(const std::string& path) const {
  return path.substr(path.rfind(separator_) + 1);
}

std::string MemoryFiles::Absolute(const std::string& path) const {
  const bool absolute =
      path.starts_with(Root()) || (separator_ == '\\' && path.substr(1, 1) == ":");
  std::string all = absolute ? path : Root() + path;
  const std::string root = absolute && separator_ == '\\' ? all.substr(0, 2) + "\\" : Root();
  std::vector<std::string> names;
  std::string name;
  for (std::size_t i = root.size() - 1; i <= all.size(); ++i) {
    if (i < all.size() && all[i] != separator_) {
      name += all[i];
      continue;
    }
    if (name == "..") {
      if (!names.empty()) names.pop_back();
    } else if (!name.empty() && name != ".") {
      names.push_back(name);
    }
    name.clear();
  }
  std::string result = root;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) result += separator_;
    result += names[i];
  }
  return result;
}

const MemoryFiles::Node* MemoryFiles::Find(const std::string& path) const {
  const auto found = nodes_.find(path);
  return found == nodes_.end() ? nullptr : &found->second;
}

std::string MemoryFiles::Resolve(const std::string& path, bool last_too) const {
  std::string current = Absolute(path);
  for (int links = 0; links < kMostLinks; ++links) {
    bool replaced = false;
    for (std::string prefix = current; !prefix.empty(); prefix = Parent(prefix)) {
      if (prefix == current && !last_too) continue;
      const Node* node = Find(prefix);
      if (node == nullptr || node->kind != Kind::kLink) continue;
      current = Absolute(node->leads_to + current.substr(prefix.size()));
      replaced = true;
      break;
    }
    if (!replaced) return current;
  }
  return "";
}

MemoryFiles::Node& MemoryFiles::Make(const std::string& path, Kind kind) {
  const std::string parent = Parent(path);
  if (!parent.empty() && Find(parent) == nullptr) Make(parent, Kind::kFolder);
  Node& node = nodes_[path];
  node = Node{};
  node.kind = kind;
  node.number = next_number_++;
  if (kind == Kind::kFile) node.bytes = std::make_shared<std::string>();
  return node;
}

void MemoryFiles::AddFolder(const std::string& path) { Make(Absolute(path), Kind::kFolder); }

void MemoryFiles::AddFile(const std::string& path, const std::string& bytes, WallTime modified,
                          std::uint32_t permissions) {
  Node& node = Make(Absolute(path), Kind::kFile);
  *node.bytes = bytes;
  node.modified = modified;
  node.permissions = permissions;
}

void MemoryFiles::AddLink(const std::string& path, const std::string& leads_to) {
  Make(path, Kind::kLink).leads_to = leads_to;
}

void MemoryFiles::AddPipe(const std::string& path) { Make(path, Kind::kPipe); }

bool MemoryFiles::IsFolder(const std::string& path) const {
  const Node* node = Find(path);
  return node != nullptr && node->kind == Kind::kFolder;
}

bool MemoryFiles::IsLink(const std::string& path) const {
  const Node* node = Find(path);
  return node != nullptr && node->kind == Kind::kLink;
}

std::vector<std::string> MemoryFiles::Below(const std::string& folder) const {
  std::vector<std::string> paths;
  const std::string prefix = folder.ends_with(separator_) ? folder : folder + separator_;
  for (const auto& [path, node] : nodes_) {
    if (!path.starts_with(prefix) || path == prefix) continue;
    paths.push_back(node.kind == Kind::kFolder ? path + separator_ : path);
  }
  return paths;
}

ErrorNumber MemoryFiles::Asked(const char* call, const std::string& path) {
  ++calls;
  return fail ? fail(call, path) : ErrorNumber::kNone;
}

Result<FileInfo> MemoryFiles::LookUpFile(const std::string& path) {
  if (const ErrorNumber error = Asked("LookUpFile", path); error != ErrorNumber::kNone)
    return error;
  if (path.empty()) return ErrorNumber::kFileNotFound;
  const Node* node = Find(Resolve(path, true));
  if (node == nullptr || node->kind != Kind::kFile) return ErrorNumber::kFileNotFound;
  const std::string absolute = Absolute(path);
  return FileInfo{absolute,       Parent(absolute),  Name(absolute),   node->bytes->size(),
                  node->modified, node->permissions, {1, node->number}};
}

Result<FolderInfo> MemoryFiles::LookUpFolder(const std::string& path) {
  if (const ErrorNumber error = Asked("LookUpFolder", path); error != ErrorNumber::kNone) {
    return error;
  }
  if (path.empty()) return ErrorNumber::kPathNotFound;
  const Node* node = Find(Resolve(path, true));
  if (node == nullptr || node->kind != Kind::kFolder) return ErrorNumber::kPathNotFound;
  const Node* last = Find(Resolve(path, false));
  return FolderInfo{
      Absolute(path), {1, node->number}, last != nullptr && last->kind == Kind::kLink};
}

Result<std::vector<FolderEntry>> MemoryFiles::ListFolder(const std::string& path) {
  if (const ErrorNumber error = Asked("ListFolder", path); error != ErrorNumber::kNone)
    return error;
  const std::string folder = Resolve(path, true);
  if (path.empty() || !IsFolder(folder)) return ErrorNumber::kPathNotFound;
  std::vector<std::pair<std::uint64_t, FolderEntry>> found;
  for (const auto& [node_path, node] : nodes_) {
    if (node_path == folder || Parent(node_path) != folder) continue;
    const Node* leads_to = Find(Resolve(node_path, true));
    const EntryKind kind = leads_to == nullptr               ? EntryKind::kBrokenLink
                           : leads_to->kind == Kind::kFolder ? EntryKind::kFolder
                           : leads_to->kind == Kind::kPipe   ? EntryKind::kSpecial
                                                             : EntryKind::kFile;
    found.push_back({node.number, {Name(node_path), kind, node.kind == Kind::kLink}});
  }
  std::sort(found.begin(), found.end(),
            [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<FolderEntry> listing;
  for (auto& [number, entry] : found) listing.push_back(std::move(entry));
  return listing;
}

Result<std::string> MemoryFiles::LinkText(const std::string& path) {
  if (const ErrorNumber error = Asked("LinkText", path); error != ErrorNumber::kNone) return error;
  const Node* node = path.empty() ? nullptr : Find(Resolve(path, false));
  if (node == nullptr) return ErrorNumber::kFileNotFound;
  if (node->kind != Kind::kLink) return ErrorNumber::kPathFileAccess;
  return node->leads_to;
}

Result<std::string> MemoryFiles::RealPath(const std::string& path) {
  if (const ErrorNumber error = Asked("RealPath", path); error != ErrorNumber::kNone) return error;
  const std::string real = Resolve(path, true);
  if (path.empty() || Find(real) == nullptr) return ErrorNumber::kPathNotFound;
  return real;
}

Result<DriveSpace> MemoryFiles::LookUpDrive(const std::string& path) {
  if (const ErrorNumber error = Asked("LookUpDrive", path); error != ErrorNumber::kNone)
    return error;
  if (path.empty()) return ErrorNumber::kPathNotFound;
  return drive;
}

ErrorNumber MemoryFiles::CreateFolder(const std::string& path) {
  if (const ErrorNumber error = Asked("CreateFolder", path); error != ErrorNumber::kNone)
    return error;
  const std::string made = Resolve(path, false);
  if (path.empty() || !IsFolder(Parent(made))) return ErrorNumber::kPathNotFound;
  if (Find(made) != nullptr) return ErrorNumber::kFileAlreadyExists;
  Make(made, Kind::kFolder);
  return ErrorNumber::kNone;
}

ErrorNumber MemoryFiles::CopyFile(const std::string& from, const std::string& to,
                                  const KeepGoing& keep_going) {
  const ErrorNumber error = Asked("CopyFile", to);
  return error != ErrorNumber::kNone ? error : Copy(from, to, keep_going);
}

ErrorNumber MemoryFiles::MoveFile(const std::string& from, const std::string& to,
                                  const KeepGoing& keep_going) {
  const ErrorNumber error = Asked("MoveFile", to);
  return error != ErrorNumber::kNone ? error : Move(from, to, keep_going);
}

ErrorNumber MemoryFiles::MoveToFreeName(const std::string& from, const std::string& to) {
  // `fail` is asked about "MoveFile", so an error for MoveFile also hits MoveToFreeName.
  const ErrorNumber error = Asked("MoveFile", to);
  return error != ErrorNumber::kNone ? error : MoveToFree(from, to);
}

ErrorNumber MemoryFiles::DeleteFile(const std::string& path) {
  const ErrorNumber error = Asked("DeleteFile", path);
  return error != ErrorNumber::kNone ? error : Delete(path);
}

ErrorNumber MemoryFiles::Copy(const std::string& from, const std::string& to,
                              const KeepGoing& keep_going) {
  const Node* source = from.empty() ? nullptr : Find(Resolve(from, true));
  if (source == nullptr || source->kind != Kind::kFile) return ErrorNumber::kFileNotFound;
  if (to.empty()) return ErrorNumber::kPathNotFound;
  const Node* there = Find(Resolve(to, true));
  if (there == source || (there != nullptr && there->kind == Kind::kFolder)) {
    return ErrorNumber::kPathFileAccess;
  }
  const std::string target = Resolve(to, false);
  if (!IsFolder(Parent(target))) return ErrorNumber::kPathNotFound;
  if (keep_going && !keep_going()) return ErrorNumber::kInvalidCall;
  const Node copied = *source;
  Node& node = Make(target, Kind::kFile);
  *node.bytes = *copied.bytes;
  node.modified = copied.modified;
  node.permissions = copied.permissions;
  return ErrorNumber::kNone;
}

ErrorNumber MemoryFiles::Move(const std::string& from, const std::string& to,
                              const KeepGoing& keep_going) {
  const ErrorNumber error = Copy(from, to, keep_going);
  return error != ErrorNumber::kNone ? error : Delete(from);
}

ErrorNumber MemoryFiles::MoveToFree(const std::string& from, const std::string& to) {
  const Node* source = from.empty() ? nullptr : Find(Resolve(from, false));
  if (source == nullptr) return ErrorNumber::kFileNotFound;
  if (source->kind != Kind::kFile) return ErrorNumber::kPathFileAccess;
  if (!moves_in_one_step) return ErrorNumber::kPathFileAccess;
  if (Find(Resolve(to, false)) != nullptr) return ErrorNumber::kFileAlreadyExists;
  if (to.empty() || !IsFolder(Parent(Resolve(to, false)))) return ErrorNumber::kPathNotFound;
  return Move(from, to, {});
}

ErrorNumber MemoryFiles::Delete(const std::string& path) {
  const std::string deleted = Resolve(path, false);
  if (path.empty() || Find(deleted) == nullptr) return ErrorNumber::kFileNotFound;
  if (IsFolder(deleted)) return ErrorNumber::kPathFileAccess;
  nodes_.erase(deleted);
  return ErrorNumber::kNone;
}

Result<std::unique_ptr<InputFile>> MemoryFiles::OpenForReading(const std::string& path) {
  if (const ErrorNumber error = Asked("OpenForReading", path); error != ErrorNumber::kNone) {
    return error;
  }
  const Node* node = path.empty() ? nullptr : Find(Resolve(path, true));
  if (node == nullptr) return ErrorNumber::kFileNotFound;
  if (node->kind != Kind::kFile) return ErrorNumber::kPathFileAccess;
  return std::unique_ptr<InputFile>(std::make_unique<MemoryInput>(*this, path, node->bytes));
}

Result<std::unique_ptr<WorkFile>> MemoryFiles::CreateWorkFile(const std::string& path,
                                                              std::uint32_t permissions) {
  if (const ErrorNumber error = Asked("CreateWorkFile", path); error != ErrorNumber::kNone)
    return error;
  const std::string made = Resolve(path, false);
  if (path.empty() || !IsFolder(Parent(made))) return ErrorNumber::kPathNotFound;
  if (Find(made) != nullptr) return ErrorNumber::kFileAlreadyExists;
  Node& node = Make(made, Kind::kFile);
  node.permissions = permissions;
  return std::unique_ptr<WorkFile>(std::make_unique<MemoryWorkFile>(*this, path, node.bytes));
}

ErrorNumber MemoryFiles::AppendToFile(const std::string& path, std::string_view bytes) {
  if (const ErrorNumber error = Asked("AppendToFile", path); error != ErrorNumber::kNone)
    return error;
  const std::string file = Resolve(path, true);
  if (path.empty() || !IsFolder(Parent(file))) return ErrorNumber::kPathNotFound;
  if (Find(file) == nullptr) Make(file, Kind::kFile);
  nodes_.at(file).bytes->append(bytes);
  return ErrorNumber::kNone;
}

ErrorNumber MemoryFiles::ReplaceFile(const std::string& path, std::string_view bytes) {
  if (const ErrorNumber error = Asked("ReplaceFile", path); error != ErrorNumber::kNone)
    return error;
  const std::string file = Resolve(path, true);
  if (path.empty() || !IsFolder(Parent(file))) return ErrorNumber::kPathNotFound;
  if (IsFolder(file)) return ErrorNumber::kPathFileAccess;
  if (Find(file) == nullptr) Make(file, Kind::kFile);
  *nodes_.at(file).bytes = bytes;
  return ErrorNumber::kNone;
}

}  // namespace morvex::test
