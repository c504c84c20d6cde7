// A copy gets its name only when it is whole. The copy is filled in the target's folder under the
// name of a work file, and the system is told to delete the copy when its handle is closed. So
// nothing is left of the copy if the copying fails or is stopped, or if the process is killed. When
// the copy is whole, the system is told to keep it, and the copy is renamed.
#include "host/windows/windows_copy.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "host/windows/windows_claim.h"
#include "host/windows/windows_paths.h"

namespace morvex::windows {
namespace {

// The second name is used if the first is the target's own name, or belongs to a folder or to the
// source.
constexpr std::array<const wchar_t*, 2> kPartialNames = {L"tijdel.enc", L".tijdel.enc"};

constexpr std::size_t kBlock = std::size_t{1} << 20;
constexpr std::uint64_t kBetweenQuestions = std::uint64_t{4} << 20;

struct Ends {
  std::wstring from;
  std::wstring to;
};

Result<Ends> FindEnds(const std::string& from, const std::string& to) {
  Result<std::wstring> source = SystemPath(from, Missing::kFile);
  if (!source) return source.error;
  Result<std::wstring> target = SystemPath(to, Missing::kFile);
  if (!target) return target.error;
  return Ends{std::move(source.value), std::move(target.value)};
}

// Whether `path` is only the short name ("REPORT~1.TXT") that the system gave to a file with a long
// name.
bool IsShortNameOfAnother(const std::wstring& path) {
  WIN32_FIND_DATAW entry{};
  void* search = FindFirstFileW(path.c_str(), &entry);
  if (search == INVALID_HANDLE_VALUE) return false;
  FindClose(search);
  return !IsSameName(SplitPath(path).name, entry.cFileName);
}

// A copy may replace any file except the source, and any link except one that leads to the source
// or a folder. It may not replace a file of which `to` is only the short name.
ErrorNumber CheckTarget(const std::wstring& to, const FileIdentity& source) {
  if (SplitPath(to).name.empty()) return ErrorNumber::kPathFileAccess;
  Status found;
  const Code code = FindStatus(to, found);
  if (code == 0) {
    const bool replaceable =
        !found.IsFolder() && found.identity != source && !IsShortNameOfAnother(to);
    return replaceable ? ErrorNumber::kNone : ErrorNumber::kPathFileAccess;
  }
  if (code == ERROR_FILE_NOT_FOUND || IsLink(to)) return ErrorNumber::kNone;
  return ErrorFromCode(code, Missing::kPath);
}

// Copies `size` bytes, or fewer if the source is shorter by now.
ErrorNumber CopyData(void* source, void* target, std::uint64_t size, const KeepGoing& keep_going) {
  std::vector<char> block(static_cast<std::size_t>(std::min<std::uint64_t>(size, kBlock)));
  std::uint64_t next_question = 0;
  for (std::uint64_t done = 0; done < size;) {
    if (done >= next_question) {
      if (keep_going && !keep_going()) return ErrorNumber::kInvalidCall;
      next_question = done + kBetweenQuestions;
    }
    const auto wanted =
        static_cast<std::size_t>(std::min<std::uint64_t>(size - done, block.size()));
    const Transfer read = ReadAllAt(source, done, block.data(), wanted);
    if (read.code != 0) return ErrorFromCode(read.code, Missing::kFile);
    if (read.done == 0) break;
    const Code code = WriteAllAt(target, done, {block.data(), read.done});
    if (code != 0) return ErrorFromCode(code, Missing::kPath);
    done += read.done;
  }
  return ErrorNumber::kNone;
}

// Gives the copy the source's attributes and modification time.
Code TakeOver(const Handle& file, const Status& source) {
  FILE_BASIC_INFO basic{};
  basic.LastWriteTime.LowPart = source.modified.dwLowDateTime;
  basic.LastWriteTime.HighPart = static_cast<LONG>(source.modified.dwHighDateTime);
  const DWORD attributes = source.Permissions();
  basic.FileAttributes = attributes != 0 ? attributes : FILE_ATTRIBUTE_NORMAL;
  const bool done =
      SetFileInformationByHandle(file.Get(), FileBasicInfo, &basic, sizeof basic) != 0;
  return done ? 0 : GetLastError();
}

ErrorNumber Fill(const Handle& source, const Status& opened, const Handle& file,
                 const KeepGoing& keep_going) {
  const ErrorNumber error = CopyData(source.Get(), file.Get(), opened.size, keep_going);
  if (error != ErrorNumber::kNone) return error;
  Status now;
  if (!StatusOf(source, now)) return LastError(Missing::kFile);
  // The source changed meanwhile: the copy may mix old and new contents.
  return IsUnchanged(opened, now) ? ErrorNumber::kNone : ErrorNumber::kFileAlreadyOpen;
}

// Deletes a stale partial copy at `path`. Never deletes the source, neither when the source is at
// `path` nor when a link at `path` leads to the source.
ErrorNumber RemoveStalePartial(const std::wstring& path, const FileIdentity& source) {
  Status end;
  if (FindStatus(path, end) == 0 && end.identity == source) return ErrorNumber::kPathFileAccess;
  const ErrorNumber error = DeleteUnclaimed(path);
  return error == ErrorNumber::kFileNotFound ? ErrorNumber::kNone : error;
}

// Creates the partial copy under the first of kPartialNames that is free or becomes free by
// deleting a stale file. A folder of such a name stays, and so does the source.
Result<Handle> MakePartial(const std::wstring& target, const FileIdentity& source) {
  const PathParts parts = SplitPath(target);
  ErrorNumber error = ErrorNumber::kPathFileAccess;
  for (const wchar_t* name : kPartialNames) {
    if (IsSameName(parts.name, name)) continue;
    const std::wstring path = Below(parts.folder, name);
    error = RemoveStalePartial(path, source);
    if (error == ErrorNumber::kPathFileAccess) continue;
    if (error != ErrorNumber::kNone) return error;
    Handle file = CreateClaimed(path, 0);
    if (!file.IsOpen()) return LastError(Missing::kPath);
    return file;
  }
  return error;
}

ErrorNumber CopyOpenFile(const Handle& source, const Status& opened, const std::wstring& to,
                         const KeepGoing& keep_going) {
  ErrorNumber error = CheckTarget(to, opened.identity);
  if (error != ErrorNumber::kNone) return error;
  const Result<Handle> file = MakePartial(to, opened.identity);
  if (!file) return file.error;
  const bool passing = SetPassing(file.value, true);
  error = Fill(source, opened, file.value, keep_going);
  // If SetPassing fails here, the system will delete the copy when its handle is closed.
  if (error == ErrorNumber::kNone && passing && !SetPassing(file.value, false)) {
    error = LastError(Missing::kPath);
  }
  if (error == ErrorNumber::kNone) {
    Code code = TakeOver(file.value, opened);
    if (code == 0) code = RenameOpen(file.value, to, true);
    error = ErrorFromCode(code, Missing::kPath);
  }
  if (error != ErrorNumber::kNone) DeleteOpen(file.value);
  return error;
}

ErrorNumber CheckMovable(const Handle& file, const std::wstring& path, Status& status) {
  if (!StatusOf(file, status)) return LastError(Missing::kFile);
  if (!status.IsFolder()) return ErrorNumber::kNone;
  return IsLink(path) ? ErrorNumber::kNone : ErrorNumber::kPathFileAccess;
}

ErrorNumber LastOpenError() {
  const Code code = GetLastError();
  return code == ERROR_SHARING_VIOLATION ? ErrorNumber::kFileAlreadyOpen
                                         : ErrorFromCode(code, Missing::kFile);
}

}  // namespace

ErrorNumber CopyWholeFile(const std::string& from, const std::string& to,
                          const KeepGoing& keep_going, const Handle* claimed) {
  const Result<Ends> ends = FindEnds(from, to);
  if (!ends) return ends.error;
  Status opened;
  if (claimed != nullptr) {
    if (!StatusOf(*claimed, opened)) return LastError(Missing::kFile);
    return CopyOpenFile(*claimed, opened, ends.value.to, keep_going);
  }
  const Result<Handle> source =
      OpenOrdinary(ends.value.from, GENERIC_READ, ErrorNumber::kFileNotFound, &opened);
  if (!source) return source.error;
  return CopyOpenFile(source.value, opened, ends.value.to, keep_going);
}

ErrorNumber MoveWholeFile(const std::string& from, const std::string& to,
                          const KeepGoing& keep_going, const Handle* claimed) {
  const Result<Ends> ends = FindEnds(from, to);
  if (!ends) return ends.error;
  const std::wstring& source = ends.value.from;
  const bool is_link = claimed == nullptr && IsLink(source);
  if (!is_link) {
    const Handle opened = claimed != nullptr ? Handle() : OpenToRename(source);
    const Handle& file = claimed != nullptr ? *claimed : opened;
    if (!file.IsOpen()) return LastOpenError();
    Status status;
    ErrorNumber error = CheckMovable(file, source, status);
    if (error == ErrorNumber::kNone) error = CheckTarget(ends.value.to, status.identity);
    if (error != ErrorNumber::kNone) return error;
    const Code code = RenameOpen(file, ends.value.to, true);
    if (code != ERROR_NOT_SAME_DEVICE) return ErrorFromCode(code, Missing::kPath);
  }
  const ErrorNumber error = CopyWholeFile(from, to, keep_going, claimed);
  return error != ErrorNumber::kNone ? error : DeleteOneFile(from, claimed);
}

ErrorNumber MoveFileToFreeName(const std::string& from, const std::string& to,
                               const Handle* claimed) {
  const Result<Ends> ends = FindEnds(from, to);
  if (!ends) return ends.error;
  const Handle opened = claimed != nullptr ? Handle() : OpenToRename(ends.value.from);
  const Handle& file = claimed != nullptr ? *claimed : opened;
  if (!file.IsOpen()) return LastOpenError();
  Status status;
  if (!StatusOf(file, status)) return LastError(Missing::kFile);
  if (status.IsFolder() || IsLink(ends.value.from)) return ErrorNumber::kPathFileAccess;
  const Code code = RenameOpen(file, ends.value.to, false);
  // For some names that are taken, the system reports "access denied".
  const bool taken = code == ERROR_ACCESS_DENIED &&
                     GetFileAttributesW(ends.value.to.c_str()) != INVALID_FILE_ATTRIBUTES;
  return taken ? ErrorNumber::kFileAlreadyExists : ErrorFromCode(code, Missing::kPath);
}

ErrorNumber DeleteOneFile(const std::string& path, const Handle* claimed) {
  if (claimed != nullptr) return ErrorFromCode(DeleteOpen(*claimed), Missing::kFile);
  const Result<std::wstring> file = SystemPath(path, Missing::kFile);
  if (!file) return file.error;
  return DeleteUnclaimed(file.value);
}

}  // namespace morvex::windows
