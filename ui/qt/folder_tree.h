// Folders to choose one from. Enter or a double click chooses; Escape gives the choice up.
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
  // `file_names` must outlive it.
  FolderTreeView(const CodePage& file_names, QWidget* parent);

  // Opens the tree at that folder, or at the nearest one above it that is there; at the user's own
  // when the path is no help.
  void OpenAt(const std::string& path);
  // The folder that the tree is at; empty when it is at none, or at one that bytes cannot spell.
  std::string Current() const;
  // Whether the user went to that folder since the tree was opened.
  bool IsMarked() const { return is_marked_; }
  // Chooses it as Enter does; false when it is none that can be chosen.
  bool ChooseCurrent() { return Choose(currentIndex()); }

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
  void mousePressEvent(QMouseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void GoTo(const QString& folder);
  bool Choose(const QModelIndex& index);
  std::string PathOf(const QModelIndex& index) const;

  const CodePage& file_names_;
  QFileSystemModel* model_ = nullptr;  // made when the tree is opened first
  QString opened_at_;                  // while the folders are read, until the user goes elsewhere
  bool going_ = false;                 // to a folder that the user did not choose
  bool is_marked_ = false;
};

}  // namespace morvex
