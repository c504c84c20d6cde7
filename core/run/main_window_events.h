// The main window's events that are not the run driver's, the start delay, and the program's end.
// (The two pictures open windows of other rooms: imOpties_Click, imList_Click. Typing in a path box
// is Text1_Change.)
#pragma once

#include <chrono>
#include <string>

#include "core/program/main_window_paths.h"
#include "core/program/program.h"

namespace morvex {

// A click on the window or on lblFiles puts the options window's open list away.
void frmMorvex_Click(Program& program);
void lblFiles_Click(Program& program);

// The pointer is over one of the two pictures.
void imOpties_MouseMove(Program& program);
void imList_MouseMove(Program& program);

// Shows the folder tree in place of a path box; `index` is kSourceBox or kTargetBox.
void Text1_DblClick(Program& program, int index);
// The tree's folder was chosen: the box comes back with it.
void FolderTreeview1_FolderChosen(Program& program, const std::string& folder);
// The choice was given up: the box comes back as it was.
void FolderTreeview1_Cancelled(Program& program);
// Any other event of the tree, about `folder`.
void FolderTreeview1_FolderEvent(Program& program, const std::string& folder);

// Waits before an unattended run while the window stays alive; ends early when the program is to
// stop.
void Wait(Program& program, std::chrono::milliseconds duration);
void Timer1_Timer(Program& program);

// Ends the program: a run that works stops at its next check, and every window is unloaded. Closing
// the main window is the same.
void cmdExit_Click(Program& program);
void frmMorvex_Close(Program& program);

}  // namespace morvex
