#include "ui/qt/main_window.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCloseEvent>
#include <QGridLayout>
#include <QMouseEvent>
#include <QScreen>
#include <algorithm>

#include "core/list/editor_window.h"
#include "core/run/main_window_events.h"
#include "core/run/run_driver.h"
#include "core/settings/options.h"
#include "ui/qt/show_control.h"

namespace morvex {
namespace {

constexpr int kMargin = 16;
constexpr int kGap = 10;
constexpr int kFirstWidth = 680;
constexpr int kProgressHeight = 12;
constexpr int kProgressSteps = 1'000'000;
constexpr int kHeadingEnlarged = 1;  // points

// Places in the window's column.
constexpr int kPathsPlace = 0;

QLabel* MakeLabel(QWidget* parent, const Label& label) {
  auto* const made = new QLabel(parent);
  made->setTextFormat(Qt::PlainText);
  made->setFont(NamedFont(label.font, made->font()));
  return made;
}

// Room for two lines, whatever stands there: nothing below moves during a run.
void KeepTwoLines(QLabel& label) {
  label.setAlignment(Qt::AlignLeft | Qt::AlignTop);
  label.setMinimumHeight(2 * label.fontMetrics().lineSpacing());
}

}  // namespace

MainWindowWidget::MainWindowWidget(Program& program, const CodePage& page)
    : BoundWindow(program.frmMorvex),
      program_(program),
      page_(page),
      window_(program.frmMorvex),
      rows_{
          PathRow{kSourceBox,
                  new PathBox(program.host.files, page, PathBox::Takes::kFilesAndFolders, this),
                  MakeLabel(this, window_.lblPassword_1)},
          PathRow{kTargetBox, new PathBox(program.host.files, page, PathBox::Takes::kFolders, this),
                  MakeLabel(this, window_.lblPassword_2)}},
      tree_(new FolderTreeView(this)),
      anonymize_(new QPushButton(this)),
      go_(new QPushButton(this)),
      exit_(new QPushButton(this)),
      options_(new PictureButton(":/pictures/options.svg", this)),
      list_(new PictureButton(":/pictures/list.svg", this)),
      extensions_(new ElidedLabel(Qt::ElideRight, this)),
      files_(new ElidedLabel(Qt::ElideMiddle, this)),
      heading_(MakeLabel(this, window_.Label1)),
      total_files_(MakeLabel(this, window_.lblTotalFiles)),
      time_(MakeLabel(this, window_.lblTijd)),
      result_(MakeLabel(this, window_.lblPercentage)),
      progress_(new QProgressBar(this)),
      image_(new PictureView(":/pictures/mask.svg", this)),
      controls_{{&window_.Text1(kSourceBox), rows_[0].box},
                {&window_.Text1(kTargetBox), rows_[1].box},
                {&window_.lblPassword_1, rows_[0].label},
                {&window_.lblPassword_2, rows_[1].label},
                {&window_.FolderTreeview1, tree_},
                // What is enabled comes before what is disabled: the focus passes from "OK" to Go.
                {&window_.cmdGo, go_},
                {&window_.cmdAnonymize, anonymize_},
                {&window_.cmdExit, exit_},
                {&window_.imOpties, options_},
                {&window_.imList, list_},
                {&window_.lblExtensions, extensions_},
                {&window_.lblFiles, files_},
                {&window_.Label1, heading_},
                {&window_.lblTotalFiles, total_files_},
                {&window_.lblTijd, time_},
                {&window_.lblPercentage, result_},
                {&window_.ProgressBar1, progress_},
                {&window_.Image1, image_}} {
  setObjectName("frmMorvex");
  setAttribute(Qt::WA_InputMethodEnabled, false);
  NameControls();
  LayOut();
  Connect();
  resize(kFirstWidth, 0);
}

void MainWindowWidget::NameControls() {
  const auto name = [](QWidget* widget, const char* object_name, const QString& accessible_name,
                       const QString& description = QString()) {
    widget->setObjectName(object_name);
    widget->setAccessibleName(accessible_name);
    widget->setAccessibleDescription(description);
  };
  name(rows_[0].box, "Text1_0", tr("Source"), tr("File or folder that is copied"));
  name(rows_[1].box, "Text1_2", tr("Target"), tr("Folder that takes the copies"));
  rows_[0].label->setObjectName("lblPassword_1");
  rows_[1].label->setObjectName("lblPassword_2");
  name(tree_, "FolderTreeview1", tr("Folders"),
       tr("Enter or a double click chooses the folder, Escape gives the box back."));
  name(anonymize_, "cmdAnonymize", tr("OK"), tr("Saves the settings and arms the run"));
  name(go_, "cmdGo", tr("Go"), tr("Starts the run"));
  name(exit_, "cmdExit", tr("Exit"), tr("Ends the program"));
  name(options_, "imOpties", tr("Options"), tr("Opens the options window"));
  name(list_, "imList", tr("Replacement list"), tr("Opens the editor of the replacement list"));
  name(extensions_, "lblExtensions", tr("Selected file types"));
  name(files_, "lblFiles", tr("File being processed"));
  heading_->setObjectName("Label1");
  total_files_->setObjectName("lblTotalFiles");
  time_->setObjectName("lblTijd");
  result_->setObjectName("lblPercentage");
  name(progress_, "ProgressBar1", tr("Progress of the run"));
  image_->setObjectName("Image1");
}

QFrame* MainWindowWidget::MakeLine(int number, QFrame::Shape shape) {
  auto* const line = new QFrame(this);
  line->setObjectName(QString("Line%1").arg(number));
  line->setFrameStyle(shape | QFrame::Sunken);
  line->setAttribute(Qt::WA_TransparentForMouseEvents);
  return line;
}

void MainWindowWidget::LayOut() {
  for (PathRow& row : rows_) {
    row.label->setBuddy(row.box);
    row.label->setMinimumHeight(row.box->sizeHint().height());
  }
  extensions_->setFont(NamedFont(window_.lblExtensions.font, font()));
  for (QLabel* label : {total_files_, time_, result_}) KeepTwoLines(*label);
  progress_->setTextVisible(false);
  progress_->setFixedHeight(kProgressHeight);
  QSizePolicy keeps_place = progress_->sizePolicy();
  keeps_place.setRetainSizeWhenHidden(true);
  progress_->setSizePolicy(keeps_place);

  column_ = new QVBoxLayout(this);
  column_->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  column_->setSpacing(kGap);
  column_->addLayout(LayOutPaths());
  column_->addLayout(LayOutCommands());
  column_->addWidget(MakeLine(5, QFrame::HLine));
  column_->addWidget(extensions_);
  column_->addWidget(files_);
  column_->addLayout(LayOutStatistics());
  column_->addWidget(progress_);
  column_->addStretch(1);
}

// Labels and boxes in a frame, the two pictures at its side.
QBoxLayout* MainWindowWidget::LayOutPaths() {
  paths_ = new QGridLayout;
  paths_->setContentsMargins(kGap, kGap, kGap, kGap);
  paths_->setHorizontalSpacing(kGap);
  paths_->setVerticalSpacing(kGap);
  paths_->setColumnStretch(1, 1);
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    paths_->addWidget(rows_[i].label, static_cast<int>(i), 0, Qt::AlignTop);
    paths_->addWidget(rows_[i].box, static_cast<int>(i), 1);
  }
  tree_->hide();

  auto* const frame = new QGridLayout;
  frame->setSpacing(0);
  frame->addWidget(MakeLine(1, QFrame::HLine), 0, 0, 1, 3);
  frame->addWidget(MakeLine(2, QFrame::HLine), 2, 0, 1, 3);
  frame->addWidget(MakeLine(3, QFrame::VLine), 1, 0);
  frame->addWidget(MakeLine(4, QFrame::VLine), 1, 2);
  frame->addLayout(paths_, 1, 1);
  frame->setColumnStretch(1, 1);
  frame->setRowStretch(1, 1);

  auto* const pictures = new QVBoxLayout;
  pictures->setSpacing(kGap / 2);
  pictures->addWidget(options_);
  pictures->addWidget(list_);
  pictures->addStretch(1);

  auto* const side_by_side = new QHBoxLayout;
  side_by_side->setSpacing(kGap);
  side_by_side->addLayout(frame, 1);
  side_by_side->addLayout(pictures);
  return side_by_side;
}

QBoxLayout* MainWindowWidget::LayOutCommands() {
  auto* const commands = new QHBoxLayout;
  commands->setSpacing(kGap);
  commands->addStretch(1);
  const std::array<std::pair<QPushButton*, const Button*>, 3> buttons = {
      {{anonymize_, &window_.cmdAnonymize}, {go_, &window_.cmdGo}, {exit_, &window_.cmdExit}}};
  for (const auto& [button, state] : buttons) {
    button->setAutoDefault(true);  // so that Enter works where the focus is
    button->setFont(NamedFont(state->font, button->font()));
    commands->addWidget(button);
  }
  // Go has room for each of its captions.
  for (const char* caption : {kGoIdle, kGoPathsChanged, kGoArmed}) {
    go_->setText(caption);
    go_->setMinimumWidth(std::max(go_->minimumWidth(), go_->sizeHint().width()));
  }
  commands->addStretch(1);
  return commands;
}

// The statistics in a frame of their own.
QBoxLayout* MainWindowWidget::LayOutStatistics() {
  QFont font = heading_->font();
  font.setPointSizeF(font.pointSizeF() + kHeadingEnlarged);
  font.setBold(true);
  heading_->setFont(font);

  auto* const top = new QHBoxLayout;
  top->addWidget(heading_, 1);
  top->addWidget(image_);
  auto* const columns = new QHBoxLayout;
  columns->setSpacing(2 * kGap);
  for (QLabel* label : {total_files_, time_, result_}) columns->addWidget(label, 1);
  auto* const inside = new QVBoxLayout;
  inside->setContentsMargins(kGap, kGap, kGap, kGap);
  inside->setSpacing(kGap / 2);
  inside->addLayout(top);
  inside->addLayout(columns);

  auto* const sides = new QHBoxLayout;
  sides->setSpacing(0);
  sides->addWidget(MakeLine(8, QFrame::VLine));
  sides->addLayout(inside, 1);
  sides->addWidget(MakeLine(9, QFrame::VLine));
  auto* const frame = new QVBoxLayout;
  frame->setSpacing(0);
  frame->addWidget(MakeLine(6, QFrame::HLine));
  frame->addLayout(sides);
  frame->addWidget(MakeLine(7, QFrame::HLine));
  return frame;
}

void MainWindowWidget::Connect() {
  for (const PathRow& row : rows_) ConnectPathRow(row);
  connect(tree_, &FolderTreeView::Chosen, this,
          [this](const std::string& path) { FolderTreeview1_FolderChosen(program_, path); });
  connect(tree_, &FolderTreeView::GivenUp, this, [this] { FolderTreeview1_Cancelled(program_); });
  connect(tree_, &FolderTreeView::Visited, this,
          [this](const std::string& path) { FolderTreeview1_FolderEvent(program_, path); });
  connect(anonymize_, &QPushButton::clicked, this, [this] {
    GiveUpChoice();
    cmdAnonymize_Click(program_);
  });
  connect(go_, &QPushButton::clicked, this, [this] {
    GiveUpChoice();
    cmdGo_Click(program_);
  });
  connect(exit_, &QPushButton::clicked, this, [this] { cmdExit_Click(program_); });
  connect(options_, &PictureButton::clicked, this, [this] { imOpties_Click(program_); });
  connect(options_, &PictureButton::PointerMoved, this, [this] { imOpties_MouseMove(program_); });
  connect(list_, &PictureButton::clicked, this, [this] { imList_Click(program_); });
  connect(list_, &PictureButton::PointerMoved, this, [this] { imList_MouseMove(program_); });
  connect(files_, &ElidedLabel::Clicked, this, [this] { lblFiles_Click(program_); });
}

void MainWindowWidget::ConnectPathRow(const PathRow& row) {
  const int index = row.index;
  const auto take = [this, index](const std::string& path) { Text1_Change(program_, index, path); };
  connect(row.box, &PathBox::BytesEdited, this, take);
  connect(row.box, &PathBox::Dropped, this, take);
  connect(row.box, &PathBox::BrowseWanted, this,
          [this, index] { Text1_DblClick(program_, index); });
}

// An armed run goes by the boxes as they are: a tree that still stands in for one would change the
// path behind its back.
void MainWindowWidget::GiveUpChoice() {
  if (window_.FolderTreeview1.visible) FolderTreeview1_Cancelled(program_);
}

void MainWindowWidget::Show() {
  setWindowTitle(page_.Shown(window_.caption.get()));
  OrderTabs();
  ShowTexts();
  ShowTree();
  for (const auto& [control, widget] : controls_) {
    if (widget != tree_) ShowPresence(*widget, *control);
  }
  ShowProgress();
  ShowPointers();
  ShowFocus();
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
    ShowTextColour(*row.box, state, QPalette::Text);
  }
  const std::array<std::pair<QLabel*, const Label*>, 4> labels = {
      {{heading_, &window_.Label1},
       {total_files_, &window_.lblTotalFiles},
       {time_, &window_.lblTijd},
       {result_, &window_.lblPercentage}}};
  for (const auto& [label, state] : labels) {
    label->setText(ShownLines(page_, state->caption));
    show_tip(*label, *state, QString());
  }
  const QString source = ShownLines(page_, window_.lblPassword_1.caption);
  const QString target = ShownLines(page_, window_.lblPassword_2.caption);
  rows_[0].label->setText(WithMnemonic(source, 'S'));
  rows_[1].label->setText(WithMnemonic(target, 'T'));
  show_tip(*rows_[0].label, window_.lblPassword_1, QString());
  show_tip(*rows_[1].label, window_.lblPassword_2, QString());

  extensions_->ShowText(page_.Shown(window_.lblExtensions.caption.get()));
  extensions_->ShowHint(page_.Shown(window_.lblExtensions.tool_tip.get()));
  files_->ShowText(page_.Shown(window_.lblFiles.caption.get()));
  files_->ShowHint(page_.Shown(window_.lblFiles.tool_tip.get()));

  anonymize_->setText(WithMnemonic(page_.Shown(window_.cmdAnonymize.caption.get()), 'O'));
  exit_->setText(WithMnemonic(page_.Shown(window_.cmdExit.caption.get()), 'X'));
  show_tip(*anonymize_, window_.cmdAnonymize, QString());
  show_tip(*exit_, window_.cmdExit, QString());
  show_tip(*options_, window_.imOpties, options_->accessibleName());
  show_tip(*list_, window_.imList, list_->accessibleName());
  show_tip(*tree_, window_.FolderTreeview1, tree_->accessibleDescription());
  ShowGo();
}

void MainWindowWidget::ShowGo() {
  go_->setText(WithMnemonic(page_.Shown(window_.cmdGo.caption.get()), 'G'));
  go_->setToolTip(page_.Shown(window_.cmdGo.tool_tip.get()));
  // The step that is now due stands out.
  const bool is_due = window_.cmdGo.enabled && window_.cmdGo.caption.get() == kGoArmed;
  if (go_->isDefault() != is_due) go_->setDefault(is_due);
}

void MainWindowWidget::ShowTree() {
  const bool wanted = window_.FolderTreeview1.visible;
  const auto row = std::find_if(rows_.begin(), rows_.end(), [this](const PathRow& candidate) {
    return candidate.index == window_.EditedBox;
  });
  const int place = static_cast<int>(row - rows_.begin());
  if (!wanted) {
    if (tree_->isHidden()) return;
    const bool had_focus = tree_->hasFocus();
    tree_->hide();
    paths_->removeWidget(tree_);
    paths_->setRowStretch(0, 0);
    paths_->setRowStretch(1, 0);
    column_->setStretch(kPathsPlace, 0);
    for (const PathRow& other : rows_) ShowPresence(*other.box, window_.Text1(other.index));
    if (had_focus) row->box->setFocus(Qt::OtherFocusReason);
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
  paths_->removeWidget(tree_);
  paths_->addWidget(tree_, place, 1);
  paths_->setRowStretch(place, 1);
  paths_->setRowStretch(1 - place, 0);
  column_->setStretch(kPathsPlace, 1);
  tree_->show();
  if (!was_hidden || isMaximized() || isFullScreen()) return;
  const int room = screen()->availableGeometry().height() - height();
  tree_grew_ = std::clamp(tree_->sizeHint().height() - row->box->height(), 0, std::max(0, room));
  resize(width(), height() + tree_grew_);
}

void MainWindowWidget::ShowProgress() {
  const ProgressBar& state = window_.ProgressBar1;
  // The toolkit counts in int, and takes a bar without an end as one that cannot tell yet.
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

void MainWindowWidget::ShowFocus() {
  if (window_.focus.requests() == focus_requests_) return;
  focus_requests_ = window_.focus.requests();
  for (const auto& [control, widget] : controls_) {
    if (control == window_.focus.get()) widget->setFocus(Qt::OtherFocusReason);
  }
}

void MainWindowWidget::changeEvent(QEvent* event) {
  BoundWindow::changeEvent(event);
  // Red on a light ground is another red on a dark one.
  if (event->type() != QEvent::PaletteChange) return;
  for (const PathRow& row : rows_) {
    ShowTextColour(*row.box, window_.Text1(row.index), QPalette::Text);
  }
}

void MainWindowWidget::closeEvent(QCloseEvent* event) {
  frmMorvex_Close(program_);
  event->accept();
}

void MainWindowWidget::mouseReleaseEvent(QMouseEvent* event) {
  // A click beside the controls; one on a label comes here too, and is none on the window.
  const QPoint place = event->position().toPoint();
  if (event->button() != Qt::LeftButton || !rect().contains(place)) return;
  if (childAt(place) == nullptr) frmMorvex_Click(program_);
}

}  // namespace morvex
