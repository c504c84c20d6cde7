// What a spreadsheet gives: lines of two texts with a tab between them.
#pragma once

#include <QString>
#include <optional>
#include <utility>
#include <vector>

namespace morvex {

// Without the line end behind the last line, if there is one: CR LF, LF or CR.
QString WithoutLastLineEnd(const QString& text);

// The texts of each line; nothing when a line has not exactly one tab. A tab alone is a text.
std::optional<std::vector<std::pair<QString, QString>>> ColumnsOf(const QString& text);

}  // namespace morvex
