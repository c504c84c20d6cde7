#pragma once

namespace morvex {

// Tells screen readers the roles of the program's own widget classes: window, dialog, label.
// Further calls change nothing.
void TellSpokenRoles();

}  // namespace morvex
