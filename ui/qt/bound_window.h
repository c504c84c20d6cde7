// A window on the screen that shows one of the program's windows. It reports events to the core's
// handlers and otherwise only shows state: Show() brings every widget in line with it.
#pragma once

#include <QWidget>

#include "core/forms/control.h"
#include "ui/qt/spoken_roles.h"

namespace morvex {

class BoundWindow : public QWidget {
 public:
  // `state` must outlive the widget.
  // Roles come before the widgets: what a widget is to a screen reader is settled at first mention.
  explicit BoundWindow(Form& state) : state_(state) { TellSpokenRoles(); }

  // Shows the state as it is now. No handler of the core is called for what that changes.
  virtual void Show() = 0;

  // Whether it is to be on the screen.
  virtual bool IsWanted() const { return state_.loaded && state_.visible; }

  Form& state() { return state_; }

 private:
  Form& state_;
};

}  // namespace morvex
