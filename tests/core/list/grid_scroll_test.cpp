// Scrolling: which rows are visible, and when a change of the scroll bar moves them.
#include <gtest/gtest.h>

#include <string>

#include "core/list/grid.h"
#include "tests/core/list/grid_fixture.h"

namespace morvex::test {
namespace {

class GridScroll : public GridTest {};

TEST_F(GridScroll, AfterTheSixthEnterDraggingBackShowsTheFirstRowAgain) {
  MakeRows(6);
  Enter(5);
  EXPECT_EQ(grid_.VScroll1.minimum(), 1);
  EXPECT_EQ(grid_.VScroll1.maximum(), 7);
  EXPECT_EQ(grid_.VScroll1.value(), 7);
  EXPECT_EQ(grid_.Top(0), 0);
  Drag(6);
  EXPECT_EQ(grid_.Top(0), 360);
  EXPECT_EQ(grid_.Top(6), 2520);
  EXPECT_EQ(VisibleRows(), "0 1 2 3 4 5");
  EXPECT_EQ(grid_.PrevScrollValue, 6);
}

TEST_F(GridScroll, DraggingThereAndBackEndsWhereItBegan) {
  MakeRows(20);
  for (const std::int64_t value : {15, 18, 20, 16, 20}) {
    Drag(value);
    EXPECT_EQ(grid_.Top(0), 360 - 360 * (value - 6)) << value;
    EXPECT_EQ(grid_.PrevScrollValue, value);
  }
  EXPECT_EQ(VisibleRows(), "14 15 16 17 18 19");
}

TEST_F(GridScroll, DraggingToTheLowestValuePushesRowsBelowTheBand) {
  MakeRows(8);
  Drag(1);
  EXPECT_EQ(grid_.Top(0), 360 + 5 * 360);
  EXPECT_EQ(VisibleRows(), "0");
}

TEST_F(GridScroll, AValueOutsideOfTheRangeIsItsNearerEnd) {
  MakeRows(8);
  Drag(100);
  EXPECT_EQ(grid_.VScroll1.value(), 8);
  EXPECT_EQ(VisibleRows(), "2 3 4 5 6 7");
  Drag(-100);
  EXPECT_EQ(grid_.VScroll1.value(), 1);
  EXPECT_EQ(grid_.PrevScrollValue, 1);
}

TEST_F(GridScroll, WithoutTheFocusALowerValueMovesTheRows) {
  MakeRows(8);
  VScroll1_Change(test_.program, 6);
  EXPECT_EQ(VisibleRows(), "0 1 2 3 4 5");
  EXPECT_EQ(grid_.PrevScrollValue, 6);
}

TEST_F(GridScroll, WithoutTheFocusTheHighestValueMovesNothingButIsRemembered) {
  MakeRows(8);
  VScroll1_Change(test_.program, 6);
  VScroll1_Change(test_.program, 8);
  EXPECT_EQ(VisibleRows(), "0 1 2 3 4 5");
  EXPECT_EQ(grid_.PrevScrollValue, 8);
}

TEST_F(GridScroll, WithTheFocusTheHighestValueMovesTheRowsToo) {
  MakeRows(8);
  Drag(6);
  Drag(8);
  EXPECT_EQ(VisibleRows(), "2 3 4 5 6 7");
}

TEST_F(GridScroll, TheValueThatEnterSetsMovesNothing) {
  MakeRows(8);
  EXPECT_EQ(grid_.VScroll1.value(), 8);
  EXPECT_EQ(grid_.PrevScrollValue, 8);
  EXPECT_EQ(grid_.Top(7), 2160) << "one shift for each Enter, none for the scroll bar";
}

TEST_F(GridScroll, TheScrollBarsFocusIsKnown) {
  EXPECT_FALSE(grid_.ScrollHasFocus);
  VScroll1_GotFocus(test_.program);
  EXPECT_TRUE(grid_.ScrollHasFocus);
  VScroll1_LostFocus(test_.program);
  EXPECT_FALSE(grid_.ScrollHasFocus);
}

TEST_F(GridScroll, TheScrollBarTakesTheFocusFromACellAndBack) {
  Type(Column::kRight, 0, "abc");
  Focus(Column::kRight, 0);
  Cell_SelectionChange(test_.program, {Column::kRight, 0}, 2);
  VScroll1_GotFocus(test_.program);
  EXPECT_EQ(grid_.FocusCell, "Rechts_0");
  EXPECT_EQ(grid_.CaretPos, 2u);
  EXPECT_FALSE(grid_.focused_cell.has_value());
  Focus(Column::kLeft, 0);
  EXPECT_FALSE(grid_.ScrollHasFocus);
}

TEST_F(GridScroll, ShiftingMovesEveryRowAndDecidesWhichAreSeen) {
  MakeRows(6);
  ShiftRows(grid_, 2);
  EXPECT_EQ(VisibleRows(), "2 3 4 5");
  EXPECT_EQ(grid_.Top(2), 360);
  ShiftRows(grid_, -3);
  EXPECT_EQ(VisibleRows(), "0 1 2 3 4");
  EXPECT_EQ(grid_.Top(0), 720);
}

TEST_F(GridScroll, ShiftingShowsTheScrollBarFromSixRowsOn) {
  MakeRows(5);
  ShiftRows(grid_, 0);
  EXPECT_FALSE(grid_.VScroll1.visible.get());
  MakeRows(6);
  ShiftRows(grid_, 0);
  EXPECT_TRUE(grid_.VScroll1.visible.get());
}

TEST_F(GridScroll, ShiftingTakesInTheRowBehindTheLast) {
  MakeRows(2);
  AddRow(grid_);
  EXPECT_FALSE(grid_.RowVisible(2));
  ShiftRows(grid_, 0);
  EXPECT_TRUE(grid_.RowVisible(2));
}

TEST_F(GridScroll, ALongListScrollsAnywhere) {
  MakeRows(1000);
  for (const std::int64_t value : {6, 500, 999, 1000, 7}) {
    Drag(value);
    const std::int64_t first = value - 6;
    std::string expected;
    for (std::int64_t row = first; row < first + 6; ++row) {
      expected += (expected.empty() ? "" : " ") + std::to_string(row);
    }
    EXPECT_EQ(VisibleRows(), expected);
  }
}

}  // namespace
}  // namespace morvex::test
