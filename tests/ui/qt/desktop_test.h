// A program with its windows off screen: real widgets, real clicks and keys.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>
#include <optional>
#include <string>

#include "core/run/start_up.h"
#include "tests/support/test_program.h"
#include "tests/ui/qt/file_names.h"
#include "ui/qt/desktop.h"
#include "ui/qt/qt_user.h"

namespace morvex::test {

class DesktopTest : public testing::Test {
 protected:
  DesktopTest() { files_.AddFolder(system_.program_folder); }

  // Starts the program as a user does. The command line comes from `system_` and is empty by
  // default.
  Desktop& Start() {
    desktop_.emplace(program_);
    EXPECT_EQ(StartUp(program_), ErrorNumber::kNone);
    Settle();
    return *desktop_;
  }

  // Handles pending events until the widgets show the program's state.
  void Settle() {
    for (int i = 0; i < 3; ++i) QApplication::processEvents();
    desktop_->Refresh();
    QApplication::processEvents();
  }

  // Returns the control called `name` in the window; throws if there is none.
  template <class Widget>
  Widget& Find(QWidget& window, const char* name) {
    auto* const found = window.findChild<Widget*>(name);
    if (found == nullptr) throw std::runtime_error(std::string("no control ") + name);
    return *found;
  }

  // Clicks with the left button in the middle of the widget. Only a visible and enabled widget
  // reacts.
  void Click(QWidget& widget) {
    QTest::mouseClick(&widget, Qt::LeftButton);
    Settle();
  }

  // Returns at once; when the next message box is shown, `act` is called with it.
  void OnMessage(std::function<void(QMessageBox&)> act) {
    QTimer::singleShot(0, &program_context_, [this, act = std::move(act)]() mutable {
      auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr) {
        OnMessage(std::move(act));
        return;
      }
      act(*box);
    });
  }

  MemoryFiles files_{'/'};
  FakeSystem system_;
  QtUser user_{CodePage::OfFileNames(TextCodec::kUtf8)};
  Program program_{Host{files_, system_, user_}};
  QObject program_context_;
  std::optional<Desktop> desktop_;
};

}  // namespace morvex::test
