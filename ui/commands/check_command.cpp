#include "ui/commands/check_command.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/leftovers/sought.h"
#include "core/text/shown_text.h"
#include "ui/commands/check_tree.h"
#include "ui/commands/command_messages.h"
#include "ui/commands/findings_output.h"
#include "ui/commands/list_loading.h"
#include "ui/console/console_text.h"
#include "ui/console/console_user.h"

namespace morvex {
namespace {

using namespace std::string_literals;

Encoding ListEncoding(const CheckOptions& options, const SubstitutionTables& tables) {
  if (options.list_encoding == "utf-8") return Encoding::kUtf8;
  return options.list_encoding == "auto" ? GuessEncoding(tables) : Encoding::kWindows1252;
}

std::string Counted(std::uint64_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

// Returns a count as in "9 files"; if the check has found anything, as in "2 of 9 files".
std::string CountText(const CheckTotals& totals, const CheckCount& count, const char* one,
                      const char* many) {
  const std::string all = Counted(count.all, one, many);
  return totals.findings == 0 ? all : std::to_string(count.with_findings) + " of " + all;
}

// Returns the totals, as in "3 findings in 2 of 9 files and 1 of 2 folders, 3.0 kB."
std::string TotalsText(const CheckTotals& totals) {
  const std::string files = CountText(totals, totals.files, "file", "files");
  const std::string folders = CountText(totals, totals.folders, "folder", "folders");
  const std::string names =
      totals.names.all == 0 ? files + " and " + folders
                            : files + ", " + folders + " and " +
                                  CountText(totals, totals.names, "further name", "further names");
  return (totals.findings == 0 ? "Nothing found"
                               : Counted(totals.findings, "finding", "findings")) +
         " in " + names + ", " + ReadableBytes(static_cast<std::int64_t>(totals.bytes)) +
         (totals.unreadable == 0
              ? ""
              : "; " + std::to_string(totals.unreadable) + " could not be read") +
         ".\n";
}

// Warns of rows that the check searches in another way than their writer probably meant.
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

  void WarnOfThoseNotJudged(const Sought& sought) {
    for (const std::int64_t row : sought.rows_not_judged()) {
      Warn(static_cast<std::size_t>(row),
           "cannot be judged, for what a run leaves of it cannot be told from other text: it is "
           "sought "
           "as a row whose run takes in everything.");
    }
  }

  void WarnOfDroppedMarks() {
    for (const ListDiagnostic& diagnostic : subject_.review.diagnostics) {
      if (diagnostic.problem != ListProblem::kByteOrderMark) continue;
      messages_.Warn(ShownPath(subject_.list) + ":" + std::to_string(diagnostic.line),
                     "the byte-order mark is left out for this check; in a run the row is only "
                     "found where the mark stands, too.");
    }
  }

  // Warns of rows in UTF-8 in a list that is read as Windows-1252: the check reads a list in one
  // encoding, so it misreads such rows.
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

// Adds up the checked entries and passes them on to the output.
class Tally {
 public:
  Tally(FindingsOutput& output, CommandMessages& messages) : output_(output), messages_(messages) {}

  void Take(const CheckedEntry& entry) {
    const std::uint64_t findings = entry.findings.size() + entry.not_kept;
    CheckCount& count = CountOf(entry.kind);
    ++count.all;
    if (findings > 0) ++count.with_findings;
    totals.bytes += entry.bytes;
    totals.findings += findings;
    if (entry.kind == CheckedKind::kBrokenLink || entry.kind == CheckedKind::kSpecial) {
      messages_.Note(
          ShownPath(entry.path),
          NameAloneText(entry.kind) + (entry.is_link ? ": no more than its name and where "
                                                       "it leads was searched."s
                                                     : ": no more than its name was "
                                                       "searched."s));
    }
    if (entry.error != ErrorNumber::kNone) {
      ++totals.unreadable;
      messages_.Error(ShownPath(entry.path), ErrorLine(entry.error));
    }
    output_.Entry(entry);
  }

  CheckTotals totals;

 private:
  CheckCount& CountOf(CheckedKind kind) {
    if (kind == CheckedKind::kFile) return totals.files;
    return kind == CheckedKind::kFolder ? totals.folders : totals.names;
  }

  FindingsOutput& output_;
  CommandMessages& messages_;
};

int StatusOf(const CheckTotals& totals, bool all_rows) {
  if (totals.interrupted || totals.unreadable > 0) return kExitFailed;
  return totals.findings > 0 || !all_rows ? kExitFindings : kExitDone;
}

}  // namespace

int RunCheck(const CheckOptions& options, const CommandConsole& console) {
  CommandMessages messages(console.error, ColoursFor(console.system, console.error_is_terminal),
                           options.strict);
  ConsoleUser user({console.input, console.error, false, false, nullptr, nullptr});
  Program program({console.files, console.system, user});
  program.settings.gSeparator = kDefaultSeparator;
  if (!TakeListOptions(program, options, messages)) return kExitUsage;
  if (console.note_stop_requests) console.note_stop_requests(false);
  const std::optional<LoadedList> list =
      LoadList(console.files, program.settings, messages, ByteOrderMarks::kDropped);
  if (!list || messages.any_error()) return kExitFailed;

  const Encoding encoding = ListEncoding(options, list->tables);
  const Sought sought(list->tables, program.settings.gJoker, encoding);
  const bool all_rows = !MayLackRows(list->review) && sought.rows_not_judged().empty();
  const CheckSubject subject{console.version, options.tree, options.list, list->tables,
                             list->review,    encoding,     all_rows};
  RowWarnings warnings(subject, messages);
  warnings.WarnOfDroppedMarks();
  warnings.WarnOfThoseThatStay(sought);
  warnings.WarnOfThoseNotJudged(sought);
  warnings.WarnOfThoseThatAreBytes(sought);
  if (options.list_encoding == "auto" && encoding == Encoding::kWindows1252) {
    warnings.WarnOfThoseInUtf8();
  }
  if (messages.any_error()) return kExitFailed;

  const std::unique_ptr<FindingsOutput> output =
      options.json ? FindingsAsJson(subject, console.output)
                   : FindingsAsLines(subject, console.output,
                                     ColoursFor(console.system, console.output_is_terminal));
  Tally tally(*output, messages);
  const auto keep_going = [&] { return !console.stop_requested || !console.stop_requested(); };
  tally.totals.interrupted = !CheckTree(console.files, options.tree, sought, keep_going,
                                        [&tally](const CheckedEntry& entry) { tally.Take(entry); });
  output->End(tally.totals);
  if (!options.quiet) console.error << TotalsText(tally.totals);
  if (!all_rows) {
    messages.Warn(ShownPath(options.list),
                  "not all rows were looked for, so this proves nothing: mend what is said of the "
                  "list above.");
  }
  if (tally.totals.interrupted) {
    console.error << "Interrupted: the check was stopped, not everything was looked through.\n";
  }
  console.error << std::flush;
  return StatusOf(tally.totals, all_rows);
}

}  // namespace morvex
