#include "core/tables/substitution_tables.h"

#include <algorithm>

namespace morvex {
namespace {

constexpr std::string_view kLineBreakToken = "[CRLF]";
constexpr std::string_view kLineBreak = "\r\n";

std::int64_t Length(const std::string& text) { return static_cast<std::int64_t>(text.size()); }

// Stores the length in bytes of every text and returns the greatest length.
std::int64_t Measure(const std::vector<std::string>& texts, std::vector<std::int64_t>& lengths) {
  std::int64_t longest = 0;
  lengths.clear();
  lengths.reserve(texts.size());
  for (const std::string& text : texts) {
    lengths.push_back(Length(text));
    longest = std::max(longest, Length(text));
  }
  return longest;
}

// Returns the text behind the first wildcard; the whole text if it holds no wildcard.
std::string TailBehindWildcard(const std::string& text, std::uint8_t joker) {
  const std::size_t found = joker == 0 ? std::string::npos : text.find(static_cast<char>(joker));
  return found == std::string::npos ? text : text.substr(found + 1);
}

}  // namespace

bool HasEndingInBeginning(std::string_view left, std::uint8_t joker) {
  // A wildcard that is the first byte matches as an ordinary character. But even then the ending
  // begins behind that byte.
  const std::size_t wildcard =
      joker == 0 ? std::string_view::npos : left.find(static_cast<char>(joker), 1);
  if (wildcard == std::string_view::npos) return false;
  const std::string_view ending = left.substr(left.find(static_cast<char>(joker)) + 1);
  return !ending.empty() && left.substr(0, wildcard).find(ending) != std::string_view::npos;
}

bool TakesInOneByte(std::string_view left, std::uint8_t joker, std::size_t longest) {
  if (joker == 0 || left.size() < std::max(longest, std::size_t{2})) return false;
  return left.find(static_cast<char>(joker)) == left.size() - 1;
}

std::string ExpandCRLF(std::string_view text) {
  std::string expanded;
  std::size_t from = 0;
  for (std::size_t found = text.find(kLineBreakToken); found != std::string_view::npos;
       found = text.find(kLineBreakToken, from)) {
    expanded.append(text, from, found - from).append(kLineBreak);
    from = found + kLineBreakToken.size();
  }
  return expanded.append(text, from);
}

void Apply_CRLF_Hndlr(const ReplacementList& list, SubstitutionTables& tables) {
  ++tables.version;
  tables.PairCount = static_cast<std::int64_t>(list.rows.size());
  tables.RightTexts.clear();
  tables.LeftTexts.clear();
  tables.RightTexts.reserve(list.rows.size());
  tables.LeftTexts.reserve(list.rows.size());
  for (const ListRow& row : list.rows) {
    tables.RightTexts.push_back(ExpandCRLF(row.right));
    tables.LeftTexts.push_back(ExpandCRLF(row.left));
  }
}

ErrorNumber FillArrays(const ReplacementList& list, std::uint8_t joker,
                       SubstitutionTables& tables) {
  Apply_CRLF_Hndlr(list, tables);
  tables.MaxLeftLen = Measure(tables.LeftTexts, tables.LeftLengths);
  tables.MaxRightLen = Measure(tables.RightTexts, tables.RightLengths);
  tables.JokerTail.clear();
  tables.JokerTail.reserve(tables.LeftTexts.size());
  for (std::size_t row = 0; row < tables.LeftTexts.size(); ++row) {
    if (row >= tables.JokerLeft.size()) return ErrorNumber::kSubscriptOutOfRange;
    tables.JokerTail.push_back(
        tables.JokerLeft[row] ? TailBehindWildcard(tables.LeftTexts[row], joker) : std::string());
  }
  return ErrorNumber::kNone;
}

ErrorNumber Set_Joker(SubstitutionTables& tables, std::string_view Left_Right, std::int64_t index,
                      bool True_False) {
  if (Left_Right != "Left" && Left_Right != "Right") return ErrorNumber::kNone;
  if (index < 0) return ErrorNumber::kSubscriptOutOfRange;
  std::vector<bool>& flags = Left_Right == "Left" ? tables.JokerLeft : tables.JokerRight;
  flags.resize(static_cast<std::size_t>(index) + 1);
  flags.back() = True_False;
  ++tables.version;
  return ErrorNumber::kNone;
}

void MakeTables(const ReplacementList& list, std::uint8_t joker, SubstitutionTables& tables) {
  for (std::size_t i = 0; i < list.rows.size(); ++i) {
    const auto row = static_cast<std::int64_t>(i);
    Set_Joker(tables, "Left", row, list.rows[i].left_has_wildcard);
    Set_Joker(tables, "Right", row, list.rows[i].right_has_wildcard);
  }
  // FillArrays cannot fail here: every row has its flag.
  FillArrays(list, joker, tables);
}

}  // namespace morvex
