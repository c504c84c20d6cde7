// The main window of a program with a source folder, a target folder and a list.
#pragma once

#include <QLineEdit>
#include <QMimeData>
#include <QProgressBar>
#include <string>

#include "tests/ui/qt/desktop_test.h"
#include "ui/qt/path_box.h"
#include "ui/qt/picture_button.h"

namespace morvex::test {

class MainWindowTest : public DesktopTest {
 protected:
  MainWindowTest() {
    files_.AddFolder("/s/sub");
    files_.AddFolder("/t");
    files_.AddFile("/s/one.txt", "aca");
    files_.AddFile("/s/sub/two.txt", "aca");
    files_.AddFile("/s/plain.bin", "aca");
    files_.AddFile("/list.txt", "a|b||\r\n");
  }

  // Starts the program with a settings file that names the two paths and the list and selects
  // ".txt".
  void StartWith(const std::string& source, const std::string& target) {
    files_.AddFile(
        "/program/Init.dat",
        source + "\r\n" + target + "\r\n/list.txt\r\nlog=0\r\nsep=|\r\njok=*\r\n1.txt\r\n");
    Start();
  }

  MainWindowWidget& window() { return desktop_->main_window(); }
  template <class Widget>
  Widget& Get(const char* name) {
    return Find<Widget>(window(), name);
  }
  PathBox& source() { return Get<PathBox>("Text1_0"); }
  PathBox& target() { return Get<PathBox>("Text1_2"); }
  QPushButton& ok() { return Get<QPushButton>("cmdAnonymize"); }
  QPushButton& go() { return Get<QPushButton>("cmdGo"); }
  QPushButton& exit() { return Get<QPushButton>("cmdExit"); }
  // Returns a button's caption without the "&" of its mnemonic.
  static QString Caption(const QPushButton& button) { return button.text().remove('&'); }
  QString Text(const char* label) { return Get<QLabel>(label).text().remove('&'); }

  // Returns whether the box's text is red, as it is for a wrong path.
  static bool IsRed(const QWidget& box) {
    const QPalette::ColorGroup group = box.isEnabled() ? QPalette::Active : QPalette::Disabled;
    const QColor colour = box.palette().color(group, QPalette::Text);
    return colour.red() > 2 * colour.green() && colour.red() > 2 * colour.blue();
  }

  // Returns at once; `act` is called once during the next run, from the event loop.
  void InRun(std::function<void()> act) {
    system_.step = std::chrono::milliseconds(15);
    QTimer::singleShot(0, &program_context_, [this, act = std::move(act)]() mutable {
      if (program_.run.working && program_.run.FilesDone > 0) {
        desktop_->Refresh();
        act();
      } else {
        InRun(std::move(act));
      }
    });
  }

  // Activates the window, because only an active window shows which control has the focus.
  void Activate() {
    window().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
  }

  void ClickGo() { Click(go()); }
};

}  // namespace morvex::test
