// The path boxes of the main window.
#include "core/program/main_window_paths.h"

#include <gtest/gtest.h>

#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

class MainWindowPathsTest : public ::testing::Test {
 protected:
  MainWindowPathsTest() {
    window_.cmdGo.enabled = true;
    window_.cmdGo.caption = "GO !";
  }

  TestProgram test_;
  MainForm& window_ = test_.program.frmMorvex;
};

TEST_F(MainWindowPathsTest, AChangeOfEitherBoxDisablesGoAndChangesItsCaption) {
  for (const int box : {0, 2}) {
    window_.cmdGo.enabled = true;
    window_.cmdGo.caption = "GO !";
    Text1_Change(test_.program, box, "/typed");
    EXPECT_EQ(window_.Text1(box).text.get(), "/typed");
    EXPECT_FALSE(window_.cmdGo.enabled);
    EXPECT_EQ(window_.cmdGo.caption.get(), ">------------>>>>");
  }
}

TEST_F(MainWindowPathsTest, TheSourceBoxIsNumber0AndTheTargetBoxNumber2) {
  Text1_Change(test_.program, 0, "source");
  Text1_Change(test_.program, 2, "target");
  EXPECT_EQ(window_.Text1(kSourceBox).text.get(), "source");
  EXPECT_EQ(window_.Text1(kTargetBox).text.get(), "target");
}

TEST_F(MainWindowPathsTest, TheSameTextAgainIsNoChange) {
  Text1_Change(test_.program, kSourceBox, "/a");
  window_.cmdGo.enabled = true;
  window_.cmdGo.caption = "GO !";
  Text1_Change(test_.program, kSourceBox, "/a");
  EXPECT_TRUE(window_.cmdGo.enabled);
  EXPECT_EQ(window_.cmdGo.caption.get(), "GO !");
}

TEST_F(MainWindowPathsTest, AChangeEnablesOkSoThatARunCanBeArmedAnew) {
  for (const int box : {kSourceBox, kTargetBox}) {
    window_.cmdAnonymize.enabled = false;
    Text1_Change(test_.program, box, "/typed");
    EXPECT_TRUE(window_.cmdAnonymize.enabled) << "box " << box;
  }
}

TEST_F(MainWindowPathsTest, AChangeWhileARunWorksLeavesOkDisabled) {
  window_.cmdAnonymize.enabled = false;
  test_.program.run.working = true;
  Text1_Change(test_.program, kSourceBox, "/typed");
  EXPECT_FALSE(window_.cmdAnonymize.enabled);
}

TEST_F(MainWindowPathsTest, ARedPathIsBlackAgainOnceItIsChangedAndOnlyThatOne) {
  for (const int box : {kSourceBox, kTargetBox}) {
    const int other = kSourceBox + kTargetBox - box;
    window_.Text1(kSourceBox).colour = Colour::kRed;
    window_.Text1(kTargetBox).colour = Colour::kRed;
    Text1_Change(test_.program, box, "/typed" + std::to_string(box));
    EXPECT_EQ(window_.Text1(box).colour, Colour::kBlack) << "box " << box;
    EXPECT_EQ(window_.Text1(other).colour, Colour::kRed) << "box " << other;
  }
}

TEST_F(MainWindowPathsTest, ANoticeIsGivenOfTheNewText) {
  std::string seen;
  window_.changes.on_change = [&] {
    if (seen.empty()) seen = window_.Text1(kTargetBox).text;
  };
  Text1_Change(test_.program, kTargetBox, "/t");
  EXPECT_EQ(seen, "/t");
}

}  // namespace
}  // namespace morvex::test
