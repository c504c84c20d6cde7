// Opening, refreshing and closing the editor of the replacement list.
#pragma once

#include "core/program/program.h"

namespace morvex {

// The main window's list picture: loads the editor if it is not loaded, shows it with the wildcard
// in force, and hides the main window. Does nothing while a run works or a list is being read.
void imList_Click(Program& program);

// Closes the editor and opens it again with one empty row; the tables stay.
void RefreshFormReplacements(Program& program);

// The editor's close box: drops the rows and shows the main window again.
void frmReplacements_Close(Program& program);

}  // namespace morvex
