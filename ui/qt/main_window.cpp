#include "ui/qt/main_window.h"

namespace morvex {

MainWindowWidget::MainWindowWidget(Program& program, const CodePage& page)
    : BoundWindow(program.frmMorvex), program_(program), page_(page) {
  setObjectName("frmMorvex");
}

void MainWindowWidget::Show() { setWindowTitle(page_.Shown(program_.frmMorvex.caption.get())); }

}  // namespace morvex
