// The format of list files: each row is a line of left text, separator and right text. A doubled
// separator anywhere in the line makes the row the final row; WriteListFile writes a doubled
// separator behind the last right text. Nothing is escaped. Only the functions declared here read
// and write list files.
//
// The file does not store the separator: the caller names it.
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
    kNoSeparator,     // neither a row nor blank; passed over
    kFinalRow,        // the final row, marked by a doubled separator
    kBehindFinalRow,  // the first row behind the final row
    kBehindEnd,       // the first text behind the line that ends the list
  };
  Kind kind = Kind::kNoSeparator;
  std::int64_t number = 0;  // from 1
  std::string text;         // the whole line
};

struct ListReading {
  ReplacementList list;                   // the rows, without those behind the final row
  std::vector<std::int64_t> line_of_row;  // line number of each row of `list`, from 1
  bool has_final_row = false;             // the last row of `list` is the final row
  // Rows behind the final row, if ReadListFile was asked for them. Each right text lacks its last
  // two bytes, as the right text of the final row does.
  std::vector<ListRow> rows_behind_final;
  bool is_utf16 = false;                   // the file is UTF-16; noticed only with kKeep
  std::int64_t end_line = 0;               // number of the line that ends the list; 0: none does
  std::vector<ListLine> odd_lines;         // in the order of the file
  ErrorNumber error = ErrorNumber::kNone;  // why the file could not be opened or read further
};

// Whether a reading keeps odd_lines. Only a review needs them. They may take much memory, because
// in a file that is no list every line may be odd. With kDrop the reading stops at the line that
// ends the list. With kKeep it goes on to the first text behind that line (neither an empty line
// nor another end line), but if the file is UTF-16, it stops at line 1.
enum class OddLines { kDrop, kKeep };

// Reads a list. A line of three separators and nothing else ends the list. If `separator` is empty,
// no line is a row. The reading also stops
//   at a row behind the final row, if at least `rows_wanted` rows precede that row;
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
