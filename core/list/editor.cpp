#include "core/list/editor.h"

#include "core/list/grid.h"

namespace morvex {

void imList_Click(Program& program) {
  if (IsBusy(program) || program.Beeindigd) return;
  LoadGrid(program);
  program.frmReplacements.cmdJoker.caption = WildcardText(program.settings.gJoker);
  program.frmReplacements.visible = true;
  program.frmMorvex.visible = false;
}

void RefreshFormReplacements(Program& program) {
  Unload(program.frmReplacements);
  imList_Click(program);
}

void frmReplacements_Close(Program& program) {
  Unload(program.frmReplacements);
  program.frmMorvex.visible = program.frmMorvex.loaded.get();
}

}  // namespace morvex
