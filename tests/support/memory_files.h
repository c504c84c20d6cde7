// A file system in memory, for tests of the core that need no disk. A test chooses the separator. A
// folder is listed in the order in which its entries were made. A test chooses which calls fail.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/host/file_service.h"

namespace morvex::test {

// Called before every call, with the call's name ("CreateWorkFile", "ReadAt", ...) and its path;
// for a call with two paths the second path. If this function returns an error, the call does
// nothing but return that error.
using FailCall = std::function<ErrorNumber(const std::string& call, const std::string& path)>;

class MemoryFiles : public FileService {
 public:
  // With the separator '\\' absolute paths start with a drive letter ("C:\a"), with '/' they start
  // with the separator.
  explicit MemoryFiles(char separator = '/');

  // Set-up. Missing parent folders are created; an existing file, folder or link is replaced.
  void AddFolder(const std::string& path);
  void AddFile(const std::string& path, const std::string& bytes, WallTime modified = {},
               std::uint32_t permissions = 0644);
  void AddLink(const std::string& path, const std::string& leads_to);
  void AddPipe(const std::string& path);

  // What is on the disk now. For a missing file, Bytes and Permissions throw out_of_range, so that
  // the test fails.
  bool Has(const std::string& path) const { return nodes_.contains(path); }
  bool IsFolder(const std::string& path) const;
  bool IsLink(const std::string& path) const;
  const std::string& Bytes(const std::string& path) const {
    return *nodes_.at(Absolute(path)).bytes;
  }
  std::uint32_t Permissions(const std::string& path) const { return nodes_.at(path).permissions; }
  // Paths of all files, links and folders below `folder`, sorted; folders end in the separator.
  std::vector<std::string> Below(const std::string& folder) const;

  FailCall fail;
  // If this is false, MoveToFreeName fails, as it does between two file systems.
  bool moves_in_one_step = true;
  DriveSpace drive{1'000'000'000, 400'000'000};
  std::int64_t calls = 0;

  char Separator() const override { return separator_; }
  Result<FileInfo> LookUpFile(const std::string& path) override;
  Result<FolderInfo> LookUpFolder(const std::string& path) override;
  Result<std::vector<FolderEntry>> ListFolder(const std::string& path) override;
  Result<std::string> LinkText(const std::string& path) override;
  Result<std::string> RealPath(const std::string& path) override;
  Result<DriveSpace> LookUpDrive(const std::string& path) override;
  ErrorNumber CreateFolder(const std::string& path) override;
  ErrorNumber CopyFile(const std::string& from, const std::string& to,
                       const KeepGoing& keep_going) override;
  ErrorNumber MoveFile(const std::string& from, const std::string& to,
                       const KeepGoing& keep_going) override;
  ErrorNumber MoveToFreeName(const std::string& from, const std::string& to) override;
  ErrorNumber DeleteFile(const std::string& path) override;
  Result<std::unique_ptr<InputFile>> OpenForReading(const std::string& path) override;
  Result<std::unique_ptr<WorkFile>> CreateWorkFile(const std::string& path,
                                                   std::uint32_t permissions) override;
  ErrorNumber AppendToFile(const std::string& path, std::string_view bytes) override;
  ErrorNumber ReplaceFile(const std::string& path, std::string_view bytes) override;

  // Every call, also one on an open file, begins with a call of this function. Counts the call and
  // returns the error that `fail` chooses for it.
  ErrorNumber Asked(const char* call, const std::string& path);

 private:
  friend class MemoryWorkFile;

  enum class Kind { kFile, kFolder, kLink, kPipe };
  struct Node {
    Kind kind = Kind::kFile;
    std::shared_ptr<std::string> bytes;  // of a file
    std::string leads_to;                // of a link
    WallTime modified{};
    std::uint32_t permissions = 0644;
    std::uint64_t number = 0;  // its identity; grows in the order of creation
  };

  // Do the work of the calls that copy, move and delete, without asking `fail`.
  ErrorNumber Copy(const std::string& from, const std::string& to, const KeepGoing& keep_going);
  ErrorNumber Move(const std::string& from, const std::string& to, const KeepGoing& keep_going);
  ErrorNumber MoveToFree(const std::string& from, const std::string& to);
  ErrorNumber Delete(const std::string& path);

  std::string Absolute(const std::string& path) const;
  std::string Root() const;
  std::string Parent(const std::string& path) const;
  std::string Name(const std::string& path) const;
  // The absolute path with every link followed; a link at the path's last name is followed only if
  // `last_too`. Empty if the links form a loop.
  std::string Resolve(const std::string& path, bool last_too) const;
  const Node* Find(const std::string& path) const;
  Node& Make(const std::string& path, Kind kind);

  char separator_;
  std::map<std::string, Node> nodes_;
  std::uint64_t next_number_ = 1;
};

}  // namespace morvex::test
