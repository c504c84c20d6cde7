// Converts paths between the core's bytes and the toolkit's text.
#pragma once

#include <QString>
#include <optional>
#include <string>

#include "ui/qt/code_page.h"

namespace morvex {

// In both functions `file_names` is the code page of file names.

// Returns the path as the toolkit opens it.
QString ToolkitPath(const CodePage& file_names, const std::string& path);

// Returns a path of the toolkit as bytes, with the host's separators. Returns nothing when file
// names cannot hold one of the path's characters: with another character in its place, the path
// might lead to another file.
std::optional<std::string> PathBytes(const CodePage& file_names, const QString& path);

}  // namespace morvex
