#include "ui/qt/file_name.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace morvex {
namespace {

// Where names are bytes the toolkit reads them by rules of its own. A name that it cannot hold is
// shown with U+FFFD in the place of what is missing.
std::optional<std::string> NativeBytes(const QString& path) {
  const QByteArray bytes = QFile::encodeName(QDir::toNativeSeparators(path));
  const QString back = QDir::fromNativeSeparators(QFile::decodeName(bytes));
  const bool is_garbled = path.contains(QChar::ReplacementCharacter) && !QFileInfo::exists(path);
  if (back != QDir::fromNativeSeparators(path) || is_garbled) return std::nullopt;
  return bytes.toStdString();
}

}  // namespace

QString ToolkitPath(const CodePage& file_names, const std::string& path) {
  if (file_names.is_of_system()) return file_names.Shown(path);
  return QFile::decodeName(QByteArray::fromStdString(path));
}

std::optional<std::string> PathBytes(const CodePage& file_names, const QString& path) {
  if (file_names.is_of_system()) return file_names.Bytes(QDir::toNativeSeparators(path));
  return NativeBytes(path);
}

}  // namespace morvex
