// File names on the system on which the tests run.
#pragma once

#include <QDir>
#include <QString>
#include <string>

namespace morvex::test {

// Whether the system's file names are bytes. On Windows, file names are characters, and a code page
// turns them into the program's bytes.
#ifdef Q_OS_WIN
inline constexpr bool kNamesAreBytes = false;
#else
inline constexpr bool kNamesAreBytes = true;
#endif

// Returns a path as the program holds it: as bytes, with the system's separators.
inline std::string NativePath(const QString& path) {
  return QDir::toNativeSeparators(path).toStdString();
}

}  // namespace morvex::test
