// The program's pictures: line drawings that take their colour from the palette, so they read on a
// light ground and on a dark one, and that are drawn anew for every size and scale.
#pragma once

#include <QByteArray>
#include <QColor>
#include <QCursor>
#include <QIcon>
#include <QRectF>
#include <QString>
#include <QSvgRenderer>
#include <QWidget>

class QPainter;

namespace morvex {

// Makes ":/pictures/NAME.svg" known to the toolkit. May be called often.
void LoadPictures();

// One drawing. Lines that the drawing leaves to its surroundings ("currentColor") take `ink`.
class LineDrawing {
 public:
  // `resource` as in ":/pictures/folder.svg".
  explicit LineDrawing(const QString& resource);

  // Draws it as large as `box` allows without changing its proportions, in the middle.
  void Paint(QPainter& painter, const QRectF& box, const QColor& ink);

 private:
  QByteArray source_;
  QSvgRenderer renderer_;
  QColor loaded_ink_;
};

// A drawing that is only looked at.
class PictureView : public QWidget {
  Q_OBJECT

 public:
  explicit PictureView(const QString& resource, QWidget* parent = nullptr);
  QSize sizeHint() const override { return {40, 40}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  LineDrawing drawing_;
};

// A drawing as an icon on a ground where `ink` reads.
QIcon DrawingIcon(const QString& resource, const QColor& ink);

// The icon of the program's windows.
QIcon ProgramIcon();

// The cursor over what can be clicked, sharp on a screen of that scale (1 and up).
QCursor HandCursor(qreal scale);

}  // namespace morvex
