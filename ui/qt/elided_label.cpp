#include "ui/qt/elided_label.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>

#include "ui/qt/tool_tip.h"

namespace morvex {
namespace {

constexpr int kPadding = 2;

}  // namespace

ElidedLabel::ElidedLabel(Qt::TextElideMode mode, QWidget* parent) : QFrame(parent), mode_(mode) {
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void ElidedLabel::ShowText(const QString& text) {
  if (text == text_) return;
  text_ = text;
  setAccessibleDescription(text);
  UpdateToolTip();
  update();
}

void ElidedLabel::ShowHint(const QString& hint) {
  if (hint == hint_) return;
  hint_ = hint;
  UpdateToolTip();
}

QString ElidedLabel::ShownText() const {
  return fontMetrics().elidedText(text_, mode_, contentsRect().width());
}

QSize ElidedLabel::sizeHint() const { return {0, fontMetrics().height() + 2 * kPadding}; }

void ElidedLabel::UpdateToolTip() {
  QString tip = hint_;
  if (ShownText() != text_) {
    if (!tip.isEmpty()) tip += '\n';
    tip += text_;
  }
  setToolTip(PlainToolTip(tip));
}

void ElidedLabel::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange) {
    updateGeometry();
    UpdateToolTip();
  }
  QFrame::changeEvent(event);
}

void ElidedLabel::mousePressEvent(QMouseEvent* event) { event->accept(); }

void ElidedLabel::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && rect().contains(event->pos())) emit Clicked();
}

void ElidedLabel::resizeEvent(QResizeEvent* event) {
  QFrame::resizeEvent(event);
  UpdateToolTip();
}

void ElidedLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const Qt::Alignment alignment =
      QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter);
  style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment) | Qt::TextSingleLine,
                        palette(), isEnabled(), ShownText(), foregroundRole());
}

}  // namespace morvex
