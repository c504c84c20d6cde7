// Mirror, reset, and applying the list.
#include "core/list/list_operations.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/core/list/grid_fixture.h"

namespace morvex::test {
namespace {

constexpr Column kLeft = Column::kLeft;
constexpr Column kRight = Column::kRight;
using Flags = std::vector<bool>;
using Texts = std::vector<std::string>;

class ListOperations : public GridTest {
 protected:
  // A fresh editor with this wildcard and these rows.
  void Open(std::uint8_t joker, const Rows& rows) {
    test_.program.settings.gJoker = joker;
    RefreshFormReplacements(test_.program);
    test_.TypeRows(rows);
  }
};

class MirrorList : public ListOperations {};
class ResetList : public ListOperations {};
class ApplyList : public ListOperations {};

TEST_F(MirrorList, SwapsTheTextsOfEveryRow) {
  Open(0, {{"a", "b"}, {"d", ""}});
  cmdMirror_Click(test_.program);
  EXPECT_EQ(test_.GridRows(), (Rows{{"b", "a"}, {"", "d"}}));
}

TEST_F(MirrorList, TwiceRestoresTheList) {
  const Rows rows = {{"a", "b"}, {"d", ""}, {"", ""}, {"", "x"}, {"same", "same"}};
  Open(0, rows);
  cmdMirror_Click(test_.program);
  cmdMirror_Click(test_.program);
  EXPECT_EQ(test_.GridRows(), rows);
}

TEST_F(MirrorList, MovesWildcardAndTokenUnchanged) {
  Open('*', {{"Jan*[CRLF]", "x"}});
  cmdMirror_Click(test_.program);
  EXPECT_EQ(test_.GridRows(), (Rows{{"x", "Jan*[CRLF]"}}));
}

TEST_F(MirrorList, SetsToolTipsAndBlack) {
  Open(0, {{"a", "b"}, {"c", "d"}});
  grid_.At({kLeft, 0}).colour = Colour::kRed;
  grid_.At({kRight, 1}).colour = Colour::kRed;
  cmdMirror_Click(test_.program);
  EXPECT_EQ(Tip(kLeft, 0), "b");
  EXPECT_EQ(Tip(kRight, 0), "a");
  EXPECT_EQ(Tip(kLeft, 1), "d");
  EXPECT_EQ(Tip(kRight, 1), "c");
  EXPECT_EQ(grid_.At({kLeft, 0}).colour, Colour::kBlack);
  EXPECT_EQ(grid_.At({kRight, 1}).colour, Colour::kBlack);
}

TEST_F(MirrorList, TooLongTextsAreRedWithTheirOwnMessages) {
  Open(0, {{"1234", "12345"}, {"12345", "1234"}});
  grid_.longest_text = 5;
  cmdMirror_Click(test_.program);
  EXPECT_EQ(Tip(kLeft, 0), "invoer te lang (>2147483647)");
  EXPECT_EQ(grid_.At({kLeft, 0}).colour, Colour::kRed);
  EXPECT_EQ(Tip(kRight, 0), "1234");
  EXPECT_EQ(grid_.At({kRight, 0}).colour, Colour::kBlack);
  EXPECT_EQ(Tip(kRight, 1), "input too long (>2147483647)");
  EXPECT_EQ(grid_.At({kRight, 1}).colour, Colour::kRed);
  EXPECT_EQ(Tip(kLeft, 1), "1234");
}

TEST_F(MirrorList, AppliesNothing) {
  Open(0, {{"a", "b"}});
  cmdOK_Click(test_.program);
  imList_Click(test_.program);
  cmdMirror_Click(test_.program);
  EXPECT_EQ(test_.program.tables.LeftTexts, (Texts{"a"}));
}

TEST_F(ResetList, EmptiesTheListAndItsSnapshotButNotTheTables) {
  Open(0, {{"a", "b"}, {"c", "d"}});
  cmdOK_Click(test_.program);
  imList_Click(test_.program);
  cmdReset_Click(test_.program);
  EXPECT_EQ(test_.GridRows(), (Rows{{"", ""}}));
  EXPECT_EQ(grid_.SavedLinks, (Texts{""}));
  EXPECT_EQ(grid_.SavedRechts, (Texts{""}));
  EXPECT_EQ(test_.program.tables.LeftTexts, (Texts{"a", "c"}));
  EXPECT_TRUE(grid_.visible.get());
}

TEST_F(ResetList, FollowedByOkAppliesOneEmptyRow) {
  Open('*', {{"a*", "b"}, {"c", "d"}});
  cmdOK_Click(test_.program);
  imList_Click(test_.program);
  cmdReset_Click(test_.program);
  cmdOK_Click(test_.program);
  const SubstitutionTables& tables = test_.program.tables;
  EXPECT_EQ(tables.PairCount, 1);
  EXPECT_EQ(tables.LeftTexts, (Texts{""}));
  EXPECT_EQ(tables.RightTexts, (Texts{""}));
  EXPECT_EQ(tables.JokerLeft, (Flags{false}));
  EXPECT_EQ(tables.JokerRight, (Flags{false}));
  EXPECT_EQ(tables.MaxLeftLen, 0);
}

TEST_F(ApplyList, FlagsTheWildcardOfTheLeftCellOfTheThirdRowAlone) {
  Open('*', {{"a", "b"}, {"c", "d"}, {"e*f", "g"}});
  cmdOK_Click(test_.program);
  EXPECT_EQ(test_.program.tables.JokerLeft, (Flags{false, false, true}));
  EXPECT_EQ(test_.program.tables.JokerRight, (Flags{false, false, false}));
}

TEST_F(ApplyList, FlagsEveryCellThatHoldsTheWildcard) {
  Open('*', {{"*", ""}, {"", "*"}, {"a*b*", "*c"}, {"", ""}});
  cmdOK_Click(test_.program);
  EXPECT_EQ(test_.program.tables.JokerLeft, (Flags{true, false, true, false}));
  EXPECT_EQ(test_.program.tables.JokerRight, (Flags{false, true, true, false}));
  EXPECT_EQ(test_.program.tables.JokerTail, (Texts{"", "", "b*", ""}));
}

TEST_F(ApplyList, TheWildcardIsFoundInItsExactCase) {
  Open('x', {{"aXb", "X"}, {"axb", "x"}});
  cmdOK_Click(test_.program);
  EXPECT_EQ(test_.program.tables.JokerLeft, (Flags{false, true}));
  EXPECT_EQ(test_.program.tables.JokerRight, (Flags{false, true}));
}

TEST_F(ApplyList, WithoutAWildcardNoCellIsFlagged) {
  Open(0, {{"a", ""}, {std::string(1, '\0'), std::string(1, '\0')}});
  cmdOK_Click(test_.program);
  EXPECT_EQ(test_.program.tables.JokerLeft, (Flags{false, false}));
  EXPECT_EQ(test_.program.tables.JokerRight, (Flags{false, false}));
}

TEST_F(ApplyList, AShorterListHasOnlyItsOwnFlags) {
  Open('*', {{"*", "*"}, {"*", "*"}, {"*", "*"}});
  cmdOK_Click(test_.program);
  Open('*', {{"a", "*"}});
  cmdOK_Click(test_.program);
  EXPECT_EQ(test_.program.tables.JokerLeft, (Flags{false}));
  EXPECT_EQ(test_.program.tables.JokerRight, (Flags{true}));
}

TEST_F(ApplyList, TheWildcardIsThatOfTheEditorsOpening) {
  Open('*', {{"a*b", ""}, {"c#d", ""}});
  test_.program.settings.gJoker = '#';
  cmdOK_Click(test_.program);
  EXPECT_EQ(test_.program.tables.JokerLeft, (Flags{true, false}));
  EXPECT_EQ(test_.program.tables.JokerTail, (Texts{"a*b", ""}))
      << "tails go by the wildcard that is set, which this text does not hold";
}

TEST_F(ApplyList, BuildsTheTablesWithRealLineBreaks) {
  Open('*', {{"a[CRLF]*b[CRLF]", "[CRLF]"}});
  cmdOK_Click(test_.program);
  EXPECT_EQ(test_.program.tables.LeftTexts, (Texts{"a\r\n*b\r\n"}));
  EXPECT_EQ(test_.program.tables.RightTexts, (Texts{"\r\n"}));
  EXPECT_EQ(test_.program.tables.JokerTail, (Texts{"b\r\n"}));
  EXPECT_EQ(test_.GridRows(), (Rows{{"a[CRLF]*b[CRLF]", "[CRLF]"}}));
}

TEST_F(ApplyList, TakesTheSnapshotHidesTheEditorAndShowsTheMainWindow) {
  const Rows rows = {{"a", "b"}, {"c", "d"}};
  Open(0, rows);
  cmdOK_Click(test_.program);
  EXPECT_EQ(grid_.SavedLinks, (Texts{"a", "c"}));
  EXPECT_EQ(grid_.SavedRechts, (Texts{"b", "d"}));
  EXPECT_FALSE(grid_.visible.get());
  EXPECT_TRUE(grid_.loaded);
  EXPECT_TRUE(test_.program.frmMorvex.visible.get());
  EXPECT_EQ(test_.GridRows(), rows);
}

TEST_F(ApplyList, DoesNotShowAMainWindowThatIsGone) {
  test_.program.frmMorvex.loaded = false;
  cmdOK_Click(test_.program);
  EXPECT_FALSE(test_.program.frmMorvex.visible.get());
}

}  // namespace
}  // namespace morvex::test
