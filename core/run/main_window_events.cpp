#include "core/run/main_window_events.h"

namespace morvex {
namespace {

void HideExtensionList(Program& program) { program.frmOpties.lstExtensie.visible = false; }

void PutBoxBack(Program& program) {
  MainForm& form = program.frmMorvex;
  form.FolderTreeview1.visible = false;
  form.Text1(form.EditedBox).visible = true;
}

}  // namespace

void frmMorvex_Click(Program& program) { HideExtensionList(program); }

void lblFiles_Click(Program& program) { HideExtensionList(program); }

void imOpties_MouseMove(Program& program) {
  program.frmMorvex.imOpties.mouse_pointer = MousePointer::kCustom;
}

void imList_MouseMove(Program& program) {
  program.frmMorvex.imList.mouse_pointer = MousePointer::kCustom;
}

void Text1_DblClick(Program& program, int index) {
  MainForm& form = program.frmMorvex;
  // One tree serves both boxes. If it is open for one of them, that box is shown again first.
  if (form.FolderTreeview1.visible) PutBoxBack(program);
  form.Text1(index).visible = false;
  form.FolderTreeview1.selected_folder = form.Text1(index).text.get();
  form.FolderTreeview1.visible = true;
  form.focus = &form.FolderTreeview1;
  form.EditedBox = index;
}

void FolderTreeview1_FolderChosen(Program& program, const std::string& folder) {
  MainForm& form = program.frmMorvex;
  form.FolderTreeview1.selected_folder = folder;
  PutBoxBack(program);
  Text1_Change(program, form.EditedBox, folder);
}

void FolderTreeview1_Cancelled(Program& program) { PutBoxBack(program); }

void FolderTreeview1_FolderEvent(Program& program, const std::string& folder) {
  program.frmMorvex.FolderTreeview1.last_folder_event = folder;
}

void Wait(Program& program, std::chrono::milliseconds duration) {
  MainForm& form = program.frmMorvex;
  form.Timer1.enabled = true;
  form.Timer1.interval_ms = static_cast<int>(duration.count());
  form.lblTotalFiles.caption = "Momentje...";
  const std::chrono::milliseconds end = program.host.system.SteadyTime() + duration;
  while (form.Timer1.enabled && !program.Beeindigd) {
    const std::chrono::milliseconds left = end - program.host.system.SteadyTime();
    if (left.count() <= 0) {
      Timer1_Timer(program);
    } else {
      program.host.user.WaitForEvents(left);
    }
  }
  form.lblTotalFiles.caption = "Bezig met scannen...";
}

void Timer1_Timer(Program& program) { program.frmMorvex.Timer1.enabled = false; }

void cmdExit_Click(Program& program) {
  program.Beeindigd = true;
  Unload(program.frmReplacements);
  Unload(program.frmOpties);
  Unload(program.frmMorvex);
}

void frmMorvex_Close(Program& program) { cmdExit_Click(program); }

}  // namespace morvex
