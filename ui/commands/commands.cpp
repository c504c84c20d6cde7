#include "ui/commands/commands.h"

#include "ui/commands/check_command.h"
#include "ui/commands/command_line.h"
#include "ui/commands/filter_command.h"
#include "ui/commands/run_command.h"

namespace morvex {

int RunCommandLine(const std::vector<std::string>& arguments, const CommandConsole& console) {
  const CommandLine line = ParseCommandLine(arguments);
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
  (line.exit_status == kExitDone ? console.output : console.error) << line.text << std::flush;
  return line.exit_status;
}

}  // namespace morvex
