#include "ui/qt/pictures.h"

#include <QFile>
#include <QPainter>
#include <QPixmap>
#include <array>
#include <cmath>

// The toolkit wants this outside every namespace.
static void InitResource() { Q_INIT_RESOURCE(pictures); }

namespace morvex {
namespace {

constexpr int kCursorSize = 32;
// The tip of the pointing finger, in a cursor of that size.
constexpr int kHotX = 11;
constexpr int kHotY = 3;

constexpr std::array<int, 8> kIconSizes = {16, 22, 24, 32, 48, 64, 128, 256};

QByteArray Contents(const QString& resource) {
  LoadPictures();
  QFile file(resource);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QPixmap Rendered(const QString& resource, int size, const QColor& ink = Qt::black) {
  QPixmap pixmap(size, size);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  LineDrawing(resource).Paint(painter, QRectF(0, 0, size, size), ink);
  return pixmap;
}

}  // namespace

void LoadPictures() { InitResource(); }

LineDrawing::LineDrawing(const QString& resource) : source_(Contents(resource)) {}

void LineDrawing::Paint(QPainter& painter, const QRectF& box, const QColor& ink) {
  if (ink != loaded_ink_) {
    QByteArray inked = source_;
    inked.replace("currentColor", ink.name().toLatin1());
    renderer_.load(inked);
    loaded_ink_ = ink;
  }
  const QSizeF size = QSizeF(renderer_.defaultSize()).scaled(box.size(), Qt::KeepAspectRatio);
  QRectF place(QPointF(), size);
  place.moveCenter(box.center());
  renderer_.render(&painter, place);
}

PictureView::PictureView(const QString& resource, QWidget* parent)
    : QWidget(parent), drawing_(resource) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void PictureView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
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
