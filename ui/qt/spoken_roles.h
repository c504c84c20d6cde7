#pragma once

namespace morvex {

// Has screen readers say what the program's own widgets are: windows, dialogs and labels. Calling
// it again changes nothing.
void TellSpokenRoles();

}  // namespace morvex
