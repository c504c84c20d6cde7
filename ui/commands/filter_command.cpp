#include "ui/commands/filter_command.h"

#include <memory>
#include <optional>
#include <string>

#include "core/engine/matching/input_window.h"
#include "core/engine/matching/positioned_output.h"
#include "core/engine/matching/substitution.h"
#include "core/engine/passes/file_bytes.h"
#include "ui/commands/command_messages.h"
#include "ui/commands/list_loading.h"
#include "ui/commands/stream_output.h"
#include "ui/console/console_user.h"

namespace morvex {
namespace {

// How many bytes of output are held back. With nearly every list, a match moves the write position
// back by a few bytes at most.
constexpr std::size_t kHeldBack = std::size_t{1} << 20;

class HitCounter : public SubstitutionWatcher {
 public:
  void OnHits(std::int64_t count) override { hits += count; }
  bool KeepGoing(std::uint64_t /*read*/) override { return true; }

  std::int64_t hits = 0;
};

// Whether the row can move the write position back. A right text with the wildcard does so when the
// tail, the left text's part behind the wildcard, is longer than the captured bytes. This requires
// a tail of at least three bytes, and one of these: nothing in front of the wildcard; a second
// wildcard in the tail; a text in front of the wildcard that contains the tail or ends with a
// beginning of the tail.
bool MayWriteBack(const std::string& left, const std::string& right, const std::string& wildcard) {
  constexpr std::size_t kShortestTail = 3;
  const std::size_t found = left.find(wildcard);
  if (found == std::string::npos || right.find(wildcard) == std::string::npos) return false;
  const std::string before = left.substr(0, found);
  const std::string tail = left.substr(found + wildcard.size());
  if (tail.size() < kShortestTail) return false;
  if (before.empty() || tail.find(wildcard) != std::string::npos) return true;
  for (std::size_t size = 1; size <= tail.size(); ++size) {
    if (before.ends_with(tail.substr(0, size))) return true;
  }
  return before.find(tail) != std::string::npos;
}

bool MayWriteBack(const SubstitutionTables& tables, const std::string& wildcard) {
  if (wildcard.empty()) return false;
  for (std::size_t row = 0; row < tables.LeftTexts.size(); ++row) {
    if (MayWriteBack(tables.LeftTexts[row], tables.RightTexts[row], wildcard)) return true;
  }
  return false;
}

// Reports what ended the stream early. Returns true when nothing did.
bool SayEnd(SubstitutionEnd end, ErrorNumber read_error, ErrorNumber write_error,
            CommandMessages& messages) {
  if (end == SubstitutionEnd::kReadFailed) {
    messages.Error("standard input", ErrorLine(read_error));
  } else if (write_error == ErrorNumber::kInvalidCall) {
    messages.Error("standard output",
                   "a right text with the wildcard writes over bytes that have long been written, "
                   "which a stream cannot: process this list's files with run.");
  } else if (write_error != ErrorNumber::kNone) {
    messages.Error("standard output", ErrorLine(write_error));
  } else if (end != SubstitutionEnd::kWholeFile) {
    messages.Error("standard input", "the list matches nothing at all and would go on for ever.");
  }
  return !messages.any_error();
}

}  // namespace

int RunFilter(const FilterOptions& options, const CommandConsole& console) {
  CommandMessages messages(console.error, ColoursFor(console.system, console.error_is_terminal),
                           options.strict);
  ConsoleUser user({console.input, console.error, false, false, nullptr, nullptr});
  Program program({console.files, console.system, user});
  program.settings.gSeparator = kDefaultSeparator;
  if (!TakeListOptions(program, options, messages)) return kExitUsage;
  const std::optional<LoadedList> list = LoadList(console.files, program.settings, messages);
  if (!list || messages.any_error()) return kExitFailed;
  const std::unique_ptr<InputFile> from = console.open_input();
  const std::unique_ptr<OutputFile> to = console.open_output();
  FileSource source(*from);
  const std::uint8_t joker = program.settings.gJoker;
  StreamOutput stream(*to, MayWriteBack(list->tables, WildcardText(joker)) ? kHeldBack : 0);
  InputWindow input;
  PositionedOutput output;
  input.Open(source);
  output.Open(stream);
  Substitution substitution(list->tables, joker);
  CaptureState captured;
  HitCounter counter;
  const SubstitutionEnd end = substitution.Run(input, output, captured, counter);
  const ErrorNumber write_error = output.Finish();
  const bool whole = SayEnd(end, substitution.read_error(), write_error, messages);
  if (!options.quiet) console.error << "Hits: " + std::to_string(counter.hits) + "\n" << std::flush;
  return whole ? kExitDone : kExitFailed;
}

}  // namespace morvex
