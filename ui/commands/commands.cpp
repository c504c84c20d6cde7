#include "ui/commands/commands.h"

#include "ui/commands/check_command.h"
#include "ui/commands/command_messages.h"
#include "ui/commands/command_options.h"
#include "ui/commands/filter_command.h"
#include "ui/commands/run_command.h"

namespace morvex {

namespace {

int Run(const CommandLine& line, const CommandConsole& console) {
  switch (line.command) {
    case Command::kNone:
      break;
    case Command::kRun:
      return RunRun(line.run, console);
    case Command::kCheck:
      return RunCheck(line.check, console);
    case Command::kFilter:
      return RunFilter(line.filter, console);
  }
  (line.exit_status == kExitDone ? console.output : console.error) << line.text;
  return line.exit_status;
}

}  // namespace

int RunCommandLine(const std::vector<std::string>& arguments, const CommandConsole& console) {
  const int status = Run(ParseCommandLine(arguments), console);
  console.output << std::flush;
  if (console.output) return status;
  console.error << kProgramPlace
                << ": error: the result could not be written to standard output.\n";
  return kExitFailed;
}

}  // namespace morvex
