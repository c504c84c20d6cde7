// Colours, captions and fonts of widgets.
#include "ui/qt/show_control.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <algorithm>
#include <cmath>

namespace morvex::test {
namespace {

QPalette Ground(const QColor& ground, const QColor& text) {
  QPalette palette;
  for (const QPalette::ColorRole role : {QPalette::Window, QPalette::Base}) {
    palette.setColor(role, ground);
  }
  for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text}) {
    palette.setColor(role, text);
  }
  return palette;
}

double Luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
         0.0722 * linear(colour.blueF());
}

double Contrast(const QColor& one, const QColor& other) {
  const auto [least, most] = std::minmax({Luminance(one), Luminance(other)});
  return (most + 0.05) / (least + 0.05);
}

TEST(ShowControl, BlackIsTheGroundsOwnTextColour) {
  EXPECT_EQ(TextColour(Colour::kBlack, Ground(Qt::white, Qt::black)), QColor(Qt::black));
  EXPECT_EQ(TextColour(Colour::kBlack, Ground(Qt::black, Qt::white)), QColor(Qt::white));
}

TEST(ShowControl, EveryColourCanBeReadOnLightAndDark) {
  for (const bool dark : {false, true}) {
    const QColor ground = dark ? QColor(40, 40, 42) : QColor(240, 240, 240);
    const QPalette palette = Ground(ground, dark ? Qt::white : Qt::black);
    for (const Colour colour : {Colour::kBlack, Colour::kRed, Colour::kSystemHighlight}) {
      EXPECT_GE(Contrast(TextColour(colour, palette), ground), 4.5)
          << static_cast<std::uint32_t>(colour) << (dark ? " on dark" : " on light");
    }
  }
}

TEST(ShowControl, AWidgetTakesAColourAndGivesItUpAgain) {
  ChangeNotice notice;
  TextBox box(notice, {}, 0);
  QLineEdit edit;
  const QColor own = edit.palette().color(QPalette::Text);
  box.colour = Colour::kRed;
  ShowTextColour(edit, box, QPalette::Text);
  EXPECT_NE(edit.palette().color(QPalette::Text), own);
  box.colour = Colour::kBlack;
  ShowTextColour(edit, box, QPalette::Text);
  EXPECT_EQ(edit.palette().color(QPalette::Text), own);
}

TEST(ShowControl, AnAmpersandInACaptionIsShown) {
  EXPECT_EQ(WithoutMnemonics("a & b"), "a && b");
  EXPECT_EQ(WithMnemonic("Q & A", 'A'), "Q && &A");
  EXPECT_EQ(WithMnemonic("GO !", 'G'), "&GO !");
  EXPECT_EQ(WithMnemonic(">----------->", 'G'), ">----------->");
}

TEST(ShowControl, LinesOfACaptionAreTheToolkitsLines) {
  EXPECT_EQ(ShownLines(CodePage(TextCodec::kUtf8), "Hits: 1\r\nDone !"), "Hits: 1\nDone !");
}

TEST(ShowControl, AFontThatIsNotThereLeavesTheOldOne) {
  const QFont font = QApplication::font();
  EXPECT_EQ(NamedFont("No Font Has This Name", font), font);
  EXPECT_EQ(NamedFont("", font), font);
}

}  // namespace
}  // namespace morvex::test
