// Reads the command line of a command. The result is the command's options, or a text to print:
// help, or what is wrong.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace morvex {

// The command line gives the value of an option as "--name VALUE" or "--name=VALUE".
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
  std::vector<std::string> extensions;  // as given, with or without the dot
  bool all = false;
  bool log = false;
  bool yes = false;
  std::string report;
};

struct FilterOptions : ListOptions {};

struct CheckOptions : ListOptions {
  std::string tree;
  std::string list_encoding = "auto";  // or "utf-8" or "windows-1252"
  bool json = false;
};

enum class Command {
  kNone,  // nothing to run: help, or an error in the command line
  kRun,
  kCheck,
  kFilter,
};

struct CommandLine {
  Command command = Command::kNone;
  RunOptions run;
  CheckOptions check;
  FilterOptions filter;
  // The text to print when `command` is kNone: on standard output if `exit_status` is 0, else on
  // standard error.
  std::string text;
  int exit_status = 0;
};

// Whether the program's first argument names a command, so that ParseCommandLine can read the
// arguments.
bool IsCommand(const std::string& argument);

// Returns the error text for a first argument that looks like a command but is not one. The text
// suggests the most similar command.
std::string UnknownCommandText(const std::string& argument);

// Reads the program's arguments, the command first.
CommandLine ParseCommandLine(const std::vector<std::string>& arguments);

// Returns the list of commands for the program's own help text.
std::string CommandsText();

}  // namespace morvex
