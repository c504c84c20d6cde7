// What the options window does: wildcard, separator, logging, and the extension filter.
//
// The window's list is the filter itself; applying takes over only wildcard and separator. Nothing
// here writes a file.
#pragma once

#include <cstddef>
#include <string>

#include "core/program/program.h"

namespace morvex {

// What was typed as an extension entry: "." and the extension. Gives the empty text, after a
// message, when more than one "." is left.
std::string FormatExtensie(Program& program, const std::string& typed);

// The main window's options picture: shows the window modally and activates it. Nothing while a run
// works.
void imOpties_Click(Program& program);

// The window comes up: its fields show the settings, over what was typed and not applied. Called by
// imOpties_Click; a window that becomes active again behind a message keeps what was typed.
void frmOpties_Activate(Program& program);
// The window is closed by its close box: hidden, nothing is applied.
void frmOpties_Close(Program& program);

// Keys of the entry field; `key` and `shift` as in core/forms/keys.h.
void txtExtensie_KeyDown(Program& program, int key, int shift);
void txtExtensie_GotFocus(Program& program);

// Of the keys of the entry field only those that add and remove.
void lstExtensie_KeyDown(Program& program, int key, int shift);
// The user selects or deselects an entry, which gets the focus mark. Nothing for an index outside.
void lstExtensie_Select(Program& program, std::size_t index, bool selected);
// The list loses the focus: the counters and the main window's label follow it.
void lstExtensie_Validate(Program& program);
void cmdListExtensie_Down_Click(Program& program);

// The logging box takes a value. One that it cannot take changes nothing.
void chkLoggen_Click(Program& program, int value);

// Takes separator and wildcard over and hides the window. Nothing while a run works.
void cmdToepassen_Click(Program& program);

// Says in which folder the settings file lies, and opens the file browser there when it exists.
void imOptionsToFolder_Click(Program& program);

}  // namespace morvex
