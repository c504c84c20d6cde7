// A key that is held down comes again and again, also to what the focus has passed to meanwhile.
#pragma once

#include <QObject>

namespace morvex {

// Keeps Enter from the widgets that it filters the events of, when it comes again without having
// been let go.
class HeldEnterFilter : public QObject {
 public:
  using QObject::QObject;

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // When it was let go last, in milliseconds; 0 when that is not known.
  quint64 released_at_ = 0;
};

}  // namespace morvex
