// The editor's commands on the whole list, and two commands that insert a text into the cell that
// last lost the focus. All do nothing while a run works or a list is being read.
#pragma once

#include "core/program/program.h"

namespace morvex {

// Inserts the wildcard at CaretPos into the cell that last lost the focus, if that cell is a left
// one.
void cmdJoker_Click(Program& program);
// Inserts "[CRLF]" at CaretPos into the cell that last lost the focus.
void cmdCRLF_Click(Program& program);

// Swaps the left and right text of every row.
void cmdMirror_Click(Program& program);

// Empties the grid and its snapshot (see SnapshotRows). The tables keep the list that was applied
// last.
void cmdReset_Click(Program& program);

// Drops the rows whose two cells are empty, except the last row: writes the grid to the scratch
// file "temp.dat" in the program's folder and imports that file. SubstitutieFile names that file
// afterwards. If the file cannot be written or read back, a message says so and the grid stays as
// it was.
void cmdDeleteEmpty_Click(Program& program);

// Applies the list: rebuilds the tables from the grid, hides the editor and shows the main window.
void cmdOK_Click(Program& program);

}  // namespace morvex
