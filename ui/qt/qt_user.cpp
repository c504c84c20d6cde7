#include "ui/qt/qt_user.h"

#include <QApplication>
#include <QEventLoop>
#include <QFileDialog>
#include <QMessageBox>
#include <QTimer>

namespace morvex {
namespace {

// "Text (*.txt)|*.txt" names the filter and then its pattern; the toolkit wants both in one.
QString ToolkitFilter(const QString& filter) { return filter.section('|', 0, 0); }

QWidget* Parent() { return QApplication::activeWindow(); }

}  // namespace

Answer QtUser::ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon) {
  QMessageBox box(Parent());
  box.setObjectName("message");
  box.setTextFormat(Qt::PlainText);
  box.setText(page_.Shown(text).replace("\r\n", "\n"));
  box.setIcon(icon == MessageIcon::kInformation ? QMessageBox::Information : QMessageBox::NoIcon);
  switch (buttons) {
    case MessageButtons::kOk:
      box.setStandardButtons(QMessageBox::Ok);
      break;
    case MessageButtons::kOkCancel:
      box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
      break;
    case MessageButtons::kYesNo:
      box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
      box.setEscapeButton(QMessageBox::No);
      break;
  }
  switch (box.exec()) {
    case QMessageBox::Yes:
      return Answer::kYes;
    case QMessageBox::No:
      return Answer::kNo;
    case QMessageBox::Cancel:
      return Answer::kCancel;
    default:
      return Answer::kOk;
  }
}

FileChoice QtUser::ChooseFileToOpen(const FileDialog& dialog) {
  QFileDialog chooser(Parent());
  chooser.setObjectName("cdSaveList");
  chooser.setFileMode(QFileDialog::ExistingFile);
  chooser.setNameFilter(ToolkitFilter(page_.Shown(dialog.filter)));
  chooser.setDefaultSuffix(page_.Shown(dialog.default_extension));
  if (!dialog.initial_folder.empty()) chooser.setDirectory(page_.Shown(dialog.initial_folder));
  if (chooser.exec() != QDialog::Accepted) return {kDialogCancelled, ""};
  const std::optional<std::string> path = page_.Bytes(chooser.selectedFiles().value(0));
  return path ? FileChoice{0, *path} : FileChoice{kDialogCancelled, ""};
}

FileChoice QtUser::ChooseFileToSave(const FileDialog& dialog) {
  QFileDialog chooser(Parent());
  chooser.setObjectName("cdSaveList");
  chooser.setAcceptMode(QFileDialog::AcceptSave);
  chooser.setFileMode(QFileDialog::AnyFile);
  // The core asks before a file is replaced, in its own words.
  chooser.setOption(QFileDialog::DontConfirmOverwrite);
  chooser.setNameFilter(ToolkitFilter(page_.Shown(dialog.filter)));
  chooser.setDefaultSuffix(page_.Shown(dialog.default_extension));
  if (!dialog.initial_folder.empty()) chooser.setDirectory(page_.Shown(dialog.initial_folder));
  if (!dialog.file_name.empty()) chooser.selectFile(page_.Shown(dialog.file_name));
  if (chooser.exec() != QDialog::Accepted) return {kDialogCancelled, ""};
  const std::optional<std::string> path = page_.Bytes(chooser.selectedFiles().value(0));
  return path ? FileChoice{0, *path} : FileChoice{kDialogCancelled, ""};
}

void QtUser::HandlePendingEvents() { QApplication::processEvents(); }

void QtUser::WaitForEvents(std::chrono::milliseconds longest) {
  QEventLoop loop;
  QTimer::singleShot(longest, &loop, &QEventLoop::quit);
  loop.processEvents(QEventLoop::WaitForMoreEvents);
}

}  // namespace morvex
