#include "ui/qt/options_window.h"

namespace morvex {

OptionsWindowWidget::OptionsWindowWidget(Program& program, const CodePage& page)
    : BoundWindow(program.frmOpties), program_(program), page_(page) {
  setObjectName("frmOpties");
}

void OptionsWindowWidget::Show() { setWindowTitle(page_.Shown(program_.frmOpties.caption.get())); }

}  // namespace morvex
