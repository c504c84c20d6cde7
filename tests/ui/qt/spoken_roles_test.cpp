// The roles that a screen reader gets for the program's windows and labels.
#include "ui/qt/spoken_roles.h"

#include <QAccessible>

#include "tests/ui/qt/desktop_test.h"

namespace morvex::test {
namespace {

class SpokenRolesTest : public DesktopTest {
 protected:
  static QAccessible::Role Role(QWidget& widget) {
    QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(&widget);
    return spoken == nullptr ? QAccessible::NoRole : spoken->role();
  }
  static QString Name(QWidget& widget) {
    QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(&widget);
    return spoken == nullptr ? QString() : spoken->text(QAccessible::Name);
  }
};

TEST_F(SpokenRolesTest, WindowsAreWindowsUnderTheirTitles) {
  Start();
  EXPECT_EQ(Role(desktop_->main_window()), QAccessible::Window);
  EXPECT_EQ(Name(desktop_->main_window()), " Morvex v11.0");
  EXPECT_EQ(Role(desktop_->editor_window()), QAccessible::Window);
}

TEST_F(SpokenRolesTest, TheModalOneIsADialog) {
  Start();
  EXPECT_EQ(Role(desktop_->options_window()), QAccessible::Dialog);
  EXPECT_EQ(Name(desktop_->options_window()), "Opties");
}

TEST_F(SpokenRolesTest, ALabelThatShortensItsTextIsALabelThatKnowsAllOfIt) {
  Start();
  auto& label = Find<QWidget>(desktop_->main_window(), "lblFiles");
  const std::string path = "/s/" + std::string(500, 'a');
  program_.frmMorvex.lblFiles.caption = path;
  Settle();
  EXPECT_EQ(Role(label), QAccessible::StaticText);
  QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(&label);
  EXPECT_EQ(spoken->text(QAccessible::Description).toStdString(), path);
}

TEST_F(SpokenRolesTest, ToldTwiceTheyAreTheSame) {
  Start();
  TellSpokenRoles();
  EXPECT_EQ(Role(desktop_->main_window()), QAccessible::Window);
}

}  // namespace
}  // namespace morvex::test
