#include "host/windows/windows_handle.h"

#include <algorithm>
#include <limits>

namespace morvex::windows {
namespace {

// The system takes sizes of 32 bits; this many bytes per call work on every kind of drive.
constexpr std::size_t kMostAtOnce = std::size_t{8} << 20;
constexpr std::uint64_t kLastOffset = std::numeric_limits<std::int64_t>::max();

OVERLAPPED At(std::uint64_t offset) {
  OVERLAPPED place{};
  place.Offset = static_cast<DWORD>(offset);
  place.OffsetHigh = static_cast<DWORD>(offset >> 32);
  return place;
}

DWORD Piece(std::size_t left) { return static_cast<DWORD>(std::min(left, kMostAtOnce)); }

}  // namespace

Handle& Handle::operator=(Handle&& other) noexcept {
  if (this != &other) {
    Close();
    handle_ = std::exchange(other.handle_, nullptr);
  }
  return *this;
}

void Handle::Close() {
  if (handle_ != nullptr) CloseHandle(std::exchange(handle_, nullptr));
}

Handle OpenExisting(const std::wstring& path, DWORD access, DWORD share, DWORD flags) {
  return Handle(CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING,
                            flags | FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

bool StatusOf(const Handle& file, Status& status) {
  BY_HANDLE_FILE_INFORMATION found{};
  if (GetFileInformationByHandle(file.Get(), &found) == 0) return false;
  status.attributes = found.dwFileAttributes;
  status.size = std::uint64_t{found.nFileSizeHigh} << 32 | found.nFileSizeLow;
  status.modified = found.ftLastWriteTime;
  status.identity.device = found.dwVolumeSerialNumber;
  status.identity.number = std::uint64_t{found.nFileIndexHigh} << 32 | found.nFileIndexLow;
  return true;
}

Code FindStatus(const std::wstring& path, Status& status) {
  const Handle file = OpenExisting(path, FILE_READ_ATTRIBUTES, kShareAll);
  return file.IsOpen() && StatusOf(file, status) ? 0 : GetLastError();
}

bool IsLink(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
    return false;
  }
  const Handle file =
      OpenExisting(path, FILE_READ_ATTRIBUTES, kShareAll, FILE_FLAG_OPEN_REPARSE_POINT);
  FILE_ATTRIBUTE_TAG_INFO info{};
  if (!file.IsOpen() ||
      GetFileInformationByHandleEx(file.Get(), FileAttributeTagInfo, &info, sizeof info) == 0) {
    return true;
  }
  return info.ReparseTag == IO_REPARSE_TAG_SYMLINK || info.ReparseTag == IO_REPARSE_TAG_MOUNT_POINT;
}

Result<Handle> OpenOrdinary(const std::wstring& path, DWORD access, ErrorNumber device,
                            Status* opened) {
  Handle file = OpenExisting(path, access | FILE_READ_ATTRIBUTES, kShareAll);
  Status status;
  if (!file.IsOpen()) {
    const Code code = GetLastError();
    const bool is_folder = FindStatus(path, status) == 0 && status.IsFolder();
    return is_folder ? ErrorNumber::kPathFileAccess : ErrorFromCode(code, Missing::kFile);
  }
  if (GetFileType(file.Get()) != FILE_TYPE_DISK) return device;
  if (!StatusOf(file, status)) return LastError(Missing::kFile);
  if (status.IsFolder()) return ErrorNumber::kPathFileAccess;
  if (opened != nullptr) *opened = status;
  return file;
}

bool IsUnchanged(const Status& then, const Status& now) {
  return then.size == now.size && CompareFileTime(&then.modified, &now.modified) == 0;
}

Transfer ReadAllAt(void* file, std::uint64_t offset, char* into, std::size_t size) {
  Transfer transfer;
  while (transfer.done < size && offset + transfer.done < kLastOffset) {
    OVERLAPPED place = At(offset + transfer.done);
    DWORD moved = 0;
    const bool good =
        ReadFile(file, into + transfer.done, Piece(size - transfer.done), &moved, &place) != 0;
    if (!good && GetLastError() != ERROR_HANDLE_EOF) {
      transfer.code = GetLastError();
      return transfer;
    }
    if (moved == 0) return transfer;
    transfer.done += moved;
  }
  return transfer;
}

Code WriteAllAt(void* file, std::uint64_t offset, std::string_view bytes) {
  if (bytes.size() > kLastOffset || offset > kLastOffset - bytes.size()) return ERROR_DISK_FULL;
  while (!bytes.empty()) {
    OVERLAPPED place = At(offset);
    DWORD moved = 0;
    if (WriteFile(file, bytes.data(), Piece(bytes.size()), &moved, &place) == 0) {
      return GetLastError();
    }
    if (moved == 0) return ERROR_DISK_FULL;
    bytes.remove_prefix(moved);
    offset += moved;
  }
  return 0;
}

}  // namespace morvex::windows
