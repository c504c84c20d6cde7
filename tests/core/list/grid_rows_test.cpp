// The rows: how Enter adds them, how the window grows, what the arrow keys do.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/list/grid.h"
#include "tests/core/list/grid_fixture.h"

namespace morvex::test {
namespace {

class GridRows : public GridTest {};

TEST_F(GridRows, FiveEntersGiveSixRowsAndEachMakesTheWindow360Taller) {
  const int height = grid_.height;
  for (int row = 0; row < 5; ++row) {
    Enter(row);
    EXPECT_EQ(grid_.LastRow, row + 1);
    EXPECT_EQ(grid_.ScrollPos, row + 2);
    EXPECT_EQ(grid_.height.get(), height + 360 * (row + 1));
    EXPECT_FALSE(grid_.VScroll1.visible.get());
  }
  EXPECT_EQ(grid_.rows.size(), 6u);
  EXPECT_EQ(VisibleRows(), "0 1 2 3 4 5");
  EXPECT_EQ(grid_.Top(0), 360);
}

TEST_F(GridRows, TheSixthEnterScrollsAndShowsTheScrollBar) {
  MakeRows(6);
  const int height = grid_.height;
  std::vector<int> tops;
  for (int row = 0; row < 6; ++row) tops.push_back(grid_.Top(row));
  Enter(5);
  EXPECT_EQ(grid_.LastRow, 6);
  EXPECT_EQ(grid_.height.get(), height);
  for (std::size_t row = 0; row < 6; ++row) {
    EXPECT_EQ(grid_.Top(static_cast<std::int64_t>(row)), tops[row] - 360) << row;
  }
  EXPECT_EQ(grid_.Top(6), 2160);
  EXPECT_EQ(VisibleRows(), "1 2 3 4 5 6");
  EXPECT_TRUE(grid_.VScroll1.visible.get());
}

TEST_F(GridRows, EveryFurtherEnterScrollsByOneRow) {
  MakeRows(100);
  EXPECT_EQ(grid_.LastRow, 99);
  EXPECT_EQ(VisibleRows(), "94 95 96 97 98 99");
  EXPECT_EQ(grid_.VScroll1.maximum(), 100);
  EXPECT_EQ(grid_.VScroll1.value(), 100);
  EXPECT_EQ(grid_.ScrollPos, 100);
}

TEST_F(GridRows, EnterInARowThatIsNotTheLastAddsNone) {
  MakeRows(3);
  const int height = grid_.height;
  for (const std::int64_t row : {0, 1}) {
    Press(Column::kLeft, row, kKeyEnter);
    Press(Column::kRight, row, kKeyEnter);
  }
  EXPECT_EQ(grid_.rows.size(), 3u);
  EXPECT_EQ(grid_.LastRow, 2);
  EXPECT_EQ(grid_.height.get(), height);
}

TEST_F(GridRows, EnterWhileTheWindowGrowsFocusesTheNewLeftCell) {
  for (const Column column : {Column::kLeft, Column::kRight}) {
    const std::int64_t row = grid_.LastRow;
    Focus(column, row);
    Press(column, row, kKeyEnter);
    EXPECT_TRUE(HasFocus(Column::kLeft, row + 1));
    EXPECT_EQ(grid_.FocusCell,
              (column == Column::kLeft ? "Links_" : "Rechts_") + std::to_string(row));
  }
}

TEST_F(GridRows, EnterInALeftCellThatScrollsDoesNotMoveTheFocus) {
  MakeRows(6);
  Focus(Column::kLeft, 5);
  Enter(5);
  EXPECT_TRUE(HasFocus(Column::kLeft, 5));
}

TEST_F(GridRows, EnterInARightCellThatScrollsFocusesTheNewLeftCell) {
  MakeRows(6);
  Focus(Column::kRight, 5);
  Press(Column::kRight, 5, kKeyEnter);
  EXPECT_TRUE(HasFocus(Column::kLeft, 6));
  EXPECT_EQ(grid_.FocusCell, "Rechts_5");
}

TEST_F(GridRows, GrowingMovesTheScrollBarsHeightAndEightButtons) {
  const std::vector<const Button*> buttons = {
      &grid_.cmdOK,          &grid_.cmdSaveList, &grid_.cmdImport, &grid_.cmdReset,
      &grid_.cmdDeleteEmpty, &grid_.cmdCRLF,     &grid_.cmdMirror, &grid_.cmdJoker};
  for (const int count : {1, 3, -2, -1, 0}) {
    const int height = grid_.height;
    Box bar = grid_.VScroll1.box;
    std::vector<Box> boxes;
    for (const Button* button : buttons) boxes.push_back(button->box);
    GrowWindow(grid_, count);
    EXPECT_EQ(grid_.height.get(), height + 360 * count);
    bar.height += 360 * count;
    EXPECT_EQ(grid_.VScroll1.box.get(), bar);
    for (std::size_t i = 0; i < buttons.size(); ++i) {
      boxes[i].top += 360 * count;
      EXPECT_EQ(buttons[i]->box.get(), boxes[i]) << i;
    }
  }
}

TEST_F(GridRows, AddedARowIsEmptyHiddenAndBelowTheLast) {
  Type(Column::kLeft, 0, "a");
  AddRow(grid_);
  EXPECT_EQ(grid_.LastRow, 0) << "that is the caller's";
  EXPECT_EQ(test_.GridRows(), (Rows{{"a", ""}, {"", ""}}));
  EXPECT_EQ(Tip(Column::kLeft, 1), "");
  EXPECT_EQ(Tip(Column::kRight, 1), "");
  EXPECT_EQ(grid_.CellBox({Column::kLeft, 1}), (Box{360, 720, 4215, 375}));
  EXPECT_EQ(grid_.CellBox({Column::kRight, 1}), (Box{4560, 720, 4215, 375}));
  EXPECT_FALSE(grid_.RowVisible(1));
}

TEST_F(GridRows, TheFirstRowIsNeverRemoved) {
  EXPECT_FALSE(RemoveRow(grid_, 0));
  MakeRows(3);
  EXPECT_FALSE(RemoveRow(grid_, 0));
  EXPECT_EQ(grid_.rows.size(), 3u);
}

TEST_F(GridRows, ARowThatDoesNotExistIsNotRemoved) {
  MakeRows(3);
  EXPECT_FALSE(RemoveRow(grid_, 3));
  EXPECT_FALSE(RemoveRow(grid_, -1));
  EXPECT_EQ(grid_.rows.size(), 3u);
}

TEST_F(GridRows, RemovingTheLastRowTakesItsFocusAway) {
  MakeRows(3);
  Focus(Column::kLeft, 2);
  EXPECT_TRUE(RemoveRow(grid_, 2));
  EXPECT_EQ(grid_.rows.size(), 2u);
  EXPECT_FALSE(grid_.focused_cell.has_value());
  EXPECT_EQ(grid_.LastRow, 2) << "that is the caller's";
}

TEST_F(GridRows, RemovingARowLeavesTheFocusOfAnother) {
  MakeRows(3);
  Focus(Column::kRight, 1);
  EXPECT_TRUE(RemoveRow(grid_, 2));
  EXPECT_TRUE(HasFocus(Column::kRight, 1));
}

TEST_F(GridRows, ARowAddedAfterARemovalIsHiddenAgain) {
  MakeRows(3);
  ASSERT_TRUE(RemoveRow(grid_, 2));
  AddRow(grid_);
  EXPECT_FALSE(grid_.RowVisible(2));
}

TEST_F(GridRows, DownAndUpMoveTheFocusInTheSameColumn) {
  MakeRows(3);
  for (const Column column : {Column::kLeft, Column::kRight}) {
    Focus(column, 0);
    Press(column, 0, kKeyDown);
    EXPECT_TRUE(HasFocus(column, 1));
    Press(column, 1, kKeyDown);
    EXPECT_TRUE(HasFocus(column, 2));
    Press(column, 2, kKeyUp);
    EXPECT_TRUE(HasFocus(column, 1));
  }
}

TEST_F(GridRows, UpInTheFirstAndDownInTheLastRowDoNothing) {
  MakeRows(2);
  Focus(Column::kLeft, 0);
  Press(Column::kLeft, 0, kKeyUp);
  EXPECT_TRUE(HasFocus(Column::kLeft, 0));
  Focus(Column::kRight, 1);
  Press(Column::kRight, 1, kKeyDown);
  EXPECT_TRUE(HasFocus(Column::kRight, 1));
  EXPECT_EQ(grid_.rows.size(), 2u);
}

TEST_F(GridRows, ArrowKeysScrollTheRowThatTakesTheFocusIntoView) {
  MakeRows(7);  // row 0 is scrolled out of view
  Focus(Column::kLeft, 1);
  Press(Column::kLeft, 1, kKeyUp);
  EXPECT_TRUE(HasFocus(Column::kLeft, 0));
  EXPECT_EQ(VisibleRows(), "0 1 2 3 4 5");
  EXPECT_EQ(grid_.VScroll1.value(), 6) << "the bar follows";
  Focus(Column::kRight, 5);
  Press(Column::kRight, 5, kKeyDown);
  EXPECT_TRUE(HasFocus(Column::kRight, 6));
  EXPECT_EQ(VisibleRows(), "1 2 3 4 5 6");
  EXPECT_EQ(grid_.VScroll1.value(), 7);
}

TEST_F(GridRows, AfterScrollingByAnArrowKeyTheBarMovesTheRowsAsBefore) {
  MakeRows(9);
  Focus(Column::kLeft, 3);
  Press(Column::kLeft, 3, kKeyUp);
  ASSERT_EQ(VisibleRows(), "2 3 4 5 6 7");
  Drag(9);
  EXPECT_EQ(VisibleRows(), "3 4 5 6 7 8");
  Drag(6);
  EXPECT_EQ(VisibleRows(), "0 1 2 3 4 5");
}

TEST_F(GridRows, ARowIsScrolledIntoViewFromFarAwayAndByAsFewRowsAsItTakes) {
  MakeRows(100);
  ScrollIntoView(grid_, 10);
  EXPECT_EQ(VisibleRows(), "10 11 12 13 14 15");
  ScrollIntoView(grid_, 12);
  EXPECT_EQ(VisibleRows(), "10 11 12 13 14 15");
  ScrollIntoView(grid_, 16);
  EXPECT_EQ(VisibleRows(), "11 12 13 14 15 16");
  for (const std::int64_t none : {-1, 100}) ScrollIntoView(grid_, none);
  EXPECT_EQ(VisibleRows(), "11 12 13 14 15 16");
}

TEST_F(GridRows, TheCellThatLostTheFocusIsReturnedToFromOutOfView) {
  MakeRows(20);
  LeaveWithCaretAt(Column::kRight, 16, 0);
  Drag(6);
  ASSERT_FALSE(grid_.RowVisible(16));
  EXPECT_TRUE(ReturnToCell(test_.program));
  EXPECT_TRUE(HasFocus(Column::kRight, 16));
  EXPECT_TRUE(grid_.RowVisible(16));
  EXPECT_FALSE(grid_.ScrollHasFocus);
}

TEST_F(GridRows, ThereIsNoReturnToACellThatDoesNotExist) {
  EXPECT_FALSE(ReturnToCell(test_.program)) << "no cell has lost the focus";
  for (const char* none : {"Links_7", "Links_", "Other_0", "Links"}) {
    grid_.FocusCell = none;
    EXPECT_FALSE(ReturnToCell(test_.program)) << none;
  }
}

TEST_F(GridRows, OtherKeysDoNothing) {
  MakeRows(2);
  Focus(Column::kLeft, 1);
  for (const int key : {0, 9, kKeyEscape, 37, 39, kKeyDelete, 65}) Press(Column::kLeft, 1, key);
  EXPECT_TRUE(HasFocus(Column::kLeft, 1));
  EXPECT_EQ(grid_.rows.size(), 2u);
}

TEST_F(GridRows, EventsOfARowThatDoesNotExistDoNothing) {
  MakeRows(2);
  const std::uint64_t revision = grid_.changes.revision();
  for (const std::int64_t row : {std::int64_t{-1}, std::int64_t{2}, std::int64_t{1} << 40}) {
    for (const Column column : {Column::kLeft, Column::kRight}) {
      Type(column, row, "x");
      Cell_SelectionChange(test_.program, {column, row}, 1);
      Focus(column, row);
      Leave(column, row);
      for (const int key : {kKeyEnter, kKeyUp, kKeyDown}) Press(column, row, key);
    }
  }
  EXPECT_EQ(grid_.changes.revision(), revision);
  EXPECT_EQ(test_.GridRows(), (Rows{{"", ""}, {"", ""}}));
}

TEST_F(GridRows, TypingASTextShorterThanTheCaretMovesTheCaretToItsEnd) {
  Type(Column::kLeft, 0, "abcdef");
  Cell_SelectionChange(test_.program, {Column::kLeft, 0}, 5);
  EXPECT_EQ(grid_.At({Column::kLeft, 0}).selection_end, 5u);
  Type(Column::kLeft, 0, "abc");
  EXPECT_EQ(grid_.At({Column::kLeft, 0}).selection_end, 3u);
  Cell_SelectionChange(test_.program, {Column::kLeft, 0}, 100);
  EXPECT_EQ(grid_.At({Column::kLeft, 0}).selection_end, 3u);
}

TEST_F(GridRows, TheSnapshotHoldsEveryCell) {
  MakeRows(3);
  Type(Column::kLeft, 0, "a");
  Type(Column::kRight, 2, "z");
  SnapshotRows(grid_);
  EXPECT_EQ(grid_.SavedLinks, (std::vector<std::string>{"a", "", ""}));
  EXPECT_EQ(grid_.SavedRechts, (std::vector<std::string>{"", "", "z"}));
  Type(Column::kLeft, 0, "changed");
  EXPECT_EQ(grid_.SavedLinks[0], "a");
  SnapshotRows(grid_);
  EXPECT_EQ(grid_.SavedLinks, (std::vector<std::string>{"changed", "", ""}));
  EXPECT_EQ(grid_.SavedRechts, (std::vector<std::string>{"", "", "z"}));
}

}  // namespace
}  // namespace morvex::test
