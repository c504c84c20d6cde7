// Paths: checks, the form in which the system accepts any length, and splitting.
//
// "/" separates names as "\" does. After the prefix "\\?\" a path must continue with a drive's root
// or with "UNC\"; otherwise it is rejected (52). A path is also rejected (52) if it contains a name
// - with characters that the code page does not have,
// - that the system would change (it drops dots and blanks at a name's end),
// - of a device; devices exist in every folder (CON, NUL.txt, COM1 ...),
// - with a character that no name may contain, such as the ":" of a stream.
#pragma once

#include <string>
#include <string_view>

#include "core/host/error.h"
#include "host/windows/windows_errors.h"

namespace morvex::windows {

// Returns the absolute path in wide characters, without the prefix "\\?\", ".", "..", "/" and
// doubled separators (except the two in front of a server's name). The result ends in a separator
// only if it is a root ("C:\"). The empty path returns 53 or 76, an invalid one 52.
Result<std::wstring> FullPath(const std::string& path, Missing missing);

// Returns a full path in the form that the system accepts at any length.
std::wstring LongForm(const std::wstring& full);
// The inverse of LongForm.
std::wstring WithoutPrefix(const std::wstring& path);

// LongForm of FullPath.
Result<std::wstring> SystemPath(const std::string& path, Missing missing);

// Whether the part of the name in front of its first dot is the name of a device.
bool IsDeviceName(std::wstring_view name);

// Whether the names are equal for the system, which ignores letter case.
bool IsSameName(std::wstring_view one, std::wstring_view other);

struct PathParts {
  std::wstring folder;  // ends in a separator only if it is a root
  std::wstring name;    // empty for a root
};
// `full` must be a result of FullPath or of LongForm.
PathParts SplitPath(const std::wstring& full);

// The path of `name` in the folder `folder`.
std::wstring Below(const std::wstring& folder, std::wstring_view name);

}  // namespace morvex::windows
