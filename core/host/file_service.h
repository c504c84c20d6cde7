// Everything that the program asks of the file system. For each system, a folder below host/
// implements FileService once. Tests use an implementation in memory, and one that makes chosen
// calls fail.
//
// A path is a string of bytes in the encoding of the host's file names, the names in it joined by
// Separator(). It may be relative to the process's current folder. Every call on an empty path
// fails. No call throws: each returns an error number, alone or in a Result.
//
// How a processed copy is made:
//   1. OpenForReading opens the source file.
//   2. CreateWorkFile makes the work file, beside the source.
//   3. WorkFile::WriteAt and Close fill the work file.
//   4. WorkFile::MoveTo or MoveToFreeName turns the work file into the copy, or Discard deletes it.
#pragma once

#include <chrono>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/host/error.h"

namespace morvex {

// A moment on the wall clock, in the clock's full precision.
using WallTime = std::chrono::time_point<std::chrono::system_clock, std::chrono::nanoseconds>;

// Equal for two paths if and only if both lead to the same file or folder, whatever their names.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t number = 0;
  auto operator<=>(const FileIdentity&) const = default;
};

// The result of LookUpFile.
struct FileInfo {
  std::string path;        // absolute, "." and ".." resolved
  std::string folder;      // the path's folder; ends in a separator only if it is a root
  std::string name;        // the path's last name
  std::uint64_t size = 0;  // bytes
  WallTime modified{};
  std::uint32_t permissions = 0;  // the host's permission bits; the core only passes them on
  FileIdentity identity;
};

// The result of LookUpFolder.
struct FolderInfo {
  std::string path;  // absolute, "." and ".." resolved; ends in a separator only if it is a root
  FileIdentity identity;
  bool is_link = false;           // the last name of the path is itself a link
  std::uint32_t permissions = 0;  // the host's permission bits; the core only passes them on
};

enum class EntryKind {
  kFile,
  kFolder,
  kBrokenLink,  // a link whose target does not exist
  kSpecial,     // a pipe, socket or device
};

// One name in a folder's listing. The kind of a link is the kind of what it leads to.
struct FolderEntry {
  std::string name;
  EntryKind kind = EntryKind::kFile;
  bool is_link = false;
};

struct DriveSpace {
  std::uint64_t total = 0;      // bytes
  std::uint64_t available = 0;  // bytes that this user may still write
};

// Called repeatedly during long work: every few MiB of a copy, before every line of a list file.
// Returns false to abandon the work.
using KeepGoing = std::function<bool()>;

// An open file for reading. The destructor closes it.
class InputFile {
 public:
  virtual ~InputFile() = default;
  // Reads up to `size` bytes from the 0-based `offset` into `into`. Returns the number of bytes
  // read, which is 0 only at the end of the file.
  virtual Result<std::size_t> ReadAt(std::uint64_t offset, char* into, std::size_t size) = 0;
  // True if the next read would block, because another program has not yet written the bytes. Only
  // streams can return true.
  virtual bool MustWait() { return false; }
  // True if the file's size or modification time has changed since the file was opened. If so, the
  // bytes already read may be partly of the old contents and partly of the new ones.
  virtual Result<bool> HasChanged() { return false; }
};

// An open file for writing. The destructor closes it but cannot report an error, so call Close.
class OutputFile {
 public:
  virtual ~OutputFile() = default;
  // Writes all of `bytes` at the 0-based `offset`, replacing bytes that are already there. Never
  // shortens the file. An implementation may delay the write but keeps the order of writes, so the
  // error it returns may belong to an earlier call. After an error it is unknown which bytes were
  // written; do not write again.
  virtual ErrorNumber WriteAt(std::uint64_t offset, std::string_view bytes) = 0;
  // Completes all delayed writes and returns the first error of any of them. No WriteAt may follow.
  virtual ErrorNumber Close() = 0;
};

// The work file: a processed copy while a run makes it. The file exists under the path that
// CreateWorkFile was called with until it is moved or discarded. Meanwhile the object claims the
// file: DeleteFile of any process returns kFileAlreadyOpen for it, so of two runs over one source
// neither can replace the other's work file. (On a file system without locks there are no claims.)
//
// Order of calls: WriteAt any number of times; Close once; CopyTo any number of times; then MoveTo,
// MoveToFreeName and Discard in any order, until one of them succeeds. Discard is allowed before
// Close too. No call may follow the one that succeeded.
//
// What is on the disk after an error of
//   WriteAt, Close   the work file, with an unknown part of its bytes;
//   MoveToFreeName   the unchanged work file, and at `to` what was there before;
//   CopyTo           the unchanged work file, and at `to` what was there before or nothing: the old
//                    file may be deleted before the copy gets its name;
//   MoveTo           as CopyTo, with one exception: if the copy to another file system succeeded
//                    and only deleting the work file failed, the whole copy is at `to`;
//   Discard          the work file.
//
// The destructor deletes nothing. A work file that was neither moved nor discarded stays at its
// path with the bytes written so far, and nobody claims it any more: it is now a stale work file,
// which the next run deletes. The same is true when the process is killed.
class WorkFile : public OutputFile {
 public:
  WorkFile(const WorkFile&) = delete;
  WorkFile& operator=(const WorkFile&) = delete;

  // The path that CreateWorkFile was called with.
  const std::string& path() const { return path_; }

  // Copies the work file to `to` as CopyFile does. The work file stays and stays claimed.
  virtual ErrorNumber CopyTo(const std::string& to) = 0;
  // Moves the work file to `to` and replaces there what CopyFile would replace. A move within one
  // file system is a rename. A move to another file system is a copy, during which `keep_going`
  // (may be empty) is asked; returns kInvalidCall if `keep_going` ended the copy.
  virtual ErrorNumber MoveTo(const std::string& to, const KeepGoing& keep_going) = 0;
  // Renames the work file to `to`, in one step that fails if the name is taken. The caller need not
  // look up `to` first. Returns kFileAlreadyExists if the name is taken, possibly by a link, and
  // kPathFileAccess if `to` is on a different file system or if the work file's path no longer
  // leads to a file. After any error MoveTo may still succeed.
  virtual ErrorNumber MoveToFreeName(const std::string& to) = 0;
  // Deletes the work file.
  virtual ErrorNumber Discard() = 0;

 protected:
  explicit WorkFile(std::string path) : path_(std::move(path)) {}

 private:
  std::string path_;
};

class FileService {
 public:
  virtual ~FileService() = default;

  // ----- Names

  virtual char Separator() const = 0;
  // True if both names mean the same file in one folder. Ignores letter case on hosts whose file
  // systems ignore it.
  virtual bool IsSameName(const std::string& one, const std::string& other) const {
    return one == other;
  }

  // ----- Look-ups. They follow links unless stated otherwise.

  // kFileNotFound if `path` leads to nothing or to something other than an ordinary file: a folder,
  // pipe, socket or device. Some paths that lead to nothing return another error: on POSIX a path
  // through a file returns kPathNotFound, and a loop of links kPathFileAccess.
  virtual Result<FileInfo> LookUpFile(const std::string& path) = 0;
  // kPathNotFound if `path` leads to no folder.
  virtual Result<FolderInfo> LookUpFolder(const std::string& path) = 0;
  // Returns all names in the folder `path`, in the file system's own order. A link whose target
  // cannot be examined is listed as a file.
  virtual Result<std::vector<FolderEntry>> ListFolder(const std::string& path) = 0;
  // Returns the text of the link `path`: the path to which the link leads. kPathFileAccess if
  // `path` is not a link, kFileNotFound if it does not exist.
  virtual Result<std::string> LinkText(const std::string& path) = 0;
  // Returns `path` with every link in it resolved.
  virtual Result<std::string> RealPath(const std::string& path) = 0;
  // Returns the space on the drive that `path` lies on.
  virtual Result<DriveSpace> LookUpDrive(const std::string& path) = 0;

  // ----- Folders

  // Creates one folder. kPathNotFound if its parent does not exist, kFileAlreadyExists if the name
  // is taken.
  virtual ErrorNumber CreateFolder(const std::string& path) = 0;
  // As CreateFolder, but gives users other than the owner no more rights than they have in `like`.
  virtual ErrorNumber CreateFolderLike(const std::string& path, const FolderInfo& like) {
    static_cast<void>(like);
    return CreateFolder(path);
  }

  // ----- Whole files

  // Copies the file `from` to `to` with its permission bits and modification time. The copy appears
  // at `to` whole or not at all; after an error an old file at `to` may be gone. The copy replaces
  // a file or link at `to`; no copy is written through a link. kPathFileAccess if `to` is a folder
  // or the same file as `from`; kFileAlreadyOpen if `from` changed meanwhile; kInvalidCall if
  // `keep_going` (may be empty) ended the copy.
  virtual ErrorNumber CopyFile(const std::string& from, const std::string& to,
                               const KeepGoing& keep_going) = 0;
  // Moves the file `from` to `to`: by renaming if both are on one file system, else by CopyFile and
  // DeleteFile. If `from` is a link, the file to which it leads is copied and the link is deleted.
  // After an error `from` still exists.
  virtual ErrorNumber MoveFile(const std::string& from, const std::string& to,
                               const KeepGoing& keep_going) = 0;
  // Renames the file `from` to `to`, in one step that fails if the name is taken. Returns
  // kFileAlreadyExists if the name is taken, possibly by a link, and kPathFileAccess if `from` is
  // not a file, or if the two paths are on different file systems. After an error nothing has
  // changed.
  virtual ErrorNumber MoveToFreeName(const std::string& from, const std::string& to) = 0;
  // Deletes a file, or a link but not what the link leads to. kPathFileAccess for a folder,
  // kFileNotFound if `path` does not exist, kFileAlreadyOpen if a WorkFile claims the file.
  virtual ErrorNumber DeleteFile(const std::string& path) = 0;

  // ----- Contents

  // Opens an ordinary file. kPathFileAccess for a folder; kFileNotFound for anything else that is
  // not a file.
  virtual Result<std::unique_ptr<InputFile>> OpenForReading(const std::string& path) = 0;
  // Creates an empty file with exactly these permission bits. kFileAlreadyExists if the name is
  // taken, possibly by a link.
  virtual Result<std::unique_ptr<WorkFile>> CreateWorkFile(const std::string& path,
                                                           std::uint32_t permissions) = 0;
  // Appends `bytes` to the file `path`, which is created if it does not exist.
  virtual ErrorNumber AppendToFile(const std::string& path, std::string_view bytes) = 0;
  // Makes `path` a file that contains exactly `bytes`. Follows a link and keeps the permission bits
  // of an existing file; a file that the user may not write returns an error. After an error the
  // old contents are still there if the folder allows a second file beside the old one.
  virtual ErrorNumber ReplaceFile(const std::string& path, std::string_view bytes) = 0;
};

}  // namespace morvex
