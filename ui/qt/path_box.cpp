#include "ui/qt/path_box.h"

#include <QAction>
#include <QDragEnterEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QMimeData>
#include <QUrl>

#include "ui/qt/file_name.h"
#include "ui/qt/pictures.h"

namespace morvex {
namespace {

// A file name may hold bytes that are not UTF-8. A URL carries such bytes escaped, so the path is
// read from the URL and never from decoded text.
std::string LocalPath(const QUrl& address, const CodePage& page) {
  if (!address.isLocalFile()) return "";
  if (page.is_of_system()) return PathBytes(page, address.toLocalFile()).value_or("");
  return QByteArray::fromPercentEncoding(address.path(QUrl::FullyEncoded).toLatin1()).toStdString();
}

bool IsOneLine(const std::string& path) {
  return path.find_first_of(std::string("\r\n\0", 3)) == std::string::npos;
}

}  // namespace

PathBox::PathBox(FileService& files, const CodePage& page, QWidget* parent)
    : ByteLineEdit(page, parent), files_(files), page_(page) {
  setAcceptDrops(true);
  browse_ = addAction(QIcon(), TrailingPosition);
  browse_->setText(tr("Choose a folder"));
  browse_->setToolTip(tr("Choose a folder (Alt+Down)"));
  connect(browse_, &QAction::triggered, this, &PathBox::BrowseWanted);
  DrawBrowseIcon();
}

void PathBox::DrawBrowseIcon() {
  browse_->setIcon(DrawingIcon(":/pictures/folder.svg",
                               palette().color(QPalette::Active, QPalette::WindowText)));
}

void PathBox::changeEvent(QEvent* event) {
  ByteLineEdit::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && browse_ != nullptr) DrawBrowseIcon();
}

void PathBox::keyPressEvent(QKeyEvent* event) {
  const bool has_alt = event->modifiers().testFlag(Qt::AltModifier);
  if (event->key() == Qt::Key_Down && has_alt && !IsDigitWithAlt(*event)) {
    emit BrowseWanted();
    return;
  }
  ByteLineEdit::keyPressEvent(event);
}

void PathBox::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) emit BrowseWanted();
}

std::string PathBox::PathOf(const QMimeData& dragged) const {
  const QList<QUrl> addresses = dragged.urls();
  if (addresses.size() != 1 || isReadOnly()) return "";
  std::string path = LocalPath(addresses.first(), page_);
  if (path.empty() || !IsOneLine(path)) return "";
  return files_.LookUpFolder(path) || files_.LookUpFile(path) ? path : "";
}

void PathBox::dragEnterEvent(QDragEnterEvent* event) {
  takes_dragged_ = !PathOf(*event->mimeData()).empty();
  dragMoveEvent(event);
}

void PathBox::dragMoveEvent(QDragMoveEvent* event) {
  if (!takes_dragged_) {
    event->ignore();
    return;
  }
  // Only the path is used: the file itself is not moved.
  event->setDropAction(Qt::CopyAction);
  event->accept();
}

void PathBox::dropEvent(QDropEvent* event) {
  const std::string path = PathOf(*event->mimeData());
  if (path.empty()) {
    event->ignore();
    return;
  }
  event->setDropAction(Qt::CopyAction);
  event->accept();
  emit Dropped(path);
}

}  // namespace morvex
