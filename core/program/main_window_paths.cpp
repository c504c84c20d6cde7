#include "core/program/main_window_paths.h"

namespace morvex {

void Text1_Change(Program& program, int index, const std::string& text) {
  MainForm& form = program.frmMorvex;
  TextBox& box = form.Text1(index);
  if (box.text.get() == text) return;
  box.text = text;
  box.colour = Colour::kBlack;
  // After a refused run, the new path may be the right one, so a run can be armed again.
  if (!program.run.working) form.cmdAnonymize.enabled = true;
  form.cmdGo.enabled = false;
  form.cmdGo.caption = kGoPathsChanged;
}

}  // namespace morvex
