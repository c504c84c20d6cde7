// The buttons of the list editor, and the dialogs and messages that they show.
#include <QFile>
#include <QTemporaryDir>

#include "tests/ui/qt/editor_test.h"

namespace morvex::test {
namespace {

constexpr const char* kScratchFile = "/program/temp.dat";

class EditorCommands : public EditorTest {
 protected:
  EditorWindowWidget& OpenWithJoker(std::uint8_t joker) {
    Start();
    program_.settings.gJoker = joker;
    return OpenAgain();
  }
  // Creates a list file both on disk, where the dialog looks for it, and in memory, where the
  // program reads it.
  std::string AddListFile(const std::string& bytes) {
    const std::string path = NativePath(disk_.filePath("list.txt"));
    QFile file(QString::fromStdString(path));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray::fromStdString(bytes));
    files_.AddFile(path, bytes);
    return path;
  }
  std::string NewPath(const char* name) {
    files_.AddFolder(NativePath(disk_.path()));
    return NativePath(disk_.filePath(name));
  }

  QTemporaryDir disk_;
};

TEST_F(EditorCommands, TheLineBreakTokenGoesToTheCaret) {
  Open();
  Type(Left(0), "Jansen");
  Left(0).setCursorPosition(3);
  Click(Command("cmdCRLF"));
  EXPECT_EQ(Left(0).text(), "Jan[CRLF]sen");
  EXPECT_EQ(Left(0).cursorPosition(), 12);
  EXPECT_EQ(Focus(), "txtLinks_0");
}

TEST_F(EditorCommands, TheLineBreakTokenGoesBehindASelectionWhichStays) {
  Open();
  Type(Right(0), "one two three");
  Click(Right(0));
  Right(0).setSelection(4, 3);
  Click(Command("cmdCRLF"));
  EXPECT_EQ(Right(0).text(), "one two[CRLF] three");
  EXPECT_EQ(Focus(), "txtRechts_0");
}

TEST_F(EditorCommands, WhatIsTypedAfterTheTokenGoesBehindTheText) {
  Open();
  Type(Left(0), "ab");
  Left(0).setCursorPosition(1);
  QTest::mouseClick(&Command("cmdCRLF"), Qt::LeftButton);
  QTest::keyClicks(QApplication::focusWidget(), "c");  // before the event loop runs again
  EXPECT_EQ(GridRows(), (Rows{{"a[CRLF]bc", ""}}));
}

TEST_F(EditorCommands, TheTokenPressedTwiceStandsTwice) {
  Open();
  Click(Command("cmdCRLF"));
  Click(Command("cmdCRLF"));
  EXPECT_EQ(Left(0).text(), "[CRLF][CRLF]");
}

TEST_F(EditorCommands, AMnemonicActsOnTheCellThatIsBeingEdited) {
  Open();
  MakeRows(2);
  Click(Left(0));
  Click(Left(1));
  Type(Left(1), "x");
  QTest::keyClick(&Left(1), Qt::Key_C, Qt::AltModifier);
  EXPECT_EQ(GridRows(), (Rows{{"", ""}, {"x[CRLF]", ""}}));
}

TEST_F(EditorCommands, WhatIsTypedRightAfterAMnemonicIsNotLost) {
  Open();
  Type(Left(0), "Piet");
  QTest::keyClick(&Left(0), Qt::Key_C, Qt::AltModifier);
  QTest::keyClicks(QApplication::focusWidget(), "de Vries");  // before the event loop runs again
  EXPECT_EQ(GridRows(), (Rows{{"Piet[CRLF]de Vries", ""}}));
}

TEST_F(EditorCommands, EnterPressesTheButtonWithTheFocus) {
  Open();
  TypeRows({{"a", "b"}});
  Command("cmdMirror").setFocus();
  Press(Command("cmdMirror"), Qt::Key_Return);
  EXPECT_EQ(GridRows(), (Rows{{"b", "a"}}));
}

TEST_F(EditorCommands, TheWildcardGoesIntoTheLeftCell) {
  OpenWithJoker('*');
  Type(Left(0), "Jansen");
  Left(0).setCursorPosition(3);
  Click(Command("cmdJoker"));
  EXPECT_EQ(Left(0).text(), "Jan*sen");
  EXPECT_EQ(Left(0).cursorPosition(), 7);
  EXPECT_EQ(Focus(), "txtLinks_0");
}

TEST_F(EditorCommands, TheWildcardNeverGoesIntoARightCell) {
  OpenWithJoker('*');
  Click(Right(0));
  Type(Right(0), "City");
  Click(Command("cmdJoker"));
  EXPECT_EQ(GridRows(), (Rows{{"", "City"}}));
}

TEST_F(EditorCommands, ARememberedCellThatIsGoneLeavesEveryCellAsItIs) {
  Open();
  MakeRows(4);
  Click(Left(3));
  Click(Command("cmdReset"));
  grid_.focused_cell.reset();
  Command("cmdCRLF").setFocus();
  grid_.FocusCell = "Links_3";
  Click(Command("cmdCRLF"));
  EXPECT_EQ(GridRows(), (Rows{{"", ""}}));
}

TEST_F(EditorCommands, MirrorSwapsTheColumnsAndTwiceRestoresThem) {
  Open();
  TypeRows({{"a", "b"}, {"d", ""}});
  Click(Command("cmdMirror"));
  EXPECT_EQ(ShownRows(), (Rows{{"b", "a"}, {"", "d"}}));
  Click(Command("cmdMirror"));
  EXPECT_EQ(ShownRows(), (Rows{{"a", "b"}, {"d", ""}}));
}

TEST_F(EditorCommands, MirrorMarksTextsThatAreTooLongInTwoLanguages) {
  Open();
  TypeRows({{"abcde", "fghij"}});
  grid_.longest_text = 5;
  Click(Command("cmdMirror"));
  EXPECT_EQ(Left(0).toolTip(), "invoer te lang (>2147483647)");
  EXPECT_EQ(Right(0).toolTip(), "input too long (>2147483647)");
  const QColor plain = Editor().palette().color(QPalette::Text);
  EXPECT_NE(Left(0).palette().color(QPalette::Text), plain);
  EXPECT_NE(Right(0).palette().color(QPalette::Text), plain);
}

TEST_F(EditorCommands, ResetLeavesOneEmptyRowAndTheTablesAsTheyWere) {
  Open();
  TypeRows({{"a", "b"}, {"c", "d"}, {"e", "f"}});
  const std::uint64_t tables_before = program_.tables.version;
  Click(Command("cmdReset"));
  EXPECT_EQ(ShownRows(), (Rows{{"", ""}}));
  EXPECT_EQ(Editor().height(), qRound(1515 * 96 / 1440.0));
  EXPECT_EQ(grid_.FocusCell, "Rechts_2");
  EXPECT_EQ(Focus(), "txtLinks_0");
  EXPECT_EQ(grid_.SavedLinks, std::vector<std::string>{""});
  EXPECT_EQ(grid_.SavedRechts, std::vector<std::string>{""});
  EXPECT_EQ(program_.tables.version, tables_before);
}

TEST_F(EditorCommands, ResetHidesTheScrollBarOfALongList) {
  Open();
  MakeRows(9);
  Click(Command("cmdReset"));
  EXPECT_FALSE(Bar().isVisible());
  EXPECT_EQ(RowsInView(), "0");
  EXPECT_EQ(Left(0).y(), 24);
}

TEST_F(EditorCommands, ResetAndOkApplyAnEmptyList) {
  Open();
  TypeRows({{"a", "b"}});
  Click(Command("cmdReset"));
  Click(Command("cmdOK"));
  EXPECT_EQ(program_.tables.LeftTexts, std::vector<std::string>{""});
  OpenAgain();
  EXPECT_EQ(ShownRows(), (Rows{{"", ""}}));
}

TEST_F(EditorCommands, ClearEmptyRowsKeepsTheOthersInTheirOrder) {
  Open();
  TypeRows({{"a", "b"}, {"", ""}, {"d", "e"}, {"", ""}});
  Click(Command("cmdDeleteEmpty"));
  EXPECT_EQ(ShownRows(), (Rows{{"a", "b"}, {"d", "e"}}));
  EXPECT_EQ(program_.settings.SubstitutieFile, kScratchFile);
}

TEST_F(EditorCommands, ClearEmptyRowsOfAnEmptyListLeavesOneEmptyRow) {
  Open();
  MakeRows(3);
  Click(Command("cmdDeleteEmpty"));
  EXPECT_EQ(ShownRows(), (Rows{{"", ""}}));
  EXPECT_EQ(Editor().height(), qRound(1515 * 96 / 1440.0));
}

TEST_F(EditorCommands, ClearEmptyRowsSaysThatItsScratchFileCannotBeWrittenAndChangesNothing) {
  Open();
  const Rows rows = {{"a", "b"}, {"", ""}, {"d", "e"}};
  TypeRows(rows);
  files_.fail = [](const std::string&, const std::string& path) {
    return path.starts_with("/program/temp") ? ErrorNumber::kPermissionDenied : ErrorNumber::kNone;
  };
  QString message;
  OnMessage([&](QMessageBox& box) {
    message = box.text();
    box.accept();
  });
  Click(Command("cmdDeleteEmpty"));
  EXPECT_TRUE(message.startsWith("/program/temp.dat\n")) << message.toStdString();
  EXPECT_EQ(ShownRows(), rows);
}

TEST_F(EditorCommands, OkMarksTheCellsWithAWildcardAndShowsTheMainWindow) {
  OpenWithJoker('*');
  TypeRows({{"a", "b"}, {"c", "d"}, {"e*", "f"}});
  Click(Command("cmdOK"));
  EXPECT_FALSE(Editor().isVisible());
  EXPECT_TRUE(desktop_->main_window().isVisible());
  EXPECT_EQ(grid_.SavedLinks, (std::vector<std::string>{"a", "c", "e*"}));
  EXPECT_EQ(grid_.SavedRechts, (std::vector<std::string>{"b", "d", "f"}));
  EXPECT_EQ(program_.tables.JokerLeft, (std::vector<bool>{false, false, true}));
  EXPECT_EQ(program_.tables.JokerRight, (std::vector<bool>{false, false, false}));
  EXPECT_EQ(program_.tables.LeftTexts, (std::vector<std::string>{"a", "c", "e*"}));
}

TEST_F(EditorCommands, OkWithoutEverLeavingTheCellTakesWhatIsTyped) {
  Open();
  Type(Left(0), "a");
  Click(Command("cmdOK"));
  EXPECT_EQ(grid_.SavedLinks, std::vector<std::string>{"a"});
  EXPECT_EQ(grid_.FocusCell, "Links_0");
  EXPECT_EQ(grid_.CaretPos, 1U);
}

TEST_F(EditorCommands, ImportReadsTheChosenFile) {
  Open();
  const std::string path = AddListFile("a|b\r\nc|d||\r\n");
  Choose(path);
  Click(Command("cmdImport"));
  EXPECT_EQ(ShownRows(), (Rows{{"a", "b"}, {"c", "d"}}));
  EXPECT_EQ(program_.settings.SubstitutieFile, path);
  EXPECT_EQ(Editor().windowTitle().simplified(), "replace: by:");
}

TEST_F(EditorCommands, ImportAsksForTextFiles) {
  Open();
  QStringList filters;
  OnFileDialog([&](QFileDialog& dialog) {
    EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptOpen);
    EXPECT_EQ(dialog.defaultSuffix(), "txt");
    filters = dialog.nameFilters();
    dialog.reject();
  });
  Click(Command("cmdImport"));
  EXPECT_EQ(filters, QStringList{"Text (*.txt)"});
}

TEST_F(EditorCommands, ImportCancelledLeavesTheEditorEmpty) {
  Open();
  TypeRows({{"a", "b"}, {"c", "d"}});
  CancelDialog();
  Click(Command("cmdImport"));
  EXPECT_EQ(ShownRows(), (Rows{{"", ""}}));
  EXPECT_TRUE(Editor().isVisible());
  Activate();
  EXPECT_EQ(Focus(), "txtLinks_0");
}

TEST_F(EditorCommands, ImportSaysOneMomentPleaseInTitleAndWindowWhileItReads) {
  Open();
  system_.step = std::chrono::milliseconds(15);  // events are handled after each row
  std::string list;
  for (int i = 0; i < 5000; ++i) list += "left|right\r\n";
  const std::string path = AddListFile(list);
  QString title;
  bool is_in_window = false;
  bool has_waited = false;
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, [&] {
    if (!grid_.importing) return;
    // A window is drawn at most thirty times a second. Without this pause, a fast machine could
    // read the whole list before the window is drawn.
    if (!has_waited) QTest::qSleep(50);
    has_waited = true;
    title = Editor().windowTitle();
    for (const QLabel* label : Editor().findChildren<QLabel*>()) {
      is_in_window = is_in_window || label->text() == "one moment please ...";
    }
  });
  watch.start(0);
  Choose(path);
  Click(Command("cmdImport"));
  EXPECT_EQ(title, QString(9, ' ') + "one moment please ...");
  EXPECT_TRUE(is_in_window);
  EXPECT_EQ(grid_.LastRow, 5000);
  EXPECT_EQ(Editor().windowTitle().simplified(), "replace: by:");
}

TEST_F(EditorCommands, AfterALongImportTheEndIsInViewAndACellOfItHasTheFocus) {
  Open();
  system_.step = std::chrono::milliseconds(15);
  std::string list;
  for (int i = 0; i < 50; ++i) list += "l" + std::to_string(i) + "|r\r\n";
  Choose(AddListFile(list + "|||\r\n"));
  Click(Command("cmdImport"));
  EXPECT_EQ(grid_.LastRow, 49);
  EXPECT_EQ(RowsInView(), "44 45 46 47 48 49");
  EXPECT_EQ(Left(49).text(), "l49");
  Activate();
  EXPECT_EQ(Focus(), "txtLinks_44");
  EXPECT_TRUE(Bar().isVisible());
}

TEST_F(EditorCommands, MovingTheScrollBarWhileAListIsReadDoesNotDisplaceItsRows) {
  Open();
  system_.step = std::chrono::milliseconds(15);
  // The list has so many rows that the bar is shown long before the last row is read.
  std::string list;
  for (int i = 0; i < 30'000; ++i) list += "left|right\r\n";
  int moves = 0;
  QTimer user;
  QObject::connect(&user, &QTimer::timeout, [&] {
    if (!grid_.importing || !Bar().isVisible()) return;
    ++moves;
    Bar().setFocus();
    Bar().setValue(Bar().value() - 1);
  });
  user.start(1);
  Choose(AddListFile(list + "|||\r\n"));
  Click(Command("cmdImport"));
  user.stop();
  Activate();
  EXPECT_GT(moves, 0);
  EXPECT_EQ(RowsInView(), "29994 29995 29996 29997 29998 29999");
  EXPECT_EQ(grid_.ScrollHasFocus, Focus() == "VScroll1");
}

TEST_F(EditorCommands, TheEditorClosedWhileAListIsReadBringsTheMainWindowBack) {
  Open();
  system_.step = std::chrono::milliseconds(15);
  std::string list;
  for (int i = 0; i < 50; ++i) list += "left|right\r\n";
  QTimer closer;
  QObject::connect(&closer, &QTimer::timeout, [&] {
    if (grid_.importing) Editor().close();
  });
  closer.start(0);
  Choose(AddListFile(list));
  Click(Command("cmdImport"));
  closer.stop();
  Settle();
  EXPECT_LT(grid_.LastRow, 50) << "the list was read to its end";
  EXPECT_FALSE(Editor().isVisible());
  EXPECT_TRUE(desktop_->main_window().isVisible());
}

TEST_F(EditorCommands, SaveStartsFromTheCurrentListsFolderAndName) {
  Open();
  program_.settings.SubstitutieFile = disk_.filePath("current.txt").toStdString();
  QString folder;
  QString name;
  OnFileDialog([&](QFileDialog& dialog) {
    EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptSave);
    folder = dialog.directory().absolutePath();
    name = dialog.findChild<QLineEdit*>("fileNameEdit")->text();
    dialog.reject();
  });
  Click(Command("cmdSaveList"));
  EXPECT_EQ(folder, QDir(disk_.path()).absolutePath());
  EXPECT_EQ(name, "current.txt");
}

TEST_F(EditorCommands, SaveWritesTheListToTheChosenFile) {
  Open();
  TypeRows({{"a", "b"}, {"c", ""}});
  const std::string path = NewPath("new.txt");
  Choose(path);
  Click(Command("cmdSaveList"));
  EXPECT_EQ(files_.Bytes(path), "a|b\r\nc|||\r\n");
  EXPECT_EQ(program_.settings.SubstitutieFile, path);
  EXPECT_EQ(ShownRows(), (Rows{{"a", "b"}, {"c", ""}}));
}

TEST_F(EditorCommands, SaveCancelledWritesNothing) {
  Open();
  const std::string before = program_.settings.SubstitutieFile;
  CancelDialog();
  Click(Command("cmdSaveList"));
  EXPECT_EQ(program_.settings.SubstitutieFile, before);
}

TEST_F(EditorCommands, SaveAsksBeforeAFileIsReplacedAndCancelKeepsIt) {
  Open();
  TypeRows({{"a", "b"}});
  const std::string path = AddListFile("old");
  QString question;
  bool has_title_buttons_ok_cancel = false;
  OnMessage([&](QMessageBox& box) {
    question = box.text();
    has_title_buttons_ok_cancel =
        box.standardButtons() == (QMessageBox::Ok | QMessageBox::Cancel) &&
        box.icon() == QMessageBox::NoIcon;
    box.button(QMessageBox::Cancel)->click();
  });
  Choose(path);
  Click(Command("cmdSaveList"));
  EXPECT_EQ(question, "File already exists, replace ?");
  EXPECT_TRUE(has_title_buttons_ok_cancel);
  EXPECT_EQ(files_.Bytes(path), "old");
}

TEST_F(EditorCommands, SaveReplacesAFileAfterOk) {
  Open();
  TypeRows({{"a", "b"}});
  const std::string path = AddListFile("old");
  OnMessage([](QMessageBox& box) { box.button(QMessageBox::Ok)->click(); });
  Choose(path);
  Click(Command("cmdSaveList"));
  EXPECT_EQ(files_.Bytes(path), "a|b||\r\n");
  EXPECT_EQ(program_.settings.SubstitutieFile, path);
}

}  // namespace
}  // namespace morvex::test
