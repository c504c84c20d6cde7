// The options window on the screen: wildcard, separator, logging, and the extensions of the files
// that are scanned. The list of extensions opens below its entry field and covers the controls
// below that field.
#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

#include "core/program/program.h"
#include "ui/qt/bound_window.h"
#include "ui/qt/byte_line_edit.h"
#include "ui/qt/code_page.h"
#include "ui/qt/extension_list.h"
#include "ui/qt/picture_button.h"

class QItemSelection;

namespace morvex {

class OptionsWindowWidget : public BoundWindow {
  Q_OBJECT

 public:
  // `file_names` is for paths, `page` for every other text. All must outlive the widget.
  OptionsWindowWidget(Program& program, const CodePage& page, const CodePage& file_names);

  void Show() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void NameControls();
  void LayOut();
  void OrderTabs();
  void ConnectEvents();

  bool TakeEntryKey(const QKeyEvent& event);
  bool TakeListKey(const QKeyEvent& event);
  void TakeSelection(const QItemSelection& selected, const QItemSelection& deselected);
  void TakeEscape();

  void ShowTexts();
  void ShowLogging();
  void ShowList();
  void ShowFocus();
  void MakeRoomForList(bool is_open);
  void PlaceList();
  QWidget* WidgetOf(const Control* control) const;

  Program& program_;
  OptionsForm& state_;
  const CodePage& page_;
  const CodePage& file_names_;
  QLabel* const lblJoker_;
  QLabel* const lblJokerWhere_;
  ByteLineEdit* const txtJoker_;
  QLabel* const lblSeparator_;
  QLabel* const lblSeparatorWhere_;
  ByteLineEdit* const txtSeparator_;
  QLabel* const lblExtensies_;
  ByteLineEdit* const txtExtensie_;
  QToolButton* const cmdListExtensie_Down_;
  QCheckBox* const chkLoggen_;
  PictureButton* const imOptionsToFolder_;
  QPushButton* const cmdToepassen_;
  ExtensionList* const lstExtensie_;  // the last child, so it is drawn above the others
  std::uint64_t focus_requests_ = 0;
  bool showing_ = false;    // true while Show runs: signals of widgets do not come from the user
  int grown_for_list_ = 0;  // pixels by which the open list made the window taller
  bool is_placed_ = false;  // whether the window got its first position; then the user moves it
};

}  // namespace morvex
