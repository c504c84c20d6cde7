#include "ui/qt/picture_button.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace morvex {
namespace {

constexpr qreal kMargin = 5;
constexpr qreal kCorner = 6;
constexpr qreal kDisabledOpacity = 0.4;

}  // namespace

PictureButton::PictureButton(const QString& svg_resource, QWidget* parent)
    : QAbstractButton(parent), drawing_(svg_resource) {
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setMouseTracking(true);
  setAttribute(Qt::WA_Hover);
}

void PictureButton::ShowPointer(MousePointer pointer) {
  if (pointer == pointer_) return;
  pointer_ = pointer;
  UpdateCursor();
}

void PictureButton::UpdateCursor() {
  if (pointer_ == MousePointer::kCustom) {
    setCursor(HandCursor(devicePixelRatioF()));
  } else {
    unsetCursor();
  }
}

bool PictureButton::event(QEvent* event) {
  // The window may have moved to a screen of another scale.
  if (event->type() == QEvent::Enter) UpdateCursor();
  return QAbstractButton::event(event);
}

void PictureButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    if (!event->isAutoRepeat()) click();
    return;
  }
  QAbstractButton::keyPressEvent(event);
}

void PictureButton::mouseMoveEvent(QMouseEvent* event) {
  QAbstractButton::mouseMoveEvent(event);
  emit PointerMoved();
}

void PictureButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF frame = QRectF(rect()).adjusted(1, 1, -1, -1);
  const QColor ink = palette().color(QPalette::Active, QPalette::WindowText);
  if (isEnabled() && (underMouse() || isDown())) {
    QColor ground = ink;
    ground.setAlphaF(isDown() ? 0.22F : 0.10F);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(frame, kCorner, kCorner);
  }
  if (hasFocus()) {
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(frame, kCorner, kCorner);
  }
  if (!isEnabled()) painter.setOpacity(kDisabledOpacity);
  drawing_.Paint(painter, QRectF(rect()).adjusted(kMargin, kMargin, -kMargin, -kMargin), ink);
}

}  // namespace morvex
