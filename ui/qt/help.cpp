#include "ui/qt/help.h"

#include <QDesktopServices>
#include <QUrl>

#include "ui/qt/file_name.h"

namespace morvex {
namespace {

// A path may hold bytes that no text can hold; a URL can escape every byte.
QUrl Address(const std::string& path, const CodePage& file_names) {
  if (file_names.is_of_system()) return QUrl::fromLocalFile(ToolkitPath(file_names, path));
  const QByteArray bytes = QByteArray::fromStdString(path);
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
  if (!QDesktopServices::openUrl(Address(path, CodePage::OfFileNames(program.host.system)))) {
    program.host.user.ShowMessage(path + "\r\nNo program opens the help file.", MessageButtons::kOk,
                                  MessageIcon::kInformation);
  }
}

}  // namespace morvex
