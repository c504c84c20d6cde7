// The program on the screen: shows the three windows, repaints them when their state has changed,
// and reports the end when no window is loaded any more.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <array>
#include <cstdint>

#include "core/program/program.h"
#include "ui/qt/bound_window.h"
#include "ui/qt/code_page.h"
#include "ui/qt/editor_window.h"
#include "ui/qt/main_window.h"
#include "ui/qt/options_window.h"

namespace morvex {

class Desktop : public QObject {
  Q_OBJECT

 public:
  // `program` must outlive the object.
  explicit Desktop(Program& program);
  ~Desktop() override;

  // Repaints now what has changed. Without this call, a first change is shown at once, and the
  // changes that follow are shown at most thirty times a second.
  void Refresh();

  MainWindowWidget& main_window() { return main_window_; }
  OptionsWindowWidget& options_window() { return options_window_; }
  EditorWindowWidget& editor_window() { return editor_window_; }

 signals:
  // Emitted when no window is loaded any more.
  void Ended();

 protected:
  // F1 in any of the windows opens the help file.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void NoteChange();

  Program& program_;
  CodePage page_;
  CodePage file_names_;
  MainWindowWidget main_window_;
  OptionsWindowWidget options_window_;
  EditorWindowWidget editor_window_;
  std::array<BoundWindow*, 3> windows_;
  std::array<std::uint64_t, 3> shown_revisions_{};
  QTimer timer_;
  QElapsedTimer since_refresh_;
  bool was_loaded_ = false;
};

}  // namespace morvex
