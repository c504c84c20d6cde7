// The two buttons that insert a token into the cell that was edited last.
#include <gtest/gtest.h>

#include <string>

#include "core/list/list_operations.h"
#include "tests/core/list/grid_fixture.h"

namespace morvex::test {
namespace {

constexpr Column kLeft = Column::kLeft;
constexpr Column kRight = Column::kRight;

class InsertToken : public GridTest {
 protected:
  InsertToken() {
    test_.program.settings.gJoker = '*';
    RefreshFormReplacements(test_.program);
  }
  std::size_t Caret(Column column, std::int64_t row) {
    return grid_.At({column, row}).selection_end;
  }
};

TEST_F(InsertToken, TheLineBreakGoesToTheCaretAndTheFocusComesBack) {
  Type(kLeft, 0, "Jansen");
  LeaveWithCaretAt(kLeft, 0, 3);
  cmdCRLF_Click(test_.program);
  EXPECT_EQ(Text(kLeft, 0), "Jan[CRLF]sen");
  EXPECT_EQ(Caret(kLeft, 0), 12u);
  EXPECT_TRUE(HasFocus(kLeft, 0));
}

TEST_F(InsertToken, TheLineBreakGoesBehindASelectionThatIsKept) {
  Type(kRight, 0, "Person A");
  LeaveWithCaretAt(kRight, 0, 6);  // "Person" is selected
  cmdCRLF_Click(test_.program);
  EXPECT_EQ(Text(kRight, 0), "Person[CRLF] A");
  EXPECT_TRUE(HasFocus(kRight, 0));
}

TEST_F(InsertToken, TheWildcardAfterARightCellChangesNothing) {
  Type(kLeft, 0, "left");
  Type(kRight, 0, "right");
  LeaveWithCaretAt(kRight, 0, 2);
  const std::uint64_t revision = grid_.changes.revision();
  cmdJoker_Click(test_.program);
  EXPECT_EQ(test_.GridRows(), (Rows{{"left", "right"}}));
  EXPECT_FALSE(grid_.focused_cell.has_value());
  EXPECT_EQ(Caret(kRight, 0), 2u);
  EXPECT_EQ(grid_.changes.revision(), revision);
}

TEST_F(InsertToken, TheWildcardGoesToTheCaretOfALeftCell) {
  MakeRows(3);
  Type(kLeft, 2, "Jansen");
  LeaveWithCaretAt(kLeft, 2, 3);
  cmdJoker_Click(test_.program);
  EXPECT_EQ(Text(kLeft, 2), "Jan*sen");
  EXPECT_EQ(Caret(kLeft, 2), 7u);
  EXPECT_TRUE(HasFocus(kLeft, 2));
}

TEST_F(InsertToken, AtBothEndsAndIntoAnEmptyCell) {
  LeaveWithCaretAt(kLeft, 0, 0);
  cmdCRLF_Click(test_.program);
  EXPECT_EQ(Text(kLeft, 0), "[CRLF]");
  LeaveWithCaretAt(kLeft, 0, 0);
  cmdJoker_Click(test_.program);
  EXPECT_EQ(Text(kLeft, 0), "*[CRLF]");
  LeaveWithCaretAt(kLeft, 0, 7);
  cmdJoker_Click(test_.program);
  EXPECT_EQ(Text(kLeft, 0), "*[CRLF]*");
}

TEST_F(InsertToken, PressedAgainItGoesBehindTheFirst) {
  Type(kLeft, 0, "ab");
  LeaveWithCaretAt(kLeft, 0, 1);
  cmdCRLF_Click(test_.program);
  Leave(kLeft, 0);  // the caret is at the end now
  cmdCRLF_Click(test_.program);
  EXPECT_EQ(Text(kLeft, 0), "a[CRLF]b[CRLF]");
}

TEST_F(InsertToken, WithoutAWildcardItsButtonInsertsNothing) {
  test_.program.settings.gJoker = 0;
  RefreshFormReplacements(test_.program);
  Type(kLeft, 0, "Jansen");
  LeaveWithCaretAt(kLeft, 0, 3);
  cmdJoker_Click(test_.program);
  EXPECT_EQ(Text(kLeft, 0), "Jansen");
}

TEST_F(InsertToken, BeforeAnyCellHasLostTheFocusNothingHappens) {
  Type(kLeft, 0, "Jansen");
  ASSERT_EQ(grid_.FocusCell, "");
  cmdCRLF_Click(test_.program);
  cmdJoker_Click(test_.program);
  EXPECT_EQ(test_.GridRows(), (Rows{{"Jansen", ""}}));
}

TEST_F(InsertToken, ARowThatIsGoneAfterARefreshIsLeftAlone) {
  MakeRows(4);
  LeaveWithCaretAt(kLeft, 3, 0);
  RefreshFormReplacements(test_.program);
  ASSERT_EQ(grid_.FocusCell, "Links_3");
  cmdCRLF_Click(test_.program);
  cmdJoker_Click(test_.program);
  EXPECT_EQ(test_.GridRows(), (Rows{{"", ""}}));
}

TEST_F(InsertToken, ACaretOfATextThatIsGoneLeavesTheCellAlone) {
  Type(kLeft, 0, "Jansen");
  LeaveWithCaretAt(kLeft, 0, 6);
  RefreshFormReplacements(test_.program);
  Type(kLeft, 0, "short");
  cmdCRLF_Click(test_.program);
  cmdJoker_Click(test_.program);
  EXPECT_EQ(Text(kLeft, 0), "short");
}

TEST_F(InsertToken, ANameThatIsNoCellIsPassedOver) {
  Type(kLeft, 0, "left");
  Type(kRight, 0, "right");
  for (const char* name : {"Links", "Links_", "Links_x", "Links_-1", "Links_1", "links_0", "Left_0",
                           "_0", "_", "0", "Rechts_99999999999999999999", "Rechts_ 0"}) {
    grid_.FocusCell = name;
    cmdCRLF_Click(test_.program);
    cmdJoker_Click(test_.program);
    EXPECT_EQ(test_.GridRows(), (Rows{{"left", "right"}})) << name;
  }
}

TEST_F(InsertToken, ACellThatIsScrolledOutTakesTheTokenButNotTheFocus) {
  MakeRows(8);
  Type(kLeft, 7, "ab");
  LeaveWithCaretAt(kLeft, 7, 1);
  Drag(6);
  ASSERT_FALSE(grid_.RowVisible(7));
  cmdCRLF_Click(test_.program);
  EXPECT_EQ(Text(kLeft, 7), "a[CRLF]b");
  EXPECT_FALSE(grid_.focused_cell.has_value());
}

TEST_F(InsertToken, TheCaretCountsBytes) {
  Type(kLeft, 0, "\xC3\xA9t\xC3\xA9");
  LeaveWithCaretAt(kLeft, 0, 3);
  cmdCRLF_Click(test_.program);
  EXPECT_EQ(Text(kLeft, 0), "\xC3\xA9t[CRLF]\xC3\xA9");
}

TEST_F(InsertToken, ATextThatBecomesTooLongTurnsRed) {
  grid_.longest_text = 8;
  Type(kLeft, 0, "abc");
  LeaveWithCaretAt(kLeft, 0, 3);
  ASSERT_EQ(grid_.At({kLeft, 0}).colour, Colour::kBlack);
  cmdCRLF_Click(test_.program);
  EXPECT_EQ(grid_.At({kLeft, 0}).colour, Colour::kRed);
  EXPECT_EQ(Tip(kLeft, 0), "invoer te lang (> 2147483647)");
}

}  // namespace
}  // namespace morvex::test
