#include "ui/qt/folder_tree.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>

#include "ui/qt/file_name.h"

namespace morvex {
namespace {

constexpr int kRowsShown = 10;
constexpr int kRoomInRow = 4;  // pixels above and below a name
constexpr int kColumns = 4;

QString NearestFolder(QString folder) {
  if (!QDir::isAbsolutePath(folder)) return QDir::homePath();
  folder = QDir::cleanPath(QDir::fromNativeSeparators(folder));
  while (!QFileInfo(folder).isDir()) {
    const QString above = QFileInfo(folder).path();
    if (above == folder) return QDir::homePath();
    folder = above;
  }
  return folder;
}

// Whether the folder or one above it is hidden.
bool IsHidden(const QString& folder) {
  QFileInfo at(folder);
  while (!at.isHidden() && !at.isRoot() && at.path() != at.filePath()) at.setFile(at.path());
  return at.isHidden() && !at.isRoot();
}

}  // namespace

FolderTreeView::FolderTreeView(const CodePage& file_names, QWidget* parent)
    : QTreeView(parent), file_names_(file_names) {
  setHeaderHidden(true);
  setExpandsOnDoubleClick(false);
  setUniformRowHeights(true);
  setEditTriggers(NoEditTriggers);
  connect(this, &QTreeView::expanded, this, [this](const QModelIndex& index) {
    if (!going_) emit Visited(PathOf(index));
  });
  // A click on the folder at which the tree was opened marks that folder, too. The folder is
  // current already, so currentChanged is not called.
  connect(this, &QTreeView::pressed, this, [this] { is_marked_ = true; });
}

void FolderTreeView::OpenAt(const std::string& path) {
  is_marked_ = false;
  opened_at_ = NearestFolder(ToolkitPath(file_names_, path));
  if (model_ == nullptr) {
    model_ = new QFileSystemModel(this);
    model_->setOption(QFileSystemModel::DontUseCustomDirectoryIcons);
    model_->setRootPath(QString());
    setModel(model_);
    for (int column = 1; column < kColumns; ++column) hideColumn(column);
    // Folders are read in the background. Until that is done, rows appear and move, and GoTo has to
    // find the folder again.
    const auto settle = [this] {
      if (!opened_at_.isEmpty()) GoTo(opened_at_);
    };
    connect(model_, &QFileSystemModel::directoryLoaded, this, settle);
    connect(model_, &QFileSystemModel::layoutChanged, this, settle, Qt::QueuedConnection);
  }
  QDir::Filters filter = QDir::AllDirs | QDir::Drives | QDir::NoDotAndDotDot;
  if (IsHidden(opened_at_)) filter |= QDir::Hidden;
  model_->setFilter(filter);
  GoTo(opened_at_);
}

void FolderTreeView::GoTo(const QString& folder) {
  going_ = true;
  const QModelIndex index = model_->index(folder);
  for (QModelIndex above = index; above.isValid(); above = above.parent()) expand(above);
  setCurrentIndex(index);
  scrollTo(index, PositionAtCenter);
  going_ = false;
}

std::string FolderTreeView::PathOf(const QModelIndex& index) const {
  if (model_ == nullptr || !index.isValid()) return "";
  return PathBytes(file_names_, model_->filePath(index)).value_or("");
}

std::string FolderTreeView::Current() const { return PathOf(currentIndex()); }

QSize FolderTreeView::sizeHint() const {
  return {QTreeView::sizeHint().width(),
          kRowsShown * (fontMetrics().height() + 2 * kRoomInRow) + 2 * frameWidth()};
}

bool FolderTreeView::Choose(const QModelIndex& index) {
  // The path box cannot hold a path that has a line break or that file names cannot express. The
  // folder may also have been deleted.
  const std::string path = PathOf(index);
  const bool is_one_line = path.find_first_of("\r\n") == std::string::npos;
  if (path.empty() || !is_one_line || !QFileInfo(model_->filePath(index)).isDir()) {
    QApplication::beep();
    return false;
  }
  emit Chosen(path);
  return true;
}

void FolderTreeView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTreeView::currentChanged(current, previous);
  if (going_ || !current.isValid()) return;
  // Rows that appear while the tree is being opened change the current row, too; that marks
  // nothing.
  is_marked_ = is_marked_ || opened_at_.isEmpty();
  emit Visited(PathOf(current));
}

void FolderTreeView::keyPressEvent(QKeyEvent* event) {
  opened_at_.clear();
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      Choose(currentIndex());
      return;
    case Qt::Key_Escape:
      emit GivenUp();
      return;
    default:
      QTreeView::keyPressEvent(event);
  }
}

void FolderTreeView::resizeEvent(QResizeEvent* event) {
  QTreeView::resizeEvent(event);
  if (!opened_at_.isEmpty()) scrollTo(currentIndex(), PositionAtCenter);
}

void FolderTreeView::mousePressEvent(QMouseEvent* event) {
  opened_at_.clear();
  QTreeView::mousePressEvent(event);
}

void FolderTreeView::mouseDoubleClickEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->position().toPoint());
  // A double click on the expand sign beside a name counts as two clicks.
  const bool on_name = index.isValid() && visualRect(index).contains(event->position().toPoint());
  if (event->button() == Qt::LeftButton && on_name) {
    Choose(index);
    return;
  }
  QTreeView::mouseDoubleClickEvent(event);
}

}  // namespace morvex
