// A line edit over bytes: typed and pasted text becomes bytes or is refused with a reason.
#include "ui/qt/byte_line_edit.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QMenu>
#include <QMimeData>
#include <QTest>
#include <QToolTip>
#include <QUrl>
#include <string>
#include <vector>

#include "tests/ui/qt/variable.h"

namespace morvex::test {
namespace {

using std::string_literals::operator""s;

class ByteLine : public testing::Test {
 protected:
  explicit ByteLine(TextCodec codec = TextCodec::kUtf8) : page_(MakePage(codec)) {
    line_.ShowToolTip("own tip");
    QObject::connect(&line_, &ByteLineEdit::BytesEdited,
                     [this](const std::string& bytes) { edits_.push_back(bytes); });
    line_.show();
    line_.setFocus();
    QApplication::processEvents();
  }
  ~ByteLine() override { QToolTip::hideText(); }

  // Returns the code page of `codec` in the locale "C". In this locale, kSingleByte stands for
  // Windows-1252.
  static CodePage MakePage(TextCodec codec) {
    const Variable locale("LC_ALL", "C");
    return CodePage(codec);
  }

  void Type(const char* keys) { QTest::keyClicks(&line_, keys); }
  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&line_, key, modifiers);
  }
  // Enters text as an input method or a compose key does.
  void Write(const QString& text) {
    QInputMethodEvent event;
    event.setCommitString(text);
    QApplication::sendEvent(&line_, &event);
  }
  void Paste(const QString& text) {
    QApplication::clipboard()->setText(text);
    Key(Qt::Key_V, Qt::ControlModifier);
  }
  void Undo() { Key(Qt::Key_Z, Qt::ControlModifier); }

  CodePage page_;
  ByteLineEdit line_{page_};
  std::vector<std::string> edits_;
};

class WesternByteLine : public ByteLine {
 protected:
  WesternByteLine() : ByteLine(TextCodec::kSingleByte) {}
};

TEST_F(ByteLine, TypingTellsTheBytes) {
  Type("ab");
  Write(QString::fromUtf8("é"));
  EXPECT_EQ(line_.bytes(), "ab\xC3\xA9");
  EXPECT_EQ(edits_, (std::vector<std::string>{"a", "ab", "ab\xC3\xA9"}));
}

TEST_F(ByteLine, ALetterWithAltIsNoText) {
  Type("Jan");
  QTest::sendKeyEvent(QTest::Click, &line_, Qt::Key_Q, "q", Qt::AltModifier);
  QTest::sendKeyEvent(QTest::Click, &line_, Qt::Key_Q, "Q", Qt::AltModifier | Qt::ShiftModifier);
  EXPECT_EQ(line_.bytes(), "Jan");
}

TEST_F(ByteLine, ACharacterOfTheOtherAltKeyIsText) {
  QTest::sendKeyEvent(QTest::Click, &line_, Qt::Key_At, "@", Qt::NoModifier);
  QTest::sendKeyEvent(QTest::Click, &line_, Qt::Key_At, "@", Qt::ControlModifier | Qt::AltModifier);
  EXPECT_EQ(line_.bytes(), "@@");
}

TEST_F(ByteLine, ShowingBytesTellsNothing) {
  line_.ShowBytes("xyz");
  EXPECT_EQ(line_.text(), "xyz");
  EXPECT_EQ(line_.bytes(), "xyz");
  EXPECT_TRUE(edits_.empty());
}

TEST_F(ByteLine, ShowingBytesKeepsTheCaretsPlace) {
  line_.ShowBytes("abcdef");
  line_.setCursorPosition(2);
  line_.ShowBytes("uvwxyz");
  EXPECT_EQ(line_.cursorPosition(), 2);
  line_.ShowBytes("u");
  EXPECT_EQ(line_.cursorPosition(), 1);
}

TEST_F(ByteLine, BytesThatAreNoTextSurviveAnEditBesideThem) {
  line_.ShowBytes("a\xFF\xC3");
  Key(Qt::Key_Home);
  Type("x");
  EXPECT_EQ(line_.bytes(), "xa\xFF\xC3");
  Key(Qt::Key_End);
  Type("y");
  EXPECT_EQ(line_.bytes(), "xa\xFF\xC3y");
}

TEST_F(ByteLine, TheSelectionsEndAndTheCaretCountBytes) {
  line_.ShowBytes("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z");
  line_.setSelection(1, 2);
  EXPECT_EQ(line_.SelectionEnd(), 6U);
  line_.setCursorPosition(2);
  EXPECT_EQ(line_.SelectionEnd(), 3U);
  line_.MoveCaretTo(6);
  EXPECT_EQ(line_.cursorPosition(), 3);
  line_.MoveCaretTo(11);
  EXPECT_EQ(line_.cursorPosition(), 6);
  EXPECT_FALSE(line_.hasSelectedText());
}

TEST_F(ByteLine, ASelectionMadeBackwardsEndsBehindItsLastCharacter) {
  line_.ShowBytes("abcd");
  line_.setSelection(3, -2);
  EXPECT_EQ(line_.SelectionEnd(), 3U);
}

TEST_F(ByteLine, BackspaceTakesAWholeCharacterOfFourBytes) {
  line_.ShowBytes("a\xF0\x9F\x98\x80");
  Key(Qt::Key_End);
  Key(Qt::Key_Backspace);
  EXPECT_EQ(line_.bytes(), "a");
}

TEST_F(ByteLine, UndoAndRedoReachTheBytes) {
  Type("ab");
  Paste("cd");
  Undo();
  EXPECT_EQ(line_.bytes(), "ab");
  EXPECT_EQ(edits_.back(), "ab");
  Key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(line_.bytes(), "abcd");
}

TEST_F(ByteLine, LineBreaksInWhatIsPastedRefuseItAndTheToolTipNamesTheFirst) {
  Type("()");
  line_.setCursorPosition(1);
  edits_.clear();
  const std::vector<std::pair<const char*, const char*>> cases = {
      {"one\r\ntwo\nthree\r", "(CR LF)"}, {"a\nb", "(LF)"}, {"a\rb", "(CR)"}, {"a\n\n", "(LF)"}};
  for (const auto& [text, named] : cases) {
    Paste(text);
    QApplication::processEvents();
    EXPECT_EQ(line_.text(), "()");
    EXPECT_EQ(line_.cursorPosition(), 1);
    EXPECT_TRUE(line_.toolTip().contains(named)) << line_.toolTip().toStdString();
    EXPECT_EQ(QToolTip::text(), line_.toolTip());
  }
  EXPECT_TRUE(edits_.empty());
}

TEST_F(ByteLine, ALineThatIsPastedWithItsEndIsTakenWithoutIt) {
  Type("()");
  for (const char* text : {"one\r\n", "two\n", "three\r"}) {
    line_.setCursorPosition(1);
    Paste(text);
  }
  EXPECT_EQ(line_.text(), "(threetwoone)");
  EXPECT_EQ(line_.bytes(), "(threetwoone)");
  EXPECT_EQ(line_.cursorPosition(), 6);
  EXPECT_EQ(line_.toolTip(), "own tip");
}

TEST_F(ByteLine, NoEditEverTellsALineBreak) {
  Paste("abc\r\n");
  Paste("d\ne");
  for (const std::string& edit : edits_) {
    EXPECT_EQ(edit.find_first_of("\r\n"), std::string::npos) << edit;
  }
  EXPECT_EQ(line_.bytes(), "abc");
}

TEST_F(ByteLine, APasteOfALineWithItsEndTakesTheSelectionsPlaceAndCanBeUndone) {
  Type("abba");
  line_.setSelection(1, 2);
  Paste("bb\n");
  EXPECT_EQ(line_.bytes(), "abba");
  line_.setSelection(1, 2);
  Paste("xyz\n");
  EXPECT_EQ(line_.bytes(), "axyza");
  Undo();
  EXPECT_EQ(line_.bytes(), "abba");
}

TEST_F(ByteLine, APasteOfNothingButLineBreaksChangesNothing) {
  Type("abc");
  line_.setSelection(0, 3);
  edits_.clear();
  for (const char* text : {"\n", "\r\n", "\r\n\n"}) {
    Paste(text);
    QApplication::processEvents();
    EXPECT_EQ(line_.bytes(), "abc");
    EXPECT_EQ(line_.text(), "abc");
    EXPECT_TRUE(line_.toolTip().contains("line break")) << line_.toolTip().toStdString();
  }
  EXPECT_TRUE(edits_.empty());
}

TEST_F(ByteLine, APasteByTheMenuIsJudgedToo) {
  QApplication::clipboard()->setText("a\nb");
  line_.paste();
  QApplication::clipboard()->setText("ab\n");
  line_.paste();
  QApplication::processEvents();
  EXPECT_EQ(line_.bytes(), "ab");
}

TEST_F(ByteLine, ATabIsTextWhereNoRowsAreExpected) {
  Paste("a\tb\tc");
  EXPECT_EQ(line_.bytes(), "a\tb\tc");
}

TEST_F(ByteLine, OneOfTwoLikeCharactersOfFourBytesCanTakeTheOthersPlace) {
  line_.ShowBytes("\xF0\x9F\x98\x80");
  line_.selectAll();
  Paste(QString::fromUtf8("\xF0\x9F\x98\x81"));
  EXPECT_EQ(line_.bytes(), "\xF0\x9F\x98\x81");
}

TEST_F(ByteLine, AFileThatIsDroppedIsRefused) {
  QMimeData file;
  file.setUrls({QUrl::fromLocalFile("/s/one.txt")});
  file.setText("file:///s/one.txt");
  QDropEvent drop(QPoint(2, 2), Qt::CopyAction, &file, Qt::LeftButton, Qt::NoModifier);
  drop.ignore();
  QApplication::sendEvent(&line_, &drop);
  EXPECT_FALSE(drop.isAccepted());
  EXPECT_EQ(line_.bytes(), "");
}

TEST_F(ByteLine, NulIsRefusedAndTheToolTipSaysWhy) {
  Type("ab");
  edits_.clear();
  Write(QString("x") + QChar(u'\0'));
  EXPECT_EQ(line_.text(), "ab");
  EXPECT_EQ(line_.bytes(), "ab");
  EXPECT_TRUE(edits_.empty());
  EXPECT_TRUE(line_.toolTip().contains("NUL")) << line_.toolTip().toStdString();
}

TEST_F(ByteLine, NulThatStandsThereAlreadyIsKeptAndMayBeRemoved) {
  line_.ShowBytes("a\0b"s);
  Key(Qt::Key_End);
  Type("c");
  EXPECT_EQ(line_.bytes(), "a\0bc"s);
  line_.setCursorPosition(2);
  Key(Qt::Key_Backspace);
  EXPECT_EQ(line_.bytes(), "abc");
  Undo();
  EXPECT_EQ(line_.bytes(), "a\0bc"s);
  EXPECT_EQ(line_.toolTip(), "own tip");
}

TEST_F(ByteLine, ALoneSurrogateThatStandsForNoByteIsRefused) {
  Write(QString(QChar(0xD800)));
  EXPECT_EQ(line_.bytes(), "");
  EXPECT_NE(line_.toolTip(), "own tip");
}

TEST_F(ByteLine, ALongTextIsTakenWhole) {
  const std::string text(100000, 'x');
  Paste(QString::fromStdString(text));
  EXPECT_EQ(line_.bytes(), text);
}

TEST_F(ByteLine, AToolTipIsShownAsItIsAndNeverAsMarkup) {
  line_.ShowToolTip("<b>fat</b>");
  EXPECT_TRUE(Qt::mightBeRichText(line_.toolTip()));
  EXPECT_TRUE(line_.toolTip().contains("&lt;b&gt;fat&lt;/b&gt;"));
  line_.ShowToolTip("add: CTRL + <enter>  ;  delete:  CTRL + <delete>");
  EXPECT_EQ(line_.toolTip(), "add: CTRL + <enter>  ;  delete:  CTRL + <delete>");
  EXPECT_FALSE(Qt::mightBeRichText(line_.toolTip()));
}

TEST_F(WesternByteLine, ACharacterOfThePageIsOneByte) {
  Write(QString::fromUtf8("€"));
  EXPECT_EQ(line_.bytes(), "\x80");
}

TEST_F(WesternByteLine, TypingWhatThePageCannotWriteIsRefusedAtOnceWithAReason) {
  Type("ab");
  line_.setCursorPosition(1);
  edits_.clear();
  Write(QString::fromUtf8("日"));
  EXPECT_EQ(line_.text(), "ab");
  EXPECT_EQ(line_.bytes(), "ab");
  EXPECT_EQ(line_.cursorPosition(), 1);
  EXPECT_TRUE(edits_.empty());
  EXPECT_TRUE(line_.toolTip().contains("character set")) << line_.toolTip().toStdString();
  EXPECT_TRUE(line_.toolTip().contains(QString::fromUtf8("\"日\" (U+65E5)")))
      << line_.toolTip().toStdString();
  EXPECT_EQ(QToolTip::text(), line_.toolTip());
}

TEST_F(WesternByteLine, APasteIsRefusedAsAWholeAndTheSelectionStays) {
  Type("abc");
  line_.setSelection(1, 2);
  edits_.clear();
  Paste(QString::fromUtf8("x日y"));
  EXPECT_EQ(line_.text(), "abc");
  EXPECT_EQ(line_.selectedText(), "bc");
  EXPECT_TRUE(edits_.empty());
}

TEST_F(WesternByteLine, TheToolTipNamesTheFirstCharacterOfThoseThatAreRefused) {
  const std::vector<std::pair<const char*, const char*>> cases = {
      {"a日b語", "日"}, {"a語日", "語"}, {"a語\nb", "語"}, {"a\nb語", "line break"}};
  for (const auto& [text, named] : cases) {
    Paste(QString::fromUtf8(text));
    EXPECT_TRUE(line_.toolTip().contains(QString::fromUtf8(named)))
        << text << ": " << line_.toolTip().toStdString();
  }
}

TEST_F(WesternByteLine, ARefusedCharacterThatCannotBeShownIsNamedByItsNumber) {
  Write(QString(QChar(0x200B)));
  EXPECT_TRUE(line_.toolTip().contains("U+200B")) << line_.toolTip().toStdString();
  EXPECT_FALSE(line_.toolTip().contains(QChar(0x200B)));
}

TEST_F(WesternByteLine, APasteWithLineBreaksThatCannotBeWrittenIsRefusedToo) {
  Type("abc");
  edits_.clear();
  Paste(QString::fromUtf8("x\n日"));
  QApplication::processEvents();
  EXPECT_EQ(line_.text(), "abc");
  EXPECT_TRUE(edits_.empty());
  EXPECT_NE(line_.toolTip(), "own tip");
}

TEST_F(WesternByteLine, TheReasonGoesWithTheNextChange) {
  Write(QString::fromUtf8("日"));
  EXPECT_NE(line_.toolTip(), "own tip");
  Type("a");
  EXPECT_EQ(line_.toolTip(), "own tip");
}

TEST_F(WesternByteLine, WhatWasTypedBeforeARefusalCanStillBeUndone) {
  Type("a");
  Paste("b");
  Write(QString::fromUtf8("日"));
  Undo();
  EXPECT_EQ(line_.bytes(), "a");
}

TEST_F(WesternByteLine, AfterARefusalTypingGoesOnAndRefusingToo) {
  Write(QString::fromUtf8("日"));
  Type("a");
  Write(QString::fromUtf8("日"));
  Type("b");
  EXPECT_EQ(line_.bytes(), "ab");
}

TEST_F(WesternByteLine, WhatIsRefusedStaysRefusedWhenOtherBytesAreShown) {
  Write(QString::fromUtf8("日"));
  line_.ShowBytes("new");
  Write(QString::fromUtf8("日"));
  EXPECT_EQ(line_.text(), "new");
  EXPECT_EQ(line_.bytes(), "new");
}

}  // namespace
}  // namespace morvex::test
