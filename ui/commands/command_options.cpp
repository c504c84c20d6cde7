#include "ui/commands/command_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "core/text/shown_text.h"
#include "ui/commands/command_console.h"
#include "ui/commands/command_messages.h"

namespace morvex {
namespace {

constexpr std::array<const char*, 3> kCommands = {"run", "check", "filter"};

constexpr const char* kRunAbout =
    "Copies SOURCE into TARGET and replaces every text of the list on the way. SOURCE is a folder "
    "and\nTARGET the folder that its copy goes into, or both are files.\n";
constexpr const char* kRunExamples =
    "Examples:\n"
    "  morvex-cli run case handover --list names.txt --ext .txt,.csv\n"
    "  morvex-cli run case handover --list names.txt --joker '*' --all --yes --report run.json\n"
    "  morvex-cli run letter.txt anonymous.txt --list names.txt\n"
    "  morvex-cli run --from settings.dat --strict\n"
    "\n"
    "Exit status: 0 done; 1 the run could not be done or was stopped; 2 the command line is\n"
    "wrong; 3 done, but some files were not copied.";

constexpr const char* kCheckAbout =
    "Searches the bytes and the name of every file and folder in TREE for every left text of the\n"
    "list: as it stands, in other letter case, in UTF-8, Windows-1252 and UTF-16. A text with the\n"
    "wildcard is searched for by its parts. TREE may also be one file. Nothing is changed.\n";
constexpr const char* kCheckExamples =
    "Examples:\n"
    "  morvex-cli check handover --list names.txt --joker '*'\n"
    "  morvex-cli check handover --list names.txt --json > findings.json\n"
    "  morvex-cli check handover --list names.txt --quiet && tar -cf handover.tar handover\n"
    "\n"
    "Exit status: 0 nothing was found; 3 something was found, or some rows of the list could not\n"
    "be checked; 1 something could not be read or the check was stopped, whatever was found\n"
    "elsewhere; 2 the command line is wrong.";

constexpr const char* kFilterAbout =
    "Reads standard input, replaces every text of the list, and writes standard output, in "
    "constant\n"
    "memory. The number of replacements goes to standard error.\n";
constexpr const char* kFilterExamples =
    "Examples:\n"
    "  morvex-cli filter --list names.txt < letter.txt > anonymous.txt\n"
    "  zcat dump.sql.gz | morvex-cli filter --list names.txt | gzip > anonymous.sql.gz\n"
    "  find case -name '*.log' -print0 |\n"
    "    xargs -0 -P 4 -I{} sh -c 'morvex-cli filter --list names.txt < \"$1\" > \"$1.anon\"' - "
    "{}\n"
    "\n"
    "Exit status: 0 done; 1 reading, writing or the list failed; 2 the command line is wrong.";

// Refuses an empty value. The parser does not require any option: WhatIsMissing reports a missing
// one when everything else is right, so that a misspelt option is not reported as missing.
CLI::Validator NotEmpty() {
  return CLI::Validator(
      [](std::string& value) { return value.empty() ? std::string("may not be empty") : ""; }, "");
}

// Checks one extension of --ext, with or without its dot, and removes the blanks around it.
CLI::Validator Extension() {
  const auto trim = [](std::string& value) -> std::string {
    value.erase(0, std::min(value.find_first_not_of(' '), value.size()));
    value.erase(value.find_last_not_of(' ') + 1);
    if (value.empty() || value == ".") return "an extension may not be empty";
    if (value.find_first_of("*?/") == std::string::npos) return "";
    return value + " is not an extension; write them as in .txt,.csv";
  };
  return CLI::Validator(trim, "");
}

CLI::Option* AddFlag(CLI::App& command, const std::string& name, bool& value,
                     const std::string& about) {
  return command.add_flag(name, value, about)->disable_flag_override();
}

// Adds the first options of every command; AddLastOptions adds the last ones.
void AddListOptions(CLI::App& command, ListOptions& options) {
  command.add_option("--list", options.list, "The replacement list")
      ->type_name("FILE")
      ->check(NotEmpty());
  command
      .add_option("--separator", options.separator,
                  "The text between left and right; default \"|\"")
      ->type_name("TEXT");
  command.add_option("--joker", options.joker, "The wildcard character; default: none")
      ->type_name("CHARACTER");
}

void AddLastOptions(CLI::App& command, ListOptions& options, const std::string& quiet) {
  AddFlag(command, "--strict", options.strict, "Treat every warning as an error and do nothing");
  AddFlag(command, "--quiet", options.quiet, quiet);
}

void AddRun(CLI::App& app, RunOptions& options) {
  CLI::App* const run = app.add_subcommand("run", kRunAbout);
  run->add_option("SOURCE", options.source, "A folder or a file")->type_name("")->check(NotEmpty());
  run->add_option("TARGET", options.target, "The folder or the file to write")
      ->type_name("")
      ->check(NotEmpty());
  AddListOptions(*run, options);
  run->add_option("--from", options.from, "A settings file for everything that is not given here")
      ->type_name("FILE")
      ->check(NotEmpty());
  CLI::Option* const extensions =
      run->add_option("--ext", options.extensions,
                      "Process files with these extensions, copy all others unchanged")
          ->type_name(".EXT,.EXT")
          ->delimiter(',')
          ->allow_extra_args(false)
          ->transform(Extension());
  AddFlag(*run, "--all", options.all, "Process every file, whatever its extension")
      ->excludes(extensions);
  AddFlag(*run, "--log", options.log, "Write the run log, in the program's folder");
  AddFlag(*run, "--yes", options.yes, "Make a missing target folder without asking");
  run->add_option("--report", options.report, "Write a report on every file, as JSON")
      ->type_name("FILE")
      ->check(NotEmpty());
  AddLastOptions(*run, options, "No results and no progress, only errors and warnings");
  run->footer(kRunExamples);
}

void AddCheck(CLI::App& app, CheckOptions& options) {
  CLI::App* const check = app.add_subcommand("check", kCheckAbout);
  check->add_option("TREE", options.tree, "A folder or a file")->type_name("")->check(NotEmpty());
  AddListOptions(*check, options);
  check
      ->add_option("--list-encoding", options.list_encoding,
                   "The list's encoding; auto: UTF-8 if valid, else Windows-1252")
      ->type_name("ENCODING")
      ->check(CLI::IsMember({"auto", "utf-8", "windows-1252"}));
  AddFlag(*check, "--json", options.json, "Write one JSON document instead of lines");
  AddLastOptions(*check, options, "No count at the end, only findings, errors and warnings");
  check->footer(kCheckExamples);
}

void AddFilter(CLI::App& app, FilterOptions& options) {
  CLI::App* const filter = app.add_subcommand("filter", kFilterAbout);
  AddListOptions(*filter, options);
  AddLastOptions(*filter, options, "No count at the end, only errors and warnings");
  filter->footer(kFilterExamples);
}

Command CommandNamed(const std::string& name) {
  if (name == "run") return Command::kRun;
  return name == "check" ? Command::kCheck : Command::kFilter;
}

// Returns the result for a wrong command line. A dot or line break at the end of the parser's text
// is dropped.
CommandLine Wrong(const std::string& command, std::string text) {
  while (text.ends_with('.') || text.ends_with('\n')) text.pop_back();
  CommandLine line;
  line.exit_status = kExitUsage;
  line.text = std::string(kProgramPlace) + ": error: " + ShownText(text) + ".\n" + "Try \"" +
              kProgramPlace + " " + command + " --help\".\n";
  return line;
}

// Returns the error text for an option with a wrong number of values. The parser's text contains
// the option as --name; for a flag it begins with the name without hyphens.
std::string MismatchText(const std::string& text) {
  const std::size_t option = text.find("--");
  if (option == std::string::npos) return "--" + text.substr(0, text.find(' ')) + " takes no value";
  const std::size_t end = text.find_first_of(": ", option);
  return text.substr(option, end - option) + " takes one value and may be given once";
}

// Returns the text for a missing argument that the parser does not know to be required; empty when
// nothing is missing.
std::string WhatIsMissing(const CommandLine& line) {
  constexpr const char* kNoList = "--list is required";
  if (line.command == Command::kFilter) return line.filter.list.empty() ? kNoList : "";
  if (line.command == Command::kCheck) {
    if (line.check.tree.empty()) return "TREE is required";
    return line.check.list.empty() ? kNoList : "";
  }
  const RunOptions& run = line.run;
  if (!run.from.empty()) return "";
  if (run.source.empty()) return "SOURCE is required, or --from";
  if (run.target.empty()) return "TARGET is required, or --from";
  if (run.list.empty()) return "--list is required, or --from";
  return "";
}

// Returns the edit distance of two words: the least number of insertions, deletions, substitutions
// and swaps of neighbours that make one word of the other.
std::size_t Distance(std::string_view one, std::string_view other) {
  std::vector<std::vector<std::size_t>> steps(one.size() + 1,
                                              std::vector<std::size_t>(other.size() + 1));
  for (std::size_t i = 0; i <= one.size(); ++i) {
    for (std::size_t j = 0; j <= other.size(); ++j) {
      std::size_t& least = steps[i][j];
      if (i == 0 || j == 0) {
        least = i + j;
        continue;
      }
      const std::size_t exchange = one[i - 1] == other[j - 1] ? 0 : 1;
      least = std::min({steps[i - 1][j] + 1, steps[i][j - 1] + 1, steps[i - 1][j - 1] + exchange});
      const bool swapped =
          i > 1 && j > 1 && one[i - 1] == other[j - 2] && one[i - 2] == other[j - 1];
      if (swapped) least = std::min(least, steps[i - 2][j - 2] + 1);
    }
  }
  return steps[one.size()][other.size()];
}

// Returns the word in lower case, without leading hyphens, cut to a length beyond that of every
// command.
std::string Plain(std::string_view word) {
  constexpr std::size_t kLongEnough = 16;
  word.remove_prefix(std::min(word.find_first_not_of('-'), word.size()));
  std::string plain(word.substr(0, kLongEnough));
  for (char& letter : plain) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return plain;
}

}  // namespace

std::string UnknownCommandText(const std::string& argument) {
  const std::string word = Plain(argument);
  const char* nearest = nullptr;
  std::size_t least = word.size();  // an edit distance at which no character is kept
  for (const char* name : {kCommands[0], kCommands[1], kCommands[2], "--help", "--version"}) {
    const std::string plain = Plain(name);
    const std::size_t distance = plain.starts_with(word) ? 0 : Distance(word, plain);
    if (distance * 2 > plain.size() || distance >= least) continue;
    least = distance;
    nearest = name;
  }
  std::string text =
      std::string(kProgramPlace) + ": error: unknown command \"" + ShownText(argument) + "\"";
  text += nearest != nullptr
              ? ", did you mean \"" + std::string(nearest) + "\"?\n"
              : ": the commands are run, check and filter; a settings file is run with -if.\n";
  return text + "Try \"" + kProgramPlace + " --help\".\n";
}

bool IsCommand(const std::string& argument) {
  return std::find(kCommands.begin(), kCommands.end(), argument) != kCommands.end();
}

CommandLine ParseCommandLine(const std::vector<std::string>& arguments) {
  CommandLine line;
  CLI::App app("", kProgramPlace);
  app.require_subcommand(1);
  AddRun(app, line.run);
  AddCheck(app, line.check);
  AddFilter(app, line.filter);
  const std::string& name = arguments.front();
  try {
    // The parser expects the arguments in reverse order.
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::CallForHelp&) {
    CLI::App& command = *app.get_subcommand(name);
    if (name != kCommands.front()) command.get_option("--list")->required();
    if (CLI::Option* const tree = command.get_option_no_throw("TREE")) tree->required();
    line.text = command.help(kProgramPlace);
    return line;
  } catch (const CLI::ArgumentMismatch& error) {
    return Wrong(name, MismatchText(error.what()));
  } catch (const CLI::ExtrasError&) {
    return Wrong(name, "not expected: " + CLI::detail::join(app.remaining(true), " "));
  } catch (const CLI::Error& error) {
    return Wrong(name, error.what());
  }
  line.command = CommandNamed(name);
  const std::string missing = WhatIsMissing(line);
  return missing.empty() ? line : Wrong(name, missing);
}

std::string CommandsText() {
  return "Commands, each with a --help of its own:\n"
         "  run SOURCE TARGET --list FILE    make an anonymised copy, with settings given here\n"
         "  check TREE --list FILE           find texts of the list that are left\n"
         "  filter --list FILE               anonymise standard input to standard output\n";
}

}  // namespace morvex
