// A window on the screen that shows one of the program's windows. It reports events to the core's
// handlers and otherwise only shows state: Show() brings every widget in line with it.
#pragma once

#include <QWidget>

#include "core/windows/control.h"

namespace morvex {

class BoundWindow : public QWidget {
 public:
  // `state` must outlive the widget.
  explicit BoundWindow(Window& state) : state_(state) {}

  // Shows the state as it is now. No handler of the core is called for what that changes.
  virtual void Show() = 0;

  Window& state() { return state_; }

 private:
  Window& state_;
};

}  // namespace morvex
