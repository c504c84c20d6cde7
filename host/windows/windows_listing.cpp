// A listing is read to its end before it is handed out. The system tells with each name what it is;
// only links cost a look at what they lead to.
#include "host/windows/windows_listing.h"

#include <optional>
#include <string_view>

#include "host/windows/windows_code_page.h"
#include "host/windows/windows_handle.h"
#include "host/windows/windows_paths.h"

namespace morvex::windows {
namespace {

class Search {
 public:
  Search(const std::wstring& pattern, WIN32_FIND_DATAW& first)
      : handle_(FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &first, FindExSearchNameMatch,
                                 nullptr, FIND_FIRST_EX_LARGE_FETCH)) {}
  Search(const Search&) = delete;
  Search& operator=(const Search&) = delete;
  ~Search() {
    if (IsOpen()) FindClose(handle_);
  }

  bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
  bool Next(WIN32_FIND_DATAW& next) const { return FindNextFileW(handle_, &next) != 0; }

 private:
  void* handle_;
};

bool IsLinkEntry(const WIN32_FIND_DATAW& entry) {
  // Where an entry is a reparse point, the reserved field tells of which kind.
  return (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
         (entry.dwReserved0 == IO_REPARSE_TAG_SYMLINK ||
          entry.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT);
}

EntryKind KindOf(DWORD attributes) {
  return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? EntryKind::kFolder : EntryKind::kFile;
}

// Codes that say for certain that nothing is at a link's end.
bool LeadsNowhere(Code code) {
  return code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND ||
         code == ERROR_CANT_RESOLVE_FILENAME;
}

// Nothing when the name is to be left out.
std::optional<EntryKind> Examine(const std::wstring& folder, const WIN32_FIND_DATAW& entry) {
  if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DEVICE) != 0) return std::nullopt;
  if (!IsLinkEntry(entry)) return KindOf(entry.dwFileAttributes);
  Status status;
  const Code code = FindStatus(Below(folder, entry.cFileName), status);
  if (code == 0) return KindOf(status.attributes);
  if (LeadsNowhere(code)) return std::nullopt;
  // What is there cannot be told, and nothing may be lost unsaid: whoever takes it for a file is
  // told why it cannot be had.
  return EntryKind::kFile;
}

}  // namespace

Result<std::vector<FolderEntry>> ReadFolder(const std::string& path) {
  const Result<std::wstring> folder = SystemPath(path, Missing::kPath);
  if (!folder) return folder.error;
  std::vector<FolderEntry> entries;
  WIN32_FIND_DATAW entry{};
  const Search search(Below(folder.value, L"*"), entry);
  if (!search.IsOpen()) {
    const Code code = GetLastError();
    Status status;
    // An empty drive has not even the names "." and "..".
    const bool is_empty =
        code == ERROR_FILE_NOT_FOUND && FindStatus(folder.value, status) == 0 && status.IsFolder();
    if (is_empty) return entries;
    return ErrorFromCode(code, Missing::kPath);
  }
  do {
    const std::wstring_view name = entry.cFileName;
    if (name == L"." || name == L"..") continue;
    const std::optional<EntryKind> kind = Examine(folder.value, entry);
    if (!kind) continue;
    entries.push_back({SystemCodePage().Bytes(name), *kind, IsLinkEntry(entry)});
  } while (search.Next(entry));
  if (GetLastError() != ERROR_NO_MORE_FILES) return LastError(Missing::kPath);
  return entries;
}

}  // namespace morvex::windows
