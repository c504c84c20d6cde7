#include "core/list/grid.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

#include "core/forms/keys.h"

namespace morvex {
namespace {

// If the last row has this number or a smaller one, Enter in the last row makes the window taller.
// Otherwise Enter scrolls the grid.
constexpr std::int64_t kLastGrowingRow = kRowsInBand - 2;
constexpr std::int64_t kFreshScrollMaximum = 10;
constexpr const char* kTooLongEntering = "invoer te lang (> 2147483647)";
constexpr const char* kTooLongLeaving = "input too long (> 2147483647)";

void TipFromText(Cell& cell) { cell.tool_tip = cell.text; }

void MoveDown(Button& button, int twips) {
  Box box = button.box;
  box.top += twips;
  button.box = box;
}

// Sets the scroll bar's value and scrolls the rows by the change. If the bar lacks the focus and
// its new value is greater than LastRow, the rows stay: EnterInCell sets such a value, after it has
// made the new row visible in another way.
void ScrollTo(ReplacementsForm& grid, std::int64_t value) {
  grid.VScroll1.SetValue(value);
  const std::int64_t taken = grid.VScroll1.value();
  if (taken == grid.PrevScrollValue) return;
  if (grid.ScrollHasFocus || taken < grid.LastRow + 1) {
    ShiftRows(grid, taken - grid.PrevScrollValue);
  }
  grid.PrevScrollValue = taken;
}

// Brings the cell into view and puts the focus there.
void MoveTo(Program& program, CellAddress cell) {
  ScrollIntoView(program.frmReplacements, cell.row);
  FocusOnCell(program, cell);
}

bool IsEmpty(const GridRow& row) { return row.txtLinks.text.empty() && row.txtRechts.text.empty(); }

}  // namespace

void LoadGrid(Program& program) {
  ReplacementsForm& grid = program.frmReplacements;
  if (grid.loaded || program.Beeindigd) return;
  grid.loaded = true;
  grid.rows.assign(1, GridRow{});
  grid.placed_rows = 1;
  grid.scrolled_rows = 0;
  grid.focused_cell.reset();
  grid.ScrollHasFocus = false;
  GrowWindow(grid, -grid.grown_rows);
  grid.LastRow = 0;
  grid.ScrollPos = 1;
  grid.VScroll1.SetRange(1, kFreshScrollMaximum);
  grid.VScroll1.SetValue(1);
  grid.VScroll1.visible = false;
  TipFromText(grid.rows[0].txtLinks);
  TipFromText(grid.rows[0].txtRechts);
  grid.cmdJoker.caption = WildcardText(program.settings.gJoker);
  grid.changes.Changed();
}

void AddRow(ReplacementsForm& grid) {
  grid.rows.emplace_back();
  grid.changes.Changed();
}

bool RemoveRow(ReplacementsForm& grid, std::int64_t row) {
  if (row == 0 || !grid.HasRow(row)) return false;
  grid.rows.erase(grid.rows.begin() + row);
  grid.placed_rows = std::min(grid.placed_rows, static_cast<std::int64_t>(grid.rows.size()));
  if (grid.focused_cell && !grid.HasRow(grid.focused_cell->row)) grid.focused_cell.reset();
  grid.changes.Changed();
  return true;
}

void GrowWindow(ReplacementsForm& grid, int count) {
  const int twips = count * kRowPitch;
  grid.grown_rows += count;
  grid.height = grid.height + twips;
  Box bar = grid.VScroll1.box;
  bar.height += twips;
  grid.VScroll1.box = bar;
  const std::array<Button*, 8> buttons = {&grid.cmdOK,     &grid.cmdSaveList,    &grid.cmdImport,
                                          &grid.cmdReset,  &grid.cmdDeleteEmpty, &grid.cmdCRLF,
                                          &grid.cmdMirror, &grid.cmdJoker};
  for (Button* button : buttons) MoveDown(*button, twips);
}

void ShiftRows(ReplacementsForm& grid, std::int64_t delta) {
  if (grid.LastRow > kLastGrowingRow) grid.VScroll1.visible = true;
  grid.scrolled_rows += delta;
  grid.placed_rows = static_cast<std::int64_t>(grid.rows.size());
  grid.changes.Changed();
}

void ScrollIntoView(ReplacementsForm& grid, std::int64_t row) {
  if (!grid.HasRow(row) || grid.RowVisible(row)) return;
  const std::int64_t in_band = row - grid.scrolled_rows;
  const std::int64_t delta =
      std::min<std::int64_t>(in_band, 0) + std::max<std::int64_t>(in_band - (kRowsInBand - 1), 0);
  ShiftRows(grid, delta);
  // The bar follows. PrevScrollValue is set too, so that the bar's new value does not move the rows
  // again.
  grid.VScroll1.SetValue(grid.VScroll1.value() + delta);
  grid.PrevScrollValue = grid.VScroll1.value();
}

ReplacementList ListInGrid(const ReplacementsForm& grid) {
  ReplacementList list;
  list.rows.reserve(grid.rows.size());
  for (const GridRow& row : grid.rows) {
    list.rows.push_back({row.txtLinks.text, row.txtRechts.text});
  }
  return list;
}

void SnapshotRows(ReplacementsForm& grid) {
  grid.SavedLinks.clear();
  grid.SavedRechts.clear();
  grid.SavedLinks.reserve(grid.rows.size());
  grid.SavedRechts.reserve(grid.rows.size());
  for (const GridRow& row : grid.rows) {
    grid.SavedLinks.push_back(row.txtLinks.text);
    grid.SavedRechts.push_back(row.txtRechts.text);
  }
}

void FocusOnCell(Program& program, CellAddress cell) {
  ReplacementsForm& grid = program.frmReplacements;
  if (!grid.visible || !grid.HasRow(cell.row) || !grid.RowVisible(cell.row)) return;
  Cell_GotFocus(program, cell);
}

void MarkTooLong(const ReplacementsForm& grid, Cell& cell, const char* too_long) {
  const bool fits = cell.text.size() < grid.longest_text;
  cell.colour = fits ? Colour::kBlack : Colour::kRed;
  cell.tool_tip = fits ? cell.text : too_long;
}

void EnterInCell(Program& program, CellAddress cell) {
  ReplacementsForm& grid = program.frmReplacements;
  if (cell.row != grid.LastRow) return;
  const std::int64_t added = cell.row + 1;
  AddRow(grid);
  if (cell.row <= kLastGrowingRow) {
    GrowWindow(grid, 1);
    grid.placed_rows = added + 1;
    FocusOnCell(program, {Column::kLeft, added});
  } else {
    ShiftRows(grid, 1);
  }
  grid.LastRow = added;
  grid.ScrollPos = added + 1;
  grid.VScroll1.SetRange(1, grid.LastRow + 1);
  ScrollTo(grid, grid.ScrollPos);
  if (cell.column == Column::kRight) FocusOnCell(program, {Column::kLeft, added});
}

void SetCellText(ReplacementsForm& grid, CellAddress cell, const std::string& text) {
  Cell& changed = grid.At(cell);
  if (changed.text == text) return;
  changed.text = text;
  changed.selection_end = std::min(changed.selection_end, text.size());
  grid.changes.Changed();
}

void FillRows(Program& program, std::int64_t first, const std::vector<GridRow>& rows) {
  ReplacementsForm& grid = program.frmReplacements;
  std::int64_t row = first;
  for (const GridRow& texts : rows) {
    if (row > grid.LastRow) {
      ScrollIntoView(grid, grid.LastRow);
      EnterInCell(program, {Column::kLeft, grid.LastRow});
    }
    SetCellText(grid, {Column::kLeft, row}, texts.txtLinks.text);
    SetCellText(grid, {Column::kRight, row}, texts.txtRechts.text);
    ++row;
  }
}

std::optional<std::int64_t> PasteRows(Program& program, CellAddress cell,
                                      const std::vector<GridRow>& rows) {
  ReplacementsForm& grid = program.frmReplacements;
  if (!grid.HasRow(cell.row) || grid.importing || rows.empty()) return std::nullopt;
  const std::int64_t last = cell.row + static_cast<std::int64_t>(rows.size()) - 1;
  for (std::int64_t row = cell.row; row <= last && grid.HasRow(row); ++row) {
    if (!IsEmpty(grid.rows[static_cast<std::size_t>(row)])) return row;
  }
  FillRows(program, cell.row, rows);
  MoveTo(program, {Column::kRight, last});
  Cell_SelectionChange(program, {Column::kRight, last}, rows.back().txtRechts.text.size());
  return std::nullopt;
}

std::optional<CellAddress> RememberedCell(const ReplacementsForm& grid) {
  const std::string_view name = grid.FocusCell;
  const std::size_t underscore = name.find('_');
  if (underscore == std::string_view::npos) return std::nullopt;
  const std::string_view column = name.substr(0, underscore);
  const std::string_view number = name.substr(underscore + 1);
  CellAddress cell;
  if (column == "Rechts") {
    cell.column = Column::kRight;
  } else if (column != "Links") {
    return std::nullopt;
  }
  const auto parsed = std::from_chars(number.data(), number.data() + number.size(), cell.row);
  if (parsed.ec != std::errc() || !grid.HasRow(cell.row)) return std::nullopt;
  return cell;
}

bool ReturnToCell(Program& program) {
  ReplacementsForm& grid = program.frmReplacements;
  const std::optional<CellAddress> cell = RememberedCell(grid);
  if (!cell || grid.importing) return false;
  MoveTo(program, *cell);
  return grid.focused_cell == cell;
}

void Cell_KeyDown(Program& program, CellAddress cell, int key) {
  const ReplacementsForm& grid = program.frmReplacements;
  if (!grid.HasRow(cell.row) || grid.importing) return;
  switch (key) {
    case kKeyEnter:
      EnterInCell(program, cell);
      return;
    case kKeyDown:
      MoveTo(program, {cell.column, cell.row + 1});
      return;
    case kKeyUp:
      MoveTo(program, {cell.column, cell.row - 1});
      return;
    default:
      return;
  }
}

void Cell_Change(Program& program, CellAddress cell, const std::string& text) {
  ReplacementsForm& grid = program.frmReplacements;
  if (grid.HasRow(cell.row) && !grid.importing) SetCellText(grid, cell, text);
}

void Cell_SelectionChange(Program& program, CellAddress cell, std::size_t selection_end) {
  ReplacementsForm& grid = program.frmReplacements;
  if (!grid.HasRow(cell.row)) return;
  const std::size_t end = std::min(selection_end, grid.At(cell).text.size());
  if (grid.At(cell).selection_end == end) return;
  grid.At(cell).selection_end = end;
  grid.changes.Changed();
}

void Cell_GotFocus(Program& program, CellAddress cell) {
  ReplacementsForm& grid = program.frmReplacements;
  if (!grid.HasRow(cell.row) || grid.focused_cell == cell) return;
  if (grid.focused_cell) Cell_LostFocus(program, *grid.focused_cell);
  if (grid.ScrollHasFocus) VScroll1_LostFocus(program);
  grid.focused_cell = cell;
  if (cell.row == grid.LastRow && cell.column == Column::kLeft) {
    TipFromText(grid.At({Column::kLeft, cell.row}));
    TipFromText(grid.At({Column::kRight, cell.row}));
  }
  MarkTooLong(grid, grid.At(cell), kTooLongEntering);
  grid.changes.Changed();
}

void Cell_LostFocus(Program& program, CellAddress cell) {
  ReplacementsForm& grid = program.frmReplacements;
  if (!grid.HasRow(cell.row) || grid.focused_cell != cell) return;
  grid.focused_cell.reset();
  if (cell.row == grid.LastRow) {
    grid.At({Column::kLeft, cell.row}).tool_tip.clear();
    grid.At({Column::kRight, cell.row}).tool_tip.clear();
  }
  grid.FocusCell = (cell.column == Column::kLeft ? "Links_" : "Rechts_") + std::to_string(cell.row);
  grid.CaretPos = grid.At(cell).selection_end;
  MarkTooLong(grid, grid.At(cell), kTooLongLeaving);
  grid.changes.Changed();
}

void VScroll1_Change(Program& program, std::int64_t value) {
  ScrollTo(program.frmReplacements, value);
}

void VScroll1_GotFocus(Program& program) {
  ReplacementsForm& grid = program.frmReplacements;
  if (grid.focused_cell) Cell_LostFocus(program, *grid.focused_cell);
  grid.ScrollHasFocus = true;
}

void VScroll1_LostFocus(Program& program) { program.frmReplacements.ScrollHasFocus = false; }

}  // namespace morvex
