#include "ui/qt/desktop.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWindow>
#include <algorithm>

#include "core/run/start_up.h"
#include "ui/qt/help.h"

namespace morvex {
namespace {

// Milliseconds. Thirty times a second looks steady; each repaint costs a run a little time.
constexpr int kRefreshInterval = 33;

void ShowOrHide(BoundWindow& window) {
  const bool is_wanted = window.IsWanted();
  // Without this, the window manager would choose a new position for a window that is shown again.
  QWindow* const before = window.windowHandle();
  const bool has_place = before != nullptr && !window.isMaximized();
  if (is_wanted && window.isHidden() && has_place) before->setPosition(before->position());
  window.setVisible(is_wanted);
}

}  // namespace

Desktop::Desktop(Program& program)
    : program_(program),
      page_(CodePage::OfTexts(program.host.system)),
      file_names_(CodePage::OfFileNames(program.host.system)),
      main_window_(program, page_, file_names_),
      options_window_(program, page_, file_names_),
      editor_window_(program, page_),
      windows_{&main_window_, &options_window_, &editor_window_} {
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  connect(&timer_, &QTimer::timeout, this, &Desktop::Refresh);
  since_refresh_.start();
  QApplication::instance()->installEventFilter(this);
  for (BoundWindow* window : windows_) {
    window->state().changes.on_change = [this] { NoteChange(); };
  }
  NoteChange();
}

Desktop::~Desktop() {
  for (BoundWindow* window : windows_) window->state().changes.on_change = nullptr;
}

void Desktop::NoteChange() {
  // Noted here and not in Refresh, because a whole run can begin and end before the first Refresh.
  was_loaded_ = was_loaded_ || program_.frmMorvex.loaded;
  if (timer_.isActive()) return;
  timer_.start(static_cast<int>(std::max<qint64>(0, kRefreshInterval - since_refresh_.elapsed())));
}

void Desktop::Refresh() {
  since_refresh_.restart();
  for (std::size_t i = 0; i < windows_.size(); ++i) {
    const std::uint64_t revision = windows_[i]->state().changes.revision();
    if (revision == shown_revisions_[i]) continue;
    shown_revisions_[i] = revision;
    // Contents first, so that a window is never seen empty.
    windows_[i]->Show();
    ShowOrHide(*windows_[i]);
  }
  if (was_loaded_ && HasEnded(program_)) emit Ended();
}

bool Desktop::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress && watched->isWidgetType()) {
    const auto* const key = static_cast<const QKeyEvent*>(event);
    const QWidget* const window = static_cast<const QWidget*>(watched)->window();
    const bool is_ours = std::find(windows_.begin(), windows_.end(), window) != windows_.end();
    if (is_ours && key->key() == Qt::Key_F1 && key->modifiers() == Qt::NoModifier) {
      if (!key->isAutoRepeat()) ShowHelp(program_);
      return true;
    }
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace morvex
