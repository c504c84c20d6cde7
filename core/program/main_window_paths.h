// The path boxes of the main window.
#pragma once

#include <string>

#include "core/program/program.h"

namespace morvex {

// Puts a text into a path box, for the user or for the program. If the text differs from the old
// one, it is shown in black, Go is disabled until a run is armed again, and, unless a run works, a
// run can be armed again. `index` is kSourceBox or kTargetBox.
void Text1_Change(Program& program, int index, const std::string& text);

}  // namespace morvex
