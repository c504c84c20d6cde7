// Opening, refreshing and closing the editor.
#include "core/list/editor.h"

#include <gtest/gtest.h>

#include "core/list/list_operations.h"
#include "tests/core/list/grid_fixture.h"

namespace morvex::test {
namespace {

class EditorWindow : public GridTest {};

TEST_F(EditorWindow, OpeningShowsItAndHidesTheMainWindow) {
  EXPECT_TRUE(grid_.loaded);
  EXPECT_TRUE(grid_.visible.get());
  EXPECT_FALSE(test_.program.frmMorvex.visible.get());
}

TEST_F(EditorWindow, OpenedForTheFirstTimeItHasOneRowNoScrollBarAndNoFocusCell) {
  EXPECT_EQ(test_.GridRows(), (Rows{{"", ""}}));
  EXPECT_EQ(grid_.LastRow, 0);
  EXPECT_FALSE(grid_.VScroll1.visible.get());
  EXPECT_EQ(grid_.FocusCell, "");
  EXPECT_EQ(VisibleRows(), "0");
}

TEST_F(EditorWindow, OpeningSetsTheScrollStateAndTheToolTipsOfTheFirstRow) {
  EXPECT_EQ(grid_.ScrollPos, 1);
  EXPECT_EQ(grid_.VScroll1.minimum(), 1);
  EXPECT_EQ(grid_.VScroll1.maximum(), 10);
  EXPECT_EQ(Tip(Column::kLeft, 0), "");
  EXPECT_EQ(Tip(Column::kRight, 0), "");
}

TEST_F(EditorWindow, ReopenedAfterARefreshItHasOneRowAndTheOldFocusCell) {
  MakeRows(8);
  LeaveWithCaretAt(Column::kRight, 7, 0);
  Type(Column::kLeft, 0, "a");
  RefreshFormReplacements(test_.program);
  EXPECT_EQ(test_.GridRows(), (Rows{{"", ""}}));
  EXPECT_EQ(grid_.LastRow, 0);
  EXPECT_EQ(grid_.ScrollPos, 1);
  EXPECT_FALSE(grid_.VScroll1.visible.get());
  EXPECT_EQ(grid_.FocusCell, "Rechts_7");
  EXPECT_TRUE(grid_.visible.get());
  EXPECT_FALSE(test_.program.frmMorvex.visible.get());
}

TEST_F(EditorWindow, ARefreshKeepsCaretScrollValueAndSnapshot) {
  MakeRows(8);
  Type(Column::kLeft, 7, "abcdef");
  LeaveWithCaretAt(Column::kLeft, 7, 4);
  SnapshotRows(grid_);
  const std::vector<std::string> saved = grid_.SavedLinks;
  RefreshFormReplacements(test_.program);
  EXPECT_EQ(grid_.CaretPos, 4u);
  EXPECT_EQ(grid_.PrevScrollValue, 8);
  EXPECT_EQ(saved.size(), 8u);
  EXPECT_EQ(grid_.SavedLinks, saved);
  EXPECT_EQ(grid_.SavedRechts.size(), 8u);
}

TEST_F(EditorWindow, ARefreshBringsTheWindowBackToItsFirstSize) {
  const int height = grid_.height;
  const Box bar = grid_.VScroll1.box;
  const Box button = grid_.cmdOK.box;
  MakeRows(9);
  RefreshFormReplacements(test_.program);
  EXPECT_EQ(grid_.height.get(), height);
  EXPECT_EQ(grid_.VScroll1.box.get(), bar);
  EXPECT_EQ(grid_.cmdOK.box.get(), button);
  EXPECT_EQ(grid_.Top(0), 360);
}

TEST_F(EditorWindow, ARefreshedGridGrowsLikeANewOne) {
  MakeRows(9);
  RefreshFormReplacements(test_.program);
  const int height = grid_.height;
  MakeRows(7);
  EXPECT_EQ(grid_.height.get(), height + 5 * 360);
  EXPECT_EQ(VisibleRows(), "1 2 3 4 5 6");
  EXPECT_EQ(grid_.VScroll1.maximum(), 7);
  EXPECT_EQ(grid_.VScroll1.value(), 7);
}

TEST_F(EditorWindow, ARowAddedAfterARefreshIsHiddenLikeAnyNewOne) {
  MakeRows(6);
  RefreshFormReplacements(test_.program);
  AddRow(grid_);
  EXPECT_FALSE(grid_.RowVisible(1));
}

TEST_F(EditorWindow, ARefreshTakesTheFocusWithoutLeavingTheCell) {
  Focus(Column::kRight, 0);
  RefreshFormReplacements(test_.program);
  EXPECT_FALSE(grid_.focused_cell.has_value());
  EXPECT_EQ(grid_.FocusCell, "");
}

TEST_F(EditorWindow, ARefreshLeavesTheTables) {
  TestProgram test;
  test.ApplyRows({{"a", "b"}, {"c", "d"}});
  RefreshFormReplacements(test.program);
  EXPECT_EQ(test.program.tables.PairCount, 2);
  EXPECT_EQ(test.program.tables.LeftTexts, (std::vector<std::string>{"a", "c"}));
}

TEST_F(EditorWindow, OpeningALoadedEditorKeepsItsRowsAndState) {
  MakeRows(2);
  Type(Column::kLeft, 1, "kept");
  LeaveWithCaretAt(Column::kLeft, 1, 2);
  cmdOK_Click(test_.program);
  EXPECT_FALSE(grid_.visible.get());
  imList_Click(test_.program);
  EXPECT_TRUE(grid_.visible.get());
  EXPECT_EQ(test_.GridRows(), (Rows{{"", ""}, {"kept", ""}}));
  EXPECT_EQ(grid_.FocusCell, "Links_1");
  EXPECT_EQ(grid_.CaretPos, 2u);
}

TEST_F(EditorWindow, TheCloseBoxDropsTheRowsAndShowsTheMainWindow) {
  MakeRows(3);
  Type(Column::kLeft, 2, "gone");
  frmReplacements_Close(test_.program);
  EXPECT_FALSE(grid_.loaded);
  EXPECT_FALSE(grid_.visible.get());
  EXPECT_TRUE(test_.program.frmMorvex.visible.get());
  imList_Click(test_.program);
  EXPECT_EQ(test_.GridRows(), (Rows{{"", ""}}));
}

TEST_F(EditorWindow, TheCloseBoxDoesNotShowAMainWindowThatIsGone) {
  test_.program.frmMorvex.loaded = false;
  frmReplacements_Close(test_.program);
  EXPECT_FALSE(test_.program.frmMorvex.visible.get());
}

TEST_F(EditorWindow, DoesNotOpenWhileARunWorks) {
  frmReplacements_Close(test_.program);
  test_.program.run.working = true;
  imList_Click(test_.program);
  EXPECT_FALSE(grid_.loaded);
  EXPECT_FALSE(grid_.visible.get());
  EXPECT_TRUE(test_.program.frmMorvex.visible.get());
}

TEST_F(EditorWindow, TheWildcardButtonIsCaptionedWithTheWildcardOnOpening) {
  EXPECT_EQ(grid_.cmdJoker.caption.get(), "");
  test_.program.settings.gJoker = '*';
  EXPECT_EQ(grid_.cmdJoker.caption.get(), "");
  RefreshFormReplacements(test_.program);
  EXPECT_EQ(grid_.cmdJoker.caption.get(), "*");
  test_.program.settings.gJoker = 0xE9;
  RefreshFormReplacements(test_.program);
  EXPECT_EQ(grid_.cmdJoker.caption.get(), "\xE9");
  test_.program.settings.gJoker = 0;
  RefreshFormReplacements(test_.program);
  EXPECT_EQ(grid_.cmdJoker.caption.get(), "");
}

TEST_F(EditorWindow, ALoadedEditorIsShownWithTheWildcardNowInForce) {
  test_.program.settings.gJoker = '*';
  RefreshFormReplacements(test_.program);
  cmdOK_Click(test_.program);
  test_.program.settings.gJoker = '#';
  EXPECT_EQ(grid_.cmdJoker.caption.get(), "*");
  imList_Click(test_.program);
  EXPECT_EQ(grid_.cmdJoker.caption.get(), "#");
}

TEST_F(EditorWindow, DoesNotOpenOnceTheProgramIsToStop) {
  frmReplacements_Close(test_.program);
  test_.program.Beeindigd = true;
  imList_Click(test_.program);
  LoadGrid(test_.program);
  EXPECT_FALSE(grid_.loaded.get());
  EXPECT_FALSE(grid_.visible.get());
}

TEST_F(EditorWindow, DoesNotOpenWhileAListIsBeingRead) {
  cmdOK_Click(test_.program);
  grid_.importing = true;
  imList_Click(test_.program);
  EXPECT_FALSE(grid_.visible.get());
  EXPECT_TRUE(test_.program.frmMorvex.visible.get());
}

}  // namespace
}  // namespace morvex::test
