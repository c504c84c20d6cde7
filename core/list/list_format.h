// The format of list files: one row a line, left text, separator, right text. A doubled separator
// anywhere in a line makes its row the final row; a written list has it behind the last right text.
// Nothing is escaped. A file is read into a ReplacementList and written from one here and nowhere
// else.
//
// The separator is not stored in the file: it is the one in force.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/host/file_service.h"
#include "core/tables/replacement_list.h"

namespace morvex {

// A line of a list file that is not an ordinary row.
struct ListLine {
  enum class Kind {
    kNoSeparator,     // neither row nor blank: passed over
    kFinalRow,        // a row, marked as the last by two separators in a row
    kBehindFinalRow,  // the first row behind the final row
    kBehindEnd,       // the first text behind the line that ends the list
  };
  Kind kind = Kind::kNoSeparator;
  std::int64_t number = 0;  // from 1
  std::string text;         // the whole line
};

struct ListReading {
  ReplacementList list;                   // up to the final row
  std::vector<std::int64_t> line_of_row;  // from 1
  bool has_final_row = false;             // the last row of `list` is the final row
  // The rows behind the final row, as many as were asked for. Their right texts lack their last two
  // bytes, as that of the final row does.
  std::vector<ListRow> rows_behind_final;
  bool is_utf16 = false;                   // seen on line 1, where the reading ended
  std::int64_t end_line = 0;               // the line that ends the list; 0: there is none
  std::vector<ListLine> odd_lines;         // in the order of the file
  ErrorNumber error = ErrorNumber::kNone;  // why the file could not be opened or read further
};

// Whether a reading keeps the odd lines. Only the review needs them, and a file that is not a list
// may consist of nothing else. With kDrop the reading stops at the line that ends the list. With
// kKeep it stops at the first text behind that line, and at line 1 if that shows UTF-16.
enum class OddLines { kDrop, kKeep };

// Reads a list. A line of three separators and nothing else ends the list. Without a separator
// there are no rows. The reading also stops
//   at a row behind the final row if `rows_wanted` rows or more, of all kinds, precede it;
//   when `keep_going`, which is asked before each line and may be empty, returns false;
//   at an error.
ListReading ReadListFile(FileService& files, const std::string& path, const std::string& separator,
                         OddLines odd_lines, std::int64_t rows_wanted = 0,
                         const KeepGoing& keep_going = {});

// Writes the list's rows to the file `list.path`, which is replaced or created. Rows that are empty
// on both sides are left out, except the last row. If writing fails, the file keeps its contents
// where the host can ensure that. Without a separator the rows cannot be read back.
ErrorNumber WriteListFile(FileService& files, const ReplacementList& list,
                          const std::string& separator);

}  // namespace morvex
