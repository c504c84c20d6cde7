// F1 opens the help file.
#include "ui/qt/help.h"

#include <QDesktopServices>
#include <QUrl>

#include "core/list/editor.h"
#include "core/settings/options.h"
#include "tests/ui/qt/main_window_test.h"

namespace morvex::test {
namespace {

// Takes the place of the system's file opener and records what it is asked to open.
class Opener : public QObject {
  Q_OBJECT

 public:
  Opener() { QDesktopServices::setUrlHandler("file", this, "Open"); }
  ~Opener() override { QDesktopServices::unsetUrlHandler("file"); }

  QList<QUrl> opened;

 public slots:
  void Open(const QUrl& address) { opened.append(address); }
};

class HelpTest : public MainWindowTest {
 protected:
  Opener opener_;
};

TEST_F(HelpTest, F1OpensTheHelpFileFromAnyControl) {
  files_.AddFile("/program/MorvexHELP.chm", "help");
  Start();
  QTest::keyClick(&source(), Qt::Key_F1);
  EXPECT_EQ(opener_.opened, QList<QUrl>{QUrl("file:///program/MorvexHELP.chm")});
  QTest::keyClick(&exit(), Qt::Key_F1);
  EXPECT_EQ(opener_.opened.size(), 2);
}

TEST_F(HelpTest, F1WorksInTheEditorToo) {
  files_.AddFile("/program/MorvexHELP.chm", "help");
  Start();
  imList_Click(program_);
  Settle();
  QTest::keyClick(&desktop_->editor_window(), Qt::Key_F1);
  EXPECT_EQ(opener_.opened.size(), 1);
}

TEST_F(HelpTest, F1WorksInTheOptionsWindowToo) {
  files_.AddFile("/program/MorvexHELP.chm", "help");
  Start();
  imOpties_Click(program_);
  Settle();
  QTest::keyClick(&Find<QLineEdit>(desktop_->options_window(), "txtExtensie"), Qt::Key_F1);
  EXPECT_EQ(opener_.opened.size(), 1);
}

TEST_F(HelpTest, AnyByteOfThePathReachesTheHandler) {
  system_.program_folder = "/caf\xE9 #1";
  files_.AddFile("/caf\xE9 #1/MorvexHELP.chm", "help");
  Start();
  QTest::keyClick(&window(), Qt::Key_F1);
  ASSERT_EQ(opener_.opened.size(), 1);
  EXPECT_EQ(opener_.opened.first().toEncoded(), "file:///caf%E9%20%231/MorvexHELP.chm");
}

TEST_F(HelpTest, WithoutAHelpFileAMessageSaysSo) {
  Start();
  QString text;
  OnMessage([&](QMessageBox& box) {
    text = box.text();
    box.accept();
  });
  QTest::keyClick(&window(), Qt::Key_F1);
  EXPECT_EQ(text, "/program/MorvexHELP.chm\nThe help file is not there.");
  EXPECT_TRUE(opener_.opened.isEmpty());
}

}  // namespace
}  // namespace morvex::test

#include "help_test.moc"
