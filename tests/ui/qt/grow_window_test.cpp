// A window that grows stays on its screen.
#include "ui/qt/grow_window.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QScreen>
#include <QWidget>

namespace morvex::test {
namespace {

class GrowWindowTest : public testing::Test {
 protected:
  GrowWindowTest() {
    window_.resize(200, 100);
    window_.show();
    QApplication::processEvents();
  }
  // Moves the window so that its lower edge is `pixels` pixels above the screen's lower edge.
  void LeaveBelow(int pixels) {
    window_.move(30, screen_.bottom() - pixels - window_.frameGeometry().height() + 1);
    QApplication::processEvents();
  }

  QWidget window_;
  const QRect screen_ = window_.screen()->availableGeometry();
};

TEST_F(GrowWindowTest, WithRoomBelowItStaysWhereItIs) {
  LeaveBelow(60);
  const QPoint place = window_.pos();
  GrowTo(window_, 150);
  EXPECT_EQ(window_.size(), QSize(200, 150));
  EXPECT_EQ(window_.pos(), place);
}

TEST_F(GrowWindowTest, WithoutRoomBelowItMovesUpAsFarAsNeeded) {
  LeaveBelow(20);
  const QPoint place = window_.pos();
  GrowTo(window_, 150);
  EXPECT_EQ(window_.size(), QSize(200, 150));
  EXPECT_EQ(window_.pos(), place - QPoint(0, 30));
  EXPECT_EQ(window_.frameGeometry().bottom(), screen_.bottom());
}

TEST_F(GrowWindowTest, TallerThanTheScreenItBeginsAtTheTop) {
  LeaveBelow(20);
  GrowTo(window_, screen_.height() + 50);
  EXPECT_EQ(window_.frameGeometry().top(), screen_.top());
}

}  // namespace
}  // namespace morvex::test
