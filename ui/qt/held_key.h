// A key that is held down repeats. Each repetition goes to the widget that has the focus at that
// moment.
#pragma once

#include <QObject>

namespace morvex {

// Event filter that drops the repetitions of a held Enter key.
class HeldEnterFilter : public QObject {
 public:
  using QObject::QObject;

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // The timestamp of the last release of Enter, in milliseconds; 0 when unknown.
  quint64 released_at_ = 0;
};

}  // namespace morvex
