// The event filter for an Enter key that is held down. The tests send key events to a button with
// this filter, as the toolkit does.
#include "ui/qt/held_key.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QPushButton>

namespace morvex::test {
namespace {

class HeldEnterTest : public testing::Test {
 protected:
  HeldEnterTest() {
    button_.setAutoDefault(true);
    button_.installEventFilter(&filter_);
    QObject::connect(&button_, &QPushButton::clicked, &button_, [this] { ++clicks_; });
  }

  void Send(QEvent::Type type, quint64 milliseconds, bool is_repeated, int key = Qt::Key_Return) {
    QKeyEvent event(type, key, Qt::NoModifier, "\r", is_repeated);
    event.setTimestamp(milliseconds);
    QApplication::sendEvent(&button_, &event);
  }

  QPushButton button_;
  HeldEnterFilter filter_;
  int clicks_ = 0;
};

TEST_F(HeldEnterTest, PressesOnce) {
  Send(QEvent::KeyPress, 1000, false);
  Send(QEvent::KeyRelease, 1600, true);
  Send(QEvent::KeyPress, 1600, true);
  EXPECT_EQ(clicks_, 1);
}

TEST_F(HeldEnterTest, ARepetitionThatIsToldAsANewPressIsNone) {
  Send(QEvent::KeyPress, 1000, false);
  for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
    Send(QEvent::KeyRelease, 1600, false, key);
    Send(QEvent::KeyPress, 1600, false, key);
  }
  EXPECT_EQ(clicks_, 1);
}

TEST_F(HeldEnterTest, LetGoAndPressedAgainPressesAgain) {
  Send(QEvent::KeyPress, 1000, false);
  Send(QEvent::KeyRelease, 1080, false);
  Send(QEvent::KeyPress, 1081, false);
  EXPECT_EQ(clicks_, 2);
}

TEST_F(HeldEnterTest, PressesWithoutATimeArePresses) {
  for (int time = 0; time < 2; ++time) {
    Send(QEvent::KeyPress, 0, false);
    Send(QEvent::KeyRelease, 0, false);
  }
  EXPECT_EQ(clicks_, 2);
}

}  // namespace
}  // namespace morvex::test
