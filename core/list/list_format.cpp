#include "core/list/list_format.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

#include "core/program/text_file.h"

namespace morvex {
namespace {

// How many bytes are cut off the right text of the final row, and of each row behind it, however
// long the separator is.
constexpr std::size_t kFinalRowMark = 2;

bool IsBlank(std::string_view line) {
  return line.find_first_not_of(" \t") == std::string_view::npos;
}

// Takes the lines of one file in turn.
class ListParser {
 public:
  ListParser(ListReading& reading, const std::string& separator, OddLines odd_lines)
      : reading_(reading),
        separator_(separator),
        mark_(separator + separator),
        end_(mark_ + separator),
        keeps_odd_lines_(odd_lines == OddLines::kKeep) {}

  // Returns false when the reading is to end.
  bool TakeLine(const std::string& line) {
    ++number_;
    if (reading_.end_line != 0) return TakeBehindEnd(line);
    const std::size_t found = separator_.empty() ? std::string::npos : line.find(separator_);
    if (found == std::string::npos) {
      if (!IsBlank(line)) Keep(ListLine::Kind::kNoSeparator, line);
    } else if (line == end_) {
      reading_.end_line = number_;
      return keeps_odd_lines_;
    } else {
      TakeRow(line, found);
    }
    return true;
  }

 private:
  // Passes over empty lines and further end lines, which many lists have behind their end.
  bool TakeBehindEnd(const std::string& line) {
    if (line.empty() || line == end_) return true;
    Keep(ListLine::Kind::kBehindEnd, line);
    return false;
  }

  void TakeRow(const std::string& line, std::size_t found) {
    ListRow row;
    row.left = line.substr(0, found);
    row.right = line.substr(found + separator_.size());
    const bool is_behind_final = reading_.has_final_row;
    if (is_behind_final && reading_.rows_behind_final.empty()) {
      Keep(ListLine::Kind::kBehindFinalRow, line);
    }
    if (!is_behind_final && line.find(mark_) != std::string::npos) {
      reading_.has_final_row = true;
      Keep(ListLine::Kind::kFinalRow, line);
    }
    if (reading_.has_final_row) {
      row.right.resize(row.right.size() - std::min(row.right.size(), kFinalRowMark));
    }
    if (is_behind_final) {
      reading_.rows_behind_final.push_back(std::move(row));
      return;
    }
    reading_.list.rows.push_back(std::move(row));
    reading_.line_of_row.push_back(number_);
  }

  void Keep(ListLine::Kind kind, const std::string& line) {
    if (keeps_odd_lines_) reading_.odd_lines.push_back({kind, number_, line});
  }

  ListReading& reading_;
  const std::string separator_;
  const std::string mark_;
  const std::string end_;
  const bool keeps_odd_lines_;
  std::int64_t number_ = 0;
};

}  // namespace

ListReading ReadListFile(FileService& files, const std::string& path, const std::string& separator,
                         OddLines odd_lines) {
  ListReading reading;
  reading.list.path = path;
  LineReader reader;
  reader.Open(files, path);
  ListParser parser(reading, separator, odd_lines);
  std::string line;
  while (reader.Next(line) && parser.TakeLine(line)) {
  }
  reading.error = reader.error();
  return reading;
}

ErrorNumber WriteListFile(FileService& files, const ReplacementList& list,
                          const std::string& separator) {
  std::string content;
  for (std::size_t i = 0; i < list.rows.size(); ++i) {
    const ListRow& row = list.rows[i];
    const bool last = i + 1 == list.rows.size();
    if (!last && row.left.empty() && row.right.empty()) continue;
    content.append(row.left).append(separator).append(row.right);
    if (last) content.append(separator).append(separator);
    content.append("\r\n");
  }
  return files.ReplaceFile(list.path, content);
}

}  // namespace morvex
