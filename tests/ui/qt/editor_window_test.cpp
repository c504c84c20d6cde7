// The list editor's window: its controls, their positions, its rows and keys.
#include "tests/ui/qt/editor_test.h"

namespace morvex::test {
namespace {

class EditorWindow : public EditorTest {};

// Converts a twip, 1/1440 inch, to pixels at the tests' 96 dots per inch.
int Px(int twips) { return qRound(twips * 96 / 1440.0); }

std::string HeadingText() {
  return std::string(7, ' ') + "replace:" + std::string(81, ' ') + "by:";
}

TEST_F(EditorWindow, OpensWithOneEmptyRowNoScrollBarAndTheMainWindowHidden) {
  Open();
  EXPECT_TRUE(Editor().isVisible());
  EXPECT_FALSE(desktop_->main_window().isVisible());
  EXPECT_EQ(RowsInView(), "0");
  EXPECT_EQ(Left(0).text(), "");
  EXPECT_FALSE(Bar().isVisible());
  EXPECT_EQ(grid_.FocusCell, "");
}

TEST_F(EditorWindow, TheListPictureOfTheMainWindowOpensIt) {
  Start();
  Click(Find<QWidget>(desktop_->main_window(), "imList"));
  EXPECT_TRUE(Editor().isVisible());
  EXPECT_FALSE(desktop_->main_window().isVisible());
}

TEST_F(EditorWindow, TheTitleIsTheCaptionWithAllItsBlanks) {
  EXPECT_EQ(HeadingText().size(), 99U);
  EXPECT_EQ(Open().windowTitle().toStdString(), HeadingText());
}

TEST_F(EditorWindow, TheTwoWordsOfTheCaptionStandAboveTheirColumns) {
  Open();
  int headings = 0;
  for (const QLabel* label : Editor().findChildren<QLabel*>()) {
    const bool is_left = label->text() == "replace:";
    if (!is_left && label->text() != "by:") continue;
    ++headings;
    EXPECT_EQ(label->x(), (is_left ? Left(0) : Right(0)).x());
    EXPECT_LE(label->geometry().bottom(), Left(0).y());
    EXPECT_TRUE(label->isVisible());
  }
  EXPECT_EQ(headings, 2);
}

TEST_F(EditorWindow, EveryButtonHasItsCaptionAndToolTip) {
  Start();
  program_.settings.gJoker = '*';
  OpenAgain();
  struct Expected {
    const char* name;
    const char* caption;
    const char* tool_tip;
  };
  for (const Expected& button : {Expected{"cmdJoker", "*", "wildcard"},
                                 {"cmdMirror", "<-|->", "mirror"},
                                 {"cmdCRLF", "[CRLF]", "carriage return, line feed"},
                                 {"cmdReset", "Reset", "clear entries"},
                                 {"cmdDeleteEmpty", "X", "clear empty rows"},
                                 {"cmdImport", "Import", "from file"},
                                 {"cmdSaveList", "Save", "to file"},
                                 {"cmdOK", "OK", "use the above replacements"}}) {
    QPushButton& widget = Command(button.name);
    EXPECT_EQ(widget.text().remove('&'), button.caption);
    EXPECT_EQ(widget.toolTip(), button.tool_tip) << button.name;
    EXPECT_TRUE(widget.isVisible() && widget.isEnabled()) << button.name;
    EXPECT_FALSE(widget.accessibleName().isEmpty()) << button.name;
    EXPECT_GE(widget.width(), widget.fontMetrics().horizontalAdvance(button.caption) + 8);
  }
}

TEST_F(EditorWindow, AWildcardThatMarksMnemonicsElsewhereIsShownAsItIs) {
  Start();
  program_.settings.gJoker = '&';
  OpenAgain();
  EXPECT_EQ(Command("cmdJoker").text(), "&&");  // Qt shows "&&" as "&"
}

TEST_F(EditorWindow, AWildcardBeyondAsciiIsShownInTheCodePage) {
  Start();
  program_.settings.gJoker = 0x80;
  OpenAgain();
  EXPECT_EQ(Command("cmdJoker").text(), QString(QChar(0x20AC)));
}

TEST_F(EditorWindow, TheWildcardButtonShowsTheWildcardOfEachOpening) {
  Start();
  program_.settings.gJoker = '*';
  OpenAgain();
  Click(Command("cmdOK"));
  program_.settings.gJoker = '%';
  OpenAgain();
  EXPECT_EQ(Command("cmdJoker").text(), "%");
}

TEST_F(EditorWindow, CellsStandWhereTheirTwipsSay) {
  Open();
  EXPECT_EQ(Left(0).geometry(), QRect(QPoint(24, 24), QPoint(304, 48)));
  EXPECT_EQ(Right(0).geometry(), QRect(QPoint(304, 24), QPoint(584, 48)));
  EXPECT_EQ(Editor().width(), Px(grid_.width));
  EXPECT_EQ(Editor().height(), Px(grid_.height));
}

TEST_F(EditorWindow, DigitsWithAltStayInTheCellThoughTheyComeAsArrows) {
  Open();
  MakeRows(2);
  Click(Left(0));
  QTest::keyClick(&Left(0), Qt::Key_Down, Qt::AltModifier | Qt::KeypadModifier);
  EXPECT_TRUE(Left(0).hasFocus());
  QTest::keyClick(&Left(0), Qt::Key_Down);
  EXPECT_TRUE(Left(1).hasFocus());
}

TEST_F(EditorWindow, FiveEntersGiveSixRowsEachMakingTheWindowARowTaller) {
  Open();
  const int lowest_top = Command("cmdOK").y();
  for (int rows = 2; rows <= 6; ++rows) {
    MakeRows(rows);
    EXPECT_EQ(Editor().height(), Px(1515 + (rows - 1) * 360));
    EXPECT_EQ(Command("cmdOK").y(), lowest_top + (rows - 1) * 24);
    EXPECT_EQ(Left(rows - 1).y(), 24 * rows);
    EXPECT_FALSE(Bar().isVisible());
  }
  EXPECT_EQ(RowsInView(), "0 1 2 3 4 5");
}

TEST_F(EditorWindow, TheSixthEnterKeepsTheHeightAndScrollsTheTopRowOut) {
  Open();
  MakeRows(6);
  const int height = Editor().height();
  MakeRows(7);
  EXPECT_EQ(Editor().height(), height);
  EXPECT_EQ(RowsInView(), "1 2 3 4 5 6");
  EXPECT_EQ(Left(1).y(), 24);
  EXPECT_EQ(Left(6).y(), 144);
  EXPECT_TRUE(Bar().isVisible());
  EXPECT_EQ(Bar().minimum(), 1);
  EXPECT_EQ(Bar().maximum(), 7);
  EXPECT_EQ(Bar().value(), 7);
}

TEST_F(EditorWindow, ThereAreNeverMoreThanSixPairsOfCells) {
  Open();
  MakeRows(1);
  EXPECT_EQ(Editor().findChildren<ByteLineEdit*>().size(), 2);
  MakeRows(20);
  EXPECT_EQ(Editor().findChildren<ByteLineEdit*>().size(), 12);
  EXPECT_EQ(RowsInView(), "14 15 16 17 18 19");
}

TEST_F(EditorWindow, GrowingItStaysOnItsScreen) {
  Open();
  const QRect screen = Editor().screen()->availableGeometry();
  Editor().move(30, screen.bottom() - Editor().frameGeometry().height() - 20);
  Settle();
  MakeRows(6);
  EXPECT_EQ(Editor().frameGeometry().bottom(), screen.bottom());
}

TEST_F(EditorWindow, AWindowThatWasPutPartlyBesideTheScreenStaysThereWhileItDoesNotGrow) {
  Open();
  MakeRows(6);
  const QPoint place(30, Editor().screen()->availableGeometry().bottom() - 50);
  Editor().move(place);
  Type(Left(5), "a");
  EXPECT_EQ(Editor().pos(), place);
}

TEST_F(EditorWindow, EnterInARowThatIsNotTheLastAddsNone) {
  Open();
  MakeRows(3);
  Press(Left(1), Qt::Key_Return);
  EXPECT_EQ(grid_.LastRow, 2);
  EXPECT_EQ(RowsInView(), "0 1 2");
}

TEST_F(EditorWindow, TheEnterKeyOfTheNumberPadCountsToo) {
  Open();
  Press(Left(0), Qt::Key_Enter);
  EXPECT_EQ(RowsInView(), "0 1");
}

TEST_F(EditorWindow, EnterMovesTheFocusToTheNewLeftCell) {
  Open();
  Press(Left(0), Qt::Key_Return);
  EXPECT_EQ(Focus(), "txtLinks_1");
  Press(Right(1), Qt::Key_Return);
  EXPECT_EQ(Focus(), "txtLinks_2");
}

TEST_F(EditorWindow, WhatIsTypedRightAfterEnterGoesIntoTheNewRow) {
  Open();
  QTest::keyClicks(&Left(0), "a");
  QTest::keyClick(&Left(0), Qt::Key_Return);
  QTest::keyClicks(QApplication::focusWidget(), "b");  // before the event loop runs again
  EXPECT_EQ(GridRows(), (Rows{{"a", ""}, {"b", ""}}));
}

TEST_F(EditorWindow, EnterInTheSixthLeftCellLeavesTheFocusInItsRow) {
  Open();
  MakeRows(6);
  Click(Left(5));
  Press(Qt::Key_Return);
  EXPECT_EQ(Focus(), "txtLinks_5");
  EXPECT_EQ(Left(5).y(), 120);
  EXPECT_EQ(grid_.focused_cell, (CellAddress{Column::kLeft, 5}));
}

TEST_F(EditorWindow, EnterInTheSixthRightCellMovesTheFocusToTheNewLeftCell) {
  Open();
  MakeRows(6);
  Click(Right(5));
  Press(Qt::Key_Return);
  EXPECT_EQ(Focus(), "txtLinks_6");
}

TEST_F(EditorWindow, UpAndDownStayInTheirColumn) {
  Open();
  MakeRows(3);
  Click(Right(1));
  Press(Qt::Key_Down);
  EXPECT_EQ(Focus(), "txtRechts_2");
  Press(Qt::Key_Up);
  Press(Qt::Key_Up);
  EXPECT_EQ(Focus(), "txtRechts_0");
  Click(Left(1));
  Press(Qt::Key_Up);
  EXPECT_EQ(Focus(), "txtLinks_0");
}

TEST_F(EditorWindow, UpInTheFirstAndDownInTheLastRowDoNothing) {
  Open();
  MakeRows(2);
  Click(Left(0));
  Press(Qt::Key_Up);
  EXPECT_EQ(Focus(), "txtLinks_0");
  Click(Right(1));
  Press(Qt::Key_Down);
  EXPECT_EQ(Focus(), "txtRechts_1");
  EXPECT_EQ(grid_.LastRow, 1);
}

TEST_F(EditorWindow, UpAndDownScrollTheRowThatTakesTheFocusIntoView) {
  Open();
  MakeRows(8);
  Click(Bar());
  Bar().setValue(6);
  Settle();
  ASSERT_EQ(RowsInView(), "0 1 2 3 4 5");
  Click(Left(5));
  Press(Qt::Key_Down);
  EXPECT_EQ(Focus(), "txtLinks_6");
  EXPECT_EQ(RowsInView(), "1 2 3 4 5 6");
  EXPECT_EQ(Bar().value(), 7);
  for (int i = 0; i < 6; ++i) Press(Qt::Key_Up);
  EXPECT_EQ(Focus(), "txtLinks_0");
  EXPECT_EQ(RowsInView(), "0 1 2 3 4 5");
}

TEST_F(EditorWindow, TabRunsThroughTheRowsThenTheButtonsThenTheScrollBar) {
  Open();
  MakeRows(8);
  Click(Left(2));
  std::string order = Focus();
  for (int i = 0; i < 21; ++i) {
    Press(Qt::Key_Tab);
    order += " " + Focus();
  }
  EXPECT_EQ(order,
            "txtLinks_2 txtRechts_2 txtLinks_3 txtRechts_3 txtLinks_4 txtRechts_4 txtLinks_5 "
            "txtRechts_5 txtLinks_6 txtRechts_6 txtLinks_7 txtRechts_7 cmdJoker cmdCRLF cmdMirror "
            "cmdReset cmdDeleteEmpty cmdImport cmdSaveList cmdOK VScroll1 txtLinks_2");
}

TEST_F(EditorWindow, TheFirstCellHasTheFocusWhenTheWindowOpens) {
  Open();
  EXPECT_EQ(Focus(), "txtLinks_0");
  EXPECT_EQ(grid_.focused_cell, (CellAddress{Column::kLeft, 0}));
}

TEST_F(EditorWindow, ItsCloseBoxBringsTheMainWindowBack) {
  Open();
  Editor().close();
  Settle();
  EXPECT_FALSE(Editor().isVisible());
  EXPECT_TRUE(desktop_->main_window().isVisible());
  EXPECT_FALSE(grid_.loaded);
}

TEST_F(EditorWindow, ClosedAndReopenedItHasOneEmptyRow) {
  Open();
  TypeRows({{"a", "b"}, {"c", "d"}});
  Editor().close();
  Settle();
  OpenAgain();
  EXPECT_EQ(RowsInView(), "0");
  EXPECT_EQ(Left(0).text(), "");
  EXPECT_EQ(Editor().height(), Px(1515));
}

TEST_F(EditorWindow, ConfirmedAndReopenedItHasItsRows) {
  Open();
  TypeRows({{"a", "b"}, {"c", "d"}});
  Click(Command("cmdOK"));
  EXPECT_FALSE(Editor().isVisible());
  EXPECT_TRUE(desktop_->main_window().isVisible());
  OpenAgain();
  EXPECT_EQ(ShownRows(), (Rows{{"a", "b"}, {"c", "d"}}));
  EXPECT_EQ(grid_.FocusCell, "Rechts_1");
}

TEST_F(EditorWindow, AWiderWindowHasWiderCellsAndTheSameHeight) {
  Open();
  MakeRows(7);
  const QRect left = Left(6).geometry();
  const QRect right = Right(6).geometry();
  const int ok = Command("cmdOK").x();
  const int bar = Bar().x();
  Editor().resize(Editor().width() + 200, Editor().height() + 100);
  Settle();
  EXPECT_EQ(Left(6).geometry(), left.adjusted(0, 0, 100, 0));
  EXPECT_EQ(Right(6).geometry(), right.adjusted(100, 0, 200, 0));
  EXPECT_EQ(Command("cmdOK").x(), ok + 200);
  EXPECT_EQ(Bar().x(), bar + 200);
  EXPECT_EQ(Editor().height(), Px(grid_.height));
  Press(Left(6), Qt::Key_Return);
  EXPECT_EQ(Editor().width(), Px(grid_.width) + 200) << "a new row changed the width";
}

TEST_F(EditorWindow, ItGetsNoNarrowerThanItsTwips) {
  Open();
  Editor().resize(100, 20);
  Settle();
  EXPECT_EQ(Editor().width(), Px(grid_.width));
  EXPECT_EQ(Editor().height(), Px(grid_.height));
}

TEST_F(EditorWindow, ALargerFontMakesRoomForItsLetters) {
  Open();
  QFont large = Editor().font();
  large.setPixelSize(32);
  Editor().setFont(large);
  Settle();
  for (const char* name : {"cmdReset", "cmdImport", "cmdCRLF", "cmdMirror"}) {
    const QPushButton& button = Command(name);
    EXPECT_GT(button.width(), button.fontMetrics().horizontalAdvance(button.text().remove('&')));
    EXPECT_GE(button.height(), button.fontMetrics().height()) << name;
  }
  EXPECT_GE(Left(0).height(), Left(0).fontMetrics().height());
  EXPECT_LT(Left(0).geometry().bottom(), Command("cmdReset").y());
}

}  // namespace
}  // namespace morvex::test
