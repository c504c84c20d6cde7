#include "ui/qt/file_name.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace morvex {
namespace {

// On a system whose names are bytes, the toolkit decodes them by its own rules. A name that it
// cannot decode has U+FFFD in it.
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
