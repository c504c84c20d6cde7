// The space and the outlines that the program's style adds, and the colours that it changes.
#include "ui/qt/house_style.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QCommonStyle>
#include <QImage>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QStyleFactory>
#include <QStyleOption>
#include <array>
#include <memory>
#include <utility>

namespace morvex::test {
namespace {

// Draws light buttons whatever the palette says, as the themes of some systems do.
class LightButtons : public QCommonStyle {
 public:
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override {
    if (element == CE_PushButtonBevel) return painter->fillRect(option->rect, Qt::white);
    QCommonStyle::drawControl(element, option, painter, widget);
  }
};

class HouseStyleTest : public testing::Test {
 protected:
  // Returns a picture of the widget in `style`, on a dark background.
  static QImage Drawn(QWidget& widget, QStyle& style) {
    QPalette dark;
    for (const QPalette::ColorRole role : {QPalette::Window, QPalette::Base, QPalette::Button}) {
      dark.setColor(role, QColor(30, 30, 32));
    }
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text}) {
      dark.setColor(role, Qt::white);
    }
    widget.setStyle(&style);
    widget.setPalette(dark);
    widget.resize(60, 28);
    QImage picture(widget.size(), QImage::Format_RGB32);
    picture.fill(QColor(30, 30, 32));
    widget.render(&picture);
    widget.setStyle(nullptr);
    return picture;
  }
  static int Brightest(const QImage& picture, const QRect& part) {
    int most = 0;
    for (int y = part.top(); y <= part.bottom(); ++y) {
      for (int x = part.left(); x <= part.right(); ++x) {
        most = std::max(most, qGray(picture.pixel(x, y)));
      }
    }
    return most;
  }
  // Returns the largest grey value, 0 to 255, at the widget's left edge on a dark background.
  static int Edge(QWidget& widget, QStyle& style) {
    return Brightest(Drawn(widget, style), QRect(0, 10, 2, 8));
  }

  HouseStyle style_{"fusion"};
  std::unique_ptr<QStyle> plain_{QStyleFactory::create("fusion")};
};

TEST_F(HouseStyleTest, AButtonWithAColourOfItsOwnHasItInStylesThatDrawOthersTheirWay) {
  HouseStyle style;
  style.setBaseStyle(new LightButtons);
  QPushButton button;
  button.resize(60, 28);
  const auto middle = [&] {
    button.setStyle(&style);
    const QColor colour = button.grab().toImage().pixelColor(30, 14);
    button.setStyle(nullptr);
    return colour;
  };
  EXPECT_EQ(middle(), QColor(Qt::white));
  QPalette own;
  own.setColor(QPalette::Active, QPalette::Button, QColor(20, 40, 160));
  own.setColor(QPalette::Inactive, QPalette::Button, QColor(20, 40, 160));
  button.setPalette(own);
  EXPECT_EQ(middle(), QColor(20, 40, 160));
  button.setPalette(QPalette());
  EXPECT_EQ(middle(), QColor(Qt::white));
}

TEST_F(HouseStyleTest, ButtonsAndBoxesHaveRoomForTheirTexts) {
  QPushButton button("OK");
  QLineEdit box;
  for (QWidget* widget : {static_cast<QWidget*>(&button), static_cast<QWidget*>(&box)}) {
    widget->setStyle(&style_);
    EXPECT_GE(widget->sizeHint().height(), widget->fontMetrics().height() + 12);
  }
  EXPECT_GE(button.sizeHint().width(), 88);
}

TEST_F(HouseStyleTest, RowsOfAListAreEasyToHit) {
  QListWidget list;
  list.addItem(".txt");
  list.setStyle(&style_);
  EXPECT_GE(list.sizeHintForRow(0), list.fontMetrics().height() + 8);
}

TEST_F(HouseStyleTest, ATextKeepsOffTheOutlineOfItsBox) {
  const auto first_ink = [](QStyle& style) {
    QLineEdit box("MMM");
    const QImage picture = Drawn(box, style);
    for (int x = 4; x < 30; ++x) {
      if (Brightest(picture, QRect(x, 8, 1, 12)) > 120) return x;
    }
    return 0;
  };
  const int without = first_ink(*plain_);
  ASSERT_GT(without, 0);
  EXPECT_GE(first_ink(style_), without + 3);
}

TEST_F(HouseStyleTest, AWideCaptionHasAWideButton) {
  QPushButton button(QString(80, 'm'));
  button.setStyle(&style_);
  EXPECT_GT(button.sizeHint().width(), button.fontMetrics().horizontalAdvance(button.text()));
}

TEST_F(HouseStyleTest, ABoxOnADarkGroundHasAnOutlineThatIsSeen) {
  QLineEdit box;
  EXPECT_LT(Edge(box, *plain_), 60);
  EXPECT_GT(Edge(box, style_), 100);
}

TEST_F(HouseStyleTest, SoHasAList) {
  QListWidget list;
  EXPECT_LT(Edge(list, *plain_), 60);
  EXPECT_GT(Edge(list, style_), 100);
}

TEST_F(HouseStyleTest, SoHasACheckBox) {
  QCheckBox box;
  const QRect left_half(0, 0, 30, 28);
  EXPECT_LT(Brightest(Drawn(box, *plain_), left_half), 60);
  EXPECT_GT(Brightest(Drawn(box, style_), left_half), 100);
}

TEST_F(HouseStyleTest, ADisabledBoxIsPaler) {
  QLineEdit box;
  const int enabled = Edge(box, style_);
  box.setEnabled(false);
  EXPECT_LT(Edge(box, style_), enabled);
  EXPECT_GT(Edge(box, style_), 40);
}

// The palette resembles that of some desktops: disabled text is nearly as dark as the background.
TEST_F(HouseStyleTest, WhatIsDisabledIsPalerThanWhatIsEnabledButCanBeRead) {
  constexpr int kLeastApart = 75;  // of 255 steps of grey
  const std::array<std::pair<QPalette::ColorRole, QPalette::ColorRole>, 3> pairs = {
      {{QPalette::WindowText, QPalette::Window},
       {QPalette::Text, QPalette::Base},
       {QPalette::ButtonText, QPalette::Button}}};
  QPalette dark;
  for (const auto& [text, ground] : pairs) {
    dark.setColor(ground, QColor(35, 38, 41));
    dark.setColor(text, Qt::white);
    dark.setColor(QPalette::Disabled, text, QColor(70, 74, 78));
  }
  style_.polish(dark);
  for (const auto& [text, ground] : pairs) {
    const int shown = qGray(dark.color(QPalette::Disabled, text).rgb());
    EXPECT_GE(shown - qGray(dark.color(QPalette::Disabled, ground).rgb()), kLeastApart) << text;
    EXPECT_LT(shown, 200) << text;
    EXPECT_EQ(dark.color(QPalette::Active, text), Qt::white) << text;
  }
}

TEST_F(HouseStyleTest, ADisabledTextThatCanBeReadKeepsItsColour) {
  QPalette light(QColor(239, 240, 241));
  light.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(110, 110, 110));
  light.setColor(QPalette::Disabled, QPalette::Button, Qt::white);
  style_.polish(light);
  EXPECT_EQ(light.color(QPalette::Disabled, QPalette::ButtonText), QColor(110, 110, 110));
}

}  // namespace
}  // namespace morvex::test
