#include "ui/qt/pictures.h"

#include <QPainter>
#include <QPixmap>
#include <array>
#include <cmath>

namespace morvex {
namespace {

constexpr int kCursorSize = 32;
// The offsets of the pointing finger's tip, in pixels, in a cursor of kCursorSize pixels.
constexpr int kHotX = 11;
constexpr int kHotY = 3;

constexpr std::array<int, 8> kIconSizes = {16, 22, 24, 32, 48, 64, 128, 256};

QPixmap Rendered(const QString& resource, int size, const QColor& ink = Qt::black) {
  QPixmap pixmap(size, size);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  LineDrawing(resource).Paint(painter, QRectF(0, 0, size, size), ink);
  return pixmap;
}

}  // namespace

PictureView::PictureView(const QString& resource, QWidget* parent)
    : QWidget(parent), drawing_(resource) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void PictureView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  drawing_.Paint(painter, rect(), palette().color(QPalette::WindowText));
}

QIcon DrawingIcon(const QString& resource, const QColor& ink) {
  QIcon icon;
  for (const int size : kIconSizes) icon.addPixmap(Rendered(resource, size, ink));
  return icon;
}

QIcon ProgramIcon() { return DrawingIcon(":/pictures/morvex.svg", Qt::black); }

QCursor HandCursor(qreal scale) {
  QPixmap pixmap =
      Rendered(":/pictures/hand.svg", static_cast<int>(std::ceil(kCursorSize * scale)));
  pixmap.setDevicePixelRatio(scale);
  return QCursor(pixmap, kHotX, kHotY);
}

}  // namespace morvex
