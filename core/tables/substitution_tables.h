// The tables that a run matches against, built from a replacement list.
//
// Rows count from 0 in the list's order, which is the order in which a run tries them. The byte
// matrices are views over the texts: a cell is computed when it is read, so that the tables take
// little more memory than the texts, however wide the widest row is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/host/error.h"
#include "core/tables/replacement_list.h"

namespace morvex {

// Returns a cell of a byte matrix. Each row of the matrix has 0 at position 0, the bytes of the
// row's text from position 1 on, and 0 behind the text. The row behind the last text has only 0.
// `position` is 0 or more, `row` from 0 to the number of texts.
inline std::uint8_t CharCodeAt(const std::vector<std::string>& texts, std::int64_t position,
                               std::int64_t row) {
  if (position == 0 || row == static_cast<std::int64_t>(texts.size())) return 0;
  const std::string& text = texts[static_cast<std::size_t>(row)];
  if (position > static_cast<std::int64_t>(text.size())) return 0;
  return static_cast<std::uint8_t>(text[static_cast<std::size_t>(position - 1)]);
}

struct SubstitutionTables {
  std::int64_t PairCount = 0;
  std::vector<std::string> LeftTexts;  // "[CRLF]" is a real line break here
  std::vector<std::string> RightTexts;
  std::int64_t MaxLeftLen = 0;
  std::int64_t MaxRightLen = 0;
  std::vector<std::int64_t> LeftLengths;
  std::vector<std::int64_t> RightLengths;
  std::vector<bool> JokerLeft;  // by row: the left text holds the wildcard
  std::vector<bool> JokerRight;
  std::vector<std::string> JokerTail;  // of a JokerLeft row: the text behind its first wildcard
  std::uint64_t version = 0;           // counts the changes

  // Both return nothing outside rows 0 to PairCount and positions 0 to the longest text's length.
  std::optional<std::uint8_t> LeftBytes(std::int64_t row, std::int64_t position) const {
    return Cell(LeftTexts, MaxLeftLen, row, position);
  }
  std::optional<std::uint8_t> RightBytes(std::int64_t row, std::int64_t position) const {
    return Cell(RightTexts, MaxRightLen, row, position);
  }

 private:
  std::optional<std::uint8_t> Cell(const std::vector<std::string>& texts, std::int64_t width,
                                   std::int64_t row, std::int64_t position) const {
    if (row < 0 || row > PairCount || position < 0 || position > width) return std::nullopt;
    return CharCodeAt(texts, position, row);
  }
};

// Whether the ending of a left text (all that follows its wildcard) also occurs in front of the
// wildcard. A match then ends too early: the wildcard captures only one byte, however far away the
// intended ending is.
bool HasEndingInBeginning(std::string_view left, std::uint8_t joker);

// Whether the left text ends in its only wildcard and has at least `longest` bytes, the size of the
// list's longest left text. The tables are then no wider than this text, so an attempt ends behind
// the wildcard, which captures one byte only.
bool TakesInOneByte(std::string_view left, std::uint8_t joker, std::size_t longest);

// Returns the text with CR LF in place of each "[CRLF]" (in capital letters only).
std::string ExpandCRLF(std::string_view text);

// Sets PairCount, LeftTexts and RightTexts, and raises `version`. FillArrays calls it first.
void Apply_CRLF_Hndlr(const ReplacementList& list, SubstitutionTables& tables);

// Rebuilds every table but JokerLeft and JokerRight: the caller must have set these for every row.
// `joker` is the wildcard's code, 0 for none. Returns kSubscriptOutOfRange when a row has no flag
// in JokerLeft; JokerTail then ends before that row.
ErrorNumber FillArrays(const ReplacementList& list, std::uint8_t joker, SubstitutionTables& tables);

// Sets the flag of one row in the column "Left" or "Right" (any other text changes nothing) and
// removes the flags of later rows, so the caller must set flags in ascending order of rows. Returns
// kSubscriptOutOfRange for an index below 0.
ErrorNumber Set_Joker(SubstitutionTables& tables, std::string_view Left_Right, std::int64_t index,
                      bool True_False);

// Rebuilds every table, flags included, from a list whose wildcards are flagged.
void MakeTables(const ReplacementList& list, std::uint8_t joker, SubstitutionTables& tables);

}  // namespace morvex
