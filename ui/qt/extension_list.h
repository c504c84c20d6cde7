// The list of extensions on the screen: entries are selected one by one, and one has the focus
// mark.
#pragma once

#include <QListWidget>

#include "core/forms/control.h"
#include "ui/qt/code_page.h"

namespace morvex {

class ExtensionList : public QListWidget {
  Q_OBJECT

 public:
  explicit ExtensionList(QWidget* parent);

  // Shows the entries of `list`. The signals are the same as when the user makes these changes.
  void ShowEntries(const CodePage& page, const ListBox& list);

  int RowHeight() const;
  // Returns the height in pixels for all entries: at least one row, at most `room`.
  int HeightWithin(int room) const;

  // Does nothing: only Space and the mouse change the selection, one entry at a time.
  void selectAll() override {}

 protected:
  // Making a row current, by key or by program, does not change its selection.
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override;
};

}  // namespace morvex
