#include "core/list/list_review.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <set>
#include <unordered_map>
#include <utility>

#include "core/list/list_example.h"
#include "core/list/list_line.h"
#include "core/program/text_file.h"
#include "core/tables/substitution_tables.h"
#include "core/text/utf8.h"

namespace morvex {
namespace {

constexpr std::array<std::string_view, 2> kUtf16Marks = {"\xFF\xFE", "\xFE\xFF"};
constexpr std::size_t kShortCharacters = 2;
constexpr std::size_t kLongestMatch = 32766;  // bytes
constexpr std::string_view kUsualWildcards = "*?";
constexpr std::int64_t kSeveral = 2;

// Characters of a UTF-8 text: every byte but those that follow a first one. A text in another
// encoding is at most taken for a shorter one.
std::size_t CharacterCount(std::string_view text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char byte) { return !IsUtf8Continuation(byte); }));
}

bool BeginsAsUtf16(std::string_view line) {
  if (line.find('\0') == std::string_view::npos) return false;
  return std::any_of(kUtf16Marks.begin(), kUtf16Marks.end(),
                     [line](std::string_view mark) { return line.starts_with(mark); });
}

bool IsBlank(char byte) { return byte == ' ' || byte == '\t'; }

// Whether one stands in the right text of a line that is a row, as it is or but for the mark of the
// final row, whatever becomes of it then.
bool HasFurtherSeparator(std::string_view line, std::string_view separator,
                         std::string_view right_cell) {
  const std::string mark = std::string(separator).append(separator);
  std::string_view right = line.substr(line.find(separator) + separator.size());
  if (right == separator) return false;
  if (right.ends_with(mark)) right.remove_suffix(mark.size());
  return right.find(separator) != std::string_view::npos ||
         right_cell.find(separator) != std::string_view::npos;
}

class Reviewer {
 public:
  explicit Reviewer(std::uint8_t joker) : code_(joker), joker_(static_cast<char>(joker)) {}

  void TakeLine(std::int64_t line, std::string_view bytes, std::string_view separator,
                const ListLine& row) {
    if (bytes.find('\r') != std::string_view::npos) {
      Remark(ListProblem::kCarriageReturn, line, row.left);
    }
    if (HasFurtherSeparator(bytes, separator, row.right)) {
      Remark(ListProblem::kFurtherSeparator, line, row.left);
    }
    if (!row.left.empty() &&
        (IsBlank(row.left.back()) || (!row.right.empty() && IsBlank(row.right.front())))) {
      Remark(ListProblem::kBlanks, line, row.left);
    }
    TakeRow(line, row.left, row.right);
  }

  // What can be told only of all rows together.
  void TakeEnd() {
    std::vector<ListRemark>& remarks = review.remarks;
    for (ListRemark& remark : remarks) {
      if (remark.problem != ListProblem::kOpenWildcard) continue;
      if (TakesInOneByte(ExpandCRLF(remark.text), code_, longest_)) continue;
      remark.example.clear();
      remark.outcome.clear();
    }
    if (review.is_usable && joker_ != 0 && !joker_is_used_) {
      remarks.insert(remarks.begin(), {ListProblem::kUnusedWildcard, 0, 0, "", ""});
    }
    for (const auto& [character, use] : uses_) {
      if (joker_ != 0 || use.count < kSeveral) continue;
      ListRemark remark{ListProblem::kNoWildcardSet, use.line, 0, use.text, ""};
      remark.character = character;
      remark.count = use.count;
      const auto behind =
          std::upper_bound(remarks.begin(), remarks.end(), use.line,
                           [](std::int64_t at, const ListRemark& each) { return at < each.line; });
      remarks.insert(behind, std::move(remark));
    }
  }

  void TakeRow(std::int64_t line, const std::string& left_cell, const std::string& right_cell) {
    review.line_of_row.push_back(line);
    const std::string left = ExpandCRLF(left_cell);
    longest_ = std::max(longest_, left.size());
    if (left.empty()) return Remark(ListProblem::kEmptyLeft, line, right_cell);
    if (left.find('\0') != std::string::npos) return Remark(ListProblem::kNul, line, left_cell);
    review.is_usable = true;
    NoteWildcards(line, left_cell);
    const bool has_wildcard = HasWildcard(left);
    const bool forestalled = LookForEarlier(line, left_cell, left);
    if (!forestalled && CharacterCount(left) <= kShortCharacters) {
      Remark(ListProblem::kShort, line, left_cell);
    }
    if (left.size() > kLongestMatch) Remark(ListProblem::kTooLong, line, left_cell);
    if (HasEndingInBeginning(left, code_)) {
      RemarkWithExample(ListProblem::kOwnEnding, line, left_cell, right_cell);
    } else if (TakesInOneByte(left, code_, 0)) {
      RemarkWithExample(ListProblem::kOpenWildcard, line, left_cell, right_cell);
    } else if (has_wildcard && left.find(joker_, 1) == left.size() - 1) {
      Remark(ListProblem::kOpenWildcard, line, left_cell);
    }
    if (!has_wildcard && joker_ != 0 && right_cell.find(joker_) != std::string::npos) {
      Remark(ListProblem::kStrayWildcard, line, left_cell);
    }
    if (forestalled) return;
    earlier_.try_emplace(left, Earlier{line, left_cell, has_wildcard});
    if (!has_wildcard) lengths_.insert(left.size());
  }

  void Remark(ListProblem problem, std::int64_t line, const std::string& text) {
    review.remarks.push_back({problem, line, 0, text, ""});
  }

  // The row is alone in the list of the example.
  void RemarkWithExample(ListProblem problem, std::int64_t line, const std::string& left_cell,
                         const std::string& right_cell) {
    ListRemark remark{problem, line, 0, left_cell, ""};
    remark.example = ExampleFor(ExpandCRLF(left_cell), code_);
    remark.outcome = outcomes_.Of(left_cell, right_cell, code_, remark.example);
    review.remarks.push_back(std::move(remark));
  }

  ListReview review;

 private:
  struct Earlier {
    std::int64_t line = 0;
    std::string text;
    bool has_wildcard = false;
  };

  // A character that is often the wildcard, in the rows' left texts.
  struct Use {
    std::int64_t line = 0;  // the first
    std::string text;
    std::int64_t count = 0;
  };

  void NoteWildcards(std::int64_t line, const std::string& cell) {
    joker_is_used_ = joker_is_used_ || cell.find(joker_) != std::string::npos;
    for (const char character : kUsualWildcards) {
      if (cell.find(character) == std::string::npos) continue;
      Use& use = uses_.try_emplace(character, Use{line, cell, 0}).first->second;
      ++use.count;
    }
  }

  // In first place it is an ordinary character.
  bool HasWildcard(const std::string& left) const {
    return joker_ != 0 && left.find(joker_, 1) != std::string::npos;
  }

  // Whether an earlier row takes every place that this one could.
  bool LookForEarlier(std::int64_t line, const std::string& cell, const std::string& left) {
    const auto same = earlier_.find(left);
    if (same != earlier_.end()) {
      review.remarks.push_back(
          {ListProblem::kDuplicate, line, same->second.line, cell, same->second.text});
      return true;
    }
    for (const std::size_t length : lengths_) {
      if (length >= left.size()) break;
      const auto found = earlier_.find(left.substr(0, length));
      if (found == earlier_.end() || found->second.has_wildcard) continue;
      review.remarks.push_back(
          {ListProblem::kForestalled, line, found->second.line, cell, found->second.text});
      return true;
    }
    return false;
  }

  const std::uint8_t code_;
  const char joker_;
  bool joker_is_used_ = false;
  std::map<char, Use> uses_;
  RowOutcomes outcomes_;
  std::size_t longest_ = 0;                           // left text, in bytes
  std::unordered_map<std::string, Earlier> earlier_;  // by left text
  std::set<std::size_t> lengths_;                     // of those without the wildcard
};

}  // namespace

bool MayLackRows(const ListReview& review) {
  return std::any_of(review.remarks.begin(), review.remarks.end(), [](const ListRemark& remark) {
    switch (remark.problem) {
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

Result<ListReview> ReviewList(FileService& files, const std::string& path,
                              std::string_view separator, std::uint8_t joker) {
  LineReader reader;
  const ErrorNumber error = reader.Open(files, path);
  if (error != ErrorNumber::kNone) return error;
  Reviewer reviewer(joker);
  ListLineParser parser(separator);
  std::string line;
  std::int64_t end_line = 0;  // of the line that ended the list
  for (std::int64_t number = 1; reader.Next(line); ++number) {
    if (end_line != 0) {
      if (line.empty() || parser.Parse(line).kind == ListLine::Kind::kEnd) continue;
      reviewer.review.remarks.push_back({ListProblem::kBehindEnd, number, end_line, line, ""});
      break;
    }
    if (line.starts_with(kUtf8Mark)) {
      reviewer.Remark(ListProblem::kByteOrderMark, number, "");
    }
    if (number == 1 && BeginsAsUtf16(line)) {
      reviewer.Remark(ListProblem::kUtf16, number, "");
      break;
    }
    const bool behind_final_row = parser.final_row_seen();
    const ListLine parsed = parser.Parse(line);
    if (parsed.kind == ListLine::Kind::kEnd) {
      end_line = number;
      continue;
    }
    if (parsed.kind == ListLine::Kind::kNoRow) {
      const bool is_blank = line.find_first_not_of(" \t") == std::string::npos;
      if (!is_blank) reviewer.Remark(ListProblem::kNoSeparator, number, line);
      continue;
    }
    if (behind_final_row) {
      reviewer.review.remarks.push_back(
          {ListProblem::kRowsLost, number, reviewer.review.line_of_row.back(), line, ""});
      break;
    }
    reviewer.TakeLine(number, line, separator, parsed);
  }
  reviewer.TakeEnd();
  reviewer.review.error = reader.error();
  return std::move(reviewer.review);
}

}  // namespace morvex
