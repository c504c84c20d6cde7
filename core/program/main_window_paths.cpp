#include "core/program/main_window_paths.h"

namespace morvex {

void Text1_Change(Program& program, int index, const std::string& text) {
  MainWindow& window = program.frmMorvex;
  if (window.Text1(index).text.get() == text) return;
  window.Text1(index).text = text;
  window.cmdGo.enabled = false;
  window.cmdGo.caption = kGoPathsChanged;
}

}  // namespace morvex
