// A tree of folders to choose one from. Enter or a double click chooses; Escape cancels.
#pragma once

#include <QFileSystemModel>
#include <QString>
#include <QTreeView>
#include <string>

#include "ui/qt/code_page.h"

namespace morvex {

class FolderTreeView : public QTreeView {
  Q_OBJECT

 public:
  // `file_names` must outlive the view.
  FolderTreeView(const CodePage& file_names, QWidget* parent);

  // Opens the tree at a folder, or at the nearest existing one above it, or else at the user's
  // home.
  void OpenAt(const std::string& path);
  // Returns the current folder's path; empty when there is none or file names cannot hold it.
  std::string Current() const;
  // Whether the current folder is marked (see is_marked_).
  bool IsMarked() const { return is_marked_; }
  // Chooses the current folder as Enter does. Returns false when it cannot be chosen.
  bool ChooseCurrent() { return Choose(currentIndex()); }

  QSize sizeHint() const override;

 signals:
  void Chosen(const std::string& path);
  void GivenUp();
  // The user expanded a folder or moved to one. Also emitted when rows appear and so change the
  // current row.
  void Visited(const std::string& path);

 protected:
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void GoTo(const QString& folder);
  bool Choose(const QModelIndex& index);
  std::string PathOf(const QModelIndex& index) const;

  const CodePage& file_names_;
  QFileSystemModel* model_ = nullptr;  // made when the tree is opened for the first time
  // The folder at which the tree is being opened. Empty after the user's first key or click.
  QString opened_at_;
  bool going_ = false;  // true while the program, not the user, moves to a folder
  // Whether the current folder is marked. It is when the user has moved to a folder or clicked one
  // since the tree was opened.
  bool is_marked_ = false;
};

}  // namespace morvex
