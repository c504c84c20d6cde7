// A listing is read completely before it is returned. The system reports the kind of each name;
// only the target of a link needs another call.
#include "host/windows/windows_listing.h"

#include <array>
#include <cstring>
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
  // For a reparse point, dwReserved0 tells the kind of the point.
  return (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
         (entry.dwReserved0 == IO_REPARSE_TAG_SYMLINK ||
          entry.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT);
}

EntryKind KindOf(DWORD attributes) {
  return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? EntryKind::kFolder : EntryKind::kFile;
}

// Whether `code` proves that a link's target does not exist.
bool LeadsNowhere(Code code) {
  return code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND ||
         code == ERROR_CANT_RESOLVE_FILENAME;
}

EntryKind Examine(const std::wstring& folder, const WIN32_FIND_DATAW& entry) {
  if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DEVICE) != 0) return EntryKind::kSpecial;
  if (!IsLinkEntry(entry)) return KindOf(entry.dwFileAttributes);
  Status status;
  const Code code = FindStatus(Below(folder, entry.cFileName), status);
  if (code == 0) return KindOf(status.attributes);
  // After any other error the link counts as a link to a file; opening the link will report the
  // reason.
  return LeadsNowhere(code) ? EntryKind::kBrokenLink : EntryKind::kFile;
}

// The data of a link: the tag, the size of what follows, the offset and size of each of two texts,
// then the texts; offsets and sizes are in bytes. The second text is the one to show. A symbolic
// link has four more bytes in front of the texts than a mount point.
constexpr std::size_t kLongestLink = 16 * 1024;
constexpr std::size_t kShownOffset = 12;
constexpr std::size_t kShownSize = 14;
constexpr std::size_t kTextsOfLink = 20;
constexpr std::size_t kTextsOfMountPoint = 16;

template <class Number>
Number NumberAt(const std::array<char, kLongestLink>& link, std::size_t offset) {
  Number number = 0;
  std::memcpy(&number, link.data() + offset, sizeof number);
  return number;
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
    // An empty drive does not even list "." and "..".
    const bool is_empty =
        code == ERROR_FILE_NOT_FOUND && FindStatus(folder.value, status) == 0 && status.IsFolder();
    if (is_empty) return entries;
    return ErrorFromCode(code, Missing::kPath);
  }
  do {
    const std::wstring_view name = entry.cFileName;
    if (name == L"." || name == L"..") continue;
    entries.push_back(
        {SystemCodePage().Bytes(name), Examine(folder.value, entry), IsLinkEntry(entry)});
  } while (search.Next(entry));
  if (GetLastError() != ERROR_NO_MORE_FILES) return LastError(Missing::kPath);
  return entries;
}

Result<std::string> ReadLinkText(const std::string& path) {
  const Result<std::wstring> place = SystemPath(path, Missing::kFile);
  if (!place) return place.error;
  const Handle file =
      OpenExisting(place.value, FILE_READ_ATTRIBUTES, kShareAll, FILE_FLAG_OPEN_REPARSE_POINT);
  if (!file.IsOpen()) return LastError(Missing::kFile);
  std::array<char, kLongestLink> link{};
  DWORD size = 0;
  if (DeviceIoControl(file.Get(), FSCTL_GET_REPARSE_POINT, nullptr, 0, link.data(), kLongestLink,
                      &size, nullptr) == 0) {
    return ErrorNumber::kPathFileAccess;
  }
  const auto tag = NumberAt<DWORD>(link, 0);
  const bool is_mount_point = tag == IO_REPARSE_TAG_MOUNT_POINT;
  if (!is_mount_point && tag != IO_REPARSE_TAG_SYMLINK) return ErrorNumber::kPathFileAccess;
  const std::size_t begin = (is_mount_point ? kTextsOfMountPoint : kTextsOfLink) +
                            NumberAt<std::uint16_t>(link, kShownOffset);
  const std::size_t length = NumberAt<std::uint16_t>(link, kShownSize);
  if (begin + length > size) return ErrorNumber::kDeviceIo;
  std::wstring text(length / sizeof(wchar_t), L'\0');
  std::memcpy(text.data(), link.data() + begin, text.size() * sizeof(wchar_t));
  return SystemCodePage().Bytes(text);
}

}  // namespace morvex::windows
