// Reviews a list before it is used: finds rows that will not do what their writer probably meant.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/list/list_format.h"

namespace morvex {

inline constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

enum class ListProblem {
  kByteOrderMark,     // the line begins with a byte-order mark, which is part of the left text
  kNoSeparator,       // the line is not a row
  kRowsLost,          // the line follows the final row
  kEmptyLeft,         // the left text is empty: this row is never tried
  kDuplicate,         // an earlier row has the same left text: this row never wins
  kShadowed,          // the left text begins with an earlier one without wildcard, which wins
  kShort,             // the left text has only one or two characters and may occur everywhere
  kOpenWildcard,      // the left text ends in the wildcard: no ending limits what it captures
  kStrayWildcard,     // the right text has a wildcard and the left text has none
  kNul,               // the left text holds a NUL: this row never wins
  kUtf16,             // the file is UTF-16: no row can be used
  kBehindEnd,         // the line follows the line that ends the list
  kCarriageReturn,    // the row holds a CR, as in a file whose lines end in CR alone
  kBlanks,            // blanks beside the separator are part of the texts
  kFurtherSeparator,  // the right text holds the separator
  kTooLong,           // the left text is longer than any match: this row never wins
  kNoWildcardSet,     // several left texts hold a "*" or a "?", and no wildcard is set
  kUnusedWildcard,    // no left text holds the wildcard; about the whole list
  kOwnEnding,         // the ending is in front of the wildcard, too: only one byte is captured
};

struct ListDiagnostic {
  ListProblem problem = ListProblem::kNoSeparator;
  std::int64_t line = 0;          // number, from 1; 0: the whole list
  std::int64_t earlier_line = 0;  // number: of the winning row, the final row or the list's end
  // Of a row the left text, or the right text if the left one is empty. Of a line that is no row of
  // the list, the whole line. Empty for kByteOrderMark, kUtf16 and kUnusedWildcard.
  std::string text;
  std::string earlier_text;  // the left text that wins instead
  // Only for kOwnEnding, and for kOpenWildcard if the wildcard captures only one byte: an example
  // file, and its contents after a run.
  std::string example = {};
  std::string outcome = {};
  // Only for kNoWildcardSet: the character and the number of left texts that hold it.
  char character = 0;
  std::int64_t count = 0;
};

struct ListReview {
  std::vector<ListDiagnostic> diagnostics;  // sorted by line
  std::vector<std::int64_t> line_of_row;    // line number of each row of the tables
  bool is_usable = false;                   // some row has a left text without a NUL
  ErrorNumber error = ErrorNumber::kNone;   // of the reading, if lines that matter are missing
};

// Whether the list file holds a line that is no row of the list, or a row with a byte-order mark, a
// CR or a NUL. If so, the file may hold texts that a check for leftovers does not look for.
bool MayLackRows(const ListReview& review);

// `reading` must have been read with OddLines::kKeep and with `separator`. `joker` is the
// wildcard's code, 0 for none.
ListReview ReviewList(const ListReading& reading, std::string_view separator, std::uint8_t joker);

}  // namespace morvex
