// The editor of the replacement list on the screen: two columns of cells with at most six visible
// rows, a scroll bar, and the list's commands below.
//
// Positions and sizes come from the form, in twips. The height follows the list; the user may widen
// the window, which widens both columns.
#pragma once

#include <QLabel>
#include <QScrollBar>
#include <QTimer>
#include <functional>
#include <vector>

#include "core/program/program.h"
#include "ui/qt/bound_window.h"
#include "ui/qt/code_page.h"
#include "ui/qt/grid_band.h"
#include "ui/qt/list_commands.h"
#include "ui/qt/twip_scale.h"

namespace morvex {

class EditorWindowWidget : public BoundWindow {
  Q_OBJECT

 public:
  // Both must outlive the widget.
  EditorWindowWidget(Program& program, const CodePage& page);

  void Show() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void Report(const std::function<void()>& handler);
  void TellFocus();
  void TellCaret(CellAddress cell);
  void ScrollByUser(int value);
  void FocusFirstCell();
  void TakePastedRows(CellAddress cell, const PastedRows& pasted);
  bool TypeInRememberedCell(QKeyEvent& event);

  TwipScale Scale() const;
  void Arrange();
  void ShowSize();
  void ShowHeadings();
  void ShowScrollBar();
  void ShowTabOrder();
  void ShowFocus(std::optional<CellAddress> had_focus);

  Program& program_;
  const CodePage& page_;
  QLabel* const left_heading_;
  QLabel* const right_heading_;
  QScrollBar* const scroll_bar_;
  std::vector<QWidget*> tab_order_;
  bool showing_ = false;  // true while Show runs: signals of widgets do not come from the user
  bool is_sized_ = false;
  GridBand band_;
  ListCommands commands_;
  QTimer tell_focus_later_;
};

}  // namespace morvex
