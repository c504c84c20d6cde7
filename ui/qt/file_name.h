// Paths between the core's bytes and the toolkit.
#pragma once

#include <QString>
#include <optional>
#include <string>

#include "ui/qt/code_page.h"

namespace morvex {

// `file_names` is the page of the names of files in both.

// The path as the toolkit opens it.
QString ToolkitPath(const CodePage& file_names, const std::string& path);

// The path that the toolkit gives, with the host's separators. Nothing when the bytes of names
// cannot spell it: no other file is named in its place.
std::optional<std::string> PathBytes(const CodePage& file_names, const QString& path);

}  // namespace morvex
