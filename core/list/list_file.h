// The editor and list files: importing a file into the grid, saving the grid, and the editor's
// commands "Import" and "Save". They use the separator in force.
#pragma once

#include <string>

#include "core/list/list_format.h"
#include "core/program/program.h"

namespace morvex {

// Writes the grid's rows into a list file. An empty separator becomes the default one first.
ErrorNumber SaveReplacementList(Program& program, const std::string& path);

// Reads the file and calls FillGrid with the result.
void ImportReplacementList(Program& program, const std::string& GetF);

// Fills the grid from row 0 on with what was read of a list file; loads the editor if it is not
// loaded. Does not clear the grid before: texts behind the filled rows stay, and the rows behind
// the list's final row are put only into rows that the grid already has. Handles window events
// meanwhile; if one of them closes the editor, the filling ends and the rows filled so far stay.
// Afterwards SubstitutieFile names the list's file, and list_file_error is the error because of
// which rows are missing, or kNone.
void FillGrid(Program& program, const ListReading& reading);

// The editor's "Import": empties the editor, then imports the file that the user chooses. While the
// settings file is being read it imports the file that SubstitutieFile names, without asking.
void cmdImport_Click(Program& program);

// The editor's "Save": asks for a file, and again before it replaces an existing one.
void cmdSaveList_Click(Program& program);

// Returns the message for a list whose reading ended early.
std::string UnreadListText(const std::string& path, ErrorNumber error);

}  // namespace morvex
