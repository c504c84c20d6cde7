// The desktop program.
//
// Exit status: 0, or of an unattended run as the console program has it: 1 when it could not run or
// did not finish, 2 when the command line is wrong.

#include <QApplication>
#include <QTimer>
#include <iostream>

#include "core/run/start_up.h"
#include "host/posix/posix_files.h"
#include "host/posix/posix_system.h"
#include "ui/qt/desktop.h"
#include "ui/qt/qt_user.h"

namespace morvex {
namespace {

constexpr int kCommandLineError = 2;

int Main(int argc, char** argv) {
  // Before the toolkit takes its own options out of the arguments.
  PosixSystemService system(argc, argv);
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  PosixFileService files;
  QtUser user(system.Codec());
  Program program({files, system, user});
  Desktop desktop(program);
  int status = 0;
  QObject::connect(
      &desktop, &Desktop::Ended, &application, [&] { QApplication::exit(status); },
      Qt::QueuedConnection);
  QTimer::singleShot(0, &application, [&] {
    const ErrorNumber error = StartUp(program);
    if (error != ErrorNumber::kNone) {
      std::cerr << "Run-time error '" << static_cast<int>(error) << "': " << ErrorText(error)
                << "\n";
      status = kCommandLineError;
    } else if (program.settings.CommandLine_SET && HasEnded(program)) {
      status = ExitStatus(program);
    }
  });
  return QApplication::exec();
}

}  // namespace
}  // namespace morvex

int main(int argc, char** argv) { return morvex::Main(argc, argv); }
