// The command line of the commands: what was asked for, or the text that says what is wrong.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace morvex {

// Every option has the form --name, and a value behind a blank or "=".
struct ListOptions {
  std::string list;
  std::optional<std::string> separator;
  std::optional<std::string> joker;
  bool strict = false;
  bool quiet = false;
};

struct RunOptions : ListOptions {
  std::string source;
  std::string target;
  std::string from;                     // a settings file
  std::vector<std::string> extensions;  // as they were given, with or without the point
  bool all = false;
  bool log = false;
  bool yes = false;
  std::string report;
};

struct FilterOptions : ListOptions {};

struct CheckOptions : ListOptions {
  std::string tree;
  std::string list_encoding = "auto";  // or utf-8, windows-1252
  bool json = false;
};

enum class Command {
  kNone,  // there is only something to say
  kRun,
  kCheck,
  kFilter,
};

struct CommandLine {
  Command command = Command::kNone;
  RunOptions run;
  CheckOptions check;
  FilterOptions filter;
  // Of kNone: the text to say, for standard error when the status is not 0.
  std::string text;
  int exit_status = 0;
};

// Whether the program's first argument names a command, so that the rest is for ParseCommandLine.
bool IsCommand(const std::string& argument);

// What to say of a first argument that is meant for a command and names none; names the nearest
// one.
std::string UnknownCommandText(const std::string& argument);

// The program's arguments, the command first.
CommandLine ParseCommandLine(const std::vector<std::string>& arguments);

// The commands, for the program's own help text.
std::string CommandsText();

}  // namespace morvex
