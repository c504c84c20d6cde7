// A key that is held down repeats, and its repetitions go to whatever has the focus by then.
#pragma once

#include <QObject>

namespace morvex {

// Event filter that drops the repetitions of a held Enter key.
class HeldEnterFilter : public QObject {
 public:
  using QObject::QObject;

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // The timestamp of the key's last release, in milliseconds; 0 when unknown.
  quint64 released_at_ = 0;
};

}  // namespace morvex
