#include "host/windows/windows_claim.h"

#include <cstddef>
#include <cstring>
#include <vector>

namespace morvex::windows {
namespace {

// Values for the newer ways of deleting and renaming. Not every system and drive supports these
// ways, and not every compiler's headers declare the values. The newer ways take effect at once,
// even if another program has the file open, and work on read-only files.
constexpr auto kFileDispositionInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(21);
constexpr auto kFileRenameInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
constexpr DWORD kDelete = 0x01;
constexpr DWORD kDeleteAtOnce = 0x02;
constexpr DWORD kDeleteReadOnly = 0x10;
constexpr DWORD kReplace = 0x01;
constexpr DWORD kReplaceAtOnce = 0x02;
constexpr DWORD kReplaceReadOnly = 0x40;

// Whether `code` is one by which a system or drive reports that it does not support the newer ways.
bool IsUnknownWay(Code code) {
  return code == ERROR_INVALID_PARAMETER || code == ERROR_NOT_SUPPORTED ||
         code == ERROR_INVALID_FUNCTION || code == ERROR_CALL_NOT_IMPLEMENTED ||
         code == ERROR_INVALID_LEVEL;
}

Code SetInformation(const Handle& file, FILE_INFO_BY_HANDLE_CLASS kind, void* information,
                    std::size_t size) {
  const bool done =
      SetFileInformationByHandle(file.Get(), kind, information, static_cast<DWORD>(size)) != 0;
  return done ? 0 : GetLastError();
}

void MakeWritable(const Handle& file) {
  FILE_BASIC_INFO basic{};
  Status status;
  if (!StatusOf(file, status) || (status.attributes & FILE_ATTRIBUTE_READONLY) == 0) return;
  basic.FileAttributes = status.attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY);
  if (basic.FileAttributes == 0) basic.FileAttributes = FILE_ATTRIBUTE_NORMAL;
  SetInformation(file, FileBasicInfo, &basic, sizeof basic);
}

// Returns the structure that the system takes for renaming: a head, followed by the new path.
std::vector<std::byte> RenameInformation(const std::wstring& path, DWORD flags) {
  struct Head {
    DWORD flags;
    void* root;
    DWORD name_size;  // bytes
  };
  constexpr std::size_t kNameAt = offsetof(FILE_RENAME_INFO, FileName);
  static_assert(offsetof(Head, name_size) == offsetof(FILE_RENAME_INFO, FileNameLength));
  const std::size_t name_size = path.size() * sizeof(wchar_t);
  const Head head{flags, nullptr, static_cast<DWORD>(name_size)};
  std::vector<std::byte> information(kNameAt + name_size + sizeof(wchar_t));
  if (information.size() < sizeof(FILE_RENAME_INFO)) information.resize(sizeof(FILE_RENAME_INFO));
  std::memcpy(information.data(), &head, kNameAt);
  std::memcpy(information.data() + kNameAt, path.data(), name_size);
  return information;
}

// Renames on a system or drive that does not support the newer ways. The old way cannot replace a
// read-only file, so this function first makes the file at `path` writable, and makes it read-only
// again if the renaming fails.
Code ReplaceInOldWay(const Handle& file, const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  const bool read_only =
      attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
  if (read_only) {
    SetFileAttributesW(path.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
  }
  std::vector<std::byte> information = RenameInformation(path, kReplace);
  const Code code = SetInformation(file, FileRenameInfo, information.data(), information.size());
  if (code != 0 && read_only) SetFileAttributesW(path.c_str(), attributes);
  return code;
}

}  // namespace

Handle CreateClaimed(const std::wstring& path, DWORD permissions) {
  const DWORD attributes = permissions & kPermissionBits;
  Handle file(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, FILE_SHARE_READ,
                          nullptr, CREATE_NEW, attributes != 0 ? attributes : FILE_ATTRIBUTE_NORMAL,
                          nullptr));
  if (!file.IsOpen()) {
    // If the name belongs to a folder or to a file that is being deleted, the system reports
    // "access denied".
    const Code code = GetLastError();
    const bool taken =
        code == ERROR_ACCESS_DENIED && GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
    SetLastError(taken ? ERROR_FILE_EXISTS : code);
  }
  return file;
}

Handle OpenToRename(const std::wstring& path) {
  return OpenExisting(path, DELETE | FILE_READ_ATTRIBUTES | FILE_WRITE_ATTRIBUTES, kShareAll,
                      FILE_FLAG_OPEN_REPARSE_POINT);
}

Code DeleteOpen(const Handle& file) {
  DWORD flags = kDelete | kDeleteAtOnce | kDeleteReadOnly;
  const Code code = SetInformation(file, kFileDispositionInfoEx, &flags, sizeof flags);
  if (!IsUnknownWay(code)) return code;
  MakeWritable(file);
  FILE_DISPOSITION_INFO disposition{TRUE};
  return SetInformation(file, FileDispositionInfo, &disposition, sizeof disposition);
}

bool SetPassing(const Handle& file, bool passing) {
  FILE_DISPOSITION_INFO disposition{static_cast<BOOLEAN>(passing ? TRUE : FALSE)};
  return SetInformation(file, FileDispositionInfo, &disposition, sizeof disposition) == 0;
}

Code RenameOpen(const Handle& file, const std::wstring& path, bool replace) {
  if (!replace) {
    std::vector<std::byte> information = RenameInformation(path, 0);
    return SetInformation(file, FileRenameInfo, information.data(), information.size());
  }
  std::vector<std::byte> information =
      RenameInformation(path, kReplace | kReplaceAtOnce | kReplaceReadOnly);
  const Code code = SetInformation(file, kFileRenameInfoEx, information.data(), information.size());
  return IsUnknownWay(code) ? ReplaceInOldWay(file, path) : code;
}

ErrorNumber DeleteUnclaimed(const std::wstring& path) {
  const Handle file = OpenToRename(path);
  if (!file.IsOpen()) {
    const Code code = GetLastError();
    if (code == ERROR_SHARING_VIOLATION) return ErrorNumber::kFileAlreadyOpen;
    return ErrorFromCode(code, Missing::kFile);
  }
  Status status;
  if (!StatusOf(file, status)) return LastError(Missing::kFile);
  if (status.IsFolder() && !IsLink(path)) return ErrorNumber::kPathFileAccess;
  return ErrorFromCode(DeleteOpen(file), Missing::kFile);
}

}  // namespace morvex::windows
