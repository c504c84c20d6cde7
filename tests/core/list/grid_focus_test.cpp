// What entering and leaving a cell does: FocusCell, CaretPos, colours and tool tips.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "core/list/grid.h"
#include "core/list/list_operations.h"
#include "tests/core/list/grid_fixture.h"

namespace morvex::test {
namespace {

constexpr Column kLeft = Column::kLeft;
constexpr Column kRight = Column::kRight;

class GridFocus : public GridTest {};

TEST_F(GridFocus, LeavingALeftCellNamesItAndAButtonChangesNothingOfThat) {
  MakeRows(5);
  LeaveWithCaretAt(kLeft, 3, 0);
  EXPECT_EQ(grid_.FocusCell, "Links_3");
  cmdMirror_Click(test_.program);
  EXPECT_EQ(grid_.FocusCell, "Links_3");
  cmdOK_Click(test_.program);
  EXPECT_EQ(grid_.FocusCell, "Links_3");
}

TEST_F(GridFocus, LeavingARightCellNamesIt) {
  LeaveWithCaretAt(kRight, 0, 0);
  EXPECT_EQ(grid_.FocusCell, "Rechts_0");
}

TEST_F(GridFocus, RowNumbersOfSeveralDigitsAreDecimal) {
  MakeRows(1235);
  LeaveWithCaretAt(kRight, 1234, 0);
  EXPECT_EQ(grid_.FocusCell, "Rechts_1234");
}

TEST_F(GridFocus, TheCaretIsTheEndOfTheSelection) {
  Type(kLeft, 0, "abcdef");
  for (const std::size_t end : {0u, 3u, 6u}) {
    LeaveWithCaretAt(kLeft, 0, end);
    EXPECT_EQ(grid_.CaretPos, end);
  }
}

TEST_F(GridFocus, ACaretBehindTheTextIsItsEnd) {
  Type(kLeft, 0, "abc");
  LeaveWithCaretAt(kLeft, 0, 100);
  EXPECT_EQ(grid_.CaretPos, 3u);
}

TEST_F(GridFocus, EnteringACellLeavesTheOneBefore) {
  MakeRows(2);
  Focus(kLeft, 0);
  EXPECT_EQ(grid_.FocusCell, "Links_1") << "it had the focus since it was made";
  Focus(kRight, 1);
  EXPECT_EQ(grid_.FocusCell, "Links_0");
  EXPECT_TRUE(HasFocus(kRight, 1));
  Focus(kLeft, 0);
  EXPECT_EQ(grid_.FocusCell, "Rechts_1");
}

TEST_F(GridFocus, EnteringTheCellThatHasTheFocusChangesNothing) {
  Focus(kLeft, 0);
  const std::uint64_t revision = grid_.changes.revision();
  Focus(kLeft, 0);
  EXPECT_EQ(grid_.changes.revision(), revision);
  EXPECT_EQ(grid_.FocusCell, "");
}

TEST_F(GridFocus, LeavingACellWithoutTheFocusChangesNothing) {
  Focus(kLeft, 0);
  Leave(kRight, 0);
  EXPECT_EQ(grid_.FocusCell, "");
  EXPECT_TRUE(HasFocus(kLeft, 0));
  Leave(kLeft, 0);
  Leave(kLeft, 0);
  EXPECT_EQ(grid_.FocusCell, "Links_0");
}

TEST_F(GridFocus, EnteringShowsTheTextAsToolTipInBlack) {
  MakeRows(2);
  Type(kRight, 0, "to be shown");
  Focus(kRight, 0);
  EXPECT_EQ(Tip(kRight, 0), "to be shown");
  EXPECT_EQ(grid_.At({kRight, 0}).colour, Colour::kBlack);
}

TEST_F(GridFocus, EnteringALeftCellOfTheLastRowRefreshesBothToolTips) {
  MakeRows(2);
  Type(kLeft, 1, "left");
  Type(kRight, 1, "right");
  Focus(kLeft, 0);
  EXPECT_EQ(Tip(kRight, 1), "");
  Focus(kLeft, 1);
  EXPECT_EQ(Tip(kLeft, 1), "left");
  EXPECT_EQ(Tip(kRight, 1), "right");
}

TEST_F(GridFocus, EnteringARightCellOfTheLastRowRefreshesOnlyItsOwn) {
  Type(kLeft, 0, "left");
  Type(kRight, 0, "right");
  Focus(kRight, 0);
  EXPECT_EQ(Tip(kLeft, 0), "");
  EXPECT_EQ(Tip(kRight, 0), "right");
}

TEST_F(GridFocus, EnteringALeftCellOfAnotherRowRefreshesOnlyItsOwn) {
  MakeRows(2);
  Type(kLeft, 0, "left");
  Type(kRight, 0, "right");
  Focus(kLeft, 0);
  EXPECT_EQ(Tip(kLeft, 0), "left");
  EXPECT_EQ(Tip(kRight, 0), "");
}

TEST_F(GridFocus, LeavingACellOfTheLastRowClearsTheOtherToolTipAndSetsItsOwn) {
  Type(kLeft, 0, "left");
  Type(kRight, 0, "right");
  Focus(kLeft, 0);
  ASSERT_EQ(Tip(kRight, 0), "right");
  Leave(kLeft, 0);
  EXPECT_EQ(Tip(kLeft, 0), "left");
  EXPECT_EQ(Tip(kRight, 0), "");
}

TEST_F(GridFocus, LeavingACellOfAnotherRowSetsOnlyItsOwnToolTip) {
  MakeRows(2);
  Type(kRight, 0, "right");
  Focus(kRight, 0);
  Leave(kRight, 0);
  Focus(kLeft, 0);
  Type(kLeft, 0, "left");
  Leave(kLeft, 0);
  EXPECT_EQ(Tip(kLeft, 0), "left");
  EXPECT_EQ(Tip(kRight, 0), "right");
}

TEST_F(GridFocus, TooLongATextIsRedWithADutchToolTipOnEntering) {
  grid_.longest_text = 5;
  for (const Column column : {kLeft, kRight}) {
    Type(column, 0, "12345");
    Focus(column, 0);
    EXPECT_EQ(grid_.At({column, 0}).colour, Colour::kRed);
    EXPECT_EQ(Tip(column, 0), "invoer te lang (> 2147483647)");
  }
}

TEST_F(GridFocus, TooLongATextIsRedWithAnEnglishToolTipOnLeaving) {
  grid_.longest_text = 5;
  for (const Column column : {kLeft, kRight}) {
    Type(column, 0, "123456");
    Focus(column, 0);
    Leave(column, 0);
    EXPECT_EQ(grid_.At({column, 0}).colour, Colour::kRed);
    EXPECT_EQ(Tip(column, 0), "input too long (> 2147483647)");
  }
}

TEST_F(GridFocus, OneCharacterLessIsNotTooLong) {
  grid_.longest_text = 5;
  Type(kLeft, 0, "1234");
  Focus(kLeft, 0);
  EXPECT_EQ(grid_.At({kLeft, 0}).colour, Colour::kBlack);
  EXPECT_EQ(Tip(kLeft, 0), "1234");
  Leave(kLeft, 0);
  EXPECT_EQ(grid_.At({kLeft, 0}).colour, Colour::kBlack);
  EXPECT_EQ(Tip(kLeft, 0), "1234");
}

TEST_F(GridFocus, AShortenedTextTurnsBlackAgain) {
  grid_.longest_text = 5;
  Type(kLeft, 0, "12345");
  Focus(kLeft, 0);
  ASSERT_EQ(grid_.At({kLeft, 0}).colour, Colour::kRed);
  Type(kLeft, 0, "1");
  Leave(kLeft, 0);
  EXPECT_EQ(grid_.At({kLeft, 0}).colour, Colour::kBlack);
  EXPECT_EQ(Tip(kLeft, 0), "1");
}

TEST_F(GridFocus, AHiddenRowCannotTakeTheFocus) {
  MakeRows(7);
  Focus(kLeft, 6);
  FocusOnCell(test_.program, {kLeft, 0});
  EXPECT_TRUE(HasFocus(kLeft, 6));
  FocusOnCell(test_.program, {kLeft, 1});
  EXPECT_TRUE(HasFocus(kLeft, 1));
}

TEST_F(GridFocus, ARowThatDoesNotExistCannotTakeTheFocus) {
  Focus(kLeft, 0);
  FocusOnCell(test_.program, {kLeft, 1});
  FocusOnCell(test_.program, {kLeft, -1});
  EXPECT_TRUE(HasFocus(kLeft, 0));
}

TEST_F(GridFocus, NoCellOfAHiddenWindowCanTakeTheFocus) {
  grid_.visible = false;
  FocusOnCell(test_.program, {kLeft, 0});
  EXPECT_FALSE(grid_.focused_cell.has_value());
}

}  // namespace
}  // namespace morvex::test
