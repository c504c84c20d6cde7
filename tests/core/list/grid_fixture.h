// A program whose list editor is open, and what a user does in it.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "core/forms/keys.h"
#include "core/list/editor.h"
#include "core/list/grid.h"
#include "tests/support/test_program.h"

namespace morvex::test {

class GridTest : public testing::Test {
 protected:
  GridTest() {
    test_.program.frmMorvex.loaded = true;
    test_.program.frmMorvex.visible = true;
    imList_Click(test_.program);
  }

  void Press(Column column, std::int64_t row, int key) {
    Cell_KeyDown(test_.program, {column, row}, key);
  }
  void Enter(std::int64_t row) { Press(Column::kLeft, row, kKeyEnter); }
  // Presses Enter in the last row until there are `count` rows.
  void MakeRows(std::int64_t count) {
    while (grid_.LastRow + 1 < count) Enter(grid_.LastRow);
  }
  void Type(Column column, std::int64_t row, const std::string& text) {
    Cell_Change(test_.program, {column, row}, text);
  }
  void Focus(Column column, std::int64_t row) { Cell_GotFocus(test_.program, {column, row}); }
  void Leave(Column column, std::int64_t row) { Cell_LostFocus(test_.program, {column, row}); }
  // Focuses the cell, puts the end of its selection at `caret`, and leaves the cell.
  void LeaveWithCaretAt(Column column, std::int64_t row, std::size_t caret) {
    Focus(column, row);
    Cell_SelectionChange(test_.program, {column, row}, caret);
    Leave(column, row);
  }
  // Drags the scroll bar as the user does.
  void Drag(std::int64_t value) {
    VScroll1_GotFocus(test_.program);
    VScroll1_Change(test_.program, value);
  }

  const std::string& Text(Column column, std::int64_t row) { return grid_.At({column, row}).text; }
  const std::string& Tip(Column column, std::int64_t row) {
    return grid_.At({column, row}).tool_tip;
  }
  bool HasFocus(Column column, std::int64_t row) const {
    return grid_.focused_cell == CellAddress{column, row};
  }
  // Returns the indexes of the visible rows, as in "0 1 2".
  std::string VisibleRows() const {
    std::string rows;
    for (std::int64_t i = 0; i <= grid_.LastRow + 1; ++i) {
      if (grid_.RowVisible(i)) rows += (rows.empty() ? "" : " ") + std::to_string(i);
    }
    return rows;
  }

  TestProgram test_;
  ReplacementsForm& grid_ = test_.program.frmReplacements;
};

}  // namespace morvex::test
