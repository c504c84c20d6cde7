// The desktop program.
//
// Exit status: 0, or with a settings file on the command line as the console program has it: 1 when
// the run could not be done or did not finish, 3 when files have no copy. 2 when the command line
// is wrong. Why nothing could be done is told on standard error, or in a message where a program
// with windows has none.

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
  // The program ends when its windows are unloaded, not when none is shown for a moment.
  QApplication::setQuitOnLastWindowClosed(false);
}

// `page` is for the paths in the lines.
void ReportError(const std::vector<std::string>& lines, const CodePage& page) {
  if (ReachErrorStream()) {
    for (const std::string& line : lines) std::cerr << Printable(line) << "\n";
    return;
  }
  QStringList shown;
  for (const std::string& line : lines) shown += page.Shown(line);
  QMessageBox box(QMessageBox::Critical, "Morvex", shown.join('\n'), QMessageBox::Ok);
  box.setTextFormat(Qt::PlainText);
  // A task that nobody sees ends all the same.
  QTimer end;
  end.setSingleShot(true);
  QObject::connect(&end, &QTimer::timeout, &box, &QMessageBox::accept);
  end.start(kLongestMessage);
  box.exec();
}

int Main(int argc, char** argv) {
  // Before the toolkit takes its own options out of the arguments.
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
  // Start-up may hold a whole run, in which windows are shown and Exit may be given.
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
