// The replacement grid: its rows, their layout, and what its keys, focus and scroll bar do.
//
// Scrolling changes one number, not every row. So although each row added to a long list scrolls
// the grid, the time to build a list of a hundred thousand rows is linear in their number.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/program/program.h"
#include "core/tables/replacement_list.h"

namespace morvex {

// Loads the editor with one empty row. FocusCell, CaretPos, PrevScrollValue and the snapshot (see
// SnapshotRows) keep the values that they had when the editor was closed. Does nothing if the
// editor is already loaded or the program is to stop.
void LoadGrid(Program& program);

// Adds an empty, hidden row behind the last one. The caller must then set LastRow.
void AddRow(ReplacementsForm& grid);

// Removes a row. Returns false for row 0, which always exists, and for a row that does not exist.
// The caller must then set LastRow.
bool RemoveRow(ReplacementsForm& grid, std::int64_t row);

// Makes the window `count` rows taller; `count` may be negative.
void GrowWindow(ReplacementsForm& grid, int count);

// Moves the rows up by `delta`, or down if `delta` is negative. Rows that AddRow has added are
// hidden until then.
void ShiftRows(ReplacementsForm& grid, std::int64_t delta);

// Scrolls by the fewest rows that bring `row` into view. Does nothing if the row does not exist.
void ScrollIntoView(ReplacementsForm& grid, std::int64_t row);

// Returns the grid's rows as data, without a path and without wildcard flags.
ReplacementList ListInGrid(const ReplacementsForm& grid);

// Copies every cell's text into SavedLinks and SavedRechts.
void SnapshotRows(ReplacementsForm& grid);

// Gives `cell` the focus, and takes the focus from the cell or scroll bar that had it. Does nothing
// if `cell` does not exist or is not visible.
void FocusOnCell(Program& program, CellAddress cell);

// A cell whose text has longest_text bytes or more turns red and gets the tool tip `too_long`. Any
// other cell turns black and gets its text as tool tip.
void MarkTooLong(const ReplacementsForm& grid, Cell& cell, const char* too_long);

// The Enter key in a cell. Appends a row if the cell is in the last row, else does nothing.
void EnterInCell(Program& program, CellAddress cell);

// Puts a text into a cell, which must exist.
void SetCellText(ReplacementsForm& grid, CellAddress cell, const std::string& text);

// Puts texts into the rows from `first` on; row `first` must exist. Appends rows where needed, as
// Enter does.
void FillRows(Program& program, std::int64_t first, const std::vector<GridRow>& rows);

// Pastes rows, the first into the row of `cell`, and gives the last pasted right cell the focus.
// Never overwrites a text: if a row that would be filled already holds a text, changes nothing and
// returns the first such row.
std::optional<std::int64_t> PasteRows(Program& program, CellAddress cell,
                                      const std::vector<GridRow>& rows);

// Returns the cell that FocusCell names, if that cell exists.
std::optional<CellAddress> RememberedCell(const ReplacementsForm& grid);

// Brings the cell that FocusCell names into view and puts the focus there. Returns false if that is
// not possible.
bool ReturnToCell(Program& program);

// Events. A cell event does nothing for a row that does not exist. Keys and changes do nothing
// while a list is being read. The user interface must report a change of text before the change of
// selection that comes with the text. `key` is a code of core/forms/keys.h. A scroll value outside
// the bar's range is moved to the nearer end of the range.
void Cell_KeyDown(Program& program, CellAddress cell, int key);
void Cell_Change(Program& program, CellAddress cell, const std::string& text);
void Cell_SelectionChange(Program& program, CellAddress cell, std::size_t selection_end);
void Cell_GotFocus(Program& program, CellAddress cell);
void Cell_LostFocus(Program& program, CellAddress cell);
void VScroll1_Change(Program& program, std::int64_t value);
void VScroll1_GotFocus(Program& program);
void VScroll1_LostFocus(Program& program);

}  // namespace morvex
