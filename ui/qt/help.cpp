#include "ui/qt/help.h"

#include <QDesktopServices>
#include <QFile>
#include <QUrl>

namespace morvex {
namespace {

// A path may hold bytes that are no text; in an address every byte can be written.
QUrl Address(const std::string& path, char separator) {
  const QByteArray bytes = QByteArray::fromStdString(path);
  if (separator != '/') return QUrl::fromLocalFile(QFile::decodeName(bytes));
  return QUrl::fromEncoded("file://" + bytes.toPercentEncoding("/"));
}

}  // namespace

void ShowHelp(Program& program) {
  const std::string& path = program.locations.help_file;
  FileService& files = program.host.files;
  if (!files.LookUpFile(path)) {
    program.host.user.ShowMessage(path + "\r\nThe help file is not there.", MessageButtons::kOk,
                                  MessageIcon::kInformation);
    return;
  }
  if (!QDesktopServices::openUrl(Address(path, files.Separator()))) {
    program.host.user.ShowMessage(path + "\r\nNo program opens the help file.", MessageButtons::kOk,
                                  MessageIcon::kInformation);
  }
}

}  // namespace morvex
