#include "ui/qt/grow_window.h"

#include <QScreen>
#include <QWidget>
#include <algorithm>

namespace morvex {

void GrowTo(QWidget& window, int height) {
  window.resize(window.width(), height);
  const QRect screen = window.screen()->availableGeometry();
  const QRect frame = window.frameGeometry();
  const int below = frame.bottom() - screen.bottom();
  if (below > 0) window.move(frame.left(), std::max(screen.top(), frame.top() - below));
}

}  // namespace morvex
