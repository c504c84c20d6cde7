// Shows the state of the main window.
#include <QBoxLayout>
#include <QGridLayout>
#include <QScreen>
#include <algorithm>

#include "ui/qt/grow_window.h"
#include "ui/qt/main_window.h"
#include "ui/qt/show_control.h"

namespace morvex {
namespace {

constexpr int kProgressSteps = 1'000'000;
constexpr int kButtonDarker = 130;       // percent, for QColor::darker
constexpr float kLockedOpacity = 0.65F;  // of a path while its box is disabled

// Indexes in the window's column layout.
constexpr int kPathsPlace = 0;
constexpr int kSpacePlace = 7;

}  // namespace

void MainWindowWidget::Show() {
  setWindowTitle(page_.Shown(window_.caption.get()));
  OrderTabs();
  ShowTexts();
  ShowTree();
  KeepFocusFromExit();
  for (const auto& [control, widget] : controls_) {
    if (widget != tree_) ShowPresence(*widget, *control);
  }
  ShowProgress();
  ShowPointers();
  ShowFocus();
  setEnabled(!IsEnding());
}

void MainWindowWidget::OrderTabs() {
  std::vector<std::pair<int, QWidget*>> stops;
  std::vector<int> order;
  for (const auto& [control, widget] : controls_) {
    order.push_back(control->tab_index);
    if (control->tab_index >= 0) stops.emplace_back(control->tab_index, widget);
  }
  if (order == tab_order_) return;
  tab_order_ = order;
  std::sort(stops.begin(), stops.end());
  for (std::size_t i = 1; i < stops.size(); ++i) setTabOrder(stops[i - 1].second, stops[i].second);
}

void MainWindowWidget::ShowTexts() {
  const auto show_tip = [this](QWidget& widget, const Control& control, const QString& otherwise) {
    const QString tip = page_.Shown(control.tool_tip.get());
    widget.setToolTip(tip.isEmpty() ? otherwise : tip);
  };
  for (const PathRow& row : rows_) {
    const TextBox& state = window_.Text1(row.index);
    row.box->ShowBytes(state.text);
    row.box->ShowToolTip(page_.Shown(state.tool_tip.get()));
  }
  ShowColours();
  const std::array<std::pair<QLabel*, const Label*>, 4> labels = {
      {{heading_, &window_.Label1},
       {total_files_, &window_.lblTotalFiles},
       {time_, &window_.lblTijd},
       {result_, &window_.lblPercentage}}};
  for (const auto& [label, state] : labels) {
    label->setText(ShownLines(page_, state->caption));
    show_tip(*label, *state, QString());
  }
  if (IsEnding()) total_files_->setText(tr("Stopping ...\nThe target is not complete."));
  const QString source = ShownLines(page_, window_.lblPassword_1.caption);
  const QString target = ShownLines(page_, window_.lblPassword_2.caption);
  rows_[0].label->setText(WithMnemonic(source, 'S'));
  rows_[1].label->setText(WithMnemonic(target, 'T'));
  show_tip(*rows_[0].label, window_.lblPassword_1, QString());
  show_tip(*rows_[1].label, window_.lblPassword_2, QString());

  extensions_->ShowText(page_.Shown(window_.lblExtensions.caption.get()));
  extensions_->ShowHint(page_.Shown(window_.lblExtensions.tool_tip.get()));
  files_->ShowText(file_names_.Shown(window_.lblFiles.caption.get()));
  files_->ShowHint(page_.Shown(window_.lblFiles.tool_tip.get()));
  note_->ShowText(page_.Shown(window_.lblNote.caption.get()));

  anonymize_->setText(WithMnemonic(page_.Shown(window_.cmdAnonymize.caption.get()), 'O'));
  exit_->setText(WithMnemonic(page_.Shown(window_.cmdExit.caption.get()), 'X'));
  show_tip(*anonymize_, window_.cmdAnonymize, QString());
  show_tip(*exit_, window_.cmdExit, QString());
  show_tip(*options_, window_.imOpties, options_->accessibleName());
  show_tip(*list_, window_.imList, list_->accessibleName());
  show_tip(*tree_, window_.FolderTreeview1, tree_->accessibleDescription());
  ShowGo();
}

void MainWindowWidget::ShowColours() {
  for (const auto& [control, widget] : controls_) {
    if (qobject_cast<PathBox*>(widget) != nullptr) continue;
    ShowTextColour(*widget, *control, QPalette::WindowText);
  }
  // A path stays readable while its box is disabled, and is red when the run refuses it or asks the
  // user about it.
  for (const PathRow& row : rows_) {
    QPalette own;
    const Colour colour = window_.Text1(row.index).colour;
    QColor shown = TextColour(colour, palette());
    if (colour == Colour::kBlack) {
      shown.setAlphaF(kLockedOpacity);
    } else {
      own.setColor(QPalette::Active, QPalette::Text, shown);
      own.setColor(QPalette::Inactive, QPalette::Text, shown);
    }
    own.setColor(QPalette::Disabled, QPalette::Text, shown);
    row.box->setPalette(own);
  }
}

void MainWindowWidget::ShowGo() {
  go_->setText(WithMnemonic(page_.Shown(window_.cmdGo.caption.get()), 'G'));
  go_->setToolTip(page_.Shown(window_.cmdGo.tool_tip.get()));
  // Highlights Go when it is the next step.
  const bool is_due = window_.cmdGo.enabled && window_.cmdGo.caption.get() == kGoArmed;
  if (go_->isDefault() != is_due) go_->setDefault(is_due);
  QPalette own;
  if (is_due) {
    // Styles draw a button lighter than its colour, so a darker colour keeps the caption readable.
    const QColor ground = palette().color(QPalette::Highlight).darker(kButtonDarker);
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
      own.setColor(group, QPalette::Button, ground);
      own.setColor(group, QPalette::ButtonText, palette().color(QPalette::HighlightedText));
    }
  }
  go_->setPalette(own);
}

void MainWindowWidget::ShowTree() {
  const bool wanted = window_.FolderTreeview1.visible;
  const auto row = std::find_if(rows_.begin(), rows_.end(), [this](const PathRow& candidate) {
    return candidate.index == window_.EditedBox;
  });
  const int place = static_cast<int>(row - rows_.begin());
  if (!wanted) {
    if (tree_->isHidden()) return;
    const bool had_focus = focusWidget() == tree_;
    tree_->hide();
    paths_->removeWidget(tree_);
    paths_->setRowStretch(0, 0);
    paths_->setRowStretch(1, 0);
    column_->setStretch(kPathsPlace, 0);
    column_->setStretch(kSpacePlace, 1);
    for (const PathRow& other : rows_) ShowPresence(*other.box, window_.Text1(other.index));
    if (had_focus) {
      QWidget& next = row->box->isEnabled() ? static_cast<QWidget&>(*row->box) : *this;
      next.setFocus(Qt::OtherFocusReason);
    }
    layout()->activate();
    if (tree_grew_ > 0 && !isMaximized() && !isFullScreen()) {
      resize(width(), std::max(minimumSizeHint().height(), height() - tree_grew_));
    }
    tree_grew_ = 0;
    return;
  }
  tree_->setEnabled(window_.FolderTreeview1.enabled);
  const std::string& folder = window_.FolderTreeview1.selected_folder;
  const bool is_new = tree_->isHidden() || paths_->itemAtPosition(place, 1) == nullptr ||
                      paths_->itemAtPosition(place, 1)->widget() != tree_;
  if (!is_new && folder == tree_folder_) return;
  tree_folder_ = folder;
  tree_->OpenAt(folder);
  if (!is_new) return;
  for (const PathRow& other : rows_) ShowPresence(*other.box, window_.Text1(other.index));
  const bool was_hidden = tree_->isHidden();
  const int before = height();
  paths_->removeWidget(tree_);
  paths_->addWidget(tree_, place, 1);
  paths_->setRowStretch(place, 1);
  paths_->setRowStretch(1 - place, 0);
  column_->setStretch(kPathsPlace, 1);
  column_->setStretch(kSpacePlace, 0);
  tree_->show();
  if (!was_hidden || isMaximized() || isFullScreen()) return;
  // The window must not become taller than the screen. But if the tree's minimum height has already
  // made it taller, it stays so.
  const int tall = before + tree_->sizeHint().height() - row->box->height();
  GrowTo(*this, std::max(height(), std::min(tall, screen()->availableGeometry().height())));
  tree_grew_ = height() - before;
}

void MainWindowWidget::ShowProgress() {
  const ProgressBar& state = window_.ProgressBar1;
  // The toolkit counts in int. It shows a bar with maximum 0 as one of unknown length.
  const std::int64_t maximum = state.maximum();
  const bool fits = maximum <= kProgressSteps;
  const int steps = fits ? static_cast<int>(maximum) : kProgressSteps;
  const int value = fits ? static_cast<int>(state.value())
                         : static_cast<int>(static_cast<double>(state.value()) /
                                            static_cast<double>(maximum) * kProgressSteps);
  if (progress_->maximum() != steps) progress_->setRange(0, steps);
  if (progress_->value() != value) progress_->setValue(value);
}

void MainWindowWidget::ShowPointers() {
  const bool is_busy = window_.mouse_pointer.get() == MousePointer::kHourglass;
  const bool shows_busy = testAttribute(Qt::WA_SetCursor);
  if (is_busy && !shows_busy) setCursor(Qt::WaitCursor);
  if (!is_busy && shows_busy) unsetCursor();
  options_->ShowPointer(is_busy ? MousePointer::kDefault : window_.imOpties.mouse_pointer);
  list_->ShowPointer(is_busy ? MousePointer::kDefault : window_.imList.mouse_pointer);
}

// When a focused control is disabled or hidden, the toolkit moves the focus to the next control.
// When a window without a focused control becomes active, the toolkit focuses the first control. At
// the start of a run, this would be Exit in both cases, and the next key would end the run. So the
// window itself takes the focus.
void MainWindowWidget::KeepFocusFromExit() {
  const QWidget* const focused = focusWidget();
  const auto at = std::find_if(controls_.begin(), controls_.end(),
                               [&](const auto& shown) { return shown.second == focused; });
  const bool is_control = at != controls_.end();
  const bool stays = is_control ? at->first->enabled && at->first->visible : focused != nullptr;
  if (stays || (focused == nullptr && window_.Text1(kSourceBox).enabled)) return;
  if (focused == anonymize_ && window_.cmdGo.enabled) {
    ShowPresence(*go_, window_.cmdGo);
    go_->setFocus(Qt::OtherFocusReason);
  } else {
    setFocus(Qt::OtherFocusReason);
  }
}

void MainWindowWidget::ShowFocus() {
  if (window_.focus.requests() == focus_requests_) return;
  focus_requests_ = window_.focus.requests();
  for (const auto& [control, widget] : controls_) {
    if (control == window_.focus.get()) widget->setFocus(Qt::OtherFocusReason);
  }
}

}  // namespace morvex
