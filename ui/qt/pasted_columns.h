// Cells pasted from a spreadsheet: lines of two texts with a tab between them.
#pragma once

#include <QString>
#include <optional>
#include <utility>
#include <vector>

namespace morvex {

// Returns the text without the line end behind its last line (CR LF, LF or CR), if there is one.
QString WithoutLastLineEnd(const QString& text);

// Returns the two texts of each line. Returns nothing if a line has no tab or more than one, or if
// the text is a single tab.
std::optional<std::vector<std::pair<QString, QString>>> ColumnsOf(const QString& text);

}  // namespace morvex
