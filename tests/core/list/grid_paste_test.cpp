// Pasting rows into the grid.
#include "tests/core/list/grid_fixture.h"

namespace morvex::test {
namespace {

class GridPaste : public GridTest {
 protected:
  std::optional<std::int64_t> Paste(Column column, std::int64_t row, const Rows& texts) {
    std::vector<GridRow> rows;
    for (const auto& [left, right] : texts) {
      rows.emplace_back();
      rows.back().txtLinks.text = left;
      rows.back().txtRechts.text = right;
    }
    return PasteRows(test_.program, {column, row}, rows);
  }
  static Rows Numbered(int count) {
    Rows rows;
    for (int i = 0; i < count; ++i) {
      rows.emplace_back("l" + std::to_string(i), "r" + std::to_string(i));
    }
    return rows;
  }
};

TEST_F(GridPaste, FillsTheRowAndAddsOthersAsEnterDoes) {
  EXPECT_EQ(Paste(Column::kLeft, 0, Numbered(3)), std::nullopt);
  EXPECT_EQ(test_.GridRows(), Numbered(3));
  EXPECT_EQ(grid_.LastRow, 2);
  EXPECT_EQ(grid_.grown_rows, 2);
  EXPECT_TRUE(HasFocus(Column::kRight, 2));
  EXPECT_EQ(grid_.At({Column::kRight, 2}).selection_end, 2u);
}

TEST_F(GridPaste, FromARightCellTooTheLeftTextsGoToTheLeft) {
  EXPECT_EQ(Paste(Column::kRight, 0, {{"a", "b"}}), std::nullopt);
  EXPECT_EQ(test_.GridRows(), (Rows{{"a", "b"}}));
}

TEST_F(GridPaste, MoreRowsThanAreSeenAreScrolledToTheLastOne) {
  EXPECT_EQ(Paste(Column::kLeft, 0, Numbered(500)), std::nullopt);
  EXPECT_EQ(test_.GridRows(), Numbered(500));
  EXPECT_EQ(VisibleRows(), "494 495 496 497 498 499");
  EXPECT_EQ(grid_.VScroll1.value(), 500);
  EXPECT_TRUE(HasFocus(Column::kRight, 499));
}

TEST_F(GridPaste, EmptyRowsThatAreThereAlreadyAreFilled) {
  MakeRows(4);
  EXPECT_EQ(Paste(Column::kLeft, 1, Numbered(2)), std::nullopt);
  EXPECT_EQ(test_.GridRows(), (Rows{{"", ""}, {"l0", "r0"}, {"l1", "r1"}, {"", ""}}));
}

TEST_F(GridPaste, NoTextIsOverwrittenWhereverItStands) {
  for (const CellAddress taken : {CellAddress{Column::kLeft, 1}, CellAddress{Column::kRight, 1},
                                  CellAddress{Column::kRight, 3}}) {
    MakeRows(4);
    for (GridRow& row : grid_.rows) row = {};
    grid_.At(taken).text = "kept";
    const Rows before = test_.GridRows();
    EXPECT_EQ(Paste(Column::kLeft, 1, Numbered(5)), taken.row);
    EXPECT_EQ(test_.GridRows(), before);
  }
}

TEST_F(GridPaste, FromARowThatIsNotSeenAnyMoreTheNewRowsStillFollowTheLastOne) {
  MakeRows(12);
  Drag(6);
  ASSERT_EQ(VisibleRows(), "0 1 2 3 4 5");
  Focus(Column::kLeft, 3);
  EXPECT_EQ(Paste(Column::kLeft, 3, Numbered(11)), std::nullopt);
  EXPECT_EQ(grid_.LastRow, 13);
  EXPECT_EQ(Text(Column::kRight, 13), "r10");
  EXPECT_EQ(VisibleRows(), "8 9 10 11 12 13");
  EXPECT_EQ(grid_.VScroll1.value(), 14);
}

TEST_F(GridPaste, DoesNothingWhileAListIsReadAndForARowThatDoesNotExist) {
  EXPECT_EQ(Paste(Column::kLeft, 1, Numbered(1)), std::nullopt);
  EXPECT_EQ(Paste(Column::kLeft, 0, {}), std::nullopt);
  grid_.importing = true;
  EXPECT_EQ(Paste(Column::kLeft, 0, Numbered(1)), std::nullopt);
  grid_.importing = false;
  EXPECT_EQ(test_.GridRows(), (Rows{{"", ""}}));
}

}  // namespace
}  // namespace morvex::test
