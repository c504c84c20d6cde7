// The layout of the main window.
#include <QBoxLayout>
#include <QGridLayout>
#include <QPainter>
#include <algorithm>

#include "ui/qt/main_window.h"
#include "ui/qt/show_control.h"

namespace morvex {
namespace {

constexpr int kMargin = 16;
constexpr int kGap = 10;
constexpr int kProgressHeight = 12;
constexpr float kLineOpacity = 0.22F;
constexpr int kHeadingEnlarged = 1;  // points

// A decorative line; a click on it is a click on the window.
class HairLine : public QWidget {
 public:
  HairLine(Qt::Orientation orientation, QWidget* parent) : QWidget(parent) {
    const bool lies = orientation == Qt::Horizontal;
    setSizePolicy(lies ? QSizePolicy::Expanding : QSizePolicy::Fixed,
                  lies ? QSizePolicy::Fixed : QSizePolicy::Expanding);
    setAttribute(Qt::WA_TransparentForMouseEvents);
  }
  QSize sizeHint() const override { return {1, 1}; }

 protected:
  void paintEvent(QPaintEvent*) override {
    QColor colour = palette().color(QPalette::WindowText);
    colour.setAlphaF(kLineOpacity);
    QPainter(this).fillRect(rect(), colour);
  }
};

// Makes the label always take the height of two lines, so that nothing below moves during a run.
void KeepTwoLines(QLabel& label) {
  label.setAlignment(Qt::AlignLeft | Qt::AlignTop);
  label.setMinimumHeight(2 * label.fontMetrics().lineSpacing());
}

}  // namespace

QWidget* MainWindowWidget::MakeLine(int number, Qt::Orientation orientation) {
  auto* const line = new HairLine(orientation, this);
  line->setObjectName(QString("Line%1").arg(number));
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
  column_->addWidget(MakeLine(5, Qt::Horizontal));
  column_->addWidget(extensions_);
  column_->addWidget(files_);
  column_->addLayout(LayOutStatistics());
  // The progress bar is shown during a run and the note after it, so they share one cell.
  auto* const foot = new QGridLayout;
  foot->addWidget(note_, 0, 0);
  foot->addWidget(progress_, 0, 0, Qt::AlignVCenter);
  column_->addLayout(foot);
  column_->addStretch(1);
}

// Puts the labels and path boxes into a frame, and places the two pictures beside this frame.
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
  frame->addWidget(MakeLine(1, Qt::Horizontal), 0, 0, 1, 3);
  frame->addWidget(MakeLine(2, Qt::Horizontal), 2, 0, 1, 3);
  frame->addWidget(MakeLine(3, Qt::Vertical), 1, 0);
  frame->addWidget(MakeLine(4, Qt::Vertical), 1, 2);
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
    button->setAutoDefault(true);  // Enter presses the focused button
    button->installEventFilter(&held_enter_);
    button->setFont(NamedFont(state->font, button->font()));
    commands->addWidget(button);
  }
  // Makes Go wide enough for each of its captions.
  for (const char* caption : {kGoIdle, kGoPathsChanged, kGoArmed}) {
    go_->setText(caption);
    go_->setMinimumWidth(std::max(go_->minimumWidth(), go_->sizeHint().width()));
  }
  commands->addStretch(1);
  return commands;
}

// Puts the statistics in a frame.
QBoxLayout* MainWindowWidget::LayOutStatistics() {
  QFont font = heading_->font();
  font.setPointSizeF(font.pointSizeF() + kHeadingEnlarged);
  font.setBold(true);
  heading_->setFont(font);

  auto* const inside = new QGridLayout;
  inside->setContentsMargins(kGap, kGap, kGap, kGap);
  inside->setHorizontalSpacing(2 * kGap);
  inside->setVerticalSpacing(kGap / 2);
  const std::array<QLabel*, 3> columns = {total_files_, time_, result_};
  for (int i = 0; i < static_cast<int>(columns.size()); ++i) {
    inside->addWidget(columns[static_cast<std::size_t>(i)], 1, i);
    inside->setColumnStretch(i, 1);
  }
  inside->addWidget(heading_, 0, 0, 1, static_cast<int>(columns.size()));
  inside->addWidget(image_, 0, static_cast<int>(columns.size()), 2, 1, Qt::AlignVCenter);

  auto* const sides = new QHBoxLayout;
  sides->setSpacing(0);
  sides->addWidget(MakeLine(8, Qt::Vertical));
  sides->addLayout(inside, 1);
  sides->addWidget(MakeLine(9, Qt::Vertical));
  auto* const frame = new QVBoxLayout;
  frame->setSpacing(0);
  frame->addWidget(MakeLine(6, Qt::Horizontal));
  frame->addLayout(sides);
  frame->addWidget(MakeLine(7, Qt::Horizontal));
  return frame;
}

}  // namespace morvex
