#include "ui/qt/pasted_columns.h"

#include <QStringList>

namespace morvex {

QString WithoutLastLineEnd(const QString& text) {
  if (text.endsWith("\r\n")) return text.chopped(2);
  return text.endsWith('\n') || text.endsWith('\r') ? text.chopped(1) : text;
}

std::optional<std::vector<std::pair<QString, QString>>> ColumnsOf(const QString& text) {
  if (text == "\t") return std::nullopt;
  const QStringList lines =
      WithoutLastLineEnd(text).replace("\r\n", "\n").replace('\r', '\n').split('\n');
  std::vector<std::pair<QString, QString>> rows;
  for (const QString& line : lines) {
    if (line.count('\t') != 1) return std::nullopt;
    rows.emplace_back(line.section('\t', 0, 0), line.section('\t', 1, 1));
  }
  return rows;
}

}  // namespace morvex
