#include "ui/qt/qt_user.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QTimer>
#include <algorithm>

#include "ui/qt/file_name.h"
#include "ui/qt/held_key.h"

namespace morvex {
namespace {

constexpr const char* kTitle = "Morvex";
constexpr std::chrono::milliseconds kLongestWait = std::chrono::hours(1);

// Returns the window in front of which a message is shown.
QWidget* Parent() {
  if (QWidget* const modal = QApplication::activeModalWidget()) return modal;
  if (QWidget* const active = QApplication::activeWindow()) return active;
  const QWidgetList windows = QApplication::topLevelWidgets();
  const auto shown = std::find_if(windows.begin(), windows.end(), [](const QWidget* window) {
    return window->isVisible() && window->windowType() == Qt::Window;
  });
  return shown == windows.end() ? nullptr : *shown;
}

QMessageBox::StandardButtons ToolkitButtons(MessageButtons buttons) {
  switch (buttons) {
    case MessageButtons::kOk:
      break;
    case MessageButtons::kOkCancel:
      return QMessageBox::Ok | QMessageBox::Cancel;
    case MessageButtons::kYesNo:
      return QMessageBox::Yes | QMessageBox::No;
  }
  return QMessageBox::Ok;
}

// Returns the answer that changes nothing.
Answer Refusal(MessageButtons buttons) {
  switch (buttons) {
    case MessageButtons::kOk:
      break;
    case MessageButtons::kOkCancel:
      return Answer::kCancel;
    case MessageButtons::kYesNo:
      return Answer::kNo;
  }
  return Answer::kOk;
}

// The core's filter "Text (*.txt)|*.txt" consists of a name and patterns. The toolkit's filter is a
// name that ends with the patterns in parentheses.
QString ToolkitFilter(const QString& filter) {
  const QString name = filter.section('|', 0, 0);
  QString patterns = filter.section('|', 1);
  if (name.contains('(') || patterns.isEmpty()) return name;
  return name + " (" + patterns.replace(';', ' ') + ")";
}

}  // namespace

Answer QtUser::ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon) {
  QMessageBox box(Parent());
  box.setObjectName("message");
  box.setWindowTitle(kTitle);
  box.setTextFormat(Qt::PlainText);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);
  box.setText(page_.Shown(text).replace("\r\n", "\n"));
  box.setIcon(icon == MessageIcon::kInformation ? QMessageBox::Information : QMessageBox::NoIcon);
  box.setStandardButtons(ToolkitButtons(buttons));
  if (buttons == MessageButtons::kYesNo) box.setEscapeButton(QMessageBox::No);
  // The key that led here may still be held down; it must not answer the box before the user has
  // read it.
  HeldEnterFilter held_enter;
  box.installEventFilter(&held_enter);
  for (QAbstractButton* const button : box.buttons()) button->installEventFilter(&held_enter);
  box.exec();
  switch (box.standardButton(box.clickedButton())) {
    case QMessageBox::Ok:
      return Answer::kOk;
    case QMessageBox::Yes:
      return Answer::kYes;
    default:
      return Refusal(buttons);
  }
}

FileChoice QtUser::ChooseFileToOpen(const FileDialog& dialog) {
  QFileDialog chooser(Parent());
  chooser.setFileMode(QFileDialog::ExistingFile);
  return Choose(chooser, dialog);
}

FileChoice QtUser::ChooseFileToSave(const FileDialog& dialog) {
  QFileDialog chooser(Parent());
  chooser.setAcceptMode(QFileDialog::AcceptSave);
  chooser.setFileMode(QFileDialog::AnyFile);
  // The core itself asks before a file is replaced.
  chooser.setOption(QFileDialog::DontConfirmOverwrite);
  return Choose(chooser, dialog);
}

FileChoice QtUser::Choose(QFileDialog& chooser, const FileDialog& dialog) {
  chooser.setObjectName("cdSaveList");
  chooser.setNameFilter(ToolkitFilter(page_.Shown(dialog.filter)));
  chooser.setDefaultSuffix(page_.Shown(dialog.default_extension));
  const QString folder = ToolkitPath(page_, dialog.initial_folder);
  if (QFileInfo(folder).isDir()) chooser.setDirectory(folder);
  if (!dialog.file_name.empty()) chooser.selectFile(ToolkitPath(page_, dialog.file_name));
  // The dialog of Windows changes the process's current folder, which would redirect relative
  // paths.
  const QString current = QDir::currentPath();
  const auto is_accepted = [&] {
    const bool accepted = chooser.exec() == QDialog::Accepted;
    QDir::setCurrent(current);
    return accepted;
  };
  while (is_accepted()) {
    const QString chosen = chooser.selectedFiles().value(0);
    if (const std::optional<std::string> path = PathBytes(page_, chosen)) return {0, *path};
    QMessageBox box(QMessageBox::NoIcon, kTitle,
                    QFileDialog::tr("This file cannot be used: its path has characters that the "
                                    "system's character set for file names does not have."),
                    QMessageBox::Ok, Parent());
    box.setObjectName("message");
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(chosen);
    box.exec();
  }
  return {kDialogCancelled, ""};
}

void QtUser::HandlePendingEvents() { QApplication::processEvents(); }

void QtUser::WaitForEvents(std::chrono::milliseconds longest) {
  // Ends the wait below.
  QTimer alarm;
  alarm.setSingleShot(true);
  alarm.setTimerType(Qt::PreciseTimer);
  alarm.start(std::clamp(longest, std::chrono::milliseconds(0), kLongestWait));
  QEventLoop loop;
  loop.processEvents(QEventLoop::WaitForMoreEvents);
  // On Windows posted events, clicks and keys among them, end the wait but are handled only by the
  // next call.
  loop.processEvents();
}

}  // namespace morvex
