#include "ui/commands/check_command.h"

#include <memory>
#include <optional>
#include <string>

#include "core/leftovers/sought.h"
#include "ui/commands/check_tree.h"
#include "ui/commands/command_messages.h"
#include "ui/commands/findings_output.h"
#include "ui/commands/list_loading.h"
#include "ui/commands/shown_text.h"
#include "ui/console/console_text.h"
#include "ui/console/console_user.h"

namespace morvex {
namespace {

Encoding ListEncoding(const CheckOptions& options, const SubstitutionTables& tables) {
  if (options.list_encoding == "utf-8") return Encoding::kUtf8;
  return options.list_encoding == "auto" ? GuessEncoding(tables) : Encoding::kWindows1252;
}

std::string Counted(std::uint64_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

// As in "3 findings in 2 of 9 files and 2 folders, 3.0 kB."
std::string CountText(const CheckTotals& totals) {
  const std::string all =
      Counted(totals.files, "file", "files") + " and " +
      Counted(totals.folders, "folder", "folders") + ", " +
      ReadableBytes(static_cast<std::int64_t>(totals.bytes)) +
      (totals.unreadable == 0 ? ""
                              : "; " + std::to_string(totals.unreadable) + " could not be read") +
      ".\n";
  if (totals.findings == 0) return "Nothing found in " + all;
  return Counted(totals.findings, "finding", "findings") + " in " +
         std::to_string(totals.with_findings) + " of " + all;
}

void WarnOfRowsThatStay(const Sought& sought, const CheckSubject& subject,
                        CommandMessages& messages) {
  for (const std::int64_t row : sought.rows_that_stay()) {
    const auto index = static_cast<std::size_t>(row);
    const std::string line = index < subject.review.line_of_row.size()
                                 ? ":" + std::to_string(subject.review.line_of_row[index])
                                 : "";
    messages.Warn(ShownPath(subject.list) + line,
                  "\"" + ShownText(subject.tables.LeftTexts[index]) +
                      "\" is not sought, for its right text puts back all that it takes out: "
                      "leave the wildcard out there, if that is to go.");
  }
}

}  // namespace

int RunCheck(const CheckOptions& options, const CommandConsole& console) {
  CommandMessages messages(console.error, ColoursFor(console.system, console.error_is_terminal),
                           options.strict);
  ConsoleUser user({console.input, console.error, false, false, nullptr, nullptr});
  Program program({console.files, console.system, user});
  program.settings.gSeparator = kDefaultSeparator;
  if (!TakeListOptions(program, options, messages)) return kExitUsage;
  const std::optional<ListReview> review = ReviewList(program, messages);
  if (!review || messages.any_error() || !LoadList(program, messages)) return kExitFailed;

  const Encoding encoding = ListEncoding(options, program.tables);
  const Sought sought(program.tables, program.settings.gJoker, encoding);
  const CheckSubject subject{console.version, options.tree, options.list,
                             program.tables,  *review,      encoding};
  WarnOfRowsThatStay(sought, subject, messages);
  if (messages.any_error()) return kExitFailed;

  const std::unique_ptr<FindingsOutput> output =
      options.json ? FindingsAsJson(subject, console.output)
                   : FindingsAsLines(subject, console.output,
                                     ColoursFor(console.system, console.output_is_terminal));
  CheckTotals totals;
  CheckTree(console.files, options.tree, sought, [&](const CheckedEntry& entry) {
    ++(entry.is_folder ? totals.folders : totals.files);
    totals.bytes += entry.bytes;
    const std::uint64_t findings = entry.findings.size() + entry.not_kept;
    totals.findings += findings;
    if (findings > 0) ++totals.with_findings;
    if (entry.error != ErrorNumber::kNone) {
      ++totals.unreadable;
      messages.Error(ShownPath(entry.path), ErrorLine(entry.error));
    }
    output->Entry(entry);
  });
  output->End(totals);
  if (!options.quiet) console.error << CountText(totals) << std::flush;
  if (totals.unreadable > 0) return kExitFailed;
  return totals.findings > 0 ? kExitFindings : kExitDone;
}

}  // namespace morvex
