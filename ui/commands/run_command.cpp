#include "ui/commands/run_command.h"

#include <optional>
#include <utility>

#include "core/program/main_window_paths.h"
#include "core/program/paths.h"
#include "core/run/run_driver.h"
#include "core/run/start_up.h"
#include "core/settings/options.h"
#include "core/settings/settings_file.h"
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

// Stands in the run log's summary where otherwise the path of a settings file does.
constexpr const char* kFromCommandLine = "(opdrachtregel)";

// In sub-folders the last four characters of a name are compared.
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
    program_.frmMorvex.loaded = true;
    program_.frmOpties.loaded = true;
    program_.settings.gSeparator = kDefaultSeparator;
  }

  int Run() {
    if (!ReadSettingsFile()) return kExitFailed;
    if (!TakeListOptions(program_, options_, messages_) || !TakeFilter()) return kExitUsage;
    TakePathsAndLog();
    if (!options_.report.empty() && !report_place_.MayHold()) return kExitFailed;
    WarnOfOwnFilesInSource(program_, options_.from, messages_);
    const std::optional<ListReview> review = ReviewList(program_, messages_);
    if (!review || messages_.any_error() || !LoadList(program_, messages_)) return kExitFailed;

    std::optional<RunReport> report;
    if (!options_.report.empty()) program_.observer = &report.emplace(program_);
    if (console_.note_stop_requests) console_.note_stop_requests(true);
    ArmRun(program_);
    cmdGo_Click(program_);
    user_.ClearProgress();
    ShowEnd();
    const int status = ExitStatus(program_);
    if (!report) return status;
    const std::string text = report->Text(console_.version, status, *review, options_.from);
    return report_place_.Put(text) ? status : kExitFailed;
  }

 private:
  // False, after a message, when the file cannot be read.
  bool ReadSettingsFile() {
    Settings& settings = program_.settings;
    settings.InitFilePath = options_.from.empty() ? kFromCommandLine : options_.from;
    settings.AutoRunFromInitFile = true;
    if (options_.from.empty()) return true;
    const Result<FileInfo> found = console_.files.LookUpFile(options_.from);
    if (found) {
      settings.CommandLine_SET = true;
      ReadInitFile(program_);
      settings.AutoRunFromInitFile = true;  // whatever its list: that is read once more
    }
    const ErrorNumber error = found ? settings.init_file_error : found.error;
    if (error != ErrorNumber::kNone) messages_.Error(ShownPath(options_.from), ErrorLine(error));
    return error == ErrorNumber::kNone;
  }

  void TakePathsAndLog() {
    if (!options_.source.empty()) Text1_Change(program_, kSourceBox, options_.source);
    if (!options_.target.empty()) Text1_Change(program_, kTargetBox, options_.target);
    if (options_.log) chkLoggen_Click(program_, 1);
  }

  // Which files are processed. False, after a message, when the run would process none.
  bool TakeFilter() {
    program_.settings.AllFilesSelected = options_.all;
    ListBox& list = program_.frmOpties.lstExtensie;
    if (!options_.extensions.empty()) {
      std::vector<ListEntry> entries;
      for (const std::string& extension : options_.extensions) {
        entries.push_back({extension.starts_with('.') ? extension : "." + extension, true});
      }
      list.entries = std::move(entries);
    }
    if (options_.all) return true;
    bool any = false;
    for (const ListEntry& entry : list.entries.get()) {
      if (!entry.selected) continue;
      any = true;
      if (entry.text.size() == kExtensionEverywhere) continue;
      messages_.Warn(kProgramPlace,
                     "files that end in \"" + ShownText(entry.text) +
                         "\" are processed in the source folder itself and copied unchanged in its "
                         "sub-folders: an extension that is to count there has three letters; or "
                         "take --all.");
    }
    const std::string source =
        options_.source.empty() ? program_.frmMorvex.Text1(kSourceBox).text : options_.source;
    if (any || FileExists(program_, source)) return true;
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
