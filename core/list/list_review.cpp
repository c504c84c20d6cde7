#include "core/list/list_review.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <set>
#include <unordered_map>
#include <utility>

#include "core/list/list_example.h"
#include "core/tables/substitution_tables.h"
#include "core/text/utf8.h"

namespace morvex {
namespace {

constexpr std::size_t kShortCharacters = 2;
constexpr std::size_t kLongestMatch = 32766;  // bytes
constexpr std::string_view kUsualWildcards = "*?";
constexpr std::int64_t kSeveral = 2;

// Counts the characters of a UTF-8 text: every byte except continuation bytes counts. If each byte
// is a character, as in Windows-1252, the count may be too low, never too high.
std::size_t CharacterCount(std::string_view text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char byte) { return !IsUtf8Continuation(byte); }));
}

bool IsBlank(char byte) { return byte == ' ' || byte == '\t'; }

// Whether the right text of a row holds a separator. A doubled separator at the end of the line
// does not count, because it only marks the final row. `line` is the row's whole line. `right_text`
// is the right text in the list; in the final row it lacks its last two bytes.
bool HasFurtherSeparator(std::string_view line, std::string_view separator,
                         std::string_view right_text) {
  const std::string mark = std::string(separator).append(separator);
  std::string_view right = line.substr(line.find(separator) + separator.size());
  if (right == separator) return false;
  if (right.ends_with(mark)) right.remove_suffix(mark.size());
  return right.find(separator) != std::string_view::npos ||
         right_text.find(separator) != std::string_view::npos;
}

class Reviewer {
 public:
  Reviewer(const ListReading& reading, std::string_view separator, std::uint8_t joker)
      : reading_(reading),
        separator_(separator),
        code_(joker),
        wildcard_(static_cast<char>(joker)) {}

  // Takes rows and odd lines in the order of the file. Returns false if it stopped early because
  // the further lines do not matter.
  bool TakeLines() {
    if (reading_.is_utf16) {
      Report(ListProblem::kUtf16, 1, "");
      return false;
    }
    auto odd = reading_.odd_lines.begin();
    const auto end = reading_.odd_lines.end();
    for (std::size_t row = 0; row < reading_.list.rows.size(); ++row) {
      const std::int64_t line = reading_.line_of_row[row];
      for (; odd != end && odd->number < line; ++odd) {
        if (!TakeOddLine(*odd)) return false;
      }
      const bool is_odd = odd != end && odd->number == line;
      TakeRowLine(line, is_odd ? odd->text : RowText(row), reading_.list.rows[row]);
      if (is_odd) ++odd;
    }
    return std::all_of(odd, end, [this](const ListLine& line) { return TakeOddLine(line); });
  }

  // Call after TakeLines. Adds the diagnostics that depend on all rows, and removes examples that
  // other rows make untrue.
  void TakeEnd() {
    std::vector<ListDiagnostic>& diagnostics = review.diagnostics;
    for (ListDiagnostic& diagnostic : diagnostics) {
      if (diagnostic.problem != ListProblem::kOpenWildcard) continue;
      if (TakesInOneByte(ExpandCRLF(diagnostic.text), code_, longest_)) continue;
      diagnostic.example.clear();
      diagnostic.outcome.clear();
    }
    if (review.is_usable && wildcard_ != 0 && !wildcard_is_used_) {
      diagnostics.insert(diagnostics.begin(), {ListProblem::kUnusedWildcard, 0, 0, "", ""});
    }
    for (const auto& [character, use] : uses_) {
      if (wildcard_ != 0 || use.count < kSeveral) continue;
      ListDiagnostic diagnostic{ListProblem::kNoWildcardSet, use.line, 0, use.text, ""};
      diagnostic.character = character;
      diagnostic.count = use.count;
      const auto behind = std::upper_bound(
          diagnostics.begin(), diagnostics.end(), use.line,
          [](std::int64_t at, const ListDiagnostic& each) { return at < each.line; });
      diagnostics.insert(behind, std::move(diagnostic));
    }
  }

  ListReview review;

 private:
  struct Earlier {
    std::int64_t line = 0;
    std::string text;
    bool has_wildcard = false;
  };

  // How the left texts use a character that is often the wildcard.
  struct Use {
    std::int64_t line = 0;  // line of the first left text that holds the character
    std::string text;
    std::int64_t count = 0;
  };

  // Returns the line of a row: left text, separator, right text. Must not be called for the final
  // row, whose right text in the list lacks the end of the line.
  std::string RowText(std::size_t row) const {
    const ListRow& texts = reading_.list.rows[row];
    return texts.left + std::string(separator_) + texts.right;
  }

  void TakeBeginning(std::int64_t line, std::string_view bytes) {
    if (bytes.starts_with(kUtf8Mark)) Report(ListProblem::kByteOrderMark, line, "");
  }

  // Returns false if the lines behind this one do not matter: of the lines behind the final row,
  // and of the lines behind the end of the list, only the first is reported.
  bool TakeOddLine(const ListLine& line) {
    if (line.kind == ListLine::Kind::kBehindEnd) {
      review.diagnostics.push_back(
          {ListProblem::kBehindEnd, line.number, reading_.end_line, line.text, ""});
      return false;
    }
    TakeBeginning(line.number, line.text);
    if (line.kind == ListLine::Kind::kBehindFinalRow) {
      review.diagnostics.push_back(
          {ListProblem::kRowsLost, line.number, review.line_of_row.back(), line.text, ""});
      return false;
    }
    Report(ListProblem::kNoSeparator, line.number, line.text);
    return true;
  }

  void TakeRowLine(std::int64_t line, const std::string& bytes, const ListRow& row) {
    TakeBeginning(line, bytes);
    if (bytes.find('\r') != std::string::npos) {
      Report(ListProblem::kCarriageReturn, line, row.left);
    }
    if (HasFurtherSeparator(bytes, separator_, row.right)) {
      Report(ListProblem::kFurtherSeparator, line, row.left);
    }
    if (!row.left.empty() &&
        (IsBlank(row.left.back()) || (!row.right.empty() && IsBlank(row.right.front())))) {
      Report(ListProblem::kBlanks, line, row.left);
    }
    TakeRow(line, row);
  }

  void TakeRow(std::int64_t line, const ListRow& row) {
    review.line_of_row.push_back(line);
    const std::string left = ExpandCRLF(row.left);
    longest_ = std::max(longest_, left.size());
    if (left.empty()) return Report(ListProblem::kEmptyLeft, line, row.right);
    if (left.find('\0') != std::string::npos) return Report(ListProblem::kNul, line, row.left);
    review.is_usable = true;
    NoteWildcards(line, row.left);
    const bool has_wildcard = HasWildcard(left);
    const bool is_shadowed = ReportShadowed(line, row.left, left);
    if (!is_shadowed && CharacterCount(left) <= kShortCharacters) {
      Report(ListProblem::kShort, line, row.left);
    }
    if (left.size() > kLongestMatch) Report(ListProblem::kTooLong, line, row.left);
    if (HasEndingInBeginning(left, code_)) {
      ReportWithExample(ListProblem::kOwnEnding, line, row);
    } else if (TakesInOneByte(left, code_, 0)) {
      ReportWithExample(ListProblem::kOpenWildcard, line, row);
    } else if (has_wildcard && left.find(wildcard_, 1) == left.size() - 1) {
      Report(ListProblem::kOpenWildcard, line, row.left);
    }
    if (!has_wildcard && wildcard_ != 0 && row.right.find(wildcard_) != std::string::npos) {
      Report(ListProblem::kStrayWildcard, line, row.left);
    }
    if (is_shadowed) return;
    earlier_.try_emplace(left, Earlier{line, row.left, has_wildcard});
    if (!has_wildcard) lengths_.insert(left.size());
  }

  void Report(ListProblem problem, std::int64_t line, const std::string& text) {
    review.diagnostics.push_back({problem, line, 0, text, ""});
  }

  // Reports the row with an example: a file, and what a run with this row alone makes of the file.
  void ReportWithExample(ListProblem problem, std::int64_t line, const ListRow& row) {
    ListDiagnostic diagnostic{problem, line, 0, row.left, ""};
    diagnostic.example = ExampleFor(ExpandCRLF(row.left), code_);
    diagnostic.outcome = outcomes_.Of(row.left, row.right, code_, diagnostic.example);
    review.diagnostics.push_back(std::move(diagnostic));
  }

  void NoteWildcards(std::int64_t line, const std::string& text) {
    wildcard_is_used_ = wildcard_is_used_ || text.find(wildcard_) != std::string::npos;
    for (const char character : kUsualWildcards) {
      if (text.find(character) == std::string::npos) continue;
      Use& use = uses_.try_emplace(character, Use{line, text, 0}).first->second;
      ++use.count;
    }
  }

  // A wildcard that is the first byte of a left text is an ordinary character.
  bool HasWildcard(const std::string& left) const {
    return wildcard_ != 0 && left.find(wildcard_, 1) != std::string::npos;
  }

  // If an earlier row always matches in place of this row, reports this row and returns true.
  // `left` is `text` with each "[CRLF]" as a line break.
  bool ReportShadowed(std::int64_t line, const std::string& text, const std::string& left) {
    const auto same = earlier_.find(left);
    if (same != earlier_.end()) {
      review.diagnostics.push_back(
          {ListProblem::kDuplicate, line, same->second.line, text, same->second.text});
      return true;
    }
    for (const std::size_t length : lengths_) {
      if (length >= left.size()) break;
      const auto found = earlier_.find(left.substr(0, length));
      if (found == earlier_.end() || found->second.has_wildcard) continue;
      review.diagnostics.push_back(
          {ListProblem::kShadowed, line, found->second.line, text, found->second.text});
      return true;
    }
    return false;
  }

  const ListReading& reading_;
  const std::string_view separator_;
  const std::uint8_t code_;
  const char wildcard_;
  bool wildcard_is_used_ = false;
  std::map<char, Use> uses_;
  RowOutcomes outcomes_;
  std::size_t longest_ = 0;                           // longest left text, in bytes
  std::unordered_map<std::string, Earlier> earlier_;  // by left text
  std::set<std::size_t> lengths_;  // sizes in bytes of left texts that hold no wildcard
};

}  // namespace

bool MayLackRows(const ListReview& review) {
  return std::any_of(review.diagnostics.begin(), review.diagnostics.end(),
                     [](const ListDiagnostic& diagnostic) {
                       switch (diagnostic.problem) {
                         case ListProblem::kByteOrderMark:
                         case ListProblem::kNoSeparator:
                         case ListProblem::kRowsLost:
                         case ListProblem::kBehindEnd:
                         case ListProblem::kCarriageReturn:
                         case ListProblem::kNul:
                           return true;
                         default:
                           return false;
                       }
                     });
}

ListReview ReviewList(const ListReading& reading, std::string_view separator, std::uint8_t joker) {
  Reviewer reviewer(reading, separator, joker);
  if (reviewer.TakeLines()) reviewer.review.error = reading.error;
  reviewer.TakeEnd();
  return std::move(reviewer.review);
}

}  // namespace morvex
