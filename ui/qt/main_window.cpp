#include "ui/qt/main_window.h"

#include <QCloseEvent>
#include <QMouseEvent>

#include "core/list/editor.h"
#include "core/run/main_window_events.h"
#include "core/run/run_driver.h"
#include "core/settings/options.h"
#include "ui/qt/show_control.h"

namespace morvex {
namespace {

constexpr int kFirstWidth = 680;

QLabel* MakeLabel(QWidget* parent, const Label& label) {
  auto* const made = new QLabel(parent);
  made->setTextFormat(Qt::PlainText);
  made->setFont(NamedFont(label.font, made->font()));
  return made;
}

}  // namespace

MainWindowWidget::MainWindowWidget(Program& program, const CodePage& page,
                                   const CodePage& file_names)
    : BoundWindow(program.frmMorvex),
      program_(program),
      page_(page),
      file_names_(file_names),
      window_(program.frmMorvex),
      rows_{PathRow{kSourceBox, new PathBox(program.host.files, file_names, this),
                    MakeLabel(this, window_.lblPassword_1)},
            PathRow{kTargetBox, new PathBox(program.host.files, file_names, this),
                    MakeLabel(this, window_.lblPassword_2)}},
      tree_(new FolderTreeView(file_names, this)),
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
      note_(new ElidedLabel(Qt::ElideRight, this)),
      progress_(new QProgressBar(this)),
      image_(new PictureView(":/pictures/mask.svg", this)),
      controls_{{&window_.Text1(kSourceBox), rows_[0].box},
                {&window_.Text1(kTargetBox), rows_[1].box},
                {&window_.lblPassword_1, rows_[0].label},
                {&window_.lblPassword_2, rows_[1].label},
                {&window_.FolderTreeview1, tree_},
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
                {&window_.lblNote, note_},
                {&window_.ProgressBar1, progress_},
                {&window_.Image1, image_}} {
  setObjectName("frmMorvex");
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
  name(note_, "lblNote", tr("What to know of the last run"));
  name(progress_, "ProgressBar1", tr("Progress of the run"));
  image_->setObjectName("Image1");
}

void MainWindowWidget::Connect() {
  for (const PathRow& row : rows_) ConnectPathRow(row);
  connect(tree_, &FolderTreeView::Chosen, this,
          [this](const std::string& path) { FolderTreeview1_FolderChosen(program_, path); });
  connect(tree_, &FolderTreeView::GivenUp, this, [this] { FolderTreeview1_Cancelled(program_); });
  connect(tree_, &FolderTreeView::Visited, this,
          [this](const std::string& path) { FolderTreeview1_FolderEvent(program_, path); });
  connect(anonymize_, &QPushButton::clicked, this, [this] {
    if (TakeMarkedFolder()) cmdAnonymize_Click(program_);
  });
  connect(go_, &QPushButton::clicked, this, [this] {
    // TakeMarkedFolder may change a path, and a changed path disables Go until the run is armed
    // again.
    if (TakeMarkedFolder() && window_.cmdGo.enabled) cmdGo_Click(program_);
  });
  connect(exit_, &QPushButton::clicked, this, [this] {
    cmdExit_Click(program_);
    ShowEnding();
  });
  connect(options_, &PictureButton::clicked, this, [this] { imOpties_Click(program_); });
  connect(options_, &PictureButton::PointerMoved, this, [this] { imOpties_MouseMove(program_); });
  connect(list_, &PictureButton::clicked, this, [this] { imList_Click(program_); });
  connect(list_, &PictureButton::PointerMoved, this, [this] { imList_MouseMove(program_); });
  connect(files_, &ElidedLabel::Clicked, this, [this] { lblFiles_Click(program_); });
  // The note has no action of its own, so a click on it counts as one on the window.
  connect(note_, &ElidedLabel::Clicked, this, [this] { frmMorvex_Click(program_); });
}

void MainWindowWidget::ConnectPathRow(const PathRow& row) {
  const int index = row.index;
  const auto take = [this, index](const std::string& path) { Text1_Change(program_, index, path); };
  connect(row.box, &PathBox::BytesEdited, this, take);
  connect(row.box, &PathBox::Dropped, this, take);
  connect(row.box, &PathBox::BrowseWanted, this,
          [this, index] { Text1_DblClick(program_, index); });
}

// A run uses the path boxes, so a folder tree that covers one is closed first. A folder that the
// user marked in it is chosen; otherwise the tree is cancelled. Returns false, and the tree stays,
// when the marked folder cannot be chosen.
bool MainWindowWidget::TakeMarkedFolder() {
  if (!window_.FolderTreeview1.visible) return true;
  if (tree_->IsMarked()) return tree_->ChooseCurrent();
  FolderTreeview1_Cancelled(program_);
  return true;
}

bool MainWindowWidget::IsEnding() const { return program_.run.working && !window_.loaded; }

bool MainWindowWidget::IsWanted() const { return BoundWindow::IsWanted() || IsEnding(); }

// A stopping run first ends its work on the current file and handles no events meanwhile, so the
// new state is painted now.
void MainWindowWidget::ShowEnding() {
  if (!IsEnding()) return;
  Show();
  repaint();
}

void MainWindowWidget::changeEvent(QEvent* event) {
  BoundWindow::changeEvent(event);
  // Colours depend on the palette: recompute them.
  if (event->type() == QEvent::PaletteChange) {
    ShowColours();
    ShowGo();
  }
}

void MainWindowWidget::closeEvent(QCloseEvent* event) {
  frmMorvex_Close(program_);
  ShowEnding();
  event->setAccepted(!IsEnding());
}

void MainWindowWidget::mouseReleaseEvent(QMouseEvent* event) {
  // Only a click beside all controls counts; clicks on labels arrive here, too.
  const QPoint place = event->position().toPoint();
  if (event->button() != Qt::LeftButton || !rect().contains(place)) return;
  if (childAt(place) == nullptr) frmMorvex_Click(program_);
}

}  // namespace morvex
