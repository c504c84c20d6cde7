// The main window on the screen: source and target, the commands, the statistics of a run.
#pragma once

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <array>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "core/program/program.h"
#include "ui/qt/bound_window.h"
#include "ui/qt/code_page.h"
#include "ui/qt/elided_label.h"
#include "ui/qt/folder_tree.h"
#include "ui/qt/held_key.h"
#include "ui/qt/path_box.h"
#include "ui/qt/picture_button.h"

class QBoxLayout;
class QGridLayout;

namespace morvex {

class MainWindowWidget : public BoundWindow {
  Q_OBJECT

 public:
  // `file_names` is for paths, `page` for every other text. All must outlive the widget.
  MainWindowWidget(Program& program, const CodePage& page, const CodePage& file_names);

  // Every control is a child widget with the control's name as object name; the path boxes are
  // "Text1_0" and "Text1_2".
  void Show() override;
  // Whether the window should be on the screen. While a run still works after the form was
  // unloaded, the window stays there and shows that the run is stopping.
  bool IsWanted() const override;

 protected:
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  struct PathRow {
    int index;
    PathBox* box;
    QLabel* label;
  };

  void NameControls();
  void LayOut();
  QBoxLayout* LayOutPaths();
  QBoxLayout* LayOutCommands();
  QBoxLayout* LayOutStatistics();
  QWidget* MakeLine(int number, Qt::Orientation orientation);
  void Connect();
  void ConnectPathRow(const PathRow& row);

  void OrderTabs();
  void ShowTexts();
  void ShowColours();
  void ShowGo();
  void ShowTree();
  void ShowProgress();
  void ShowPointers();
  void KeepFocusFromExit();
  void ShowFocus();

  bool TakeMarkedFolder();
  bool IsEnding() const;
  void ShowEnding();

  Program& program_;
  const CodePage& page_;
  const CodePage& file_names_;
  // A held Enter must not press the button that gets the focus next.
  HeldEnterFilter held_enter_;
  MainForm& window_;

  std::array<PathRow, 2> rows_;
  FolderTreeView* tree_;
  QPushButton* anonymize_;
  QPushButton* go_;
  QPushButton* exit_;
  PictureButton* options_;
  PictureButton* list_;
  ElidedLabel* extensions_;
  ElidedLabel* files_;
  QLabel* heading_;
  QLabel* total_files_;
  QLabel* time_;
  QLabel* result_;
  ElidedLabel* note_;
  QProgressBar* progress_;
  PictureView* image_;

  // Each control of the form, with its widget.
  std::vector<std::pair<const Control*, QWidget*>> controls_;
  std::vector<int> tab_order_;  // the tab indexes of `controls_`, as last applied

  QGridLayout* paths_ = nullptr;
  QBoxLayout* column_ = nullptr;
  std::string tree_folder_;  // the folder at which the tree was opened
  int tree_grew_ = 0;        // pixels by which the tree made the window taller
  std::uint64_t focus_requests_ = 0;
};

}  // namespace morvex
