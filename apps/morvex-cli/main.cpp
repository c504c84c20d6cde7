// The console program: performs the unattended run that a settings file describes, or a command.
//
// Exit status of a run with a settings file: 0 done, 1 it could not run or was stopped, 2 the
// command line is wrong, 3 done but some files were not copied. ui/commands/command_console.h lists
// the exit statuses of the commands.

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "core/program/paths.h"
#include "core/run/start_up.h"
#include "core/settings/command_line.h"
#include "core/settings/settings_file.h"
#include "core/text/shown_text.h"
#include "host/system/services.h"
#include "host/system/standard_streams.h"
#include "host/system/terminal.h"
#include "ui/commands/command_messages.h"
#include "ui/commands/command_options.h"
#include "ui/commands/commands.h"
#include "ui/commands/list_loading.h"
#include "ui/console/console_text.h"
#include "ui/console/console_user.h"

namespace morvex {
namespace {

constexpr int kStandardInput = 0;
constexpr int kStandardOutput = 1;
constexpr int kStandardError = 2;
constexpr int kDone = 0;
constexpr int kNotDone = 1;
constexpr int kCommandLineError = 2;

std::string UsageText(const Program& program) {
  return "Morvex " MORVEX_VERSION
         " makes anonymised copies of files from a replacement list.\n"
         "\n"
         "Usage: morvex-cli -if SETTINGS [-dy MILLISECONDS]\n"
         "\n"
         "  -if SETTINGS      run with this settings file; looked for as given, then in the\n"
         "                    program's folder\n"
         "  -dy MILLISECONDS  wait before the run, up to 32767\n"
         "\n"
         "Without -if nothing is run. To run with the program's own settings file, name it:\n"
         "  " +
         Printable(InProgramFolder(program, kInitFileName)) +
         "\n"
         "\n" +
         CommandsText() +
         "\n"
         "Exit status of a run with -if: 0 done, 1 it could not run or was stopped, 2 the command\n"
         "line is wrong, 3 done, but some files were not copied.\n";
}

int ReportCommandLineError(ErrorNumber error) {
  std::cerr << "Run-time error '" << static_cast<int>(error) << "': " << ErrorText(error) << "\n";
  return kCommandLineError;
}

// Warns of each piece of the command line that is not an option of this program.
void WarnOfIgnored(const std::vector<std::string>& pieces, CommandMessages& messages) {
  for (const std::string& piece : IgnoredPieces(pieces)) {
    messages.Warn(kProgramPlace, "\"" + Printable(piece) +
                                     "\" was ignored: the only options are -if and -dy, and a file "
                                     "name ends in front of a blank and a hyphen.");
  }
}

int ReportSettingsFile(const std::vector<std::string>& why) {
  for (const std::string& line : why) std::cerr << Printable(line) << "\n";
  return kNotDone;
}

// Returns `status`, or kNotDone when standard output could not be written.
int AfterOutput(int status) {
  std::cout << std::flush;
  if (std::cout) return status;
  std::cerr << "The result could not be written to standard output.\n";
  return kNotDone;
}

int RunFromSettingsFile(Program& program, ConsoleUser& user, CommandMessages& messages) {
  StartUp(program);
  user.ClearProgress();
  const std::vector<std::string> why = WhyNoRun(program);
  if (!why.empty()) return ReportSettingsFile(why);
  std::cout << ResultLines(program) << std::flush;
  if (user.interrupted()) {
    std::cerr << (program.run.end == RunEnd::kNone
                      ? "Interrupted before the run began.\n"
                      : "Interrupted: the run was stopped, the target is not complete.\n");
  }
  WarnOfList(program, messages);
  std::cerr << RunNotes(program);
  return AfterOutput(ExitStatus(program));
}

void NoteStopRequests(bool asks) {
  InstallStopSignals(asks ? WaitsAtStop::kBreakOff : WaitsAtStop::kGoOn);
}

int RunOneCommand(const std::vector<std::string>& arguments, FileService& files,
                  SystemService& system) {
  return RunCommandLine(arguments, {files, system, std::cin, std::cout, std::cerr, MORVEX_VERSION,
                                    IsTerminal(kStandardInput), IsTerminal(kStandardOutput),
                                    IsTerminal(kStandardError), TerminalColumns, NoteStopRequests,
                                    StopRequested, StandardInput, StandardOutput});
}

int Main(int argc, char** argv) {
  const std::unique_ptr<SystemService> own_system = MakeSystemService(argc, argv);
  const std::unique_ptr<FileService> own_files = MakeFileService();
  SystemService& system = *own_system;
  FileService& files = *own_files;
  const std::vector<std::string> arguments = ProgramArguments(argc, argv);
  if (!arguments.empty() && IsCommand(arguments.front())) {
    return RunOneCommand(arguments, files, system);
  }
  NoteStopRequests(true);
  ConsoleUser user({std::cin, std::cerr, IsTerminal(kStandardInput), IsTerminal(kStandardError),
                    TerminalColumns, StopRequested});
  Program program({files, system, user});
  user.Attach(program);

  const std::string line = system.CommandLineText();
  if (line == "--help" || line == "-h") {
    std::cout << UsageText(program);
    return AfterOutput(kDone);
  }
  if (line == "--version") {
    std::cout << "Morvex " MORVEX_VERSION "\n";
    return AfterOutput(kDone);
  }
  const std::vector<std::string> pieces = SplitCommandLine(line);
  const ErrorNumber error = ApplyCommandLine(program, pieces);
  if (error != ErrorNumber::kNone) return ReportCommandLineError(error);
  if (!program.settings.CommandLine_SET) {
    const bool is_command = !arguments.empty() && !arguments.front().starts_with('-');
    std::cerr << (is_command ? UnknownCommandText(arguments.front()) : UsageText(program));
    return kCommandLineError;
  }
  CommandMessages messages(std::cerr, ColoursFor(system, IsTerminal(kStandardError)), false);
  WarnOfIgnored(pieces, messages);
  return RunFromSettingsFile(program, user, messages);
}

}  // namespace
}  // namespace morvex

int main(int argc, char** argv) { return morvex::Main(argc, argv); }
