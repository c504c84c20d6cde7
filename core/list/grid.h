// The replacement grid: its rows, their layout, and what its keys, focus and scroll bar do.
//
// Work that touches every row (laying out, scrolling) is done once for all of them, so a list of a
// hundred thousand rows is built in linear time.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/program/program.h"

namespace morvex {

// Brings the window to its freshly opened state: one empty row. What the window remembers across
// openings (FocusCell, CaretPos, PrevScrollValue, the snapshot) stays. Nothing when it is loaded
// already.
void LoadGrid(Program& program);

// Adds an empty, hidden row behind the last one. The caller then sets LastRow.
void AddRow(ReplacementsForm& grid);

// Takes the row `row` away; false for row 0, which always exists, and for a row that does not.
// Does not change LastRow.
bool RemoveRow(ReplacementsForm& grid, std::int64_t row);

// Makes the window `count` rows taller; `count` may be negative.
void GrowWindow(ReplacementsForm& grid, int count);

// Moves the rows up by `delta` rows; down when negative. Every row gets its visibility anew.
void ShiftRows(ReplacementsForm& grid, std::int64_t delta);

// Scrolls as few rows as it takes to have that row in view. Nothing for a row that does not exist.
void ScrollIntoView(ReplacementsForm& grid, std::int64_t row);

// Copies every cell's text into SavedLinks and SavedRechts.
void SnapshotRows(ReplacementsForm& grid);

// Puts the focus into a cell, with all that leaving the old cell and entering the new one bring
// about. A cell that does not exist or is hidden, in a window that is hidden, cannot take it:
// nothing happens.
void FocusOnCell(Program& program, CellAddress cell);

// Marks a cell whose text has reached the grid's longest_text: it turns red and `too_long` is its
// tool tip. Any other cell is black, with its own text as tool tip.
void MarkTooLong(const ReplacementsForm& grid, Cell& cell, const char* too_long);

// What Enter in a cell does; only in the last row, which gets a row behind it.
void EnterInCell(Program& program, CellAddress cell);

// Puts a text into a cell that exists.
void SetCellText(ReplacementsForm& grid, CellAddress cell, const std::string& text);

// Puts texts into the rows from `first` on, which must exist; behind the last row others are added
// as Enter does.
void FillRows(Program& program, std::int64_t first, const std::vector<GridRow>& rows);

// Fills rows with what was pasted in a cell, from that cell's row on, and puts the focus into the
// last of them. No text is overwritten: where one of the rows holds a text already nothing changes,
// and the first such row is given.
std::optional<std::int64_t> PasteRows(Program& program, CellAddress cell,
                                      const std::vector<GridRow>& rows);

// The cell that FocusCell names; nothing when it names none that exists.
std::optional<CellAddress> RememberedCell(const ReplacementsForm& grid);

// Brings that cell into view and puts the focus there; false when it cannot have it.
bool ReturnToCell(Program& program);

// Events. A cell event for a row that does not exist does nothing; nor do keys and changes while a
// list is being read. A change of text comes before the selection that goes with it. `key` is one
// of core/forms/keys.h. A scroll value outside the bar's range is moved into it.
void Cell_KeyDown(Program& program, CellAddress cell, int key);
void Cell_Change(Program& program, CellAddress cell, const std::string& text);
void Cell_SelectionChange(Program& program, CellAddress cell, std::size_t selection_end);
void Cell_GotFocus(Program& program, CellAddress cell);
void Cell_LostFocus(Program& program, CellAddress cell);
void VScroll1_Change(Program& program, std::int64_t value);
void VScroll1_GotFocus(Program& program);
void VScroll1_LostFocus(Program& program);

}  // namespace morvex
