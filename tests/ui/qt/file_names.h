// File names on the system on which the tests run.
#pragma once

#include <QDir>
#include <QString>
#include <string>

namespace morvex::test {

// On Windows names are characters, and the system has a code page for them.
#ifdef Q_OS_WIN
inline constexpr bool kNamesAreBytes = false;
#else
inline constexpr bool kNamesAreBytes = true;
#endif

// Returns a path in the bytes of the program.
inline std::string NativePath(const QString& path) {
  return QDir::toNativeSeparators(path).toStdString();
}

}  // namespace morvex::test
