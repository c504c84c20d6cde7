// Paths: what is no path at all, the form in which the system takes one of any length, and the two
// parts of one.
//
// "/" parts names as "\" does. Behind "\\?\" a path begins with a drive's root or with "UNC\", and
// is refused (52) otherwise. Names are refused (52) that the code page has no characters for, that
// the system would take for other ones (it drops dots and blanks at a name's end), that are devices
// in every folder (CON, NUL.txt, COM1 ...), or that hold a character which no name has, a stream's
// ":" too.
#pragma once

#include <string>
#include <string_view>

#include "core/host/error.h"
#include "host/windows/windows_errors.h"

namespace morvex::windows {

// An absolute path without ".", "..", "/", doubled separators, or a separator at its end unless it
// is a root ("C:\"); wide, and without the prefix "\\?\". The empty path gives 53 or 76, a bad one
// 52.
Result<std::wstring> FullPath(const std::string& path, Missing missing);

// A full path in the form of which the system takes every length.
std::wstring LongForm(const std::wstring& full);
// And back again.
std::wstring WithoutPrefix(const std::wstring& path);

// LongForm of FullPath.
Result<std::wstring> SystemPath(const std::string& path, Missing missing);

// Whether the name is one of a device, whatever stands behind its first dot.
bool IsDeviceName(std::wstring_view name);

// Whether the names are one to the system, which makes no difference of letter cases.
bool IsSameName(std::wstring_view one, std::wstring_view other);

struct PathParts {
  std::wstring folder;  // no separator at its end unless it is a root
  std::wstring name;    // empty for a root
};
// `full`, with or without the prefix, has to be as FullPath leaves it.
PathParts SplitPath(const std::wstring& full);

// The name `name` in the folder `folder`.
std::wstring Below(const std::wstring& folder, std::wstring_view name);

}  // namespace morvex::windows
