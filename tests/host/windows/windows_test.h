// Shared by the tests of the Windows host: a temporary folder, and short ways to create and examine
// files with system calls that bypass the tested service.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "host/windows/windows_api.h"
#include "host/windows/windows_code_page.h"
#include "host/windows/windows_files.h"
#include "host/windows/windows_handle.h"
#include "host/windows/windows_paths.h"

namespace morvex::windows_test {

// Returns the path in a form that the system accepts at any length and does not change.
inline std::wstring Raw(const std::wstring& path) { return windows::LongForm(path); }

inline std::wstring Wide(const std::string& path) {
  return windows::SystemCodePage().Wide(path).value_or(L"");
}

inline void RemoveTree(const std::wstring& raw) {
  WIN32_FIND_DATAW entry{};
  void* search = FindFirstFileW((raw + L"\\*").c_str(), &entry);
  if (search != INVALID_HANDLE_VALUE) {
    do {
      const std::wstring name = entry.cFileName;
      if (name == L"." || name == L"..") continue;
      const std::wstring path = raw + L"\\" + name;
      SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
      const bool is_folder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
      const bool is_link = (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
      if (is_folder && !is_link) {
        RemoveTree(path);
      } else if (is_folder) {
        RemoveDirectoryW(path.c_str());
      } else {
        DeleteFileW(path.c_str());
      }
    } while (FindNextFileW(search, &entry) != 0);
    FindClose(search);
  }
  RemoveDirectoryW(raw.c_str());
}

// A new temporary folder. The destructor deletes it with everything in it.
class TempFolder {
 public:
  TempFolder() {
    std::wstring base(MAX_PATH, L'\0');
    base.resize(GetTempPathW(MAX_PATH, base.data()));
    static int made = 0;
    wide_ = base + L"morvex-test-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
            std::to_wstring(++made);
    if (CreateDirectoryW(wide_.c_str(), nullptr) == 0) wide_.clear();
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder() {
    if (!wide_.empty()) RemoveTree(Raw(wide_));
  }

  const std::wstring& WidePath() const { return wide_; }
  std::string Path() const { return windows::SystemCodePage().Bytes(wide_); }
  std::string operator/(std::string_view name) const { return Path() + "\\" + std::string(name); }

 private:
  std::wstring wide_;
};

// Creates a file with these bytes; `raw` is a path in the form that Raw returns. Returns whether
// all bytes were written.
inline bool PutRaw(const std::wstring& raw, std::string_view bytes) {
  void* file = CreateFileW(raw.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  const bool good =
      WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != 0;
  CloseHandle(file);
  return good && written == bytes.size();
}

inline void Put(const std::string& path, std::string_view bytes) {
  ASSERT_TRUE(PutRaw(Raw(Wide(path)), bytes)) << path;
}

// Returns a file's content, or "(cannot be read)", which no test writes into a file.
inline std::string Content(const std::string& path) {
  void* file = CreateFileW(Raw(Wide(path)).c_str(), GENERIC_READ,
                           FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                           OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return "(cannot be read)";
  std::string bytes(std::size_t{16} << 20, '\0');
  DWORD read = 0;
  const bool good =
      ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr) != 0;
  CloseHandle(file);
  bytes.resize(read);
  return good ? bytes : "(cannot be read)";
}

inline DWORD Attributes(const std::string& path) {
  return GetFileAttributesW(Raw(Wide(path)).c_str());
}

inline bool IsThere(const std::string& path) { return Attributes(path) != INVALID_FILE_ATTRIBUTES; }

// Returns the names in a folder, sorted.
inline std::vector<std::string> Names(WindowsFileService& files, const std::string& folder) {
  std::vector<std::string> names;
  for (const FolderEntry& entry : files.ListFolder(folder).value) names.push_back(entry.name);
  std::sort(names.begin(), names.end());
  return names;
}

// Returns bytes that differ from offset to offset, so that a test notices misplaced pieces.
inline std::string Pattern(std::size_t size) {
  std::string bytes;
  for (unsigned number = 0; bytes.size() < size; number += 7919) bytes += std::to_string(number);
  bytes.resize(size);
  return bytes;
}

// Sets the file's modification time to `steps` units of 100 nanoseconds since 1601.
inline void SetModified(const std::string& path, std::uint64_t steps) {
  void* file = CreateFileW(Raw(Wide(path)).c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr,
                           OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(file, INVALID_HANDLE_VALUE) << path;
  const FILETIME time{static_cast<DWORD>(steps), static_cast<DWORD>(steps >> 32)};
  EXPECT_NE(SetFileTime(file, nullptr, nullptr, &time), 0);
  CloseHandle(file);
}

// A test with a temporary folder and the tested service. `others_` is the service of another run.
class WindowsTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_FALSE(folder_.WidePath().empty()); }

  TempFolder folder_;
  WindowsFileService files_;
  WindowsFileService others_;
};

}  // namespace morvex::windows_test
