// New content is written to a second file beside the old file. The second file is flushed to the
// disk and renamed over the old file, so that at every moment the old or the new content is there
// whole. If the folder takes no second file, the old file is overwritten.
#include "host/windows/windows_replace.h"

#include <cstddef>
#include <cstdint>
#include <optional>

#include "host/windows/windows_claim.h"
#include "host/windows/windows_handle.h"
#include "host/windows/windows_paths.h"

namespace morvex::windows {
namespace {

constexpr int kNamingAttempts = 100;

// The offset that means the end of the file at the moment of the write.
constexpr std::uint64_t kAtEnd = ~std::uint64_t{0};

// Creates a file in the folder. Tries the names .morvex-1, .morvex-2 and so on until one is free.
// Deletes files that killed processes left under these names.
Handle MakeSecondFile(const std::wstring& folder, DWORD permissions) {
  for (int number = 1; number <= kNamingAttempts; ++number) {
    const std::wstring path = Below(folder, L".morvex-" + std::to_wstring(number));
    Handle file = CreateClaimed(path, permissions);
    Code code = file.IsOpen() ? 0 : GetLastError();
    if (code == ERROR_FILE_EXISTS && DeleteUnclaimed(path) == ErrorNumber::kNone) {
      file = CreateClaimed(path, permissions);
      code = file.IsOpen() ? 0 : GetLastError();
    }
    if (code == ERROR_FILE_EXISTS) continue;
    SetLastError(code);
    return file;
  }
  SetLastError(ERROR_FILE_EXISTS);
  return {};
}

// Whether `code` says that the folder takes no second file, or that a second file may not replace
// the old file there.
bool IsRefusal(Code code) {
  return code == ERROR_ACCESS_DENIED || code == ERROR_SHARING_VIOLATION ||
         code == ERROR_WRITE_PROTECT;
}

// Writes a second file and renames it to `path`. Returns nothing if the folder does not allow that.
// `old` is null if there is no old file.
std::optional<ErrorNumber> ReplaceBeside(const std::wstring& path, const Status* old,
                                         std::string_view bytes) {
  const DWORD permissions = old != nullptr ? old->Permissions() : 0;
  const Handle file = MakeSecondFile(SplitPath(path).folder, permissions);
  if (!file.IsOpen()) {
    const Code code = GetLastError();
    if (old != nullptr && IsRefusal(code)) return std::nullopt;
    return ErrorFromCode(code, Missing::kPath);
  }
  Code code = WriteAllAt(file.Get(), 0, bytes);
  if (code == 0 && FlushFileBuffers(file.Get()) == 0) code = GetLastError();
  bool refused = false;
  if (code == 0) {
    code = RenameOpen(file, path, true);
    refused = IsRefusal(code);
  }
  if (code != 0) DeleteOpen(file);
  if (refused && old != nullptr) return std::nullopt;
  return ErrorFromCode(code, Missing::kPath);
}

Code CutAt(const Handle& file, std::uint64_t size) {
  FILE_END_OF_FILE_INFO end{};
  end.EndOfFile.QuadPart = static_cast<LONGLONG>(size);
  const bool done =
      SetFileInformationByHandle(file.Get(), FileEndOfFileInfo, &end, sizeof end) != 0;
  return done ? 0 : GetLastError();
}

// Overwrites the file. The bytes behind the old end are written first, so that the old content is
// still there if the disk is full.
ErrorNumber ReplaceInPlace(const std::wstring& path, std::string_view bytes) {
  Status old;
  const Result<Handle> file = OpenOrdinary(path, GENERIC_WRITE, ErrorNumber::kPathFileAccess, &old);
  if (!file) return file.error;
  const std::size_t common =
      old.size < bytes.size() ? static_cast<std::size_t>(old.size) : bytes.size();
  Code code = WriteAllAt(file.value.Get(), common, bytes.substr(common));
  if (code != 0) {
    CutAt(file.value, old.size);
    return ErrorFromCode(code, Missing::kPath);
  }
  code = WriteAllAt(file.value.Get(), 0, bytes.substr(0, common));
  if (code == 0) code = CutAt(file.value, bytes.size());
  if (code == 0 && FlushFileBuffers(file.value.Get()) == 0) code = GetLastError();
  return ErrorFromCode(code, Missing::kPath);
}

}  // namespace

Result<std::wstring> FollowLinks(const std::wstring& path) {
  const Handle file = OpenExisting(path, FILE_READ_ATTRIBUTES, kShareAll);
  if (!file.IsOpen()) return LastError(Missing::kPath);
  std::wstring end(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetFinalPathNameByHandleW(
        file.Get(), end.data(), static_cast<DWORD>(end.size()), FILE_NAME_NORMALIZED);
    if (length == 0) return LastError(Missing::kPath);
    const bool fits = length < end.size();
    end.resize(length);
    if (fits) return LongForm(WithoutPrefix(end));
  }
}

ErrorNumber ReplaceContent(const std::string& path, std::string_view bytes) {
  Result<std::wstring> file = SystemPath(path, Missing::kFile);
  if (!file) return file.error;
  Status old;
  const Code code = FindStatus(file.value, old);
  if (code == ERROR_FILE_NOT_FOUND && !IsLink(file.value)) {
    return ReplaceBeside(file.value, nullptr, bytes).value_or(ErrorNumber::kPermissionDenied);
  }
  if (code != 0) return ErrorFromCode(code, Missing::kPath);
  if (IsLink(file.value)) file = FollowLinks(file.value);
  if (!file) return file.error;
  if ((old.attributes & FILE_ATTRIBUTE_READONLY) != 0) return ErrorNumber::kPermissionDenied;
  {
    // A file that may not be written may not be replaced either, even if the folder would allow it.
    const Result<Handle> writable =
        OpenOrdinary(file.value, GENERIC_WRITE, ErrorNumber::kPathFileAccess);
    if (!writable) return writable.error;
  }
  const std::optional<ErrorNumber> replaced = ReplaceBeside(file.value, &old, bytes);
  return replaced ? *replaced : ReplaceInPlace(file.value, bytes);
}

ErrorNumber AppendRecord(const std::string& path, std::string_view bytes) {
  const Result<std::wstring> place = SystemPath(path, Missing::kFile);
  if (!place) return place.error;
  const Handle file(CreateFileW(place.value.c_str(), FILE_APPEND_DATA | FILE_READ_ATTRIBUTES,
                                kShareAll, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file.IsOpen()) {
    const Code code = GetLastError();
    Status status;
    const bool is_folder = FindStatus(place.value, status) == 0 && status.IsFolder();
    return is_folder ? ErrorNumber::kPathFileAccess : ErrorFromCode(code, Missing::kPath);
  }
  if (GetFileType(file.Get()) != FILE_TYPE_DISK) return ErrorNumber::kPathFileAccess;
  if (bytes.empty()) return ErrorNumber::kNone;
  OVERLAPPED end{};
  end.Offset = static_cast<DWORD>(kAtEnd);
  end.OffsetHigh = static_cast<DWORD>(kAtEnd >> 32);
  DWORD written = 0;
  if (WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, &end) == 0) {
    return LastError(Missing::kPath);
  }
  return written == bytes.size() ? ErrorNumber::kNone : ErrorNumber::kDiskFull;
}

}  // namespace morvex::windows
