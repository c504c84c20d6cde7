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

  // Shows the entries of `list`, which of them are selected, and the current one. The widget then
  // emits the same signals as when the user selects an entry or makes one current, so the caller
  // must ignore signals during this call.
  void ShowEntries(const CodePage& page, const ListBox& list);

  int RowHeight() const;
  // Returns the height in pixels for all entries, or for as many of them as fit into `room`, but at
  // least for one row. The height is never greater than `room`.
  int HeightWithin(int room) const;

  // Does nothing: only Space and the mouse change the selection, one entry at a time.
  void selectAll() override {}

 protected:
  // Making a row current, by key or by program, does not change its selection.
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override;
};

}  // namespace morvex
