// The form of the replacement list's editor: a grid of rows, each a left and a right cell.
//
// A grid may hold a hundred thousand rows, so a row stores no position. The position of a row is
// computed from one scroll offset; so is its visibility, except that rows just added are still
// hidden. A cell's place in the tab order is computed from its address.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/forms/control.h"
#include "core/host/user_service.h"

namespace morvex {

// Layout of the grid, in twips.
inline constexpr int kFirstRowTop = 360;
inline constexpr int kRowPitch = 360;
inline constexpr int kLeftColumn = 360;
inline constexpr int kRightColumn = 4560;
inline constexpr int kCellWidth = 4215;
inline constexpr int kCellHeight = 375;
inline constexpr std::int64_t kRowsInBand = 6;  // rows visible at a time; their tops: 360 to 2160

// A text of this many bytes or more is marked as too long.
inline constexpr std::size_t kLongestText = 2147483647;

enum class Column { kLeft, kRight };

struct CellAddress {
  Column column = Column::kLeft;
  std::int64_t row = 0;
  bool operator==(const CellAddress&) const = default;
};

// One text box of the grid. Its text is one line, without CR or LF.
struct Cell {
  std::string text;
  std::string tool_tip;
  Colour colour = Colour::kBlack;
  // Offset in `text` of the end of the selection, or of the caret when nothing is selected.
  std::size_t selection_end = 0;
};

struct GridRow {
  Cell txtLinks;
  Cell txtRechts;
};

struct ReplacementsForm : Form {
  ReplacementsForm();

  std::vector<GridRow> rows;  // row 0 always exists while the form is loaded

  bool HasRow(std::int64_t row) const {
    return row >= 0 && row < static_cast<std::int64_t>(rows.size());
  }
  // The cell must exist.
  Cell& At(CellAddress address) {
    GridRow& row = rows[static_cast<std::size_t>(address.row)];
    return address.column == Column::kLeft ? row.txtLinks : row.txtRechts;
  }

  int Top(std::int64_t row) const {
    return static_cast<int>(kFirstRowTop + (row - scrolled_rows) * kRowPitch);
  }
  bool RowVisible(std::int64_t row) const {
    const std::int64_t in_band = row - scrolled_rows;
    return row < placed_rows && in_band >= 0 && in_band < kRowsInBand;
  }
  Box CellBox(CellAddress address) const {
    return {address.column == Column::kLeft ? kLeftColumn : kRightColumn, Top(address.row),
            kCellWidth, kCellHeight};
  }
  // The tab order: the cells row by row, left before right, then the other controls in the order of
  // their tab_index.
  static std::int64_t CellTabIndex(CellAddress address) {
    return address.row * 2 + (address.column == Column::kLeft ? 0 : 1);
  }

  std::int64_t ControlTabIndex(const Control& control) const {
    return static_cast<std::int64_t>(rows.size()) * 2 + control.tab_index;
  }

  ScrollBar VScroll1;
  Button cmdJoker;  // its caption is the wildcard character; empty when there is none
  Button cmdMirror;
  Button cmdCRLF;
  Button cmdReset;
  Button cmdDeleteEmpty;
  Button cmdImport;
  Button cmdSaveList;
  Button cmdOK;
  FileDialog cdSaveList;

  std::int64_t LastRow = 0;
  std::string FocusCell;  // the cell that last lost the focus, such as Links_3 or Rechts_0
  std::size_t CaretPos = 0;
  std::int64_t ScrollPos = 1;
  std::int64_t PrevScrollValue = 0;
  bool ScrollHasFocus = false;
  std::vector<std::string> SavedLinks;
  std::vector<std::string> SavedRechts;

  std::optional<CellAddress> focused_cell;  // the cell that has the focus now
  std::int64_t scrolled_rows = 0;  // rows above the visible ones; negative: empty space above row 0
  std::int64_t placed_rows = 1;    // rows from this one on were just added and are still hidden
  int grown_rows = 0;              // rows by which the window has grown since it was opened
  std::size_t longest_text = kLongestText;
  bool importing = false;  // a list is being read or put into the rows; commands do nothing
};

}  // namespace morvex
