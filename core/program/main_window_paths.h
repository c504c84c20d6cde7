// The path boxes of the main window.
#pragma once

#include <string>

#include "core/program/program.h"

namespace morvex {

// Puts a text into a path box, for the user or for the program. A new text is black, disables Go
// until the run is armed again, and enables arming unless a run works. `index` is kSourceBox or
// kTargetBox.
void Text1_Change(Program& program, int index, const std::string& text);

}  // namespace morvex
