// The tables that a run matches against, built from the rows of the replacement grid.
//
// Rows count from 0 in the grid's order, which is the order in which a run tries them. The byte
// matrices are views over the texts: a cell is computed when it is read, so the tables take the
// memory of the texts and no more, however wide the widest row is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/forms/replacements_form.h"
#include "core/host/error.h"

namespace morvex {

// The cell rule of the byte matrices: 0 at position 0, the code of the position-th character
// (counted from 1) of the row's text, 0 behind its end and in the spare row behind the last.
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
  std::vector<bool> JokerLeft;  // the left text uses the wildcard; up to the highest index ever set
  std::vector<bool> JokerRight;
  std::vector<std::string> JokerTail;  // of a JokerLeft row: the text behind the first wildcard
  std::uint64_t version = 0;           // counts the changes

  // Rows 0 to PairCount, positions 0 to the longest text's length; nothing outside of these bounds.
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

// Whether the ending of a left text with the wildcard, all that stands behind it, also stands in
// front of it. Then a match finds its ending before it comes to the wildcard, and takes in two
// bytes behind its beginning, or hardly more, however far away the ending really is.
bool HasEndingInBeginning(std::string_view left, std::uint8_t joker);

// Whether the only wildcard ends the left text and no left text of the list has more bytes
// (`longest`). Then an attempt ends where the tables do, and the wildcard takes in one byte alone.
bool TakesInOneByte(std::string_view left, std::uint8_t joker, std::size_t longest);

// Each "[CRLF]" (exactly so) becomes CR LF.
std::string ExpandCRLF(std::string_view text);

// PairCount, LeftTexts and RightTexts from the grid. The first step of FillArrays.
void Apply_CRLF_Hndlr(const ReplacementsForm& grid, SubstitutionTables& tables);

// Rebuilds every table but the wildcard flags, which the caller has set for every row before, from
// the first to the last. `joker` is the wildcard's code, 0 for none. kSubscriptOutOfRange when a
// row has no flag: the tails from that row on are then empty.
ErrorNumber FillArrays(const ReplacementsForm& grid, std::uint8_t joker,
                       SubstitutionTables& tables);

// Sets the flag of one row in the column "Left" or "Right" (any other text changes nothing) and
// cuts the flags behind it off, so flags are set in increasing row order. kSubscriptOutOfRange for
// an index below 0.
ErrorNumber Set_Joker(SubstitutionTables& tables, std::string_view Left_Right, std::int64_t index,
                      bool True_False);

}  // namespace morvex
