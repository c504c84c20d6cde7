// A window on the screen that shows one of the core's forms. It passes the user's events on to the
// core's handlers, and Show() sets every widget to the form's state.
#pragma once

#include <QWidget>

#include "core/forms/control.h"
#include "ui/qt/spoken_roles.h"

namespace morvex {

class BoundWindow : public QWidget {
 public:
  // `state` must outlive the widget. Installs the roles for screen readers before any widget is
  // made, because the toolkit determines a widget's role only once.
  explicit BoundWindow(Form& state) : state_(state) { TellSpokenRoles(); }

  // Shows the current state. Texts and values that the user enters reach the core's handlers; those
  // that this call sets do not. A focus that this call moves may reach them.
  virtual void Show() = 0;

  // Whether the window should be on the screen.
  virtual bool IsWanted() const { return state_.loaded && state_.visible; }

  Form& state() { return state_; }

 private:
  Form& state_;
};

}  // namespace morvex
