// The editor and list files: importing a file into the grid, saving the grid, and the editor's
// commands "Import" and "Save". They use the separator in force.
#pragma once

#include <cstdint>
#include <string>

#include "core/list/list_format.h"
#include "core/program/program.h"

namespace morvex {

// Writes the grid's rows into a list file. An empty separator becomes the default one first.
ErrorNumber SaveReplacementList(Program& program, const std::string& path);

// Loads the editor if it is not loaded, reads the file with ReadListForGrid and puts it into the
// grid with FillGrid.
void ImportReplacementList(Program& program, const std::string& GetF);

// Reads a list file. Of the rows behind the list's final row it returns those that a grid of
// `grid_rows` rows has room for. Handles window events meanwhile, while the editor's commands wait;
// the reading ends if the editor is closed or the program is to stop.
ListReading ReadListForGrid(Program& program, const std::string& path, std::int64_t grid_rows);

// Fills the grid from row 0 on with what was read of a list file. Does not clear the grid before:
// texts behind the filled rows stay, and the rows behind the list's final row are put only into
// rows that the grid already has. Handles window events meanwhile; if one of them closes the
// editor, the filling ends. No row is filled if the editor is not loaded. Afterwards
// SubstitutieFile names the list's file, and list_file_error is the error because of which rows are
// missing, or kNone.
void FillGrid(Program& program, const ListReading& reading);

// The editor's "Import": empties the editor, then imports the file that the user chooses. While the
// settings file is being read it imports the file that SubstitutieFile names, without asking.
void cmdImport_Click(Program& program);

// The editor's "Save": asks for a file, and again before it replaces an existing one.
void cmdSaveList_Click(Program& program);

// Returns the message for a list whose reading ended early.
std::string UnreadListText(const std::string& path, ErrorNumber error);

}  // namespace morvex
