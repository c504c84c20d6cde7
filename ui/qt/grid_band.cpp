#include "ui/qt/grid_band.h"

#include <QPainter>
#include <algorithm>

#include "ui/qt/show_control.h"

namespace morvex {
namespace {

constexpr int kRoomBesideText = 5;  // pixels, within the outline

// Neighbouring cells share an outline, as the cells of a table do. The style's own frames are made
// for single boxes; side by side on a dark background they cannot be told apart.
class GridCell : public ByteLineEdit {
 public:
  GridCell(const CodePage& page, QWidget* parent) : ByteLineEdit(page, parent) {
    setFrame(false);
    setTextMargins(kRoomBesideText, 0, kRoomBesideText, 0);
  }

 protected:
  void paintEvent(QPaintEvent* event) override {
    ByteLineEdit::paintEvent(event);
    const int line = hasFocus() ? 2 : 1;  // pixels
    // Uses the window's palette, because the cell's own text colour may be red.
    const QPalette colours = window()->palette();
    const QColor colour = hasFocus() ? colours.color(QPalette::Highlight) : Outline(colours);
    QPainter painter(this);
    // Draws filled strips, because these cover whole pixels at any scale of the screen.
    painter.fillRect(0, 0, width(), line, colour);
    painter.fillRect(0, height() - line, width(), line, colour);
    painter.fillRect(0, 0, line, height(), colour);
    painter.fillRect(width() - line, 0, line, height(), colour);
  }
};

std::size_t PlaceOf(std::int64_t row) { return static_cast<std::size_t>(row % kRowsInBand); }

}  // namespace

GridBand::GridBand(ReplacementsForm& grid, const CodePage& page, QWidget& window)
    : grid_(grid), page_(page), window_(window) {}

void GridBand::Show() {
  const std::int64_t first = std::max<std::int64_t>(0, grid_.scrolled_rows);
  std::array<std::int64_t, kRowsInBand> wanted{};
  wanted.fill(-1);
  for (std::int64_t row = first; row < first + kRowsInBand; ++row) {
    if (grid_.HasRow(row) && grid_.RowVisible(row)) wanted[PlaceOf(row)] = row;
  }
  for (std::size_t place = 0; place < rows_.size(); ++place) {
    RowWidgets& widgets = rows_[place];
    const std::int64_t row = wanted[place];
    const bool is_new = widgets.row != row;
    if (row >= 0 && widgets.left.edit == nullptr) {
      MakeCell(widgets.left, Column::kLeft, place);
      MakeCell(widgets.right, Column::kRight, place);
    }
    if (is_new) Bind(widgets, row);
    if (row < 0) continue;
    ShowCell(widgets.left, grid_.At({Column::kLeft, row}), is_new);
    ShowCell(widgets.right, grid_.At({Column::kRight, row}), is_new);
  }
}

void GridBand::Place(const TwipScale& scale, int wider) {
  for (const RowWidgets& widgets : rows_) {
    if (widgets.row < 0) continue;
    QRect left = scale.Px(grid_.CellBox({Column::kLeft, widgets.row}));
    QRect right = scale.Px(grid_.CellBox({Column::kRight, widgets.row}));
    left.setWidth(left.width() + wider);
    right.translate(wider, 0);
    right.setWidth(right.width() + wider);
    widgets.left.edit->setGeometry(left);
    widgets.right.edit->setGeometry(right);
    widgets.left.edit->show();
    widgets.right.edit->show();
  }
}

void GridBand::ForgetColours() {
  for (RowWidgets& widgets : rows_) {
    widgets.left.colour.reset();
    widgets.right.colour.reset();
  }
}

ByteLineEdit* GridBand::At(CellAddress cell) const {
  if (cell.row < 0) return nullptr;
  const RowWidgets& widgets = rows_[PlaceOf(cell.row)];
  if (widgets.row != cell.row) return nullptr;
  return cell.column == Column::kLeft ? widgets.left.edit : widgets.right.edit;
}

std::optional<CellAddress> GridBand::AddressOf(const QObject* widget) const {
  if (widget == nullptr) return std::nullopt;
  for (const RowWidgets& widgets : rows_) {
    if (widgets.row < 0) continue;
    if (widgets.left.edit == widget) return CellAddress{Column::kLeft, widgets.row};
    if (widgets.right.edit == widget) return CellAddress{Column::kRight, widgets.row};
  }
  return std::nullopt;
}

std::size_t GridBand::TakeCaret(CellAddress cell) {
  RowWidgets& widgets = rows_[PlaceOf(cell.row)];
  CellWidget& widget = cell.column == Column::kLeft ? widgets.left : widgets.right;
  widget.caret = widget.edit->SelectionEnd();
  return widget.caret;
}

std::vector<ByteLineEdit*> GridBand::InTabOrder() const {
  std::vector<const RowWidgets*> shown;
  for (const RowWidgets& widgets : rows_) {
    if (widgets.row >= 0) shown.push_back(&widgets);
  }
  std::sort(shown.begin(), shown.end(),
            [](const RowWidgets* a, const RowWidgets* b) { return a->row < b->row; });
  std::vector<ByteLineEdit*> cells;
  for (const RowWidgets* widgets : shown) {
    cells.push_back(widgets->left.edit);
    cells.push_back(widgets->right.edit);
  }
  return cells;
}

void GridBand::MakeCell(CellWidget& cell, Column column, std::size_t place) {
  cell.edit = new GridCell(page_, &window_);
  cell.edit->hide();
  cell.edit->installEventFilter(&window_);
  const auto address = [this, column, place] { return CellAddress{column, rows_[place].row}; };
  connect(cell.edit, &ByteLineEdit::BytesEdited, this,
          [this, address](const std::string& text) { emit TextEdited(address(), text); });
  cell.edit->ExpectRows();
  connect(cell.edit, &ByteLineEdit::RowsPasted, this,
          [this, address](const PastedRows& rows) { emit RowsPasted(address(), rows); });
  const auto moved = [this, address] { emit CaretMoved(address()); };
  connect(cell.edit, &QLineEdit::cursorPositionChanged, this, moved);
  connect(cell.edit, &QLineEdit::selectionChanged, this, moved);
}

void GridBand::Bind(RowWidgets& widgets, std::int64_t row) {
  widgets.row = row;
  if (widgets.left.edit == nullptr) return;
  if (row < 0) {
    widgets.left.edit->hide();
    widgets.right.edit->hide();
    widgets.left.edit->setObjectName("");
    widgets.right.edit->setObjectName("");
    return;
  }
  const QString number = QString::number(row);
  widgets.left.edit->setObjectName("txtLinks_" + number);
  widgets.right.edit->setObjectName("txtRechts_" + number);
  const QString person_number = QString::number(row + 1);
  widgets.left.edit->setAccessibleName(tr("replace, row %1").arg(person_number));
  widgets.right.edit->setAccessibleName(tr("by, row %1").arg(person_number));
}

void GridBand::ShowCell(CellWidget& widget, const Cell& cell, bool is_new) {
  ByteLineEdit& edit = *widget.edit;
  const bool is_other_text = edit.bytes() != cell.text;
  if (is_other_text) edit.ShowBytes(cell.text);
  // Clears the undo history of the row that had this widget before.
  if (is_new) edit.setText(edit.text());
  if (is_new || is_other_text || widget.caret != cell.selection_end) {
    edit.MoveCaretTo(cell.selection_end);
  }
  widget.caret = cell.selection_end;
  edit.ShowToolTip(page_.Shown(cell.tool_tip));
  ShowColour(widget, cell.colour);
}

void GridBand::ShowColour(CellWidget& widget, Colour colour) {
  if (widget.colour == colour) return;
  widget.colour = colour;
  QPalette palette;
  if (colour != Colour::kBlack)
    palette.setColor(QPalette::Text, TextColour(colour, window_.palette()));
  widget.edit->setPalette(palette);
  widget.edit->setAccessibleDescription(colour == Colour::kBlack ? QString() : tr("too long"));
}

}  // namespace morvex
