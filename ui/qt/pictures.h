// The program's pictures and the widgets that show them.
#pragma once

#include <QColor>
#include <QCursor>
#include <QIcon>
#include <QString>
#include <QWidget>

#include "ui/qt/line_drawing.h"

namespace morvex {

// A drawing without any action.
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

// Returns a drawing as an icon with lines in the colour `ink`.
QIcon DrawingIcon(const QString& resource, const QColor& ink);

// Returns the icon of the program's windows.
QIcon ProgramIcon();

// Returns the cursor for clickable pictures, sharp on a screen of that scale (1 or more).
QCursor HandCursor(qreal scale);

}  // namespace morvex
