#pragma once

#include "core/program/program.h"

namespace morvex {

// Opens the help file with the system's own handler, or says that it is not there.
void ShowHelp(Program& program);

}  // namespace morvex
