// Text pasted into the cells of the list editor or dropped on them.
#include <QClipboard>
#include <QDropEvent>
#include <QMimeData>
#include <QToolTip>
#include <QUrl>

#include "tests/ui/qt/editor_test.h"

namespace morvex::test {
namespace {

class EditorPaste : public EditorTest {
 protected:
  ~EditorPaste() override { QToolTip::hideText(); }

  void Paste(QWidget& cell, const QString& text) {
    QApplication::clipboard()->setText(text);
    Press(cell, Qt::Key_V, Qt::ControlModifier);
  }
  // Drags data over the cell and drops the data. Returns whether the cell accepted the data.
  bool Drop(QWidget& cell, QMimeData& dragged) {
    const QPoint place = cell.rect().center();
    QDragEnterEvent enter(place, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QApplication::sendEvent(&cell, &enter);
    QDragMoveEvent move(place, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    move.ignore();
    QApplication::sendEvent(&cell, &move);
    QDropEvent drop(place, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    drop.ignore();
    QApplication::sendEvent(&cell, &drop);
    Settle();
    return enter.isAccepted() || move.isAccepted() || drop.isAccepted();
  }
};

TEST_F(EditorPaste, AFileThatIsDroppedOnACellIsRefused) {
  Open();
  QMimeData file;
  file.setUrls({QUrl::fromLocalFile("/s/one.txt")});
  file.setText("file:///s/one.txt");
  for (ByteLineEdit* cell : {&Left(0), &Right(0)}) {
    EXPECT_FALSE(Drop(*cell, file));
  }
  EXPECT_EQ(GridRows(), (Rows{{"", ""}})) << "its address became a text";
}

TEST_F(EditorPaste, ATextThatIsDroppedOnACellIsTaken) {
  Open();
  QMimeData text;
  text.setText("Jansen");
  EXPECT_TRUE(Drop(Left(0), text));
  EXPECT_EQ(GridRows(), (Rows{{"Jansen", ""}}));
}

TEST_F(EditorPaste, TwoColumnsBecomeSuccessiveRows) {
  Open();
  Paste(Left(0), "Jansen\tPerson A\r\nPiet\tPerson B\r\n");
  EXPECT_EQ(GridRows(), (Rows{{"Jansen", "Person A"}, {"Piet", "Person B"}}));
  EXPECT_EQ(ShownRows(), GridRows());
  EXPECT_EQ(Focus(), "txtRechts_1");
  EXPECT_EQ(Right(1).cursorPosition(), 8);
  EXPECT_EQ(grid_.focused_cell, (CellAddress{Column::kRight, 1}));
}

TEST_F(EditorPaste, MoreRowsThanAreSeenAreShownToTheirEndAndCanBeTypedOn) {
  Open();
  QString text;
  for (int i = 0; i < 20; ++i) text += QString("l%1\tr%1\n").arg(i);
  Paste(Left(0), text);
  EXPECT_EQ(grid_.LastRow, 19);
  EXPECT_EQ(RowsInView(), "14 15 16 17 18 19");
  EXPECT_EQ(Focus(), "txtRechts_19");
  Type(*QApplication::focusWidget(), "x");
  EXPECT_EQ(grid_.rows[19].txtRechts.text, "r19x");
}

TEST_F(EditorPaste, ColumnsThatAreDroppedBecomeRowsToo) {
  Open();
  QMimeData text;
  text.setText("a\tb\nc\td\n");
  Drop(Left(0), text);
  EXPECT_EQ(GridRows(), (Rows{{"a", "b"}, {"c", "d"}}));
}

TEST_F(EditorPaste, RowsThatWouldOverwriteATextAreRefusedAndTheTipNamesItsRow) {
  Open();
  TypeRows({{"", ""}, {"", ""}, {"", "kept"}});
  const Rows before = GridRows();
  Paste(Left(0), "a\tb\nc\td\ne\tf\n");
  EXPECT_EQ(GridRows(), before);
  EXPECT_TRUE(Left(0).toolTip().contains("row 3 holds a text")) << Left(0).toolTip().toStdString();
  Type(Left(1), "x");
  Paste(Left(1), "a\tb");
  EXPECT_EQ(grid_.rows[1].txtLinks.text, "x");
  EXPECT_TRUE(Left(1).toolTip().contains("row 2 holds a text")) << Left(1).toolTip().toStdString();
}

TEST_F(EditorPaste, OtherLineBreaksAndTabsAreRefusedAndTheTipNamesTheFirst) {
  Open();
  Type(Left(0), "Jan");
  const std::vector<std::pair<const char*, const char*>> cases = {
      {"a\nb", "line break (LF)"},
      {"a\r\nb\tc", "line break (CR LF)"},
      {"a\tb\tc", "a tab"},
      {"a\tb\tc\nd", "a tab"}};
  for (const auto& [text, named] : cases) {
    Paste(Left(0), text);
    EXPECT_EQ(GridRows(), (Rows{{"Jan", ""}})) << text;
    EXPECT_TRUE(Left(0).toolTip().contains(named))
        << text << ": " << Left(0).toolTip().toStdString();
  }
}

TEST_F(EditorPaste, ACharacterInTheColumnsThatCannotBeWrittenRefusesThemAll) {
  system_.codec = TextCodec::kUtf8;
  Open();
  Paste(Left(0), QString("a\tb\nc\t") + QChar(0xD800));
  EXPECT_EQ(GridRows(), (Rows{{"", ""}}));
  EXPECT_TRUE(Left(0).toolTip().contains("U+D800")) << Left(0).toolTip().toStdString();
  Paste(Left(0), QString("a\t") + QChar(u'\0'));
  EXPECT_EQ(GridRows(), (Rows{{"", ""}}));
  EXPECT_TRUE(Left(0).toolTip().contains("NUL")) << Left(0).toolTip().toStdString();
}

TEST_F(EditorPaste, ATabAloneIsAText) {
  Open();
  Type(Left(0), "ab");
  Left(0).setCursorPosition(1);
  Paste(Left(0), "\t");
  EXPECT_EQ(GridRows(), (Rows{{"a\tb", ""}}));
}

TEST_F(EditorPaste, ATextWithTabsThatWasThereCanBeEditedAndBroughtBack) {
  Open();
  grid_.rows[0].txtLinks.text = "a\tb\tc";
  grid_.changes.Changed();
  Settle();
  Press(Left(0), Qt::Key_End);
  Type(Left(0), "d");
  EXPECT_EQ(GridRows(), (Rows{{"a\tb\tcd", ""}}));
  Left(0).selectAll();
  Press(Left(0), Qt::Key_Delete);
  ASSERT_EQ(GridRows(), (Rows{{"", ""}}));
  Press(Left(0), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(GridRows(), (Rows{{"a\tb\tcd", ""}}));
}

TEST_F(EditorPaste, ALineThatWasCopiedWithItsEndIsTakenWithoutIt) {
  Open();
  Type(Left(0), "()");
  Left(0).setCursorPosition(1);
  Paste(Left(0), "Jansen\r\n");
  EXPECT_EQ(GridRows(), (Rows{{"(Jansen)", ""}}));
}

}  // namespace
}  // namespace morvex::test
