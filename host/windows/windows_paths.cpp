// The system changes some names before it uses them (blanks at the end, devices). With the prefix
// "\\?\" the system keeps such a name, but other programs cannot reach the file. So names that the
// system would change are rejected here, and all others are passed on with the prefix.
#include "host/windows/windows_paths.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

#include "host/windows/windows_api.h"
#include "host/windows/windows_code_page.h"

namespace morvex::windows {
namespace {

constexpr std::wstring_view kPrefix = LR"(\\?\)";
constexpr std::wstring_view kNetworkPrefix = LR"(\\?\UNC\)";
constexpr std::wstring_view kNetworkStart = LR"(\\)";
constexpr wchar_t kSeparator = L'\\';
constexpr std::size_t kLongestName = 255;
constexpr wchar_t kFirstPrintable = 32;

wchar_t UpperAscii(wchar_t character) {
  const bool lower = character >= L'a' && character <= L'z';
  return lower ? static_cast<wchar_t>(character - L'a' + L'A') : character;
}

bool IsLetter(wchar_t character) {
  const wchar_t upper = UpperAscii(character);
  return upper >= L'A' && upper <= L'Z';
}

bool HasDrive(std::wstring_view path) {
  return path.size() >= 2 && IsLetter(path[0]) && path[1] == L':';
}

// Whether the path starts at a drive's root or a server's share, so that it does not depend on the
// current folder.
bool IsRooted(std::wstring_view path) {
  if (HasDrive(path)) return path.size() >= 3 && path[2] == kSeparator;
  if (!path.starts_with(kNetworkStart)) return false;
  const std::size_t server = kNetworkStart.size();
  const std::size_t share = std::min(path.find(kSeparator, server), path.size() - 1) + 1;
  return share > server + 1 && share < path.size() && path[share] != kSeparator;
}

// Makes neighbouring separators one separator, except for two separators at the start.
void CleanSeparators(std::wstring& path) {
  const auto doubled = [](wchar_t one, wchar_t next) {
    return one == kSeparator && next == kSeparator;
  };
  path.erase(std::unique(path.begin() + 1, path.end(), doubled), path.end());
}

// Whether `path` starts with `start`, in any letter case. `start` must be in capital letters.
bool StartsInAnyCase(std::wstring_view path, std::wstring_view start) {
  return path.size() >= start.size() &&
         std::equal(start.begin(), start.end(), path.begin(),
                    [](wchar_t wanted, wchar_t found) { return wanted == UpperAscii(found); });
}

bool IsGoodName(std::wstring_view name) {
  if (name == L"." || name == L"..") return true;
  if (name.size() > kLongestName || name.back() == L'.' || name.back() == L' ') return false;
  const bool good = std::all_of(name.begin(), name.end(), [](wchar_t character) {
    constexpr std::wstring_view kInNoName = L"<>:\"|?*";
    return character >= kFirstPrintable && kInNoName.find(character) == std::wstring_view::npos;
  });
  return good && !IsDeviceName(name);
}

bool HasGoodNames(std::wstring_view path) {
  std::size_t start = HasDrive(path) ? 2 : 0;
  while (start < path.size()) {
    const std::size_t end = std::min(path.find(kSeparator, start), path.size());
    if (end > start && !IsGoodName(path.substr(start, end - start))) return false;
    start = end + 1;
  }
  return true;
}

// Returns the number of characters at the start of a full path that form its root.
std::size_t RootLength(std::wstring_view full) {
  if (HasDrive(full)) return std::min<std::size_t>(3, full.size());
  const std::size_t share = full.find(kSeparator, kNetworkStart.size());
  if (share == std::wstring_view::npos) return full.size();
  return std::min(full.find(kSeparator, share + 1), full.size());
}

Result<std::wstring> Resolve(const std::wstring& path) {
  std::wstring full(path.size() + MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    if (length == 0) return LastError(Missing::kPath);
    const bool fits = length < full.size();
    full.resize(length);
    if (fits) return full;
  }
}

}  // namespace

bool IsDeviceName(std::wstring_view name) {
  constexpr std::array<std::wstring_view, 6> kDevices = {L"CON", L"PRN",    L"AUX",
                                                         L"NUL", L"CONIN$", L"CONOUT$"};
  // Ports are numbered by digits, also by the superscript digits 1, 2 and 3.
  constexpr std::wstring_view kNumbers = L"0123456789\u00b9\u00b2\u00b3";
  name = name.substr(0, name.find(L'.'));
  const std::size_t last = name.find_last_not_of(L' ');
  std::wstring upper(name.substr(0, last == std::wstring_view::npos ? 0 : last + 1));
  std::transform(upper.begin(), upper.end(), upper.begin(), UpperAscii);
  if (std::find(kDevices.begin(), kDevices.end(), upper) != kDevices.end()) return true;
  return upper.size() == 4 && (upper.starts_with(L"COM") || upper.starts_with(L"LPT")) &&
         kNumbers.find(upper.back()) != std::wstring_view::npos;
}

bool IsSameName(std::wstring_view one, std::wstring_view other) {
  return CompareStringOrdinal(one.data(), static_cast<int>(one.size()), other.data(),
                              static_cast<int>(other.size()), TRUE) == CSTR_EQUAL;
}

std::wstring WithoutPrefix(const std::wstring& path) {
  if (StartsInAnyCase(path, kNetworkPrefix)) {
    return std::wstring(kNetworkStart) + path.substr(kNetworkPrefix.size());
  }
  return path.starts_with(kPrefix) ? path.substr(kPrefix.size()) : path;
}

Result<std::wstring> FullPath(const std::string& path, Missing missing) {
  if (path.empty()) return ErrorFromCode(ERROR_FILE_NOT_FOUND, missing);
  std::optional<std::wstring> wide = SystemCodePage().Wide(path);
  if (!wide || wide->find(L'\0') != std::wstring::npos) return ErrorNumber::kBadFileName;
  std::replace(wide->begin(), wide->end(), L'/', kSeparator);
  std::wstring plain = WithoutPrefix(*wide);
  // Behind the prefix the system also accepts other roots, such as Volume{...}. Without the prefix
  // such a root would be a name in the current folder.
  if (plain.size() < wide->size() && !IsRooted(plain)) return ErrorNumber::kBadFileName;
  CleanSeparators(plain);
  if (!HasGoodNames(plain)) return ErrorNumber::kBadFileName;
  // "\\.\" leads to devices.
  if (plain.starts_with(LR"(\\.)")) return ErrorNumber::kBadFileName;
  const Result<std::wstring> resolved = Resolve(plain);
  if (!resolved) return resolved;
  std::wstring full = WithoutPrefix(resolved.value);
  if (!IsRooted(full)) return ErrorNumber::kBadFileName;
  const std::size_t root = RootLength(full);
  while (full.size() > root && full.back() == kSeparator) full.pop_back();
  return full;
}

std::wstring LongForm(const std::wstring& full) {
  if (HasDrive(full)) return std::wstring(kPrefix) + full;
  return std::wstring(kNetworkPrefix) + full.substr(kNetworkStart.size());
}

Result<std::wstring> SystemPath(const std::string& path, Missing missing) {
  const Result<std::wstring> full = FullPath(path, missing);
  if (!full) return full;
  return LongForm(full.value);
}

PathParts SplitPath(const std::wstring& full) {
  if (full.starts_with(kPrefix)) {
    PathParts parts = SplitPath(WithoutPrefix(full));
    parts.folder = LongForm(parts.folder);
    return parts;
  }
  const std::size_t root = RootLength(full);
  if (full.size() <= root) return {full, {}};
  const std::size_t separator = full.rfind(kSeparator);
  return {full.substr(0, std::max(separator, root)), full.substr(separator + 1)};
}

std::wstring Below(const std::wstring& folder, std::wstring_view name) {
  std::wstring path = folder;
  if (!path.ends_with(kSeparator)) path.push_back(kSeparator);
  return path.append(name);
}

}  // namespace morvex::windows
