// Line drawings: how their files are read and drawn.
#include "ui/qt/line_drawing.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <QPainter>

namespace morvex::test {
namespace {

LineDrawing Drawing(const QByteArray& content) {
  return LineDrawing::FromText("<svg viewBox=\"0 0 10 10\">" + content + "</svg>");
}

// Returns a picture of 20 by 20 pixels with the drawing in `box`.
QImage Drawn(const LineDrawing& drawing, const QRectF& box = {0, 0, 10, 10}) {
  QImage image(QSize(20, 20), QImage::Format_ARGB32);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  drawing.Paint(painter, box, Qt::green);
  return image;
}

constexpr QRgb kNothing = 0;
constexpr QRgb kRed = 0xFFFF0000;
constexpr QRgb kBlue = 0xFF0000FF;
constexpr QRgb kGreen = 0xFF00FF00;
constexpr QRgb kBlack = 0xFF000000;

TEST(LineDrawing, EveryPictureOfTheProgramIsUnderstood) {
  LoadPictures();
  const QStringList names = QDir(":/pictures").entryList({"*.svg"});
  EXPECT_GE(names.size(), 6);
  for (const QString& name : names) {
    EXPECT_FALSE(LineDrawing(":/pictures/" + name).IsEmpty()) << name.toStdString();
  }
}

TEST(LineDrawing, ARectangleIsFilledInItsPlace) {
  const QImage image = Drawn(Drawing(R"(<rect x="2" y="3" width="4" height="5" fill="#ff0000"/>)"));
  EXPECT_EQ(image.pixel(2, 3), kRed);
  EXPECT_EQ(image.pixel(5, 7), kRed);
  EXPECT_EQ(image.pixel(1, 3), kNothing);
  EXPECT_EQ(image.pixel(6, 7), kNothing);
  EXPECT_EQ(image.pixel(5, 8), kNothing);
}

TEST(LineDrawing, ARoundedCornerIsLeftOut) {
  const QImage image =
      Drawn(Drawing(R"(<rect x="0" y="0" width="10" height="10" rx="5" fill="#ff0000"/>)"));
  EXPECT_EQ(image.pixel(0, 0), kNothing);
  EXPECT_EQ(image.pixel(5, 5), kRed);
}

TEST(LineDrawing, ACircleLiesAroundItsCentre) {
  const QImage image = Drawn(Drawing(R"(<circle cx="6" cy="4" r="3" fill="#ff0000"/>)"));
  EXPECT_EQ(image.pixel(6, 4), kRed);
  EXPECT_EQ(image.pixel(7, 4), kRed);
  EXPECT_EQ(image.pixel(2, 1), kNothing);
  EXPECT_EQ(image.pixel(6, 8), kNothing);
}

TEST(LineDrawing, WithoutInksAShapeIsFilledBlackAndHasNoLine) {
  const QImage image = Drawn(Drawing(R"(<path d="M2 2 H8 V8 H2 z"/>)"));
  EXPECT_EQ(image.pixel(5, 5), kBlack);
  EXPECT_EQ(image.pixel(1, 5), kNothing);
}

TEST(LineDrawing, ALineHasItsWidthAndTheInkOfItsSurroundings) {
  const QImage image =
      Drawn(Drawing(R"(<path d="M2 5 H8" fill="none" stroke="currentColor" stroke-width="2"/>)"));
  EXPECT_EQ(image.pixel(5, 4), kGreen);
  EXPECT_EQ(image.pixel(5, 5), kGreen);
  EXPECT_EQ(image.pixel(5, 3), kNothing);
  EXPECT_EQ(image.pixel(5, 6), kNothing);
  EXPECT_EQ(image.pixel(1, 5), kNothing);
}

TEST(LineDrawing, AGroupsStyleHoldsForWhatIsInItUnlessThatSaysOtherwise) {
  const QImage image = Drawn(Drawing(R"(<g fill="#ff0000"><g>
      <rect x="0" y="0" width="3" height="3"/></g>
      <rect x="5" y="0" width="3" height="3" fill="#0000ff"/></g>
      <rect x="0" y="5" width="3" height="3"/>)"));
  EXPECT_EQ(image.pixel(1, 1), kRed);
  EXPECT_EQ(image.pixel(6, 1), kBlue);
  EXPECT_EQ(image.pixel(1, 6), kBlack);
}

TEST(LineDrawing, AnOpacityLetsTheGroundThrough) {
  const QImage image = Drawn(
      Drawing(R"(<rect x="0" y="0" width="9" height="9" fill="#ff0000" fill-opacity="0.5"/>)"));
  EXPECT_NEAR(qAlpha(image.pixel(4, 4)), 128, 1);
}

TEST(LineDrawing, KeepsItsProportionsInTheMiddleOfTheBox) {
  const QImage image = Drawn(
      Drawing(R"(<rect x="0" y="0" width="10" height="10" fill="#ff0000"/>)"), {0, 0, 20, 10});
  EXPECT_EQ(image.pixel(4, 5), kNothing);
  EXPECT_EQ(image.pixel(5, 0), kRed);
  EXPECT_EQ(image.pixel(14, 9), kRed);
  EXPECT_EQ(image.pixel(15, 5), kNothing);
}

TEST(LineDrawing, OneThatIsNotWhollyUnderstoodIsEmpty) {
  EXPECT_FALSE(Drawing(R"(<path d="M2 5 H8"/>)").IsEmpty());
  for (const char* content :
       {R"(<text>a</text>)", R"(<path d="Q"/>)", R"(<path d="M2 5 H8" transform="none"/>)",
        R"(<rect x="0" y="0" width="a" height="1"/>)", R"(<circle cx="1" cy="1"/>)",
        R"(<g id="a"><path d="M2 5 H8"/></g>)", R"(<path d="M2 5 H8" fill="#xyz"/>)",
        R"(<path d="M2 5 H8" stroke-linecap="square"/>)", R"(<path d="M2 5 H8"><g/></path>)",
        R"(<path d="M2 5 H8">)"}) {
    EXPECT_TRUE(Drawing(content).IsEmpty()) << content;
  }
  EXPECT_TRUE(LineDrawing::FromText(R"(<svg><path d="M2 5 H8"/></svg>)").IsEmpty());
  EXPECT_TRUE(LineDrawing::FromText("").IsEmpty());
  EXPECT_TRUE(LineDrawing(":/pictures/none.svg").IsEmpty());
}

TEST(LineDrawing, AnEmptyOneDrawsNothing) {
  EXPECT_EQ(Drawn(Drawing("<text/>")), Drawn(Drawing("<text/>"), {}));
  EXPECT_EQ(Drawn(Drawing("<text/>")).pixel(5, 5), kNothing);
}

}  // namespace
}  // namespace morvex::test
