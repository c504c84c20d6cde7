// The initial state of the main window's form.
#include "core/forms/main_form.h"

#include <gtest/gtest.h>

#include <string>

namespace morvex::test {
namespace {

TEST(MainWindowState, ItsTitleStartsWithABlank) {
  const MainForm window;
  EXPECT_EQ(window.caption.get(), " Morvex v11.0");
}

TEST(MainWindowState, HasItsCaptions) {
  const MainForm window;
  EXPECT_EQ(window.lblPassword_1.caption.get(), "Source :");
  EXPECT_EQ(window.lblPassword_2.caption.get(), "Target :");
  EXPECT_EQ(window.cmdAnonymize.caption.get(), "OK");
  EXPECT_EQ(window.cmdGo.caption.get(), ">----------->");
  EXPECT_EQ(window.cmdExit.caption.get(), "Exit");
  EXPECT_EQ(window.Label1.caption.get(), " S t a t s");
}

TEST(MainWindowState, TheThreeCaptionsOfGoCountTheirDashes) {
  EXPECT_EQ(std::string(kGoIdle), ">" + std::string(11, '-') + ">");
  EXPECT_EQ(std::string(kGoPathsChanged), ">" + std::string(12, '-') + ">>>>");
  EXPECT_EQ(std::string(kGoArmed), "GO !");
}

TEST(MainWindowState, ItsResultLabelsAreEmpty) {
  const MainForm window;
  for (const Label* label : {&window.lblExtensions, &window.lblFiles, &window.lblTotalFiles,
                             &window.lblTijd, &window.lblPercentage}) {
    EXPECT_EQ(label->caption.get(), "");
  }
}

TEST(MainWindowState, HasItsHints) {
  const MainForm window;
  EXPECT_EQ(window.lblPassword_1.tool_tip.get(), "Bestand of map");
  EXPECT_EQ(window.lblPassword_2.tool_tip.get(), "Bestand of map");
  EXPECT_EQ(window.cmdAnonymize.tool_tip.get(), "instellingen opslaan");
  EXPECT_EQ(window.lblExtensions.tool_tip.get(), "gescande bestandstypen");
}

TEST(MainWindowState, HeadingsAndButtonsHaveTheirFonts) {
  const MainForm window;
  for (const Label* label :
       {&window.lblExtensions, &window.Label1, &window.lblPassword_1, &window.lblPassword_2}) {
    EXPECT_EQ(label->font, "Papyrus");
  }
  for (const Button* button : {&window.cmdAnonymize, &window.cmdGo, &window.cmdExit}) {
    EXPECT_EQ(button->font, "MS Sans Serif");
  }
}

TEST(MainWindowState, ItsTwoPathBoxesAreFoundByTheirIndexes) {
  MainForm window;
  EXPECT_EQ(kSourceBox, 0);
  EXPECT_EQ(kTargetBox, 2);
  window.Text1(0).text = "/source";
  window.Text1(2).text = "/target";
  const MainForm& read = window;
  EXPECT_EQ(read.Text1(0).text.get(), "/source");
  EXPECT_EQ(read.Text1(2).text.get(), "/target");
}

TEST(MainWindowState, BothPicturesHaveTheCursorOfNumber101) {
  const MainForm window;
  EXPECT_EQ(window.imOpties.cursor_resource, 101);
  EXPECT_EQ(window.imList.cursor_resource, 101);
}

TEST(MainWindowState, ItsLinesLieInTheWindow) {
  const MainForm window;
  EXPECT_EQ(window.Lines.size(), 9u);
  for (const Line& line : window.Lines) {
    EXPECT_TRUE(line.x1 != line.x2 || line.y1 != line.y2) << "a point is no line";
    EXPECT_TRUE(line.x1 >= 0 && line.x1 <= line.x2 && line.x2 <= window.width);
    EXPECT_TRUE(line.y1 >= 0 && line.y1 <= line.y2 && line.y2 <= window.height);
  }
}

TEST(MainWindowState, TheTreeStandsWhereTheSourceBoxDoesAndIsHidden) {
  const MainForm window;
  EXPECT_FALSE(window.FolderTreeview1.visible.get());
  EXPECT_EQ(window.FolderTreeview1.box.get().left, window.Text1(kSourceBox).box.get().left);
  EXPECT_EQ(window.FolderTreeview1.box.get().top, window.Text1(kSourceBox).box.get().top);
}

}  // namespace
}  // namespace morvex::test
