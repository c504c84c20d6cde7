// The state of the list editor's form, and the positions of its cells.
#include "core/forms/replacements_form.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace morvex::test {
namespace {

TEST(ReplacementsWindowState, ItsCaptionHeadsTheTwoColumnsWith99Characters) {
  const ReplacementsForm window;
  const std::string caption = window.caption;
  EXPECT_EQ(caption.size(), 99u);
  EXPECT_EQ(caption.find_first_not_of(' '), 7u);
  EXPECT_EQ(caption.substr(7, 8), "replace:");
  EXPECT_EQ(caption.find_first_not_of(' ', 15), 15u + 81u);
  EXPECT_EQ(caption.substr(96), "by:");
}

struct ButtonCase {
  const Button* button;
  const char* caption;
  const char* tool_tip;
};

TEST(ReplacementsWindowState, ItsEightButtonsHaveTheirCaptionsAndToolTips) {
  const ReplacementsForm window;
  const ButtonCase cases[] = {
      {&window.cmdJoker, "", "wildcard"},
      {&window.cmdMirror, "<-|->", "mirror"},
      {&window.cmdCRLF, "[CRLF]", "carriage return, line feed"},
      {&window.cmdReset, "Reset", "clear entries"},
      {&window.cmdDeleteEmpty, "X", "clear empty rows"},
      {&window.cmdImport, "Import", "from file"},
      {&window.cmdSaveList, "Save", "to file"},
      {&window.cmdOK, "OK", "use the above replacements"},
  };
  for (const ButtonCase& expected : cases) {
    EXPECT_EQ(expected.button->caption.get(), expected.caption);
    EXPECT_EQ(expected.button->tool_tip.get(), expected.tool_tip);
  }
}

TEST(ReplacementsWindowState, TheTabKeyReachesEveryButtonAndTheScrollBarOnce) {
  const ReplacementsForm window;
  const std::set<int> indexes = {
      window.cmdJoker.tab_index,    window.cmdMirror.tab_index,      window.cmdCRLF.tab_index,
      window.cmdReset.tab_index,    window.cmdDeleteEmpty.tab_index, window.cmdImport.tab_index,
      window.cmdSaveList.tab_index, window.cmdOK.tab_index,          window.VScroll1.tab_index};
  EXPECT_EQ(indexes.size(), 9u);
}

TEST(ReplacementsWindowState, BeforeItsFirstOpeningNothingIsRemembered) {
  const ReplacementsForm window;
  EXPECT_FALSE(window.loaded);
  EXPECT_EQ(window.FocusCell, "");
  EXPECT_EQ(window.CaretPos, 0u);
  EXPECT_EQ(window.LastRow, 0);
  EXPECT_EQ(window.ScrollPos, 1);
  EXPECT_FALSE(window.ScrollHasFocus);
  EXPECT_TRUE(window.SavedLinks.empty());
  EXPECT_TRUE(window.SavedRechts.empty());
}

TEST(ReplacementsWindowState, CellsStandInTheirColumnsARowPitchApart) {
  const ReplacementsForm window;
  EXPECT_EQ(window.CellBox({Column::kLeft, 0}), (Box{360, 360, 4215, 375}));
  EXPECT_EQ(window.CellBox({Column::kRight, 0}), (Box{4560, 360, 4215, 375}));
  EXPECT_EQ(window.CellBox({Column::kLeft, 1}), (Box{360, 720, 4215, 375}));
  EXPECT_EQ(window.CellBox({Column::kRight, 5}), (Box{4560, 2160, 4215, 375}));
}

TEST(ReplacementsWindowState, ScrollingMovesEveryCell) {
  ReplacementsForm window;
  window.scrolled_rows = 2;
  EXPECT_EQ(window.Top(0), -360);
  EXPECT_EQ(window.Top(2), 360);
  window.scrolled_rows = -1;
  EXPECT_EQ(window.Top(0), 720);
}

TEST(ReplacementsWindowState, ARowIsVisibleWithItsTopInTheBand) {
  ReplacementsForm window;
  window.rows.resize(20);
  window.placed_rows = 20;
  window.scrolled_rows = 3;
  for (int row = 0; row < 20; ++row) {
    const int top = window.Top(row);
    EXPECT_EQ(window.RowVisible(row), top > 359 && top < 2519) << row;
    EXPECT_EQ(window.RowVisible(row), row >= 3 && row <= 8) << row;
  }
}

TEST(ReplacementsWindowState, ARowThatWasNeverPlacedIsHidden) {
  ReplacementsForm window;
  window.rows.resize(3);
  window.placed_rows = 2;
  EXPECT_TRUE(window.RowVisible(1));
  EXPECT_FALSE(window.RowVisible(2));
}

TEST(ReplacementsWindowState, TheTabOrderRunsLeftRightNextLeftNextRight) {
  EXPECT_EQ(ReplacementsForm::CellTabIndex({Column::kLeft, 0}), 0);
  EXPECT_EQ(ReplacementsForm::CellTabIndex({Column::kRight, 0}), 1);
  EXPECT_EQ(ReplacementsForm::CellTabIndex({Column::kLeft, 1}), 2);
  EXPECT_EQ(ReplacementsForm::CellTabIndex({Column::kRight, 1}), 3);
  EXPECT_EQ(ReplacementsForm::CellTabIndex({Column::kRight, 99'999}), 199'999);
}

TEST(ReplacementsWindowState, TheOtherControlsComeBehindTheLastCell) {
  ReplacementsForm window;
  window.rows.resize(3);
  EXPECT_EQ(window.ControlTabIndex(window.cmdJoker), 6 + window.cmdJoker.tab_index);
  EXPECT_GT(window.ControlTabIndex(window.cmdJoker),
            ReplacementsForm::CellTabIndex({Column::kRight, 2}));
}

TEST(ReplacementsWindowState, KnowsWhichRowsThereAre) {
  ReplacementsForm window;
  EXPECT_FALSE(window.HasRow(0));
  window.rows.resize(2);
  EXPECT_TRUE(window.HasRow(0));
  EXPECT_TRUE(window.HasRow(1));
  EXPECT_FALSE(window.HasRow(2));
  EXPECT_FALSE(window.HasRow(-1));
}

TEST(ReplacementsWindowState, ATextOf2147483647CharactersIsTooLong) {
  const ReplacementsForm window;
  EXPECT_EQ(window.longest_text, 2147483647u);
}

}  // namespace
}  // namespace morvex::test
