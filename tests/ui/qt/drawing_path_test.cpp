// Outlines read from the text of a drawing's file.
#include "ui/qt/drawing_path.h"

#include <gtest/gtest.h>

#include <QRectF>

namespace morvex::test {
namespace {

void ExpectBounds(const QString& text, const QRectF& expected) {
  const std::optional<QPainterPath> path = ReadPath(text);
  ASSERT_TRUE(path) << text.toStdString();
  const QRectF found = path->boundingRect();
  EXPECT_NEAR(found.left(), expected.left(), 1e-3) << text.toStdString();
  EXPECT_NEAR(found.top(), expected.top(), 1e-3) << text.toStdString();
  EXPECT_NEAR(found.right(), expected.right(), 1e-3) << text.toStdString();
  EXPECT_NEAR(found.bottom(), expected.bottom(), 1e-3) << text.toStdString();
}

TEST(DrawingPath, LinesGoToAbsoluteAndRelativePoints) {
  ExpectBounds("M2 3 L10 3 L10 9", {2, 3, 8, 6});
  ExpectBounds("M2 3 l8 0 l0 6", {2, 3, 8, 6});
  ExpectBounds("M2 3 H10 V9", {2, 3, 8, 6});
  ExpectBounds("M2 3 h8 v6", {2, 3, 8, 6});
}

TEST(DrawingPath, PointsAfterAMoveAreLines) {
  ExpectBounds("M2 3 10 3 10 9", {2, 3, 8, 6});
  ExpectBounds("m2 3 8 0 0 6", {2, 3, 8, 6});
}

TEST(DrawingPath, NumbersMayHaveSignsFractionsAndCommas) {
  ExpectBounds("M-2,3.5L6.25,-1", {-2, -1, 8.25, 4.5});
}

TEST(DrawingPath, ZGoesBackToTheFirstPoint) {
  const std::optional<QPainterPath> path = ReadPath("M2 3 H10 V9 z");
  ASSERT_TRUE(path);
  EXPECT_EQ(path->currentPosition(), QPointF(2, 3));
}

// Four arcs with radius 10 lead from (10, 0) to (0, 10): a short and a long one on each of two
// circles.
TEST(DrawingPath, AnArcTakesTheCircleAndTheWayThatItsFlagsName) {
  ExpectBounds("M10 0 A10 10 0 0 1 0 10", {0, 0, 10, 10});
  ExpectBounds("M10 0 A10 10 0 1 1 0 10", {0, 0, 20, 20});
  ExpectBounds("M10 0 A10 10 0 0 0 0 10", {0, 0, 10, 10});
  ExpectBounds("M10 0 A10 10 0 1 0 0 10", {-10, -10, 20, 20});
  // The two short arcs lie on different sides of the line between their ends.
  EXPECT_TRUE(ReadPath("M10 0 A10 10 0 0 1 0 10 Z")->contains(QPointF(6, 6)));
  EXPECT_FALSE(ReadPath("M10 0 A10 10 0 0 1 0 10 Z")->contains(QPointF(4, 4)));
  EXPECT_FALSE(ReadPath("M10 0 A10 10 0 0 0 0 10 Z")->contains(QPointF(6, 6)));
  EXPECT_TRUE(ReadPath("M10 0 A10 10 0 0 0 0 10 Z")->contains(QPointF(4, 4)));
}

TEST(DrawingPath, AnArcEndsAtItsPoint) {
  const std::optional<QPainterPath> path = ReadPath("M10 4 a3 3 0 0 1 3 -3");
  ASSERT_TRUE(path);
  EXPECT_NEAR(path->currentPosition().x(), 13, 1e-9);
  EXPECT_NEAR(path->currentPosition().y(), 1, 1e-9);
}

TEST(DrawingPath, AnArcTooSmallForItsWayIsHalfACircle) {
  ExpectBounds("M0 0 A1 1 0 0 1 10 0", {0, -5, 10, 5});
}

TEST(DrawingPath, NothingComesOfWhatIsNotUnderstood) {
  for (const char* text :
       {"M1", "M1 x", "M1 2 C1 2 3 4 5 6", "1 2", "M1 2 z 3", "M1 2 A1 2 0 0 1 3 3",
        "M1 2 A1 1 30 0 1 3 3", "M1 2 L--1 2", "M1 2 L. 3"}) {
    EXPECT_FALSE(ReadPath(text)) << text;
  }
}

}  // namespace
}  // namespace morvex::test
