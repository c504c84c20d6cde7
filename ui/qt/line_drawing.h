// Line drawings: small SVG files. They take their line colour from where they are shown, so that
// they are readable on light and dark backgrounds, and are drawn sharp at every size and scale.
//
// The files use rectangles, circles, paths and groups with plain colours only. LineDrawing reads
// only these, so the program needs no SVG library.
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

// Registers ":/pictures/NAME.svg" with the toolkit. Further calls change nothing.
void LoadPictures();

// How a shape is filled or stroked.
struct DrawingInk {
  enum class Kind { kNone, kColour, kSurroundings };
  Kind kind = Kind::kNone;
  QColor colour;  // for kColour
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

class LineDrawing {
 public:
  // `resource` as in ":/pictures/folder.svg". The drawing is empty if the file holds anything that
  // LineDrawing cannot read.
  explicit LineDrawing(const QString& resource);
  static LineDrawing FromText(const QByteArray& svg);

  bool IsEmpty() const { return shapes_.empty(); }

  // Draws it centred in `box`, as large as its proportions allow. "currentColor" in the drawing
  // becomes `ink`.
  void Paint(QPainter& painter, const QRectF& box, const QColor& ink) const;

 private:
  LineDrawing() = default;

  QRectF view_;
  std::vector<DrawingShape> shapes_;
};

}  // namespace morvex
