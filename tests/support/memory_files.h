// A file system in memory, for tests of the core that need no disk: any separator, any listing
// order, chosen calls made to fail.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/host/file_service.h"

namespace morvex::test {

// Asked before every call with the call's name ("CreateFile", "ReadAt", ...) and path; an error
// that it gives is the call's result, and nothing is done.
using FailCall = std::function<ErrorNumber(const std::string& call, const std::string& path)>;

class MemoryFiles : public FileService {
 public:
  // Drive-letter paths ("C:\a") are absolute with separator '\\', paths from the root with '/'.
  explicit MemoryFiles(char separator = '/');

  // Set-up: parents are made as needed, an existing node is replaced. Listings are in order of
  // making.
  void AddFolder(const std::string& path);
  void AddFile(const std::string& path, const std::string& bytes, WallTime modified = {},
               std::uint32_t permissions = 0644);
  void AddLink(const std::string& path, const std::string& leads_to);
  void AddPipe(const std::string& path);

  // Look at what is there; a test fails loudly on a file that does not exist (throws out_of_range).
  bool Has(const std::string& path) const { return nodes_.contains(path); }
  bool IsFolder(const std::string& path) const;
  bool IsLink(const std::string& path) const;
  const std::string& Bytes(const std::string& path) const {
    return *nodes_.at(Absolute(path)).bytes;
  }
  std::uint32_t Permissions(const std::string& path) const { return nodes_.at(path).permissions; }
  // Paths of everything below `folder`, sorted; folders end in the separator.
  std::vector<std::string> Below(const std::string& folder) const;

  FailCall fail;
  // False: sources and targets lie on different file systems, as it were.
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
  Result<std::unique_ptr<OutputFile>> CreateFile(const std::string& path,
                                                 std::uint32_t permissions) override;
  ErrorNumber AppendToFile(const std::string& path, std::string_view bytes) override;
  ErrorNumber ReplaceFile(const std::string& path, std::string_view bytes) override;

  // ReadAt and WriteAt of the open files ask through this too.
  ErrorNumber Asked(const char* call, const std::string& path);

 private:
  enum class Kind { kFile, kFolder, kLink, kPipe };
  struct Node {
    Kind kind = Kind::kFile;
    std::shared_ptr<std::string> bytes;  // of a file
    std::string leads_to;                // of a link
    WallTime modified{};
    std::uint32_t permissions = 0644;
    std::uint64_t number = 0;  // identity, and the order of making
  };

  std::string Absolute(const std::string& path) const;
  std::string Root() const;
  std::string Parent(const std::string& path) const;
  std::string Name(const std::string& path) const;
  // Absolute path with links resolved, the last name's only with `last_too`; empty when a link
  // leads nowhere.
  std::string Resolve(const std::string& path, bool last_too) const;
  const Node* Find(const std::string& path) const;
  Node& Make(const std::string& path, Kind kind);

  char separator_;
  std::map<std::string, Node> nodes_;
  std::uint64_t next_number_ = 1;
};

}  // namespace morvex::test
