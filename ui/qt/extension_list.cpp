#include "ui/qt/extension_list.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <algorithm>

namespace morvex {
namespace {

constexpr int kRowPadding = 3;

// Files with a selected extension are scanned, so selected rows are highlighted in every style,
// with or without the focus. The current row is framed even while the entry field has the focus,
// because keys typed there work on that row.
class FilterRow : public QStyledItemDelegate {
 public:
  explicit FilterRow(ExtensionList& list) : QStyledItemDelegate(&list), list_(list) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    QStyleOptionViewItem row = option;
    const bool is_selected = option.state.testFlag(QStyle::State_Selected);
    row.state &= ~(QStyle::State_HasFocus | QStyle::State_Selected | QStyle::State_MouseOver);
    if (is_selected) {
      painter->fillRect(option.rect, option.palette.color(QPalette::Active, QPalette::Highlight));
      row.palette.setColor(QPalette::Text,
                           option.palette.color(QPalette::Active, QPalette::HighlightedText));
    }
    QStyledItemDelegate::paint(painter, row, index);
    if (index != list_.currentIndex()) return;
    painter->setPen(row.palette.color(QPalette::Text));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(option.rect.adjusted(1, 1, -2, -2));
  }

 private:
  ExtensionList& list_;
};

}  // namespace

ExtensionList::ExtensionList(QWidget* parent) : QListWidget(parent) {
  setSelectionMode(QAbstractItemView::MultiSelection);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setUniformItemSizes(true);
  setItemDelegate(new FilterRow(*this));
}

void ExtensionList::ShowEntries(const CodePage& page, const ListBox& list) {
  const std::vector<ListEntry>& entries = list.entries;
  const int wanted = static_cast<int>(entries.size());
  const bool grows = wanted > count();
  while (count() > wanted) delete takeItem(count() - 1);
  for (int row = 0; row < wanted; ++row) {
    const ListEntry& entry = entries[static_cast<std::size_t>(row)];
    const QString text = page.Shown(entry.text);
    if (row == count()) addItem(text);
    QListWidgetItem* const shown = item(row);
    if (shown->text() != text) shown->setText(text);
    if (shown->isSelected() != entry.selected) shown->setSelected(entry.selected);
  }
  if (currentRow() != list.current) setCurrentRow(list.current, QItemSelectionModel::NoUpdate);
  if (grows && isVisible()) scrollToBottom();  // shows the new entry
}

QItemSelectionModel::SelectionFlags ExtensionList::selectionCommand(const QModelIndex& index,
                                                                    const QEvent* event) const {
  // `event` is null when the user searches by typing letters.
  if (event == nullptr) return QItemSelectionModel::NoUpdate;
  const bool is_key = event->type() == QEvent::KeyPress;
  if (is_key && static_cast<const QKeyEvent*>(event)->key() != Qt::Key_Space) {
    return QItemSelectionModel::NoUpdate;
  }
  return QListWidget::selectionCommand(index, event);
}

int ExtensionList::RowHeight() const {
  return count() > 0 ? sizeHintForRow(0) : fontMetrics().height() + 2 * kRowPadding;
}

int ExtensionList::HeightWithin(int room) const {
  const int rows = std::max(1, std::min(count(), room / RowHeight()));
  return std::min(room, rows * RowHeight() + 2 * frameWidth());
}

}  // namespace morvex
