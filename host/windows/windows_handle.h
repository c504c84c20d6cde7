// Open files: ownership, status, and transfers that are repeated until all bytes are done. Paths
// are results of SystemPath.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "core/host/file_service.h"
#include "host/windows/windows_api.h"
#include "host/windows/windows_errors.h"

namespace morvex::windows {

// The attributes that stand for a file's permissions. A copy keeps them, and a new file is created
// with them.
inline constexpr DWORD kPermissionBits =
    FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;

// Other processes may read, write, rename and delete the file while it is open here.
inline constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// Owns a handle of the system.
class Handle {
 public:
  Handle() = default;
  explicit Handle(void* handle) : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
  Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept;
  ~Handle() { Close(); }

  bool IsOpen() const { return handle_ != nullptr; }
  void* Get() const { return handle_; }
  void Close();

 private:
  void* handle_ = nullptr;
};

// What the system reports about an open file or folder.
struct Status {
  DWORD attributes = 0;
  std::uint64_t size = 0;
  FILETIME modified{};
  FileIdentity identity;

  bool IsFolder() const { return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
  std::uint32_t Permissions() const { return attributes & kPermissionBits; }
};

// Opens a file or folder that exists. Follows links unless `flags` contains
// FILE_FLAG_OPEN_REPARSE_POINT. If the result is not open, GetLastError tells why.
Handle OpenExisting(const std::wstring& path, DWORD access, DWORD share, DWORD flags = 0);

// Reads the status of an open file or folder. Returns false, with GetLastError set, on failure.
bool StatusOf(const Handle& file, Status& status);

// Reads the status of the file or folder that `path` leads to. Returns 0 or an error code.
Code FindStatus(const std::wstring& path, Status& status);

// Whether the last name of `path` is a link itself: a symbolic link or a folder's mount point.
// Other reparse points, such as files kept in a cloud, are no links.
bool IsLink(const std::wstring& path);

// Opens the ordinary file that `path` leads to. Returns error 75 for a folder and the error
// `device` for a device. `opened`, unless null, receives the file's status.
Result<Handle> OpenOrdinary(const std::wstring& path, DWORD access, ErrorNumber device,
                            Status* opened = nullptr);

// Whether size and modification time are equal, which suggests that the contents are equal, too.
bool IsUnchanged(const Status& then, const Status& now);

struct Transfer {
  std::size_t done = 0;
  Code code = 0;  // 0, or the error code that stopped the transfer
};

// Reads until `size` bytes, the file's end or an error.
Transfer ReadAllAt(void* file, std::uint64_t offset, char* into, std::size_t size);
// Writes all of `bytes`. Returns 0 or an error code; a write that takes no byte counts as a full
// disk.
Code WriteAllAt(void* file, std::uint64_t offset, std::string_view bytes);

}  // namespace morvex::windows
