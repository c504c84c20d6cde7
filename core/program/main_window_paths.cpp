#include "core/program/main_window_paths.h"

namespace morvex {

void Text1_Change(Program& program, int index, const std::string& text) {
  MainForm& window = program.frmMorvex;
  TextBox& box = window.Text1(index);
  if (box.text.get() == text) return;
  box.text = text;
  box.colour = Colour::kBlack;
  // Whatever a run was refused for, it can be armed anew.
  if (!program.run.working) window.cmdAnonymize.enabled = true;
  window.cmdGo.enabled = false;
  window.cmdGo.caption = kGoPathsChanged;
}

}  // namespace morvex
