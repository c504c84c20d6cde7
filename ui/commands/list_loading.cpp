#include "ui/commands/list_loading.h"

#include "core/settings/character_code.h"
#include "core/text/shown_text.h"

namespace morvex {
namespace {

std::string Quoted(const std::string& text) { return "\"" + ShownText(text) + "\""; }

std::string Advice(const ListDiagnostic& diagnostic, const std::string& separator) {
  const std::string text = Quoted(diagnostic.text);
  const std::string earlier = "line " + std::to_string(diagnostic.earlier_line);
  switch (diagnostic.problem) {
    case ListProblem::kByteOrderMark:
      return "a byte-order mark stands here and becomes part of the left text: save the list "
             "without it.";
    case ListProblem::kNoSeparator:
      return "no row, for it does not hold the separator " + Quoted(separator) +
             ": add it, or take the line out.";
    case ListProblem::kRowsLost:
      return "lost, with all that follows, for two separators in a row mark " + earlier +
             " as the last row: take one of them out there.";
    case ListProblem::kEmptyLeft:
      return "the left text is empty, so this row is never tried: write what is to be found, or "
             "take the row out.";
    case ListProblem::kDuplicate:
      return text + " never wins, for " + earlier +
             " has the same left text: take one of the two out.";
    case ListProblem::kShadowed:
      return text + " never wins, for " + earlier + ", " + Quoted(diagnostic.earlier_text) +
             ", is its beginning and is tried first: move this row above that one.";
    case ListProblem::kShort:
      return text +
             " is so short that it will be found everywhere, inside other words too: write "
             "more of it.";
    case ListProblem::kOpenWildcard:
      if (!diagnostic.example.empty()) {
        return text +
               " ends in the wildcard and no left text is longer, so that it takes in one byte "
               "alone: of " +
               Quoted(diagnostic.example) + " a run makes " + Quoted(diagnostic.outcome) +
               "; write what follows there, or [CRLF].";
      }
      return text +
             " ends in the wildcard, so nothing ends what it takes in: write what follows "
             "there, or [CRLF].";
    case ListProblem::kStrayWildcard:
      return "the right text has a wildcard and " + text +
             " has none, so it puts in stray bytes: take it out.";
    case ListProblem::kNul:
      return text +
             " holds a NUL and so never fits: save the list as UTF-8 or Windows-1252, as the files "
             "are, and without NUL.";
    case ListProblem::kUtf16:
      return "the list is in UTF-16, so that nothing of it would ever fit: save it as UTF-8 or "
             "Windows-1252, as the files are.";
    case ListProblem::kBehindEnd:
      return "lost, with all that follows, for " + earlier +
             ", three separators, ends the list: move that line behind the last row.";
    case ListProblem::kCarriageReturn:
      return "a carriage return stands inside this row, so that what follows it belongs to the "
             "row, "
             "other rows too: end every line in CR LF or LF, and write [CRLF] for a line break.";
    case ListProblem::kBlanks:
      return "blanks stand beside the separator and are part of the texts: take them out, unless " +
             text + " is to be found with its blanks alone, or a blank is to be put in.";
    case ListProblem::kFurtherSeparator:
      return "the right text of " + text + " holds the separator " + Quoted(separator) +
             " again: take it out, or name a separator that no text holds.";
    case ListProblem::kTooLong:
      return "the left text has more than 32766 bytes and so never fits: take a part of it.";
    case ListProblem::kNoWildcardSet:
      return text + " and " + std::to_string(diagnostic.count - 1) +
             (diagnostic.count == 2 ? " more left text hold " : " more left texts hold ") +
             Quoted(std::string(1, diagnostic.character)) +
             ", and no wildcard is set: set it, if it is to be one.";
    case ListProblem::kUnusedWildcard:
      return "no left text holds the wildcard that is set: set the one that the list has, or none.";
    case ListProblem::kOwnEnding:
      return text +
             " ends at once, for what stands behind its wildcard also stands in front of it: " +
             "of " + Quoted(diagnostic.example) + " a run makes " + Quoted(diagnostic.outcome) +
             "; choose an ending that the beginning does not hold.";
  }
  return "";
}

void DropMarks(ReplacementList& list) {
  for (ListRow& row : list.rows) {
    if (row.left.starts_with(kUtf8Mark)) row.left.erase(0, kUtf8Mark.size());
  }
}

// Returns the path and line of a diagnostic; the path alone for a diagnostic of the whole list.
std::string LineOf(const std::string& path, const ListDiagnostic& diagnostic) {
  return diagnostic.line == 0 ? path : path + ":" + std::to_string(diagnostic.line);
}

// Returns why the list cannot be read. Points out the path's first character that a shell would
// have expanded or that Windows allows in no name.
std::string WhyUnread(const std::string& path, ErrorNumber error) {
  const std::string line = "the replacement list cannot be read: ";
  switch (error) {
    case ErrorNumber::kFileNotFound:
    case ErrorNumber::kPathNotFound:
    case ErrorNumber::kBadFileName:
      break;
    case ErrorNumber::kPathFileAccess:
      return line + "this is a folder, or no file that can be read: name the list's file.";
    case ErrorNumber::kPermissionDenied:
      return line + "you may not read this file: ask its owner, or take a copy.";
    default:
      return line + std::string(ErrorText(error)) + ".";
  }
  const std::size_t odd = path.find_first_of("*?\"<>|");
  if (odd == std::string::npos) {
    return line +
           "there is no file of this name (a pipe or a device is none): look at the name, and "
           "at the folder that it is taken from.";
  }
  return line + "no file has this name. The character " + Quoted(path.substr(odd, 1)) +
         " in it stands for itself alone: write the name out; where a character cannot be written, "
         "give the file another name.";
}

}  // namespace

bool TakeListOptions(Program& program, const ListOptions& options, CommandMessages& messages) {
  if (options.separator) {
    if (options.separator->empty()) {
      messages.Error(kProgramPlace, "--separator takes one character or more.");
      return false;
    }
    program.settings.gSeparator = *options.separator;
  }
  if (options.joker) {
    const std::uint8_t code = CharacterCode(program, *options.joker);
    if (!options.joker->empty() && (options.joker->size() != 1 || code == 0)) {
      messages.Error(kProgramPlace, "--joker takes one character of one byte: " +
                                        Quoted(*options.joker) + " is not that.");
      return false;
    }
    program.settings.gJoker = code;
  }
  if (!options.list.empty()) program.settings.SubstitutieFile = options.list;
  return true;
}

std::optional<LoadedList> LoadList(FileService& files, const Settings& settings,
                                   CommandMessages& messages, ByteOrderMarks marks) {
  const std::string path = ShownPath(settings.SubstitutieFile);
  ListReading reading =
      ReadListFile(files, settings.SubstitutieFile, settings.gSeparator, OddLines::kKeep);
  LoadedList loaded;
  loaded.review = ReviewList(reading, settings.gSeparator, settings.gJoker);
  if (loaded.review.error != ErrorNumber::kNone) {
    messages.Error(path, WhyUnread(settings.SubstitutieFile, loaded.review.error));
    return std::nullopt;
  }
  for (const ListDiagnostic& diagnostic : loaded.review.diagnostics) {
    const std::string line = LineOf(path, diagnostic);
    const std::string advice = Advice(diagnostic, settings.gSeparator);
    if (diagnostic.problem == ListProblem::kUtf16) {
      messages.Error(line, advice);
      return std::nullopt;
    }
    messages.Warn(line, advice);
  }
  if (!loaded.review.is_usable) {
    messages.Error(path,
                   "no row has a left text: write one row a line, left text, separator, "
                   "right text, or name the right separator; now it is " +
                       Quoted(settings.gSeparator) + ".");
    return std::nullopt;
  }
  if (marks == ByteOrderMarks::kDropped) DropMarks(reading.list);
  FlagWildcards(reading.list, WildcardText(settings.gJoker));
  MakeTables(reading.list, settings.gJoker, loaded.tables);
  return loaded;
}

void WarnOfList(const Program& program, CommandMessages& messages) {
  const Settings& settings = program.settings;
  const std::string path = ShownPath(settings.SubstitutieFile);
  const ListReading reading = ReadListFile(program.host.files, settings.SubstitutieFile,
                                           settings.gSeparator, OddLines::kKeep);
  const ListReview review = ReviewList(reading, settings.gSeparator, settings.gJoker);
  for (const ListDiagnostic& diagnostic : review.diagnostics) {
    messages.Warn(LineOf(path, diagnostic), Advice(diagnostic, settings.gSeparator));
  }
}

}  // namespace morvex
