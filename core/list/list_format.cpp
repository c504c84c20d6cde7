#include "core/list/list_format.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

#include "core/program/text_file.h"

namespace morvex {
namespace {

// How many bytes are cut off the right text of the final row, and of each row behind it, however
// long the separator is.
constexpr std::size_t kFinalRowMark = 2;

constexpr std::array<std::string_view, 2> kUtf16Marks = {"\xFF\xFE", "\xFE\xFF"};

bool IsBlank(std::string_view line) {
  return line.find_first_not_of(" \t") == std::string_view::npos;
}

bool BeginsAsUtf16(std::string_view line) {
  if (line.find('\0') == std::string_view::npos) return false;
  return std::any_of(kUtf16Marks.begin(), kUtf16Marks.end(),
                     [line](std::string_view mark) { return line.starts_with(mark); });
}

// Takes the lines of one file in turn.
class ListParser {
 public:
  ListParser(ListReading& reading, const std::string& separator, OddLines odd_lines,
             std::int64_t rows_wanted)
      : reading_(reading),
        separator_(separator),
        mark_(separator + separator),
        end_(mark_ + separator),
        keeps_odd_lines_(odd_lines == OddLines::kKeep),
        rows_wanted_(rows_wanted) {}

  // Returns false when the reading is to end.
  bool TakeLine(const std::string& line) {
    ++number_;
    if (keeps_odd_lines_ && number_ == 1 && BeginsAsUtf16(line)) {
      reading_.is_utf16 = true;
      return false;
    }
    if (reading_.end_line != 0) return TakeBehindEnd(line);
    const std::size_t found = separator_.empty() ? std::string::npos : line.find(separator_);
    if (found == std::string::npos) {
      if (!IsBlank(line)) Keep(ListLine::Kind::kNoSeparator, line);
    } else if (line == end_) {
      reading_.end_line = number_;
      return keeps_odd_lines_;
    } else {
      return TakeRow(line, found);
    }
    return true;
  }

 private:
  // Passes over empty lines and repeated end lines: many lists have such lines behind their end.
  bool TakeBehindEnd(const std::string& line) {
    if (line.empty() || line == end_) return true;
    Keep(ListLine::Kind::kBehindEnd, line);
    return false;
  }

  bool TakeRow(const std::string& line, std::size_t found) {
    const bool is_behind_final = reading_.has_final_row;
    if (is_behind_final && reading_.rows_behind_final.empty()) {
      Keep(ListLine::Kind::kBehindFinalRow, line);
    }
    if (is_behind_final && RowCount() >= rows_wanted_) return false;
    ListRow row;
    row.left = line.substr(0, found);
    row.right = line.substr(found + separator_.size());
    if (!is_behind_final && line.find(mark_) != std::string::npos) {
      reading_.has_final_row = true;
      Keep(ListLine::Kind::kFinalRow, line);
    }
    if (reading_.has_final_row) {
      row.right.resize(row.right.size() - std::min(row.right.size(), kFinalRowMark));
    }
    if (is_behind_final) {
      reading_.rows_behind_final.push_back(std::move(row));
      return true;
    }
    reading_.list.rows.push_back(std::move(row));
    reading_.line_of_row.push_back(number_);
    return true;
  }

  std::int64_t RowCount() const {
    return static_cast<std::int64_t>(reading_.list.rows.size() + reading_.rows_behind_final.size());
  }

  void Keep(ListLine::Kind kind, const std::string& line) {
    if (keeps_odd_lines_) reading_.odd_lines.push_back({kind, number_, line});
  }

  ListReading& reading_;
  const std::string separator_;
  const std::string mark_;
  const std::string end_;
  const bool keeps_odd_lines_;
  const std::int64_t rows_wanted_;
  std::int64_t number_ = 0;
};

}  // namespace

ListReading ReadListFile(FileService& files, const std::string& path, const std::string& separator,
                         OddLines odd_lines, std::int64_t rows_wanted,
                         const KeepGoing& keep_going) {
  ListReading reading;
  reading.list.path = path;
  LineReader reader;
  reader.Open(files, path);
  ListParser parser(reading, separator, odd_lines, rows_wanted);
  std::string line;
  while ((!keep_going || keep_going()) && reader.Next(line) && parser.TakeLine(line)) {
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
