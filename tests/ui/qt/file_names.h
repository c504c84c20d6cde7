// What the names of files are on the system that the tests run on.
#pragma once

#include <QDir>
#include <QString>
#include <string>

namespace morvex::test {

// On Windows names are characters, and the system has a page for them.
#ifdef Q_OS_WIN
inline constexpr bool kNamesAreBytes = false;
#else
inline constexpr bool kNamesAreBytes = true;
#endif

// A path as the program spells it.
inline std::string NativePath(const QString& path) {
  return QDir::toNativeSeparators(path).toStdString();
}

}  // namespace morvex::test
