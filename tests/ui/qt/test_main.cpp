// Runs the tests of the windows, without a screen unless QT_QPA_PLATFORM is set.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFont>

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  // Without a desktop, nothing else sets a font.
  QApplication::setFont(QFont("DejaVu Sans", 9));
  return RUN_ALL_TESTS();
}
