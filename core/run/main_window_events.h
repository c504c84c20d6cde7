// The main window's events other than Anonymize and Go, the start delay, and the program's end.
// Declared elsewhere: imOpties_Click and imList_Click (clicks on the two pictures), Text1_Change
// (typing in a path box).
#pragma once

#include <chrono>
#include <string>

#include "core/program/main_window_paths.h"
#include "core/program/program.h"

namespace morvex {

// A click on the window or on lblFiles closes the options window's extension list.
void frmMorvex_Click(Program& program);
void lblFiles_Click(Program& program);

// The pointer moves over one of the two pictures.
void imOpties_MouseMove(Program& program);
void imList_MouseMove(Program& program);

// Shows the folder tree instead of a path box; `index` is kSourceBox or kTargetBox.
void Text1_DblClick(Program& program, int index);
// A folder was chosen in the tree: shows the box again, with the folder's path.
void FolderTreeview1_FolderChosen(Program& program, const std::string& folder);
// The tree was closed without a choice: shows the box again, as it was.
void FolderTreeview1_Cancelled(Program& program);
// Any other event of the tree: notes the event's folder in last_folder_event.
void FolderTreeview1_FolderEvent(Program& program, const std::string& folder);

// Waits for `duration`, the delay before an unattended run. Handles window events meanwhile and
// ends early if the program is to stop.
void Wait(Program& program, std::chrono::milliseconds duration);
void Timer1_Timer(Program& program);

// Ends the program: stops a run at its next check and unloads every form. Closing the main window
// does the same.
void cmdExit_Click(Program& program);
void frmMorvex_Close(Program& program);

}  // namespace morvex
