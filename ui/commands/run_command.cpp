#include "ui/commands/run_command.h"

#include <optional>
#include <utility>

#include "core/program/paths.h"
#include "core/run/run_driver.h"
#include "core/run/start_up.h"
#include "core/settings/character_code.h"
#include "core/settings/init_file.h"
#include "core/text/shown_text.h"
#include "ui/commands/command_messages.h"
#include "ui/commands/list_loading.h"
#include "ui/commands/report_place.h"
#include "ui/commands/run_report.h"
#include "ui/commands/source_remarks.h"
#include "ui/console/console_text.h"
#include "ui/console/console_user.h"

namespace morvex {
namespace {

// The log shows this text in place of the settings file if there is none.
constexpr const char* kFromCommandLine = "(opdrachtregel)";

// In sub-folders the last four bytes of a name are compared with the extensions, so only extensions
// of this length select files there.
constexpr std::size_t kExtensionEverywhere = 4;

class RunCommand {
 public:
  RunCommand(const RunOptions& options, const CommandConsole& console)
      : options_(options),
        console_(console),
        messages_(console.error, ColoursFor(console.system, console.error_is_terminal),
                  options.strict),
        user_({console.input, console.error, console.input_is_terminal, console.error_is_terminal,
               console.columns, console.stop_requested, options.yes, !options.quiet}),
        program_({console.files, console.system, user_}),
        report_place_(program_, options.report, options.from, messages_) {
    user_.Attach(program_);
    program_.settings.gSeparator = kDefaultSeparator;
  }

  int Run() {
    if (!ReadSettingsFile()) return kExitFailed;
    if (!TakeListOptions(program_, options_, messages_)) return kExitUsage;
    TakeRequestOptions();
    if (!HasFilter()) return kExitUsage;
    if (!options_.report.empty() && !report_place_.MayHold()) return kExitFailed;
    WarnOfOwnFilesInSource(program_, options_.from, messages_);
    std::optional<LoadedList> list = LoadList(console_.files, program_.settings, messages_);
    if (!list || messages_.any_error()) return kExitFailed;
    program_.tables = std::move(list->tables);

    std::optional<RunReport> report;
    if (!options_.report.empty()) program_.observer = &report.emplace(program_);
    if (console_.note_stop_requests) console_.note_stop_requests(true);
    ArmRun(program_);
    PerformRun(program_);
    user_.ClearProgress();
    ShowEnd();
    const int status = ExitStatus(program_);
    if (!report) return status;
    const std::string text = report->Text(console_.version, status, list->review, options_.from);
    return report_place_.Put(text) ? status : kExitFailed;
  }

 private:
  // Returns false, after a message, when the file cannot be read.
  bool ReadSettingsFile() {
    RunRequest& request = program_.request;
    request.settings_file = options_.from.empty() ? kFromCommandLine : options_.from;
    if (options_.from.empty()) return true;
    const Result<FileInfo> found = console_.files.LookUpFile(options_.from);
    const InitFile file = found ? ParseInitFile(console_.files, options_.from) : InitFile();
    const ErrorNumber error = found ? file.error : found.error;
    if (error != ErrorNumber::kNone) {
      messages_.Error(ShownPath(options_.from), ErrorLine(error));
      return false;
    }
    Settings& settings = program_.settings;
    settings.SubstitutieFile = file.list.value_or(std::string());
    if (file.separator) settings.gSeparator = *file.separator;
    settings.gJoker = CharacterCode(program_, file.wildcard.value_or(std::string()));
    request.source = file.source.value_or(std::string());
    request.target = file.target.value_or(std::string());
    request.logging = file.logging == 1;
    for (const ExtensionLine& line : file.extensions) {
      if (line.selected) request.extensions.push_back(line.extension);
    }
    return true;
  }

  void TakeRequestOptions() {
    RunRequest& request = program_.request;
    request.list = program_.settings.SubstitutieFile;
    if (!options_.source.empty()) request.source = options_.source;
    if (!options_.target.empty()) request.target = options_.target;
    if (options_.log) request.logging = true;
    request.all_files = options_.all;
    if (options_.extensions.empty()) return;
    request.extensions.clear();
    for (const std::string& extension : options_.extensions) {
      request.extensions.push_back(extension.starts_with('.') ? extension : "." + extension);
    }
  }

  // Returns false, after a message, when the run would process no file.
  bool HasFilter() {
    const RunRequest& request = program_.request;
    if (request.all_files) return true;
    for (const std::string& extension : request.extensions) {
      if (extension.size() == kExtensionEverywhere) continue;
      messages_.Warn(kProgramPlace,
                     "files that end in \"" + ShownText(extension) +
                         "\" are processed in the source folder itself and copied unchanged in its "
                         "sub-folders: an extension that is to count there has three letters; or "
                         "take --all.");
    }
    if (!request.extensions.empty() || FileExists(program_, request.source)) return true;
    messages_.Error(kProgramPlace,
                    "every file would be copied unchanged: say which are to be processed, with "
                    "--ext .txt,.csv or with --all.");
    return false;
  }

  void ShowEnd() {
    if (!options_.quiet) console_.output << ResultLines(program_) << std::flush;
    if (user_.interrupted()) {
      console_.error << "Interrupted: the run was stopped, the target is not complete.\n";
    }
    console_.error << RunNotes(program_) << std::flush;
  }

  const RunOptions& options_;
  const CommandConsole& console_;
  CommandMessages messages_;
  ConsoleUser user_;
  Program program_;
  ReportPlace report_place_;
};

}  // namespace

int RunRun(const RunOptions& options, const CommandConsole& console) {
  return RunCommand(options, console).Run();
}

}  // namespace morvex
