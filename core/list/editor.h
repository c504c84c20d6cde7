// Opening, refreshing and closing the editor of the replacement list.
#pragma once

#include "core/program/program.h"

namespace morvex {

// The main window's list picture: loads the editor when it is not loaded, shows it with the
// wildcard that is now in force, and hides the main window. Nothing while a run works or a list is
// being read.
void imList_Click(Program& program);

// Closes the editor and opens it afresh: its rows are gone, the tables stay.
void RefreshFormReplacements(Program& program);

// The editor's close box: its rows are gone and the main window is shown again.
void frmReplacements_Close(Program& program);

}  // namespace morvex
