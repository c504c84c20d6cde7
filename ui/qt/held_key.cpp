#include "ui/qt/held_key.h"

#include <QKeyEvent>

namespace morvex {

bool HeldEnterFilter::eventFilter(QObject* watched, QEvent* event) {
  const bool is_press = event->type() == QEvent::KeyPress;
  if (is_press || event->type() == QEvent::KeyRelease) {
    const auto* const key = static_cast<const QKeyEvent*>(event);
    if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
      const quint64 time = key->timestamp();
      // An X server sends a repetition as a release and a press with the same timestamp; the
      // toolkit reports a new press when it reads these two events separately.
      const bool is_again = time != 0 && time == released_at_;
      if (is_press && (key->isAutoRepeat() || is_again)) return true;
      if (!is_press) released_at_ = time;
    }
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace morvex
