#include "ui/qt/options_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>
#include <algorithm>
#include <array>
#include <utility>

#include "core/forms/keys.h"
#include "core/settings/options.h"
#include "ui/qt/grow_window.h"
#include "ui/qt/show_control.h"
#include "ui/qt/tool_tip.h"

namespace morvex {
namespace {

constexpr int kListRows = 8;     // rows of the open list in a window of minimum height
constexpr int kRoomForList = 4;  // the layout's row that makes room for the open list
constexpr int kMargin = 16;
constexpr int kSpacing = 12;
constexpr int kGap = 2;          // pixels between the entry field, its button and its list
constexpr int kShortField = 8;   // width in characters
constexpr int kEntryField = 20;  // width in characters

// Returns the key's code in core/forms/keys.h; 0 for keys that no handler uses.
int KeyCode(const QKeyEvent& event) {
  if (ByteLineEdit::IsDigitWithAlt(event)) return 0;
  switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return kKeyEnter;
    case Qt::Key_Escape:
      return kKeyEscape;
    case Qt::Key_Up:
      return kKeyUp;
    case Qt::Key_Down:
      return kKeyDown;
    case Qt::Key_Delete:
      return kKeyDelete;
    default:
      return 0;
  }
}

// Returns the shift state for the core's handlers: bits of core/forms/keys.h. Shift and Meta set
// bits that keys.h does not name, so that no handler takes the key for one of its own.
int ShiftState(const QKeyEvent& event) {
  constexpr int kShift = 1;
  constexpr int kOther = 8;
  int shift = 0;
  const Qt::KeyboardModifiers modifiers = event.modifiers();
  if (modifiers.testFlag(Qt::ShiftModifier)) shift |= kShift;
  if (modifiers.testFlag(Qt::ControlModifier)) shift |= kShiftControl;
  if (modifiers.testFlag(Qt::AltModifier)) shift |= kShiftAlt;
  if (modifiers.testFlag(Qt::MetaModifier)) shift |= kOther;
  return shift;
}

bool IsListCommand(const QKeyEvent& event) {
  const int key = KeyCode(event);
  return ShiftState(event) == kShiftControl && (key == kKeyEnter || key == kKeyDelete);
}

// Returns the window in front of which `window` is to be shown; null if there is none.
QWidget* OtherWindow(const QWidget* window) {
  const QWidgetList windows = QApplication::topLevelWidgets();
  const auto found = std::find_if(windows.begin(), windows.end(), [&](const QWidget* other) {
    return other != window && other->isVisible() && other->windowType() == Qt::Window;
  });
  return found == windows.end() ? nullptr : *found;
}

void ShowLabel(QLabel& widget, const Label& label, const QString& text) {
  ShowPresence(widget, label);
  ShowTextColour(widget, label, QPalette::WindowText);
  if (widget.text() != text) widget.setText(text);
}

void ShowToolTip(QWidget& widget, const CodePage& page, const Control& control) {
  const QString tool_tip = PlainToolTip(page.Shown(control.tool_tip.get()));
  if (widget.toolTip() != tool_tip) widget.setToolTip(tool_tip);
}

void ShowTextBox(ByteLineEdit& widget, const CodePage& page, const TextBox& box) {
  ShowPresence(widget, box);
  ShowTextColour(widget, box, QPalette::Text);
  widget.ShowToolTip(page.Shown(box.tool_tip.get()));
  widget.ShowBytes(box.text);
}

}  // namespace

OptionsWindowWidget::OptionsWindowWidget(Program& program, const CodePage& page,
                                         const CodePage& file_names)
    : BoundWindow(program.frmOpties),
      program_(program),
      state_(program.frmOpties),
      page_(page),
      file_names_(file_names),
      lblJoker_(new QLabel(this)),
      lblJokerWhere_(new QLabel(this)),
      txtJoker_(new ByteLineEdit(page, this)),
      lblSeparator_(new QLabel(this)),
      lblSeparatorWhere_(new QLabel(this)),
      txtSeparator_(new ByteLineEdit(page, this)),
      lblExtensies_(new QLabel(this)),
      txtExtensie_(new ByteLineEdit(page, this)),
      cmdListExtensie_Down_(new QToolButton(this)),
      chkLoggen_(new QCheckBox(this)),
      imOptionsToFolder_(new PictureButton(":/pictures/folder.svg", this)),
      cmdToepassen_(new QPushButton(this)),
      lstExtensie_(new ExtensionList(this)) {
  setWindowFlags(Qt::Dialog);
  setWindowModality(Qt::ApplicationModal);
  NameControls();
  LayOut();
  OrderTabs();
  ConnectEvents();
}

void OptionsWindowWidget::NameControls() {
  const auto name = [](QWidget* widget, const char* object_name, const QString& spoken = {}) {
    widget->setObjectName(object_name);
    if (!spoken.isEmpty()) widget->setAccessibleName(spoken);
  };
  name(this, "frmOpties");
  name(lblJoker_, "lblJoker");
  name(lblJokerWhere_, "lblJokerWhere");
  name(txtJoker_, "txtJoker", tr("wildcard in replacement list"));
  name(lblSeparator_, "lblSeparator");
  name(lblSeparatorWhere_, "lblSeparatorWhere");
  name(txtSeparator_, "txtSeparator", tr("separator in replacement list"));
  name(lblExtensies_, "lblExtensies");
  name(txtExtensie_, "txtExtensie", tr("extension"));
  name(cmdListExtensie_Down_, "cmdListExtensie_Down", tr("list of extensions"));
  name(chkLoggen_, "chkLoggen", tr("logging"));
  name(imOptionsToFolder_, "imOptionsToFolder", tr("folder of Init.dat"));
  name(cmdToepassen_, "cmdToepassen", tr("Toepassen"));
  name(lstExtensie_, "lstExtensie", tr("extensions of the files that are scanned"));
  txtJoker_->setAccessibleDescription(
      tr("The character that stands for any text; empty for none."));
  txtSeparator_->setAccessibleDescription(tr("Parts the two texts of a row; \"|\" when empty."));
  txtExtensie_->setAccessibleDescription(
      tr("Control and Enter add what is typed here, Control and Delete remove the list's current "
         "extension, Alt and Down show or hide the list."));
  cmdListExtensie_Down_->setAccessibleDescription(tr("Shows or hides the list."));
  chkLoggen_->setAccessibleDescription(tr("Whether a run writes its log."));
  imOptionsToFolder_->setAccessibleDescription(
      tr("Tells where Init.dat lies and opens its folder."));
  cmdToepassen_->setAccessibleDescription(tr("Takes wildcard and separator over."));
  lstExtensie_->setAccessibleDescription(tr("Files with a selected extension are scanned."));
}

void OptionsWindowWidget::LayOut() {
  lblJoker_->setBuddy(txtJoker_);
  lblSeparator_->setBuddy(txtSeparator_);
  lblExtensies_->setBuddy(txtExtensie_);
  const int character = fontMetrics().averageCharWidth();
  txtJoker_->setFixedWidth(character * kShortField + kMargin);
  txtSeparator_->setFixedWidth(character * kShortField + kMargin);
  txtExtensie_->setMinimumWidth(character * kEntryField);
  cmdListExtensie_Down_->setArrowType(Qt::DownArrow);
  cmdListExtensie_Down_->setFocusPolicy(Qt::TabFocus);
  cmdListExtensie_Down_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
  cmdToepassen_->setAutoDefault(true);  // Enter presses it when focused

  const auto stacked = [](QLabel* upper, QLabel* lower) {
    auto* const lines = new QVBoxLayout;
    lines->setSpacing(0);
    lines->addWidget(upper);
    lines->addWidget(lower);
    return lines;
  };
  auto* const entry = new QHBoxLayout;
  entry->setSpacing(kGap);
  entry->addWidget(txtExtensie_);
  entry->addWidget(cmdListExtensie_Down_);

  auto* const grid = new QGridLayout(this);
  grid->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  grid->setHorizontalSpacing(2 * kMargin);
  grid->setVerticalSpacing(kSpacing);
  grid->addLayout(stacked(lblJoker_, lblJokerWhere_), 0, 0);
  grid->addWidget(txtJoker_, 0, 1);
  grid->addLayout(stacked(lblSeparator_, lblSeparatorWhere_), 1, 0);
  grid->addWidget(txtSeparator_, 1, 1);
  grid->addWidget(lblExtensies_, 2, 0);
  grid->addLayout(entry, 2, 1);
  grid->addWidget(chkLoggen_, 3, 0);
  grid->setRowStretch(kRoomForList, 1);
  grid->setColumnStretch(1, 1);
  grid->addWidget(imOptionsToFolder_, 5, 0, Qt::AlignLeft | Qt::AlignVCenter);
  grid->addWidget(cmdToepassen_, 5, 1, Qt::AlignRight | Qt::AlignVCenter);
}

void OptionsWindowWidget::OrderTabs() {
  std::array<std::pair<int, QWidget*>, 8> order = {{
      {state_.txtJoker.tab_index, txtJoker_},
      {state_.txtSeparator.tab_index, txtSeparator_},
      {state_.txtExtensie.tab_index, txtExtensie_},
      {state_.cmdListExtensie_Down.tab_index, cmdListExtensie_Down_},
      {state_.lstExtensie.tab_index, lstExtensie_},
      {state_.chkLoggen.tab_index, chkLoggen_},
      {state_.imOptionsToFolder.tab_index, imOptionsToFolder_},
      {state_.cmdToepassen.tab_index, cmdToepassen_},
  }};
  std::sort(order.begin(), order.end());
  for (std::size_t i = 1; i < order.size(); ++i) setTabOrder(order[i - 1].second, order[i].second);
}

void OptionsWindowWidget::ConnectEvents() {
  for (QWidget* const watched :
       std::initializer_list<QWidget*>{txtExtensie_, cmdListExtensie_Down_, lstExtensie_}) {
    watched->installEventFilter(this);
  }
  connect(txtJoker_, &ByteLineEdit::BytesEdited, this,
          [this](const std::string& bytes) { state_.txtJoker.text = bytes; });
  connect(txtSeparator_, &ByteLineEdit::BytesEdited, this,
          [this](const std::string& bytes) { state_.txtSeparator.text = bytes; });
  connect(txtExtensie_, &ByteLineEdit::BytesEdited, this,
          [this](const std::string& bytes) { state_.txtExtensie.text = bytes; });
  connect(cmdListExtensie_Down_, &QToolButton::clicked, this,
          [this] { cmdListExtensie_Down_Click(program_); });
  // A click clears a checked or greyed box and checks an empty one.
  connect(chkLoggen_, &QCheckBox::clicked, this,
          [this] { chkLoggen_Click(program_, state_.chkLoggen.value() == 0 ? 1 : 0); });
  connect(imOptionsToFolder_, &PictureButton::clicked, this,
          [this] { imOptionsToFolder_Click(program_); });
  connect(cmdToepassen_, &QPushButton::clicked, this, [this] { cmdToepassen_Click(program_); });
  connect(lstExtensie_, &QListWidget::currentRowChanged, this, [this](int row) {
    if (!showing_) state_.lstExtensie.current = row;
  });
  connect(lstExtensie_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &OptionsWindowWidget::TakeSelection);
}

bool OptionsWindowWidget::eventFilter(QObject* watched, QEvent* event) {
  const QEvent::Type type = event->type();
  if (watched == txtExtensie_) {
    if (type == QEvent::KeyPress) return TakeEntryKey(*static_cast<QKeyEvent*>(event));
    if (type == QEvent::FocusIn) txtExtensie_GotFocus(program_);
    if (type == QEvent::Move || type == QEvent::Resize) PlaceList();
  } else if (watched == lstExtensie_) {
    if (type == QEvent::KeyPress) return TakeListKey(*static_cast<QKeyEvent*>(event));
    if (type == QEvent::FocusOut) lstExtensie_Validate(program_);
  } else if (watched == cmdListExtensie_Down_ && type == QEvent::KeyPress) {
    if (KeyCode(*static_cast<QKeyEvent*>(event)) != kKeyEnter) return false;
    cmdListExtensie_Down_->click();
    return true;
  }
  return false;
}

// Passes the key on to the core, as 0 if no handler uses it; Escape closes the list or the window.
// Returns true when the entry field must not handle the key as well.
bool OptionsWindowWidget::TakeEntryKey(const QKeyEvent& event) {
  const int key = KeyCode(event);
  const int shift = ShiftState(event);
  if (key == kKeyEscape) {
    TakeEscape();
    return true;
  }
  txtExtensie_KeyDown(program_, key, shift);
  return IsListCommand(event) || (key == kKeyDown && shift == kShiftAlt);
}

bool OptionsWindowWidget::TakeListKey(const QKeyEvent& event) {
  if (KeyCode(event) == kKeyEscape) {
    TakeEscape();
    return true;
  }
  lstExtensie_KeyDown(program_, KeyCode(event), ShiftState(event));
  return IsListCommand(event);
}

// Escape closes the list if it is open, else the window, wherever the focus is.
void OptionsWindowWidget::TakeEscape() {
  if (state_.lstExtensie.visible) {
    txtExtensie_KeyDown(program_, kKeyEscape, 0);
  } else {
    frmOpties_Close(program_);
  }
}

void OptionsWindowWidget::TakeSelection(const QItemSelection& selected,
                                        const QItemSelection& deselected) {
  if (showing_) return;
  const auto tell = [this](const QItemSelection& changed, bool is_selected) {
    for (const QModelIndex& index : changed.indexes()) {
      lstExtensie_Select(program_, static_cast<std::size_t>(index.row()), is_selected);
    }
  };
  tell(deselected, false);
  tell(selected, true);
  // Each call has moved the focus mark, which belongs to the current row.
  state_.lstExtensie.current = lstExtensie_->currentRow();
}

void OptionsWindowWidget::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    TakeEscape();
  } else {
    BoundWindow::keyPressEvent(event);
  }
}

void OptionsWindowWidget::closeEvent(QCloseEvent* event) {
  frmOpties_Close(program_);
  event->setAccepted(!state_.visible);
}

void OptionsWindowWidget::resizeEvent(QResizeEvent* event) {
  BoundWindow::resizeEvent(event);
  PlaceList();
}

void OptionsWindowWidget::showEvent(QShowEvent* event) {
  BoundWindow::showEvent(event);
  QWidget* const owner = OtherWindow(this);
  if (event->spontaneous() || owner == nullptr) return;
  windowHandle()->setTransientParent(owner->windowHandle());
  if (std::exchange(is_placed_, true)) return;
  const QRect screen = owner->screen()->availableGeometry();
  QRect place(QPoint(), sizeHint());
  place.moveCenter(owner->frameGeometry().center());
  place.moveLeft(std::max(screen.left(), std::min(place.left(), screen.right() - place.width())));
  place.moveTop(std::max(screen.top(), std::min(place.top(), screen.bottom() - place.height())));
  setGeometry(place);
}

void OptionsWindowWidget::Show() {
  showing_ = true;
  ShowTexts();
  ShowLogging();
  ShowList();
  ShowFocus();
  showing_ = false;
}

void OptionsWindowWidget::ShowTexts() {
  const QString title = page_.Shown(state_.caption.get());
  if (windowTitle() != title) setWindowTitle(title);
  const auto plain = [this](const Label& label) { return page_.Shown(label.caption.get()); };
  ShowLabel(*lblJoker_, state_.lblJoker, WithMnemonic(plain(state_.lblJoker), 'w'));
  ShowLabel(*lblJokerWhere_, state_.lblJokerWhere, plain(state_.lblJokerWhere));
  ShowLabel(*lblSeparator_, state_.lblSeparator, WithMnemonic(plain(state_.lblSeparator), 's'));
  ShowLabel(*lblSeparatorWhere_, state_.lblSeparatorWhere, plain(state_.lblSeparatorWhere));
  ShowLabel(*lblExtensies_, state_.lblExtensies, WithMnemonic(plain(state_.lblExtensies), 'e'));
  ShowTextBox(*txtJoker_, page_, state_.txtJoker);
  ShowTextBox(*txtSeparator_, page_, state_.txtSeparator);
  ShowTextBox(*txtExtensie_, page_, state_.txtExtensie);
  ShowPresence(*cmdToepassen_, state_.cmdToepassen);
  ShowToolTip(*cmdToepassen_, page_, state_.cmdToepassen);
  const QString apply = WithMnemonic(page_.Shown(state_.cmdToepassen.caption.get()), 't');
  if (cmdToepassen_->text() != apply) cmdToepassen_->setText(apply);
  ShowPresence(*imOptionsToFolder_, state_.imOptionsToFolder);
  ShowToolTip(*imOptionsToFolder_, page_, state_.imOptionsToFolder);
  imOptionsToFolder_->ShowPointer(state_.imOptionsToFolder.mouse_pointer);
}

void OptionsWindowWidget::ShowLogging() {
  ShowPresence(*chkLoggen_, state_.chkLoggen);
  ShowToolTip(*chkLoggen_, file_names_, state_.chkLoggen);  // shows the log's path
  const QString caption = WithMnemonic(page_.Shown(state_.chkLoggen.caption.get()), 'l');
  if (chkLoggen_->text() != caption) chkLoggen_->setText(caption);
  const std::array<Qt::CheckState, 3> states = {Qt::Unchecked, Qt::Checked, Qt::PartiallyChecked};
  const Qt::CheckState wanted = states[static_cast<std::size_t>(state_.chkLoggen.value())];
  if (chkLoggen_->checkState() != wanted) chkLoggen_->setCheckState(wanted);
  // The box has its grey state only while it shows it, so no click can grey the box.
  chkLoggen_->setTristate(wanted == Qt::PartiallyChecked);
}

void OptionsWindowWidget::ShowList() {
  const Button& button = state_.cmdListExtensie_Down;
  ShowPresence(*cmdListExtensie_Down_, button);
  ShowToolTip(*cmdListExtensie_Down_, page_, button);
  const QString caption = page_.Shown(button.caption.get());
  if (cmdListExtensie_Down_->text() != caption) cmdListExtensie_Down_->setText(caption);
  const bool is_open = state_.lstExtensie.visible;
  cmdListExtensie_Down_->setArrowType(is_open ? Qt::UpArrow : Qt::DownArrow);
  lstExtensie_->ShowEntries(page_, state_.lstExtensie);
  MakeRoomForList(is_open);
  PlaceList();
  // Hiding the focused widget would let the toolkit choose the next focus.
  if (!is_open && lstExtensie_->hasFocus()) txtExtensie_->setFocus();
  ShowPresence(*lstExtensie_, state_.lstExtensie);
  ShowToolTip(*lstExtensie_, page_, state_.lstExtensie);
}

void OptionsWindowWidget::ShowFocus() {
  if (state_.focus.requests() == focus_requests_) return;
  focus_requests_ = state_.focus.requests();
  if (QWidget* const widget = WidgetOf(state_.focus.get())) widget->setFocus();
}

QWidget* OptionsWindowWidget::WidgetOf(const Control* control) const {
  const std::array<std::pair<const Control*, QWidget*>, 8> widgets = {{
      {&state_.txtJoker, txtJoker_},
      {&state_.txtSeparator, txtSeparator_},
      {&state_.txtExtensie, txtExtensie_},
      {&state_.cmdListExtensie_Down, cmdListExtensie_Down_},
      {&state_.lstExtensie, lstExtensie_},
      {&state_.chkLoggen, chkLoggen_},
      {&state_.imOptionsToFolder, imOptionsToFolder_},
      {&state_.cmdToepassen, cmdToepassen_},
  }};
  for (const auto& [known, widget] : widgets) {
    if (known == control) return widget;
  }
  return nullptr;
}

// Makes the window taller while the list is open, so that the list, without covering the button
// Toepassen, has room for its entries, or for kListRows of them if there are more.
void OptionsWindowWidget::MakeRoomForList(bool is_open) {
  auto& grid = *static_cast<QGridLayout*>(layout());
  const int wanted = lstExtensie_->HeightWithin(kListRows * lstExtensie_->RowHeight() + 2 * kGap);
  // The open list also covers the row of the logging box, so it needs less additional room.
  const int needed = wanted + kGap - chkLoggen_->sizeHint().height() - 2 * kSpacing;
  const int before = height();  // measured now, because activate() may enlarge the window
  grid.setRowMinimumHeight(kRoomForList, is_open ? std::max(0, needed) : 0);
  grid.activate();
  const int least = minimumSizeHint().height();
  if (is_open && least > before) {
    GrowTo(*this, least);
    grown_for_list_ += least - before;
  } else if (!is_open && grown_for_list_ > 0) {
    resize(width(), std::max(least, before - grown_for_list_));
    grown_for_list_ = 0;
  }
  grid.activate();
}

// Places the list below its entry field, as high as its entries, but no higher than the room above
// the button Toepassen.
void OptionsWindowWidget::PlaceList() {
  const QRect entry = txtExtensie_->geometry();
  const int top = entry.bottom() + 1 + kGap;
  const int width = cmdListExtensie_Down_->geometry().right() + 1 - entry.left();
  const int room = cmdToepassen_->geometry().top() - kGap - top;
  lstExtensie_->setGeometry(entry.left(), top, width, lstExtensie_->HeightWithin(room));
}

}  // namespace morvex
