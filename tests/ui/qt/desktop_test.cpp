// The windows appear, follow the program's state, and disappear.
#include "tests/ui/qt/desktop_test.h"

namespace morvex::test {
namespace {

// Counts how often a widget is painted.
class PaintCount : public QObject {
 public:
  explicit PaintCount(QWidget& widget) { widget.installEventFilter(this); }
  int count = 0;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++count;
    return QObject::eventFilter(watched, event);
  }
};

TEST_F(DesktopTest, AfterStartUpOnlyTheMainWindowIsShown) {
  Desktop& desktop = Start();
  EXPECT_TRUE(desktop.main_window().isVisible());
  EXPECT_FALSE(desktop.options_window().isVisible());
  EXPECT_FALSE(desktop.editor_window().isVisible());
  EXPECT_EQ(desktop.main_window().windowTitle(), " Morvex v11.0");
}

TEST_F(DesktopTest, LabelsArePaintedAtMostSixtyTimesASecondWhateverTheEngineDoes) {
  Start();
  auto& label = Find<QLabel>(desktop_->main_window(), "lblTotalFiles");
  PaintCount paints(label);
  QElapsedTimer time;
  time.start();
  for (int files = 0; time.elapsed() < 500; ++files) {
    program_.frmMorvex.lblTotalFiles.caption = "Scanned: " + std::to_string(files);
    QApplication::processEvents();
  }
  const double seconds = static_cast<double>(time.elapsed()) / 1000;
  EXPECT_GE(paints.count, 2);
  EXPECT_LE(paints.count, 60 * seconds + 1);
}

TEST_F(DesktopTest, AChangeThatComesAloneIsShownWithoutAWait) {
  Start();
  auto& label = Find<QLabel>(desktop_->main_window(), "lblTotalFiles");
  QTest::qWait(100);
  program_.frmMorvex.lblTotalFiles.caption = "Momentje...";
  QApplication::processEvents();
  EXPECT_EQ(label.text(), "Momentje...");
}

}  // namespace
}  // namespace morvex::test
