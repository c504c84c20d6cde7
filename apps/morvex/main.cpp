// The desktop program.
//
// Exit status: 2 if the command line is wrong; 0 if it names no settings file. If it names one: 0
// if the run is done, 1 if it could not be done or was stopped, 3 if it is done but some files were
// not copied. If the command line is wrong or the named settings file starts no run, the reason
// goes to standard error, or to a message box if the program has no standard error.

#include <QApplication>
#include <QMessageBox>
#include <QStringList>
#include <QTimer>
#include <chrono>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "core/run/start_up.h"
#include "core/settings/settings_file.h"
#include "core/text/shown_text.h"
#include "host/system/error_stream.h"
#include "host/system/services.h"
#include "ui/qt/code_page.h"
#include "ui/qt/desktop.h"
#include "ui/qt/house_style.h"
#include "ui/qt/pictures.h"
#include "ui/qt/qt_user.h"

namespace morvex {
namespace {

constexpr int kCommandLineError = 2;
constexpr std::chrono::minutes kLongestMessage{1};

void DescribeApplication() {
  QApplication::setApplicationName("Morvex");
  QApplication::setApplicationVersion(MORVEX_VERSION);
  QApplication::setDesktopFileName("morvex");
  QApplication::setWindowIcon(ProgramIcon());
  QApplication::setStyle(new HouseStyle);
  // While one window replaces another, no window is shown for a moment. So the last window to close
  // must not end the program; only Desktop::Ended does.
  QApplication::setQuitOnLastWindowClosed(false);
}

// Shows the lines on standard error, or in a message box if the program has no standard error.
// `page` decodes the lines for the box.
void ReportError(const std::vector<std::string>& lines, const CodePage& page) {
  if (ReachErrorStream()) {
    for (const std::string& line : lines) std::cerr << Printable(line) << "\n";
    return;
  }
  QStringList shown;
  for (const std::string& line : lines) shown += page.Shown(line);
  QMessageBox box(QMessageBox::Critical, "Morvex", shown.join('\n'), QMessageBox::Ok);
  box.setTextFormat(Qt::PlainText);
  // In an unattended task nobody closes the box, so a timer does.
  QTimer end;
  end.setSingleShot(true);
  QObject::connect(&end, &QTimer::timeout, &box, &QMessageBox::accept);
  end.start(kLongestMessage);
  box.exec();
}

int Main(int argc, char** argv) {
  // Made before QApplication, which removes its own options from the arguments.
  const std::unique_ptr<SystemService> system = MakeSystemService(argc, argv);
  QApplication::setHighDpiScaleFactorRoundingPolicy(
      Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
  QApplication application(argc, argv);
  DescribeApplication();
  const std::unique_ptr<FileService> files = MakeFileService();
  const CodePage file_names = CodePage::OfFileNames(*system);
  QtUser user(file_names);
  Program program({*files, *system, user});
  Desktop desktop(program);
  ErrorNumber error = ErrorNumber::kNone;
  QObject::connect(
      &desktop, &Desktop::Ended, &application, [] { QApplication::exit(); }, Qt::QueuedConnection);
  // Starts up inside the event loop: start-up may include a whole run, with windows and an Exit
  // button.
  QTimer::singleShot(0, &application, [&] { error = StartUp(program); });
  QApplication::exec();

  if (error != ErrorNumber::kNone) {
    ReportError({"Run-time error '" + std::to_string(static_cast<int>(error)) +
                 "': " + std::string(ErrorText(error))},
                file_names);
    return kCommandLineError;
  }
  const std::vector<std::string> why = WhyNoRun(program);
  if (!why.empty()) ReportError(why, file_names);
  return program.settings.CommandLine_SET ? ExitStatus(program) : 0;
}

}  // namespace
}  // namespace morvex

int main(int argc, char** argv) { return morvex::Main(argc, argv); }
