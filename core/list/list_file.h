// Replacement lists as text files: one row a line, left text, separator, right text; the last row
// has the separator twice more behind it. Nothing is escaped.
//
// The separator is the one in force while a file is read or written; it is not stored in the file.
#pragma once

#include <string>

#include "core/program/program.h"

namespace morvex {

// Writes the grid's rows, without those that are empty on both sides (but always the last), making
// the file or replacing it whole. On failure what stood in the file before is kept where that is
// possible.
ErrorNumber SaveReplacementList(Program& program, const std::string& path);

// Reads the file into the grid from row 0 on; the grid is not cleared before. Loads the editor when
// it is not loaded. Lines without the separator are passed over; reading ends at the end-of-list
// line, the end of the file or an error, and what was read until then stays; so it does when the
// editor is closed meanwhile. SubstitutieFile names
// `GetF` afterwards, whatever happened.
void ImportReplacementList(Program& program, std::string GetF);

// The editor's "Import": an empty editor, then the file that the user chooses (while the settings
// are being read, without asking, the file that they name).
void cmdImport_Click(Program& program);

// The editor's "Save": asks for a file, and before one that exists is replaced.
void cmdSaveList_Click(Program& program);

// What is told of a list whose reading ended early.
std::string UnreadListText(const std::string& path, ErrorNumber error);

}  // namespace morvex
