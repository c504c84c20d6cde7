#include "core/engine/matching/compiled_list.h"

#include <algorithm>
#include <map>
#include <optional>

namespace morvex {
namespace {

PatternRow PatternOf(const SubstitutionTables& tables, std::int64_t row, std::uint8_t wildcard) {
  const auto index = static_cast<std::size_t>(row);
  PatternRow pattern;
  pattern.left = tables.LeftTexts[index];
  if (index < tables.JokerTail.size()) pattern.tail = tables.JokerTail[index];
  pattern.width = tables.MaxLeftLen;
  pattern.wildcard = wildcard;
  if (index >= tables.JokerLeft.size()) {
    pattern.flag = PatternRow::Flag::kMissing;
  } else if (tables.JokerLeft[index]) {
    pattern.flag = PatternRow::Flag::kWildcard;
  }
  return pattern;
}

// Returns the byte of the left text that the attempt's next round compares. Returns nothing if the
// round accepts every byte, or if the left text has ended or has a NUL there.
std::optional<std::uint8_t> OnlyByte(const PatternRow& row, const MatchAttempt& attempt) {
  const int cell = row.Cell(attempt.position());
  if (attempt.span_open() || cell <= 0 || row.IsWildcardAt(attempt.position())) return std::nullopt;
  return static_cast<std::uint8_t>(cell);
}

// Runs the attempt as long as its next round accepts only one byte and the row does not match yet.
// Returns the bytes that these rounds accept.
std::string_view TakePrefix(const PatternRow& row, MatchAttempt& attempt) {
  std::size_t size = 0;
  // Stays empty, because the rounds of a prefix capture at most one byte.
  std::vector<std::uint8_t> more;
  while (size < row.left.size() && !attempt.Matched(row)) {
    const std::optional<std::uint8_t> byte = OnlyByte(row, attempt);
    if (!byte) break;
    const bool tail_ends_here =
        !row.tail.empty() && row.left.substr(0, size + 1).ends_with(row.tail);
    MatchAttempt next = attempt;
    if (!next.Round(row, *byte, tail_ends_here, more)) break;
    attempt = next;
    ++size;
  }
  return row.left.substr(0, size);
}

// Whether nothing has been captured and the next round ends the attempt, whatever byte it reads.
bool IsDecided(const PatternRow& row, const MatchAttempt& attempt) {
  const bool ends = attempt.failed() || (!attempt.span_open() && row.Cell(attempt.position()) <= 0);
  return ends && attempt.captured_count() == 0;
}

}  // namespace

CompiledList::CompiledList(const SubstitutionTables& tables, std::uint8_t wildcard)
    : table_size(tables.PairCount) {
  std::map<std::string_view, int> tail_numbers;
  rows.reserve(static_cast<std::size_t>(tables.PairCount));
  for (std::int64_t index = 0; index < tables.PairCount; ++index) {
    const PatternRow pattern = PatternOf(tables, index, wildcard);
    if (pattern.left.empty() || pattern.left.front() == 0) continue;  // matches no byte
    if (pattern.flag == PatternRow::Flag::kPlain) {
      cutting_rows[static_cast<std::uint8_t>(pattern.left.front())].push_back(index);
    }
    CompiledRow row;
    row.table_row = index;
    row.cuts = pattern.flag == PatternRow::Flag::kPlain;
    row.tail_size = pattern.tail.size();
    MatchAttempt attempt;
    row.prefix = TakePrefix(pattern, attempt);
    const bool decided = IsDecided(pattern, attempt);
    if (decided && !attempt.Matched(pattern)) continue;
    if (!decided || pattern.flag != PatternRow::Flag::kPlain) {
      row.attempt = static_cast<int>(attempts.size());
      int tail = 0;
      if (!pattern.tail.empty() && !attempt.tail_seen()) {
        tail = tail_numbers.try_emplace(pattern.tail, static_cast<int>(tails.size())).first->second;
        if (tail == static_cast<int>(tails.size())) tails.push_back(pattern.tail);
      }
      const bool opens_span = !attempt.failed() && !attempt.tail_seen() && !attempt.span_open() &&
                              attempt.captured_count() == 0 && attempt.position() < pattern.width &&
                              pattern.IsWildcardAt(attempt.position());
      const bool is_usual =
          opens_span && tail > 0 && pattern.flag == PatternRow::Flag::kWildcard &&
          pattern.left.substr(row.prefix.size() + 1) == pattern.tail &&
          pattern.tail.find(static_cast<char>(wildcard)) == std::string_view::npos;
      attempts.push_back({pattern, attempt, tail, is_usual, opens_span});
    }
    AddRightText(tables.RightTexts[static_cast<std::size_t>(index)], wildcard, row);
    rows.push_back(std::move(row));
  }
  right_bytes.append(kRightPadding, '\0');
}

void CompiledList::AddRightText(const std::string& text, std::uint8_t wildcard, CompiledRow& row) {
  RowEffect effect;
  effect.right_begin = right_bytes.size();
  effect.prefix_size = static_cast<std::uint16_t>(row.prefix.size());
  for (const char byte : text) {
    if (wildcard != 0 && static_cast<std::uint8_t>(byte) == wildcard) {
      row.wildcards.push_back(right_bytes.size() - effect.right_begin);
    } else if (byte != 0) {  // a NUL writes nothing
      right_bytes.push_back(byte);
    }
  }
  effect.right_size = static_cast<std::uint32_t>(right_bytes.size() - effect.right_begin);
  effect.has_wildcards = !row.wildcards.empty();
  if (effect.right_size <= RowEffect::kShort) {
    effect.is_short = !effect.has_wildcards;
    std::copy(right_bytes.end() - effect.right_size, right_bytes.end(), effect.short_text.begin());
  }
  effects.push_back(effect);
}

}  // namespace morvex
