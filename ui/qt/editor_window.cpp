#include "ui/qt/editor_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QRegularExpression>
#include <QScopedValueRollback>
#include <QWheelEvent>
#include <algorithm>
#include <limits>
#include <optional>

#include "core/forms/keys.h"
#include "core/list/editor.h"
#include "core/list/grid.h"
#include "ui/qt/grow_window.h"
#include "ui/qt/show_control.h"
#include "ui/qt/tool_tip.h"

namespace morvex {
namespace {

constexpr int kHeadingIndent = 7;   // pixels; aligns the headings with the texts below
constexpr int kRoomAroundText = 4;  // pixels above and below a cell's letters

int ToInt(std::int64_t value) {
  return static_cast<int>(std::min<std::int64_t>(value, std::numeric_limits<int>::max()));
}

// Returns the key code for the grid's handler; 0 for keys that it does not handle.
int GridKey(const QKeyEvent& event) {
  if (ByteLineEdit::IsDigitWithAlt(event)) return 0;
  switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return kKeyEnter;
    case Qt::Key_Up:
      return kKeyUp;
    case Qt::Key_Down:
      return kKeyDown;
    default:
      return 0;
  }
}

// Whether the key edits the list in a cell: a character, Enter, a deletion, Paste or Undo. The
// scroll bar itself uses no such key.
bool IsTyping(const QKeyEvent& event) {
  const Qt::KeyboardModifiers modifiers = event.modifiers();
  if (modifiers.testFlag(Qt::AltModifier) && !modifiers.testFlag(Qt::ControlModifier)) return false;
  switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
      return true;
    default:
      break;
  }
  if (event.matches(QKeySequence::Paste) || event.matches(QKeySequence::Undo)) return true;
  return !event.text().isEmpty() && event.text().front().isPrint();
}

}  // namespace

EditorWindowWidget::EditorWindowWidget(Program& program, const CodePage& page)
    : BoundWindow(program.frmReplacements),
      program_(program),
      page_(page),
      left_heading_(new QLabel(this)),
      right_heading_(new QLabel(this)),
      scroll_bar_(new QScrollBar(Qt::Vertical, this)),
      band_(program.frmReplacements, page, *this),
      commands_(program.frmReplacements, page, *this) {
  setObjectName("frmReplacements");
  tell_focus_later_.setSingleShot(true);
  connect(&tell_focus_later_, &QTimer::timeout, this, &EditorWindowWidget::TellFocus);
  for (QLabel* heading : {left_heading_, right_heading_}) {
    heading->setTextFormat(Qt::PlainText);
    heading->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    heading->setIndent(kHeadingIndent);
    QFont font = heading->font();
    font.setBold(true);
    heading->setFont(font);
  }
  scroll_bar_->setObjectName("VScroll1");
  scroll_bar_->setAccessibleName(tr("rows"));
  scroll_bar_->setFocusPolicy(Qt::StrongFocus);
  scroll_bar_->setPageStep(static_cast<int>(kRowsInBand));
  scroll_bar_->installEventFilter(this);
  connect(scroll_bar_, &QScrollBar::valueChanged, this, &EditorWindowWidget::ScrollByUser);
  connect(&commands_, &ListCommands::Clicked, this,
          [this](ListCommands::Handler handler, bool opens_afresh) {
            Report([&] { handler(program_); });
            if (opens_afresh) FocusFirstCell();
          });
  connect(&band_, &GridBand::TextEdited, this, [this](CellAddress cell, const std::string& text) {
    Report([&] {
      Cell_Change(program_, cell, text);
      TellCaret(cell);
    });
  });
  connect(&band_, &GridBand::RowsPasted, this, &EditorWindowWidget::TakePastedRows);
  connect(&band_, &GridBand::CaretMoved, this, [this](CellAddress cell) {
    if (!showing_) TellCaret(cell);
  });
}

// Calls a handler of the core for an event of the user and shows the new state. Does nothing while
// Show runs or the editor is hidden.
void EditorWindowWidget::Report(const std::function<void()>& handler) {
  if (showing_ || !state().loaded || !state().visible) return;
  handler();
  // Shows the new state at once, so that the next key reaches the cell to which the handler moved
  // the focus.
  Show();
  TellFocus();
}

// Tells the core which control of this window has the focus, also while another window is in front.
// Does nothing while a list is imported, because the import moves focus and scroll bar itself.
void EditorWindowWidget::TellFocus() {
  const ReplacementsForm& grid = program_.frmReplacements;
  if (showing_ || !grid.loaded || !grid.visible || grid.importing) return;
  if (const std::optional<CellAddress> cell = band_.AddressOf(focusWidget())) {
    Cell_GotFocus(program_, *cell);
    TellCaret(*cell);
  } else if (focusWidget() == scroll_bar_) {
    if (!grid.ScrollHasFocus) VScroll1_GotFocus(program_);
  } else {
    if (grid.focused_cell) Cell_LostFocus(program_, *grid.focused_cell);
    if (grid.ScrollHasFocus) VScroll1_LostFocus(program_);
  }
}

void EditorWindowWidget::TellCaret(CellAddress cell) {
  if (band_.At(cell) != nullptr) Cell_SelectionChange(program_, cell, band_.TakeCaret(cell));
}

// The wheel can scroll while a cell has the focus. During the call of its handler, the core is then
// told that the scroll bar has the focus, as when the user drags the bar. Otherwise the core would
// not move the rows when the user scrolls to the end.
void EditorWindowWidget::ScrollByUser(int value) {
  Report([&] {
    const ReplacementsForm& grid = program_.frmReplacements;
    if (grid.importing) return;
    const std::optional<CellAddress> cell = grid.focused_cell;
    const bool has_focus = grid.ScrollHasFocus;
    if (!has_focus) VScroll1_GotFocus(program_);
    VScroll1_Change(program_, value);
    if (!has_focus) VScroll1_LostFocus(program_);
    if (cell) FocusOnCell(program_, *cell);
  });
}

void EditorWindowWidget::FocusFirstCell() {
  const std::vector<ByteLineEdit*> cells = band_.InTabOrder();
  if (cells.empty() || program_.frmReplacements.focused_cell) return;
  cells.front()->setFocus();
  TellFocus();
}

void EditorWindowWidget::TakePastedRows(CellAddress cell, const PastedRows& pasted) {
  std::vector<GridRow> rows;
  for (const auto& [left, right] : pasted) {
    rows.emplace_back();
    rows.back().txtLinks.text = left;
    rows.back().txtRechts.text = right;
  }
  std::optional<std::int64_t> taken;
  Report([&] { taken = PasteRows(program_, cell, rows); });
  ByteLineEdit* const at = band_.At(cell);
  if (!taken || at == nullptr) return;
  at->TellRefusal(
      tr("Not accepted: row %1 holds a text already. Rows are only pasted over empty ones.")
          .arg(*taken + 1));
}

// Called when the user types while the scroll bar has the focus. The bar gets the focus, for
// example, when the focused cell goes out of view or the user drags the bar. Passes focus and key
// to the cell that had the focus before. Returns false if that is not possible.
bool EditorWindowWidget::TypeInRememberedCell(QKeyEvent& event) {
  bool returned = false;
  Report([&] { returned = ReturnToCell(program_); });
  if (!returned) return false;
  ByteLineEdit* const cell = band_.At(*program_.frmReplacements.focused_cell);
  if (cell == nullptr) return false;
  QApplication::sendEvent(cell, &event);
  return true;
}

bool EditorWindowWidget::eventFilter(QObject* watched, QEvent* event) {
  const std::optional<CellAddress> cell = band_.AddressOf(watched);
  switch (event->type()) {
    case QEvent::FocusIn:
      if (cell) band_.At(*cell)->raise();
      TellFocus();
      break;
    case QEvent::FocusOut:
      // Tell the core now, because the cell is about to drop its selection, whose end the core
      // needs.
      TellFocus();
      break;
    case QEvent::KeyPress:
      if (watched == scroll_bar_ && IsTyping(*static_cast<QKeyEvent*>(event))) {
        return TypeInRememberedCell(*static_cast<QKeyEvent*>(event));
      }
      if (const int key = GridKey(*static_cast<QKeyEvent*>(event)); cell && key != 0) {
        Report([&] { Cell_KeyDown(program_, *cell, key); });
        return true;
      }
      break;
    default:
      break;
  }
  return BoundWindow::eventFilter(watched, event);
}

void EditorWindowWidget::changeEvent(QEvent* event) {
  BoundWindow::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) band_.ForgetColours();
  const bool shows_otherwise =
      event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange;
  if (shows_otherwise && !showing_) Show();
}

void EditorWindowWidget::closeEvent(QCloseEvent* event) {
  Report([&] { frmReplacements_Close(program_); });
  event->setAccepted(!state().visible);
}

void EditorWindowWidget::resizeEvent(QResizeEvent*) { Arrange(); }

void EditorWindowWidget::wheelEvent(QWheelEvent* event) {
  // Passed on directly, because the application would send the event back here if the bar ignores
  // it.
  if (scroll_bar_->isVisible()) static_cast<QObject*>(scroll_bar_)->event(event);
  event->accept();
}

void EditorWindowWidget::Show() {
  ReplacementsForm& grid = program_.frmReplacements;
  const QScopedValueRollback<bool> showing(showing_, true);
  setWindowTitle(page_.Shown(grid.caption.get()));
  if (!grid.loaded) return;
  const std::optional<CellAddress> had_focus = band_.AddressOf(focusWidget());
  ShowHeadings();
  commands_.Show();
  ShowScrollBar();
  band_.Show();
  ShowSize();
  Arrange();
  ShowTabOrder();
  ShowFocus(had_focus);
}

// Returns the screen's scale, or a larger one where the font does not fit the boxes.
TwipScale EditorWindowWidget::Scale() const {
  const double of_screen = logicalDpiY() / 1440.0;
  const double of_cells =
      static_cast<double>(fontMetrics().height() + kRoomAroundText) / kCellHeight;
  return {std::max({of_screen, of_cells, commands_.LeastScale().pixels_per_twip})};
}

void EditorWindowWidget::ShowSize() {
  const ReplacementsForm& grid = program_.frmReplacements;
  const TwipScale scale = Scale();
  const QSize least(scale.Px(grid.width), scale.Px(grid.height));
  const bool grows = isVisible() && least.height() > height();
  if (least != minimumSize()) {
    setMinimumSize(least);
    setMaximumSize(QWIDGETSIZE_MAX, least.height());
  }
  const int width_now = is_sized_ ? std::max(width(), least.width()) : least.width();
  is_sized_ = true;
  resize(width_now, least.height());
  if (grows) GrowTo(*this, least.height());
}

void EditorWindowWidget::Arrange() {
  const ReplacementsForm& grid = program_.frmReplacements;
  const TwipScale scale = Scale();
  // By how many pixels each column is wider than its twips say.
  const int wider = std::max(0, width() - scale.Px(grid.width)) / 2;
  band_.Place(scale, wider);

  const int heading_top = scale.Px(kFirstRowTop) - fontMetrics().height() - kRoomAroundText / 2;
  const QSize heading(scale.Px(kCellWidth) + wider, fontMetrics().height());
  left_heading_->setGeometry({{scale.Px(kLeftColumn), heading_top}, heading});
  right_heading_->setGeometry({{scale.Px(kRightColumn) + wider, heading_top}, heading});

  scroll_bar_->setGeometry(scale.Px(grid.VScroll1.box.get()).translated(2 * wider, 0));
  commands_.Place(scale, 2 * wider);
}

// The caption consists of the headings of the two columns with a wide gap between them. A title bar
// does not show the gap, so the headings are repeated above the columns.
void EditorWindowWidget::ShowHeadings() {
  static const QRegularExpression kGap(" {2,}");
  const QString caption = page_.Shown(program_.frmReplacements.caption.get());
  const QStringList words = caption.split(kGap, Qt::SkipEmptyParts);
  left_heading_->setText(words.value(0));
  right_heading_->setText(words.value(1));
}

void EditorWindowWidget::ShowScrollBar() {
  const ScrollBar& bar = program_.frmReplacements.VScroll1;
  scroll_bar_->setRange(ToInt(bar.minimum()), ToInt(bar.maximum()));
  scroll_bar_->setValue(ToInt(bar.value()));
  scroll_bar_->setToolTip(PlainToolTip(page_.Shown(bar.tool_tip.get())));
  ShowPresence(*scroll_bar_, bar);
}

void EditorWindowWidget::ShowTabOrder() {
  const std::vector<ByteLineEdit*> cells = band_.InTabOrder();
  std::vector<QWidget*> order(cells.begin(), cells.end());
  const std::vector<QWidget*> commands = commands_.InTabOrder();
  order.insert(order.end(), commands.begin(), commands.end());
  order.push_back(scroll_bar_);
  if (order == tab_order_) return;
  tab_order_ = std::move(order);
  for (std::size_t i = 1; i < tab_order_.size(); ++i) {
    setTabOrder(tab_order_[i - 1], tab_order_[i]);
  }
}

// Moves the focus only when the core wants it elsewhere, when the focused cell went out of view, or
// when the window appears.
void EditorWindowWidget::ShowFocus(std::optional<CellAddress> had_focus) {
  const ReplacementsForm& grid = program_.frmReplacements;
  const std::vector<ByteLineEdit*> cells = band_.InTabOrder();
  QWidget* const first = cells.empty() ? nullptr : cells.front();
  QWidget* target = grid.focused_cell ? band_.At(*grid.focused_cell) : nullptr;
  if (target == nullptr && had_focus && band_.At(*had_focus) == nullptr) {
    target = grid.VScroll1.visible ? scroll_bar_ : first;
  }
  const bool appears = grid.visible && !isVisible();
  if (target == nullptr && appears) target = first;
  if (target == nullptr || target == focusWidget()) return;
  target->setFocus();
  // The core has to learn of a focus that it did not ask for.
  tell_focus_later_.start(0);
}

}  // namespace morvex
