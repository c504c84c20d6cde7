// How the windows come, follow the program's state, and go.
#include "tests/ui/qt/desktop_test.h"

namespace morvex::test {
namespace {

TEST_F(DesktopTest, AfterStartUpOnlyTheMainWindowIsShown) {
  Desktop& desktop = Start();
  EXPECT_TRUE(desktop.main_window().isVisible());
  EXPECT_FALSE(desktop.options_window().isVisible());
  EXPECT_FALSE(desktop.editor_window().isVisible());
  EXPECT_EQ(desktop.main_window().windowTitle(), " Morvex v11.0");
}

}  // namespace
}  // namespace morvex::test
