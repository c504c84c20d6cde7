// Files and folders dropped on the path boxes.
#include "ui/qt/path_box.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QUrl>

#include "tests/ui/qt/main_window_test.h"
#include "tests/ui/qt/variable.h"

namespace morvex::test {
namespace {

class PathBoxTest : public MainWindowTest {
 protected:
  PathBoxTest() {
    files_.AddFile("/s/caf\xE9.txt", "x");
    files_.AddFile("/s/two\nlines.txt", "x");
  }

  // Drags data over the box and drops the data. Returns whether the box accepted the data.
  bool Drop(PathBox& box, const QMimeData& dragged) {
    const QPoint place = box.rect().center();
    const Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction;
    QDragEnterEvent enter(place, actions, &dragged, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&box, &enter);
    QDragMoveEvent move(place, actions, &dragged, Qt::LeftButton, Qt::NoModifier);
    move.ignore();
    QApplication::sendEvent(&box, &move);
    EXPECT_EQ(enter.isAccepted(), move.isAccepted());
    QDropEvent drop(place, actions, &dragged, Qt::LeftButton, Qt::NoModifier);
    drop.ignore();
    QApplication::sendEvent(&box, &drop);
    EXPECT_EQ(enter.isAccepted(), drop.isAccepted());
    if (drop.isAccepted()) {
      EXPECT_EQ(drop.dropAction(), Qt::CopyAction);
    }
    Settle();
    return enter.isAccepted();
  }
  bool Drop(PathBox& box, const QList<QUrl>& addresses) {
    QMimeData dragged;
    dragged.setUrls(addresses);
    return Drop(box, dragged);
  }
  const std::string& SourceText() { return program_.frmMorvex.Text1(kSourceBox).text.get(); }
  const std::string& TargetText() { return program_.frmMorvex.Text1(kTargetBox).text.get(); }
};

TEST_F(PathBoxTest, TheSourceTakesAFileAndAFolder) {
  Start();
  EXPECT_TRUE(Drop(source(), {QUrl("file:///s/one.txt")}));
  EXPECT_EQ(SourceText(), "/s/one.txt");
  EXPECT_EQ(source().text(), "/s/one.txt");
  EXPECT_TRUE(Drop(source(), {QUrl("file:///s")}));
  EXPECT_EQ(SourceText(), "/s");
  EXPECT_EQ(Caption(go()), ">------------>>>>");
}

TEST_F(PathBoxTest, SoDoesTheTargetWhichIsAFileWhereTheSourceIsOne) {
  Start();
  EXPECT_TRUE(Drop(target(), {QUrl("file:///t")}));
  EXPECT_EQ(TargetText(), "/t");
  EXPECT_TRUE(Drop(target(), {QUrl("file:///s/one.txt")}));
  EXPECT_EQ(TargetText(), "/s/one.txt");
}

TEST_F(PathBoxTest, WhatIsNoSingleFileOrFolderIsRefused) {
  Start();
  QMimeData text;
  text.setText("/s");
  EXPECT_FALSE(Drop(source(), text));
  EXPECT_FALSE(Drop(source(), {QUrl("file:///nowhere")}));
  EXPECT_FALSE(Drop(source(), {QUrl("http://localhost/s")}));
  EXPECT_FALSE(Drop(source(), {QUrl("file:///s"), QUrl("file:///t")}));
  EXPECT_FALSE(Drop(source(), QList<QUrl>()));
  EXPECT_EQ(SourceText(), "");
}

TEST_F(PathBoxTest, ANameWithALineBreakIsRefused) {
  Start();
  EXPECT_FALSE(Drop(source(), {QUrl::fromEncoded("file:///s/two%0Alines.txt")}));
  EXPECT_EQ(SourceText(), "");
}

TEST_F(PathBoxTest, TheBytesOfADroppedNameStayAsTheyAre) {
  Start();
  EXPECT_TRUE(Drop(source(), {QUrl::fromEncoded("file:///s/caf%E9.txt")}));
  EXPECT_EQ(SourceText(), "/s/caf\xE9.txt");
}

TEST_F(PathBoxTest, PathsAreNamesOfFilesWhateverTheTextsCodePage) {
  if (!kNamesAreBytes) GTEST_SKIP() << "names go by the system's page as well";
  const Variable locale("LC_ALL", "C");  // makes the code page of texts Windows-1252
  system_.codec = TextCodec::kSingleByte;
  StartWith("/zo\xC3\xAB", "/t");
  EXPECT_EQ(source().text(), QString::fromUtf8("/zoë"));
  source().clear();
  QTest::keyClicks(&source(), "/s/caf");
  QTest::sendKeyEvent(QTest::Click, &source(), Qt::Key_Eacute, QString(QChar(0xE9)),
                      Qt::NoModifier);
  EXPECT_EQ(SourceText(), "/s/caf\xC3\xA9");
  program_.frmMorvex.lblFiles.caption = "/s/caf\xC3\xA9";
  Settle();
  EXPECT_EQ(Get<ElidedLabel>("lblFiles").text(), QString::fromUtf8("/s/café"));
}

}  // namespace
}  // namespace morvex::test
