// The editor and list files: importing a file into the grid, saving the grid, and the two commands
// for it. The separator is the one in force.
#pragma once

#include <string>

#include "core/list/list_format.h"
#include "core/program/program.h"

namespace morvex {

// Writes the grid's rows into a list file. An empty separator becomes the default one first.
ErrorNumber SaveReplacementList(Program& program, const std::string& path);

// Reads the file and fills the grid with it, see below.
void ImportReplacementList(Program& program, const std::string& GetF);

// Fills the grid from row 0 on with what was read of a list file; loads the editor when it is not
// loaded. The grid is not cleared before: texts behind the filled rows stay, and rows behind the
// list's final one are taken as far as the grid has rows for them. Window events are handled
// meanwhile; when one of them closes the editor the filling ends and the rows filled so far stay.
// Afterwards SubstitutieFile names the list's file and list_file_error holds the error that cost it
// rows.
void FillGrid(Program& program, const ListReading& reading);

// The editor's "Import": empties the editor, then imports the file that the user chooses. While the
// settings file is being read it imports the file that SubstitutieFile names, without asking.
void cmdImport_Click(Program& program);

// The editor's "Save": asks for a file, and again before it replaces an existing one.
void cmdSaveList_Click(Program& program);

// The message for a list whose reading ended early.
std::string UnreadListText(const std::string& path, ErrorNumber error);

}  // namespace morvex
