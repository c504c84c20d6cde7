#include "ui/qt/editor_window.h"

namespace morvex {

EditorWindowWidget::EditorWindowWidget(Program& program, const CodePage& page)
    : BoundWindow(program.frmReplacements), program_(program), page_(page) {
  setObjectName("frmReplacements");
}

void EditorWindowWidget::Show() {
  setWindowTitle(page_.Shown(program_.frmReplacements.caption.get()));
}

}  // namespace morvex
