// The list of extensions as it is seen: entries that are selected one by one, and one with the
// focus mark.
#pragma once

#include <QListWidget>

#include "core/forms/control.h"
#include "ui/qt/code_page.h"

namespace morvex {

class ExtensionList : public QListWidget {
  Q_OBJECT

 public:
  explicit ExtensionList(QWidget* parent);

  // Its signals tell of the changes that this makes as of the user's.
  void ShowEntries(const CodePage& page, const ListBox& list);

  int RowHeight() const;
  // As high as its entries, and at least one, but no higher than `room`.
  int HeightWithin(int room) const;

  // Does nothing: only Space and the mouse change a selection, and one entry at a time.
  void selectAll() override {}

 protected:
  // What a key or the program makes the current row is not selected or deselected by that.
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override;
};

}  // namespace morvex
