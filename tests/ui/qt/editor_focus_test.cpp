// What the core learns when focus, caret and rows of the list editor move.
#include <QClipboard>
#include <QStyleOptionSlider>

#include "tests/ui/qt/editor_test.h"

namespace morvex::test {
namespace {

class EditorFocus : public EditorTest {
 protected:
  // Opens the editor with twelve rows of different texts. The last six rows are in view.
  void OpenLongList() {
    Open();
    MakeRows(12);
    for (std::size_t row = 0; row < 12; ++row) {
      grid_.rows[row].txtLinks.text = "left " + std::to_string(row);
      grid_.rows[row].txtRechts.text = "right " + std::to_string(row);
    }
    grid_.changes.Changed();
    Settle();
    texts_ = GridRows();
  }

  // Returns the middle of the scroll bar's handle.
  QPoint Slider() {
    QStyleOptionSlider option;
    option.initFrom(&Bar());
    option.orientation = Qt::Vertical;
    option.minimum = Bar().minimum();
    option.maximum = Bar().maximum();
    option.sliderPosition = option.sliderValue = Bar().value();
    option.singleStep = Bar().singleStep();
    option.pageStep = Bar().pageStep();
    option.subControls = QStyle::SC_All;
    return Bar()
        .style()
        ->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, &Bar())
        .center();
  }

  Rows texts_;
};

TEST_F(EditorFocus, LeavingALeftCellOfRow3NamesItAndAButtonDoesNotChangeThat) {
  Open();
  MakeRows(5);
  Click(Left(3));
  Click(Command("cmdMirror"));
  EXPECT_EQ(grid_.FocusCell, "Links_3");
  Click(Command("cmdJoker"));
  EXPECT_EQ(grid_.FocusCell, "Links_3");
}

TEST_F(EditorFocus, LeavingARightCellNamesItsColumn) {
  Open();
  MakeRows(2);
  Click(Right(1));
  Click(Left(0));
  EXPECT_EQ(grid_.FocusCell, "Rechts_1");
}

TEST_F(EditorFocus, ThePositionBehindTheSelectionIsRemembered) {
  Open();
  Type(Left(0), "Jansen");
  Left(0).setSelection(1, 3);
  Click(Command("cmdMirror"));
  EXPECT_EQ(grid_.CaretPos, 4U);
}

TEST_F(EditorFocus, SoItIsWhenTheSelectionWasMadeBackwards) {
  Open();
  Type(Left(0), "Jansen");
  Left(0).setSelection(4, -3);
  ASSERT_EQ(Left(0).cursorPosition(), 1);
  Click(Right(0));
  EXPECT_EQ(grid_.CaretPos, 4U);
}

TEST_F(EditorFocus, ASelectionThatWasDroppedByAKeyIsForgotten) {
  Open();
  MakeRows(2);
  Click(Left(0));
  Type(Left(0), "Jansen");
  Left(0).setSelection(4, -3);
  Press(Qt::Key_Down);
  Press(Qt::Key_Up);
  ASSERT_EQ(Focus(), "txtLinks_0");
  ASSERT_FALSE(Left(0).hasSelectedText());
  Click(Right(0));
  EXPECT_EQ(static_cast<int>(grid_.CaretPos), Left(0).cursorPosition());
}

TEST_F(EditorFocus, TheCaretCountsBytes) {
  system_.codec = TextCodec::kUtf8;
  Open();
  Left(0).insert(QString::fromUtf8("é€x"));
  Left(0).setCursorPosition(2);
  Click(Right(0));
  EXPECT_EQ(grid_.CaretPos, 5U);
}

TEST_F(EditorFocus, WithoutASelectionTheCaretIsRemembered) {
  Open();
  Type(Left(0), "Jansen");
  Left(0).setCursorPosition(2);
  Click(Right(0));
  EXPECT_EQ(grid_.CaretPos, 2U);
}

TEST_F(EditorFocus, AnotherProgramInFrontDoesNotCountAsLeavingTheCell) {
  Open();
  Click(Left(0));
  QWidget other;
  other.show();
  QApplication::setActiveWindow(&other);
  Settle();
  ASSERT_FALSE(Editor().isActiveWindow());
  EXPECT_EQ(grid_.FocusCell, "");
  EXPECT_EQ(grid_.focused_cell, (CellAddress{Column::kLeft, 0}));
}

TEST_F(EditorFocus, ACellWithTheFocusHasItsTextAsToolTip) {
  Open();
  MakeRows(2);
  Type(Left(0), "Jansen");
  Click(Left(1));
  Click(Left(0));
  EXPECT_EQ(Left(0).toolTip(), "Jansen");
}

TEST_F(EditorFocus, LeavingTheLastRowClearsTheOtherCellsToolTip) {
  Open();
  Type(Right(0), "City");
  Click(Left(0));
  ASSERT_EQ(Right(0).toolTip(), "City");
  Click(Command("cmdOK"));
  OpenAgain();
  Click(Right(0));
  EXPECT_EQ(Left(0).toolTip(), "");
  EXPECT_EQ(Right(0).toolTip(), "City");
}

TEST_F(EditorFocus, AToolTipIsNeverReadAsMarkup) {
  Open();
  MakeRows(2);
  Type(Left(0), "<b>x</b>");
  Click(Left(1));
  EXPECT_TRUE(Left(0).toolTip().contains("&lt;b&gt;"));
}

TEST_F(EditorFocus, ATooLongTextIsRedWithADutchTipWhenEnteredAndAnEnglishOneWhenLeft) {
  Open();
  grid_.longest_text = 5;
  Type(Left(0), "abcde");
  Click(Right(0));
  EXPECT_EQ(Left(0).toolTip(), "input too long (> 2147483647)");
  const QColor red = Left(0).palette().color(QPalette::Text);
  EXPECT_GT(red.red(), 150);
  EXPECT_LT(red.green(), red.red());
  EXPECT_LT(red.blue(), red.red());
  Click(Left(0));
  EXPECT_EQ(Left(0).toolTip(), "invoer te lang (> 2147483647)");
  Press(Qt::Key_Backspace);
  Click(Right(0));
  EXPECT_EQ(Left(0).toolTip(), "abcd");
  EXPECT_EQ(Left(0).palette().color(QPalette::Text), Right(0).palette().color(QPalette::Text));
}

TEST_F(EditorFocus, RedIsALightOneOnADarkGround) {
  Open();
  grid_.longest_text = 1;
  Type(Left(0), "a");
  Click(Right(0));
  QPalette dark;
  dark.setColor(QPalette::Base, QColor(30, 30, 30));
  dark.setColor(QPalette::Text, Qt::white);
  Editor().setPalette(dark);
  Settle();
  EXPECT_GT(Left(0).palette().color(QPalette::Text).lightness(), 150);
}

TEST_F(EditorFocus, TheScrollBarTellsItsFocus) {
  Open();
  MakeRows(8);
  Click(Left(7));
  Bar().setFocus();
  EXPECT_TRUE(grid_.ScrollHasFocus);
  EXPECT_EQ(grid_.FocusCell, "Links_7");
  Click(Left(7));
  EXPECT_FALSE(grid_.ScrollHasFocus);
}

TEST_F(EditorFocus, TheSliderDraggedByTheMouseMovesTheRowsAndNeverLosesOne) {
  Open();
  MakeRows(7);
  Click(Right(6));
  const QPoint low = Slider();
  QTest::mousePress(&Bar(), Qt::LeftButton, Qt::NoModifier, low);
  QPoint at = low;
  while (Bar().value() > 6 && at.y() > 0) QTest::mouseMove(&Bar(), at -= QPoint(0, 1));
  Settle();
  EXPECT_EQ(Bar().value(), 6);
  EXPECT_EQ(RowsInView(), "0 1 2 3 4 5");
  EXPECT_EQ(Left(0).y(), 24);
  QTest::mouseMove(&Bar(), low);
  QTest::mouseRelease(&Bar(), Qt::LeftButton, Qt::NoModifier, low);
  Settle();
  EXPECT_EQ(Bar().value(), 7);
  EXPECT_EQ(RowsInView(), "1 2 3 4 5 6");
  EXPECT_EQ(grid_.FocusCell, "Rechts_6");
}

TEST_F(EditorFocus, DraggingFrom7To6MovesTheRowsDownAndShowsRow0Again) {
  Open();
  MakeRows(7);
  Bar().setFocus();
  Press(Bar(), Qt::Key_Up);
  EXPECT_EQ(Bar().value(), 6);
  EXPECT_EQ(RowsInView(), "0 1 2 3 4 5");
  EXPECT_EQ(Left(0).y(), 24);
}

TEST_F(EditorFocus, DraggedToTheTopTheFirstRowStandsLowest) {
  Open();
  MakeRows(7);
  Bar().setFocus();
  Press(Bar(), Qt::Key_Home);
  EXPECT_EQ(Bar().value(), 1);
  EXPECT_EQ(RowsInView(), "0");
  EXPECT_EQ(Left(0).y(), 144);
}

TEST_F(EditorFocus, RowsThatComeIntoViewShowTheirTextsUnderTheirNames) {
  OpenLongList();
  Bar().setFocus();
  Bar().setValue(8);
  Settle();
  EXPECT_EQ(RowsInView(), "2 3 4 5 6 7");
  EXPECT_EQ(ShownRows(), Rows(texts_.begin() + 2, texts_.begin() + 8));
  EXPECT_EQ(GridRows(), texts_);
}

TEST_F(EditorFocus, TypingInAScrolledRowChangesThatRowAlone) {
  OpenLongList();
  Bar().setFocus();
  Bar().setValue(8);
  Settle();
  Click(Right(4));
  Press(Qt::Key_End);
  Type(*QApplication::focusWidget(), "!");
  texts_[4].second += "!";
  EXPECT_EQ(GridRows(), texts_);
}

TEST_F(EditorFocus, TheWheelOverTheCellsMovesTheRows) {
  OpenLongList();
  Wheel(Left(8), -1);
  EXPECT_EQ(RowsInView(), "3 4 5 6 7 8");
  EXPECT_EQ(Bar().value(), 9);
}

TEST_F(EditorFocus, TheWheelReachesTheEndAgain) {
  OpenLongList();
  Click(Left(11));
  Wheel(Left(8), -1);
  Wheel(Left(8), 1);
  EXPECT_EQ(Bar().value(), 12);
  EXPECT_EQ(RowsInView(), "6 7 8 9 10 11");
  Wheel(Left(8), 1);
  EXPECT_EQ(RowsInView(), "6 7 8 9 10 11");
}

TEST_F(EditorFocus, TheWheelDoesNothingWhileThereIsNoScrollBar) {
  Open();
  MakeRows(3);
  Wheel(Left(1), 1);
  Wheel(Left(1), -1);
  EXPECT_EQ(RowsInView(), "0 1 2");
}

TEST_F(EditorFocus, ARowThatStaysInViewKeepsFocusAndSelectionUnderTheWheel) {
  OpenLongList();
  Click(Left(7));
  Left(7).setSelection(1, 3);
  Wheel(Left(8), -1);
  ASSERT_EQ(RowsInView(), "3 4 5 6 7 8");
  EXPECT_EQ(Focus(), "txtLinks_7");
  EXPECT_EQ(Left(7).selectedText(), "eft");
  EXPECT_EQ(grid_.focused_cell, (CellAddress{Column::kLeft, 7}));
  EXPECT_FALSE(grid_.ScrollHasFocus);
}

TEST_F(EditorFocus, ARowThatLeavesTheViewGivesItsFocusToTheScrollBarAndNothingElseChanges) {
  OpenLongList();
  Click(Right(10));
  Right(10).setCursorPosition(3);
  Wheel(Left(8), -1);
  ASSERT_EQ(RowsInView(), "3 4 5 6 7 8");
  EXPECT_EQ(Focus(), "VScroll1");
  EXPECT_TRUE(grid_.ScrollHasFocus);
  EXPECT_EQ(grid_.focused_cell, std::nullopt);
  EXPECT_EQ(grid_.FocusCell, "Rechts_10");
  EXPECT_EQ(grid_.CaretPos, 3U);
  EXPECT_EQ(GridRows(), texts_);
}

TEST_F(EditorFocus, ARowThatComesBackHasItsCaretWhereItWas) {
  OpenLongList();
  Click(Left(11));
  Left(11).setCursorPosition(2);
  Wheel(Left(8), -1);
  Wheel(Left(8), 1);
  EXPECT_EQ(Left(11).cursorPosition(), 2);
}

TEST_F(EditorFocus, TheFirstKeyTypedAfterTheRowWasScrolledAwayBringsItBackAndIsNotLost) {
  OpenLongList();
  Click(Right(10));
  Right(10).setCursorPosition(3);
  Wheel(Left(8), -2);
  ASSERT_EQ(RowsInView(), "0 1 2 3 4 5");
  ASSERT_EQ(Focus(), "VScroll1");
  QTest::keyClicks(QApplication::focusWidget(), "X");
  Settle();
  EXPECT_EQ(grid_.rows[10].txtRechts.text, "rigXht 10");
  EXPECT_EQ(Focus(), "txtRechts_10");
  EXPECT_EQ(RowsInView(), "5 6 7 8 9 10");
  QTest::keyClicks(QApplication::focusWidget(), "Y");
  Settle();
  EXPECT_EQ(grid_.rows[10].txtRechts.text, "rigXYht 10");
}

TEST_F(EditorFocus, KeysThatEraseOrPasteReachTheRowThatWasScrolledAwayToo) {
  OpenLongList();
  Click(Left(11));
  Press(Qt::Key_End);
  Wheel(Left(8), -2);
  Press(Qt::Key_Backspace);
  EXPECT_EQ(grid_.rows[11].txtLinks.text, "left 1");
  Wheel(*QApplication::focusWidget(), -2);
  ASSERT_EQ(Focus(), "VScroll1");
  QApplication::clipboard()->setText("23");
  Press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(grid_.rows[11].txtLinks.text, "left 123");
  Wheel(*QApplication::focusWidget(), -2);
  ASSERT_EQ(Focus(), "VScroll1");
  Press(Qt::Key_Return);
  EXPECT_EQ(grid_.LastRow, 12) << "Enter in the last row adds one";
}

TEST_F(EditorFocus, KeysThatMoveTheScrollBarStayThere) {
  OpenLongList();
  Click(Left(11));
  Wheel(Left(8), -1);
  ASSERT_EQ(Focus(), "VScroll1");
  const int before = Bar().value();
  Press(Qt::Key_Up);
  EXPECT_EQ(Focus(), "VScroll1");
  EXPECT_EQ(Bar().value(), before - 1);
  QTest::sendKeyEvent(QTest::Click, &Bar(), Qt::Key_Q, "q", Qt::AltModifier);
  Settle();
  EXPECT_EQ(Focus(), "VScroll1");
  EXPECT_EQ(GridRows(), texts_);
}

TEST_F(EditorFocus, UndoNeverBringsAnotherRowsText) {
  Open();
  MakeRows(12);
  Click(Left(11));
  Type(Left(11), "typed");
  Press(Qt::Key_Backspace);
  Press(Qt::Key_Backspace);
  Press(Qt::Key_Backspace);
  Press(Qt::Key_Backspace);
  Press(Qt::Key_Backspace);
  Wheel(Left(8), -2);
  ASSERT_EQ(RowsInView(), "0 1 2 3 4 5");
  const Rows before = GridRows();
  Click(Left(5));  // row 5 has the widgets that row 11 had
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(GridRows(), before);
  EXPECT_EQ(Left(5).text(), "");
}

TEST_F(EditorFocus, UndoWorksInARowThatStaysInView) {
  Open();
  MakeRows(12);
  Click(Left(7));
  Type(Left(7), "typed");
  Wheel(Left(8), -1);
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(grid_.rows[7].txtLinks.text, "");
}

TEST_F(EditorFocus, TheTabOrderFollowsTheRowsThatAreScrolled) {
  OpenLongList();
  Wheel(Left(8), -1);
  Click(Right(5));
  Press(Qt::Key_Tab);
  EXPECT_EQ(Focus(), "txtLinks_6");
  Press(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(Focus(), "txtRechts_5");
  Click(Right(8));
  Press(Qt::Key_Tab);
  EXPECT_EQ(Focus(), "cmdJoker");
}

TEST_F(EditorFocus, TextOutsideTheCodePageIsRefused) {
  Open();
  Left(0).insert(QString(QChar(0x4E2D)));
  Settle();
  EXPECT_EQ(grid_.rows[0].txtLinks.text, "");
  EXPECT_EQ(Left(0).text(), "");
}

TEST_F(EditorFocus, WhatIsTypedWhileAListIsReadIsNotTakenOver) {
  Open();
  grid_.importing = true;
  QTest::keyClicks(&Left(0), "a");
  grid_.importing = false;
  Settle();
  EXPECT_EQ(GridRows(), (Rows{{"", ""}}));
  EXPECT_EQ(Left(0).text(), "");
}

}  // namespace
}  // namespace morvex::test
