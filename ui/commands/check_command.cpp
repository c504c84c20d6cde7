#include "ui/commands/check_command.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

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

// Rows that are not sought as their writer thinks.
class RowWarnings {
 public:
  RowWarnings(const CheckSubject& subject, CommandMessages& messages)
      : subject_(subject), messages_(messages) {}

  void WarnOfThoseThatStay(const Sought& sought) {
    for (const std::int64_t row : sought.rows_that_stay()) {
      Warn(static_cast<std::size_t>(row),
           "is not sought, for its right text puts back all that it takes out: leave the wildcard "
           "out there, if that is to go.");
    }
  }

  void WarnOfThoseThatAreBytes(const Sought& sought) {
    for (const std::int64_t row : sought.rows_of_bytes()) {
      Warn(static_cast<std::size_t>(row),
           "is no UTF-8 and is sought as these bytes alone: name the list's encoding with "
           "--list-encoding, or take a wildcard that stands for no part of a letter.");
    }
  }

  // A list in two encodings can be read in one alone.
  void WarnOfThoseInUtf8() {
    const std::vector<std::string>& texts = subject_.tables.LeftTexts;
    for (std::size_t row = 0; row < texts.size(); ++row) {
      const std::string& text = texts[row];
      const bool is_ascii =
          std::all_of(text.begin(), text.end(), [](char byte) { return (byte & 0x80) == 0; });
      if (is_ascii || !Decode(text, Encoding::kUtf8)) continue;
      Warn(row,
           "is UTF-8, and the list is read as Windows-1252, for other rows are no UTF-8: save all "
           "of it in one encoding.");
    }
  }

 private:
  void Warn(std::size_t row, const std::string& text) {
    const std::vector<std::int64_t>& lines = subject_.review.line_of_row;
    const std::string line = row < lines.size() ? ":" + std::to_string(lines[row]) : "";
    messages_.Warn(ShownPath(subject_.list) + line,
                   "\"" + ShownText(subject_.tables.LeftTexts[row]) + "\" " + text);
  }

  const CheckSubject& subject_;
  CommandMessages& messages_;
};

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
  RowWarnings warnings(subject, messages);
  warnings.WarnOfThoseThatStay(sought);
  warnings.WarnOfThoseThatAreBytes(sought);
  if (options.list_encoding == "auto" && encoding == Encoding::kWindows1252) {
    warnings.WarnOfThoseInUtf8();
  }
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
