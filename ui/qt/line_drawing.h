// Line drawings: small SVG files whose lines take their colour from the surroundings, so they read
// on a light ground and on a dark one, and that are drawn anew for every size and scale.
//
// Of SVG they use rectangles, circles, outlines and groups with plain colours; that much is read
// here, which spares the program a library.
#pragma once

#include <QByteArray>
#include <QColor>
#include <QPainterPath>
#include <QRectF>
#include <QString>
#include <QtGlobal>
#include <vector>

class QPainter;

namespace morvex {

// Makes ":/pictures/NAME.svg" known to the toolkit. May be called often.
void LoadPictures();

// What an outline is filled or stroked with.
struct DrawingInk {
  enum class Kind { kNone, kColour, kSurroundings };
  Kind kind = Kind::kNone;
  QColor colour;  // With kColour.
  qreal opacity = 1;
};

struct DrawingStyle {
  DrawingInk fill = {DrawingInk::Kind::kColour, Qt::black, 1};
  DrawingInk stroke;
  qreal stroke_width = 1;
  Qt::PenCapStyle cap = Qt::FlatCap;
  Qt::PenJoinStyle join = Qt::SvgMiterJoin;
};

struct DrawingShape {
  QPainterPath path;
  DrawingStyle style;
};

// One drawing.
class LineDrawing {
 public:
  // `resource` as in ":/pictures/folder.svg". A drawing with anything in it that is not understood
  // is empty.
  explicit LineDrawing(const QString& resource);
  static LineDrawing FromText(const QByteArray& svg);

  bool IsEmpty() const { return shapes_.empty(); }

  // Draws it as large as `box` allows without changing its proportions, in the middle. Lines that
  // the drawing leaves to its surroundings ("currentColor") take `ink`.
  void Paint(QPainter& painter, const QRectF& box, const QColor& ink) const;

 private:
  LineDrawing() = default;

  QRectF view_;
  std::vector<DrawingShape> shapes_;
};

}  // namespace morvex
