// The editor and list files: importing a file into the grid, saving the grid, and the editor's
// commands "Import" and "Save". All of them use the separator of the settings.
#pragma once

#include <cstdint>
#include <string>

#include "core/list/list_format.h"
#include "core/program/program.h"

namespace morvex {

// Writes the grid's rows into a list file. First, an empty separator in the settings becomes the
// default one.
ErrorNumber SaveReplacementList(Program& program, const std::string& path);

// Loads the editor if it is not loaded, reads the file `GetF` with ReadListForGrid and puts its
// rows into the grid with FillGrid.
void ImportReplacementList(Program& program, const std::string& GetF);

// Reads a list file. Of the rows behind the list's final row (see list_format.h), returns only as
// many as a grid of `grid_rows` rows has room for. Handles window events meanwhile; until the
// reading ends, the editor's commands do nothing. The reading ends early if the editor is closed or
// the program is to stop.
ListReading ReadListForGrid(Program& program, const std::string& path, std::int64_t grid_rows);

// Fills the grid from row 0 on with what was read of a list file. Does not clear the grid first:
// texts below the filled rows stay. A row behind the list's final row is put only into a row that
// the grid already has. Handles window events meanwhile; if one of them closes the editor, the
// filling ends. If the editor is not loaded, no row is filled. Afterwards SubstitutieFile is the
// path of the list, and list_file_error is the error because of which rows are missing, or kNone.
void FillGrid(Program& program, const ListReading& reading);

// The editor's "Import": empties the editor, then imports the file that the user chooses. While the
// settings file is being read, imports the file SubstitutieFile instead, without asking.
void cmdImport_Click(Program& program);

// The editor's "Save": asks for a file and, if it exists, whether to replace it; then writes the
// grid into it.
void cmdSaveList_Click(Program& program);

// Returns the message for a list whose reading ended early.
std::string UnreadListText(const std::string& path, ErrorNumber error);

}  // namespace morvex
