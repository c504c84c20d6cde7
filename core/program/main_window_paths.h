// The path boxes of the main window.
#pragma once

#include <string>

#include "core/program/program.h"

namespace morvex {

// Either path box takes another text, by typing or by the program: Go is disabled until the run is
// armed again, which it can be unless a run works, and the text is black. The text that stands
// there already changes nothing. `index` is kSourceBox or kTargetBox.
void Text1_Change(Program& program, int index, const std::string& text);

}  // namespace morvex
