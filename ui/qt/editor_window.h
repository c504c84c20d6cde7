#pragma once

#include "core/program/program.h"
#include "ui/qt/bound_window.h"
#include "ui/qt/code_page.h"

namespace morvex {

class EditorWindowWidget : public BoundWindow {
  Q_OBJECT

 public:
  // Both must outlive the widget.
  EditorWindowWidget(Program& program, const CodePage& page);

  void Show() override;

 private:
  Program& program_;
  const CodePage& page_;
};

}  // namespace morvex
