// Opening, refreshing and closing the editor of the replacement list.
#pragma once

#include "core/program/program.h"

namespace morvex {

// A click on the main window's list picture: loads the editor if it is not loaded, puts the current
// wildcard on the editor's wildcard button, shows the editor and hides the main window. Does
// nothing while a run works or a list is being read.
void imList_Click(Program& program);

// Closes the editor and opens it again with one empty row. The tables keep the list that was
// applied last.
void RefreshFormReplacements(Program& program);

// The editor's close box: unloads the editor, whose rows are lost, and shows the main window again.
void frmReplacements_Close(Program& program);

}  // namespace morvex
