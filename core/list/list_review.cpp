#include "core/list/list_review.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <set>
#include <unordered_map>
#include <utility>

#include "core/list/list_line.h"
#include "core/program/text_file.h"
#include "core/tables/substitution_tables.h"

namespace morvex {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::array<std::string_view, 2> kUtf16Marks = {"\xFF\xFE", "\xFE\xFF"};
constexpr std::size_t kShortCharacters = 2;

// Characters of a UTF-8 text: every byte but those that follow a first one. A text in another
// encoding is at most taken for a shorter one.
std::size_t CharacterCount(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
  }));
}

bool BeginsAsUtf16(std::string_view line) {
  if (line.find('\0') == std::string_view::npos) return false;
  return std::any_of(kUtf16Marks.begin(), kUtf16Marks.end(),
                     [line](std::string_view mark) { return line.starts_with(mark); });
}

class Reviewer {
 public:
  explicit Reviewer(std::uint8_t joker) : joker_(static_cast<char>(joker)) {}

  void TakeRow(std::int64_t line, const std::string& left_cell, const std::string& right_cell) {
    review.line_of_row.push_back(line);
    const std::string left = ExpandCRLF(left_cell);
    if (left.empty()) return Remark(ListProblem::kEmptyLeft, line, right_cell);
    if (left.find('\0') != std::string::npos) return Remark(ListProblem::kNul, line, left_cell);
    review.is_usable = true;
    const bool has_wildcard = HasWildcard(left);
    const bool forestalled = LookForEarlier(line, left_cell, left);
    if (!forestalled && CharacterCount(left) <= kShortCharacters) {
      Remark(ListProblem::kShort, line, left_cell);
    }
    if (has_wildcard && left.find(joker_, 1) == left.size() - 1) {
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

  ListReview review;

 private:
  struct Earlier {
    std::int64_t line = 0;
    std::string text;
    bool has_wildcard = false;
  };

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

  const char joker_;
  std::unordered_map<std::string, Earlier> earlier_;  // by left text
  std::set<std::size_t> lengths_;                     // of those without the wildcard
};

}  // namespace

Result<ListReview> ReviewList(FileService& files, const std::string& path,
                              std::string_view separator, std::uint8_t joker) {
  LineReader reader;
  const ErrorNumber error = reader.Open(files, path);
  if (error != ErrorNumber::kNone) return error;
  Reviewer reviewer(joker);
  ListLineParser parser(separator);
  std::string line;
  for (std::int64_t number = 1; reader.Next(line); ++number) {
    if (number == 1 && line.starts_with(kByteOrderMark)) {
      reviewer.Remark(ListProblem::kByteOrderMark, number, "");
    }
    if (number == 1 && BeginsAsUtf16(line)) {
      reviewer.Remark(ListProblem::kUtf16, number, "");
      break;
    }
    const bool behind_final_row = parser.final_row_seen();
    const ListLine parsed = parser.Parse(line);
    if (parsed.kind == ListLine::Kind::kEnd) break;
    if (parsed.kind == ListLine::Kind::kNoRow) {
      if (!line.empty()) reviewer.Remark(ListProblem::kNoSeparator, number, line);
      continue;
    }
    if (behind_final_row) {
      reviewer.review.remarks.push_back(
          {ListProblem::kRowsLost, number, reviewer.review.line_of_row.back(), line, ""});
      break;
    }
    reviewer.TakeRow(number, parsed.left, parsed.right);
  }
  reviewer.review.error = reader.error();
  return std::move(reviewer.review);
}

}  // namespace morvex
