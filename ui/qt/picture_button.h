// A picture that acts as a button. The mouse presses it; when it has the focus, Space and Enter do
// so, too.
#pragma once

#include <QAbstractButton>
#include <QString>

#include "core/forms/control.h"
#include "ui/qt/pictures.h"

namespace morvex {

class PictureButton : public QAbstractButton {
  Q_OBJECT

 public:
  // `svg_resource` as in ":/pictures/folder.svg". The caller sets an accessible name, since the
  // button has no text.
  PictureButton(const QString& svg_resource, QWidget* parent);

  // Sets the pointer over the picture: the program's own cursor for kCustom, else the window's.
  void ShowPointer(MousePointer pointer);

  QSize sizeHint() const override { return {40, 40}; }

 signals:
  // The pointer moved over the picture.
  void PointerMoved();

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void UpdateCursor();

  LineDrawing drawing_;
  MousePointer pointer_ = MousePointer::kDefault;
};

}  // namespace morvex
