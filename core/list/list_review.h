// Looks a list file over before it is used: rows that will not do what their writer thinks.
//
// The file is read by the same grammar as an import, so the rows are those that an import makes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/host/file_service.h"

namespace morvex {

inline constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

enum class ListProblem {
  kByteOrderMark,     // begins the line, and so is part of the left text
  kNoSeparator,       // the line is no row
  kRowsLost,          // the line stands behind the final row
  kEmptyLeft,         // the row is never tried
  kDuplicate,         // the left text of an earlier row: this one never wins
  kForestalled,       // the left text begins with that of an earlier row: this one never wins
  kShort,             // one or two characters, which will be found everywhere
  kOpenWildcard,      // the wildcard ends the left text, so nothing ends what it takes
  kStrayWildcard,     // the right text has a wildcard and the left text has none
  kNul,               // the left text holds a NUL, which ends every attempt: this row never wins
  kUtf16,             // the file is UTF-16: nothing of it can be used
  kBehindEnd,         // the line stands behind the line that ends the list
  kCarriageReturn,    // inside the row, as in a file whose lines end in CR alone
  kBlanks,            // beside the separator, on either side: they are part of the texts
  kFurtherSeparator,  // in the right text
  kTooLong,           // a left text of more bytes than a match may have: this row never wins
  kNoWildcardSet,     // several left texts hold a "*" or a "?", and there is no wildcard
  kUnusedWildcard,    // no left text holds the wildcard; of no line
  kOwnEnding,         // the wildcard's ending stands in front of it, so nearly nothing is taken in
};

struct ListRemark {
  ListProblem problem = ListProblem::kNoSeparator;
  std::int64_t line = 0;          // counts from 1; 0: of the whole list
  std::int64_t earlier_line = 0;  // of the row that wins instead, or of the list's end
  std::string text;               // the left text, or the line that is no row
  std::string earlier_text;       // the left text that wins instead
  // Of kOwnEnding, and of kOpenWildcard where the wildcard takes in one byte alone, as no left text
  // is longer: a file for which the row may have been written, and what a run makes of it.
  std::string example = {};
  std::string outcome = {};
  // Of kNoWildcardSet: which character, and in how many left texts.
  char character = 0;
  std::int64_t count = 0;
};

struct ListReview {
  std::vector<ListRemark> remarks;         // by line
  std::vector<std::int64_t> line_of_row;   // rows as the tables count them
  bool is_usable = false;                  // some row has a left text
  ErrorNumber error = ErrorNumber::kNone;  // what ended the reading early
};

// Whether the file holds text that is no row, or another one than its writer thinks, so that not
// all that it names is looked for.
bool MayLackRows(const ListReview& review);

// `joker` is the wildcard's code, 0 for none. An error when the file cannot be opened.
Result<ListReview> ReviewList(FileService& files, const std::string& path,
                              std::string_view separator, std::uint8_t joker);

}  // namespace morvex
