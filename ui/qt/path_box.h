// A line edit for a path that is typed, dropped from a file manager, or chosen in the folder tree.
// A double click, Alt+Down or the folder button at the box's end opens the tree.
#pragma once

#include <string>

#include "core/host/file_service.h"
#include "ui/qt/byte_line_edit.h"

class QAction;
class QMimeData;

namespace morvex {

class PathBox : public ByteLineEdit {
  Q_OBJECT

 public:
  // The box accepts a single dropped file or folder. `files` and `page` must outlive the widget.
  PathBox(FileService& files, const CodePage& page, QWidget* parent);

 signals:
  // The user asked for the folder tree.
  void BrowseWanted();
  void Dropped(const std::string& path);

 protected:
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  // Returns the path of a dragged file or folder; empty when the box does not accept it.
  std::string PathOf(const QMimeData& dragged) const;
  void DrawBrowseIcon();

  FileService& files_;
  const CodePage& page_;
  QAction* browse_ = nullptr;
  bool takes_dragged_ = false;
};

}  // namespace morvex
