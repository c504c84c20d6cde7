// Folders to choose one from. Enter or a double click chooses; Escape gives the choice up.
#pragma once

#include <QFileSystemModel>
#include <QTreeView>
#include <string>

namespace morvex {

class FolderTreeView : public QTreeView {
  Q_OBJECT

 public:
  explicit FolderTreeView(QWidget* parent);

  // Opens the tree at that folder, or at the nearest one above it that is there; at the user's own
  // when the path is no help.
  void OpenAt(const std::string& path);
  // The folder that the tree is at; empty when it is at none.
  std::string Current() const;

  QSize sizeHint() const override;

 signals:
  void Chosen(const std::string& path);
  void GivenUp();
  // The user went to that folder, or opened it.
  void Visited(const std::string& path);

 protected:
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  void Choose(const QModelIndex& index);
  std::string PathOf(const QModelIndex& index) const;

  QFileSystemModel* model_ = nullptr;  // made when the tree is opened first
  bool opening_ = false;
};

}  // namespace morvex
