// Cells pasted from a spreadsheet: lines of two texts with a tab between them.
#pragma once

#include <QString>
#include <optional>
#include <utility>
#include <vector>

namespace morvex {

// Returns the text without the line end behind its last line (CR LF, LF or CR), if there is one.
QString WithoutLastLineEnd(const QString& text);

// Returns the two texts of each line. Returns nothing when a line does not have exactly one tab,
// and for a tab alone.
std::optional<std::vector<std::pair<QString, QString>>> ColumnsOf(const QString& text);

}  // namespace morvex
