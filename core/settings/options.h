// The handlers of the options window: wildcard, separator, logging and the extension filter.
//
// The window's list of extensions is the filter itself, so a change of the list takes effect at
// once. The button cmdToepassen applies only wildcard and separator. No function of this file
// writes a file.
#pragma once

#include <cstddef>
#include <string>

#include "core/program/program.h"

namespace morvex {

// Turns what was typed into an extension entry: "." and the extension. Returns the empty text,
// after a message, when the entry would hold more than one ".".
std::string FormatExtensie(Program& program, const std::string& typed);

// The main window's options picture: shows the options window and activates it. Does nothing while
// a run works or a list is being read.
void imOpties_Click(Program& program);

// Sets the window's fields from the settings; typed text that was not applied is lost. Only
// imOpties_Click calls this function. The user interface must not call it when a message box over
// the window is closed, because typed text would be lost.
void frmOpties_Activate(Program& program);
// The window's close box: hides it and applies nothing.
void frmOpties_Close(Program& program);

// Keys of the entry field; `key` and `shift` as in core/forms/keys.h.
void txtExtensie_KeyDown(Program& program, int key, int shift);
void txtExtensie_GotFocus(Program& program);

// Handles only the keys that add or remove an extension.
void lstExtensie_KeyDown(Program& program, int key, int shift);
// The user selects or deselects an entry, which becomes the current one. Does nothing for an index
// out of range.
void lstExtensie_Select(Program& program, std::size_t index, bool selected);
// The list loses the focus: counts the entries and updates the labels that show them.
void lstExtensie_Validate(Program& program);
void cmdListExtensie_Down_Click(Program& program);

// Sets the logging box. A value that the box cannot take changes nothing.
void chkLoggen_Click(Program& program, int value);

// Applies separator and wildcard and hides the window. Does nothing while a run works or a list is
// being read.
void cmdToepassen_Click(Program& program);

// Shows a message that names the settings file's folder. If the file exists, opens the file browser
// there.
void imOptionsToFolder_Click(Program& program);

}  // namespace morvex
