// The program's pictures, and what shows them.
#pragma once

#include <QColor>
#include <QCursor>
#include <QIcon>
#include <QString>
#include <QWidget>

#include "ui/qt/line_drawing.h"

namespace morvex {

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
