#pragma once

#include "core/program/program.h"

namespace morvex {

// Opens the help file with the system's own handler; shows a message when that is not possible.
void ShowHelp(Program& program);

}  // namespace morvex
