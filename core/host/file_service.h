// What the program asks of the file system. Implemented once per system under host/; tests wrap an
// implementation to make chosen calls fail.
//
// Paths are bytes in the host's file-name encoding, names joined by Separator(). A path may be
// relative; an empty path names nothing, so every call on it fails. No call throws; each gives an
// error number.
#pragma once

#include <chrono>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/host/error.h"

namespace morvex {

// A moment on the wall clock, in the clock's full precision.
using WallTime = std::chrono::time_point<std::chrono::system_clock, std::chrono::nanoseconds>;

// Says whether two paths lead to one and the same file or folder, whatever they are called.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t number = 0;
  auto operator<=>(const FileIdentity&) const = default;
};

// A file that was looked up. Links are followed; only ordinary files are files, so a folder, pipe,
// socket or device gives kFileNotFound.
struct FileInfo {
  std::string path;    // absolute, "." and ".." resolved
  std::string folder;  // the path's folder, without a separator at its end unless it is a root
  std::string name;
  std::uint64_t size = 0;  // bytes
  WallTime modified{};
  std::uint32_t permissions = 0;  // the host's permission bits, opaque to the core
  FileIdentity identity;
};

// A folder that was looked up; links are followed.
struct FolderInfo {
  std::string path;  // absolute, "." and ".." resolved, no separator at its end unless it is a root
  FileIdentity identity;
  bool is_link = false;           // the last name of the path is itself a link
  std::uint32_t permissions = 0;  // the host's permission bits, opaque to the core
};

enum class EntryKind {
  kFile,
  kFolder,
  kBrokenLink,  // leads to nothing
  kSpecial,     // a pipe, socket or device
};

// One name in a folder's listing; the kind is that of what a link leads to.
struct FolderEntry {
  std::string name;
  EntryKind kind = EntryKind::kFile;
  bool is_link = false;
};

struct DriveSpace {
  std::uint64_t total = 0;      // bytes
  std::uint64_t available = 0;  // bytes that the user may still write
};

// Asked between the pieces of a long copy, a few MiB each; false abandons it.
using KeepGoing = std::function<bool()>;

// An open file that is only read. Closed by its destructor.
class InputFile {
 public:
  virtual ~InputFile() = default;
  // Reads up to `size` bytes from the 0-based `offset`; gives how many it read, 0 only where the
  // file has ended.
  virtual Result<std::size_t> ReadAt(std::uint64_t offset, char* into, std::size_t size) = 0;
  // The next bytes are still to come, as those of a stream can be that somebody else writes: a read
  // would wait for them.
  virtual bool MustWait() { return false; }
  // The file is no longer what it was when it was opened, as far as its size and modification time
  // tell: what was read of it may be of two minds.
  virtual Result<bool> HasChanged() { return false; }
};

// An open file that is only written. Closed by its destructor, which cannot report an error: call
// Close.
class OutputFile {
 public:
  virtual ~OutputFile() = default;
  // Writes all of `bytes` at the 0-based `offset`, over what stands there; nothing is ever cut off.
  // The bytes need not be in the file when the call returns, but later ones never get there before
  // them. So an error may be that of an earlier call; after one it is unknown how much of the
  // file's later bytes is written, and nothing more should be.
  virtual ErrorNumber WriteAt(std::uint64_t offset, std::string_view bytes) = 0;
  // Ends the writing: all bytes are in the file, or the first error of a delayed write is given. No
  // other call may follow.
  virtual ErrorNumber Close() = 0;
};

class FileService {
 public:
  virtual ~FileService() = default;

  virtual char Separator() const = 0;
  // In one folder both lead to the same file: also in another letter case where the host's file
  // systems make no difference of it.
  virtual bool IsSameName(const std::string& one, const std::string& other) const {
    return one == other;
  }

  virtual Result<FileInfo> LookUpFile(const std::string& path) = 0;
  // kPathNotFound when there is no such folder.
  virtual Result<FolderInfo> LookUpFolder(const std::string& path) = 0;
  // Every name in `path`, in the file system's own order, complete when the call returns. A link
  // whose end cannot be examined is listed as a file.
  virtual Result<std::vector<FolderEntry>> ListFolder(const std::string& path) = 0;
  // The text of a link: where it leads, as it was written. kPathFileAccess for what is no link,
  // kFileNotFound when there is nothing.
  virtual Result<std::string> LinkText(const std::string& path) = 0;
  // The path with every link in it resolved.
  virtual Result<std::string> RealPath(const std::string& path) = 0;
  virtual Result<DriveSpace> LookUpDrive(const std::string& path) = 0;

  // One level; kPathNotFound without its parent folder, kFileAlreadyExists when the name is taken.
  virtual ErrorNumber CreateFolder(const std::string& path) = 0;
  // The same; others than its owner may do no more in the new folder than in `like`, a folder that
  // was looked up.
  virtual ErrorNumber CreateFolderLike(const std::string& path, const FolderInfo& like) {
    static_cast<void>(like);
    return CreateFolder(path);
  }

  // Copies `from` to `to` with its permission bits and modification time. `to` appears whole or not
  // at all, replaces a file or link of that name and never writes through a link. kPathFileAccess
  // when both are the same file or `to` is a folder; kInvalidCall when `keep_going` (may be empty)
  // ended it.
  virtual ErrorNumber CopyFile(const std::string& from, const std::string& to,
                               const KeepGoing& keep_going) = 0;
  // As CopyFile followed by DeleteFile of `from`, in one step where both lie on one file system.
  // After an error `from` is still there.
  virtual ErrorNumber MoveFile(const std::string& from, const std::string& to,
                               const KeepGoing& keep_going) = 0;
  // Gives the file `from` the name `to` where that takes one step and nothing goes by that name,
  // which therefore need not be looked at first. After an error nothing has changed, and MoveFile
  // may do what this could not: kFileAlreadyExists when the name is taken, a link's too;
  // kPathFileAccess when `from` is no file, or the two lie on different file systems.
  virtual ErrorNumber MoveToFreeName(const std::string& from, const std::string& to) = 0;
  // Deletes a file, or a link without what it leads to; never a folder (kPathFileAccess).
  // kFileNotFound when there is none; kFileAlreadyOpen for a file that another run of the program
  // is making.
  virtual ErrorNumber DeleteFile(const std::string& path) = 0;

  // Ordinary files only: kPathFileAccess for a folder, kFileNotFound for anything else.
  virtual Result<std::unique_ptr<InputFile>> OpenForReading(const std::string& path) = 0;
  // Makes a new file with exactly these permission bits and opens it for writing;
  // kFileAlreadyExists when the name is taken, by a link too.
  virtual Result<std::unique_ptr<OutputFile>> CreateFile(const std::string& path,
                                                         std::uint32_t permissions) = 0;
  // Opens (or makes) `path`, adds `bytes` at its end, closes it.
  virtual ErrorNumber AppendToFile(const std::string& path, std::string_view bytes) = 0;
  // Makes `path` hold exactly `bytes`. On failure what stood there before is kept where the folder
  // allows a second file beside it; a link is followed, the permission bits
  // are kept, and a file that the user may not write is refused.
  virtual ErrorNumber ReplaceFile(const std::string& path, std::string_view bytes) = 0;
};

}  // namespace morvex
