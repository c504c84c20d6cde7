// Open files: who closes them, what they are, and whole transfers out of the system's partial ones.
// Paths are those of SystemPath.
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

// The attributes that stand for a file's permissions: a copy has them, and a new file gets them.
inline constexpr DWORD kPermissionBits =
    FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;

// Others may do with the file whatever they like.
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

// What the system tells of an open file or folder.
struct Status {
  DWORD attributes = 0;
  std::uint64_t size = 0;
  FILETIME modified{};
  FileIdentity identity;

  bool IsFolder() const { return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
  std::uint32_t Permissions() const { return attributes & kPermissionBits; }
};

// Links are followed unless `flags` holds FILE_FLAG_OPEN_REPARSE_POINT. Folders are opened too. Not
// open: GetLastError says why.
Handle OpenExisting(const std::wstring& path, DWORD access, DWORD share, DWORD flags = 0);

// False with GetLastError set.
bool StatusOf(const Handle& file, Status& status);

// The status of what `path` leads to; 0 or an error code.
Code FindStatus(const std::wstring& path, Status& status);

// The last name of `path` is a link itself: a symbolic link or a folder's mount point. Other
// reparse points, such as files that a cloud keeps, are what they look like.
bool IsLink(const std::wstring& path);

// Opens what `path` leads to when that is an ordinary file: a folder gives 75, a device `device`.
// `opened`, unless null, becomes the file's status.
Result<Handle> OpenOrdinary(const std::wstring& path, DWORD access, ErrorNumber device,
                            Status* opened = nullptr);

// The file of the one status holds the bytes that it had at the other, as far as size and time
// tell.
bool IsUnchanged(const Status& then, const Status& now);

struct Transfer {
  std::size_t done = 0;
  Code code = 0;  // 0, or the error code that ended it
};

// Reads until `size` bytes, the file's end or an error.
Transfer ReadAllAt(void* file, std::uint64_t offset, char* into, std::size_t size);
// Writes all of `bytes`, or gives the error code; a write that takes nothing counts as a full disk.
Code WriteAllAt(void* file, std::uint64_t offset, std::string_view bytes);

}  // namespace morvex::windows
