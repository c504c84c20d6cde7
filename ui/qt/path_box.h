// A box for a path: typed, dropped from a file manager, or taken from the folder tree, which a
// double click, Alt+Down or the folder at the box's end calls.
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
  // One file or folder can be dropped on it. `files` and `page` must outlive the widget.
  PathBox(FileService& files, const CodePage& page, QWidget* parent);

 signals:
  // The folder tree is wanted.
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
  // The path of what is dragged; empty when the box does not take it.
  std::string PathOf(const QMimeData& dragged) const;
  void DrawBrowseIcon();

  FileService& files_;
  const CodePage& page_;
  QAction* browse_ = nullptr;
  bool takes_dragged_ = false;
};

}  // namespace morvex
