// The editor's commands on the whole list, and two commands that insert a token into the cell that
// was edited last. All do nothing while a run works or a list is being read.
#pragma once

#include "core/program/program.h"

namespace morvex {

// Inserts the wildcard at the remembered caret of the cell that last lost the focus, if that is a
// left cell.
void cmdJoker_Click(Program& program);
// Inserts "[CRLF]" at the remembered caret of the cell that last lost the focus.
void cmdCRLF_Click(Program& program);

// Swaps the left and right text of every row.
void cmdMirror_Click(Program& program);

// Empties the list and its snapshot. The tables keep the list that was applied last.
void cmdReset_Click(Program& program);

// Drops the rows whose cells are both empty: writes the list to the scratch file "temp.dat" in the
// program's folder and imports it. SubstitutieFile names that file afterwards. When the file cannot
// be written or read back, a message says so and the grid stays as it was.
void cmdDeleteEmpty_Click(Program& program);

// Applies the list: rebuilds the tables from the grid, hides the editor and shows the main window.
void cmdOK_Click(Program& program);

}  // namespace morvex
