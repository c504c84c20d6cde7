// The desktop program.
//
// Exit status: 0, or with a settings file on the command line as the console program has it: 1 when
// the run could not be done or did not finish, 3 when files have no copy. 2 when the command line
// is wrong.

#include <QApplication>
#include <QMessageBox>
#include <QString>
#include <QTimer>
#include <iostream>
#include <memory>
#include <string>

#include "core/run/start_up.h"
#include "host/system/error_stream.h"
#include "host/system/services.h"
#include "ui/qt/desktop.h"
#include "ui/qt/house_style.h"
#include "ui/qt/pictures.h"
#include "ui/qt/qt_user.h"

namespace morvex {
namespace {

constexpr int kCommandLineError = 2;

void DescribeApplication() {
  QApplication::setApplicationName("Morvex");
  QApplication::setApplicationVersion(MORVEX_VERSION);
  QApplication::setDesktopFileName("morvex");
  QApplication::setWindowIcon(ProgramIcon());
  QApplication::setStyle(new HouseStyle);
  // The program ends when its windows are unloaded, not when none is shown for a moment.
  QApplication::setQuitOnLastWindowClosed(false);
}

void ReportError(const std::string& text) {
  if (ReachErrorStream()) {
    std::cerr << text << "\n";
  } else {
    QMessageBox::critical(nullptr, "Morvex", QString::fromStdString(text));
  }
}

int Main(int argc, char** argv) {
  // Before the toolkit takes its own options out of the arguments.
  const std::unique_ptr<SystemService> system = MakeSystemService(argc, argv);
  QApplication::setHighDpiScaleFactorRoundingPolicy(
      Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
  QApplication application(argc, argv);
  DescribeApplication();
  const std::unique_ptr<FileService> files = MakeFileService();
  QtUser user(CodePage::OfFileNames(*system));
  Program program({*files, *system, user});
  Desktop desktop(program);
  ErrorNumber error = ErrorNumber::kNone;
  QObject::connect(
      &desktop, &Desktop::Ended, &application, [] { QApplication::exit(); }, Qt::QueuedConnection);
  // Start-up may hold a whole run, in which windows are shown and Exit may be given.
  QTimer::singleShot(0, &application, [&] { error = StartUp(program); });
  QApplication::exec();

  if (error != ErrorNumber::kNone) {
    ReportError("Run-time error '" + std::to_string(static_cast<int>(error)) +
                "': " + std::string(ErrorText(error)));
    return kCommandLineError;
  }
  return program.settings.CommandLine_SET ? ExitStatus(program) : 0;
}

}  // namespace
}  // namespace morvex

int main(int argc, char** argv) { return morvex::Main(argc, argv); }
