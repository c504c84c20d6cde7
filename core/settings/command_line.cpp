#include "core/settings/command_line.h"

#include <cstddef>

#include "core/program/paths.h"
#include "core/settings/numbers.h"

namespace morvex {
namespace {

constexpr std::string_view kOptionStart = " -";

// Whether the piece is the option. SplitCommandLine leaves the hyphen on the first piece only.
bool IsOption(std::string_view piece, std::string_view name) {
  if (piece.starts_with('-')) piece.remove_prefix(1);
  return piece.starts_with(name);
}

// Returns the option's value. One character stands between the option's name and its value.
std::string OptionValue(const std::string& piece, std::string_view name) {
  const std::size_t value = piece.find(name) + name.size() + 1;
  return value < piece.size() ? piece.substr(value) : std::string();
}

}  // namespace

std::vector<std::string> SplitCommandLine(std::string_view line) {
  std::vector<std::size_t> blanks;  // where each " -" starts
  for (std::size_t found = line.find(kOptionStart); found != std::string_view::npos;
       found = line.find(kOptionStart, found + 1)) {
    blanks.push_back(found);
  }
  std::vector<std::string> pieces = {"NoInitFile",
                                     std::string(line.substr(0, blanks.empty() ? 0 : blanks[0]))};
  if (pieces[1].empty() || pieces[1].starts_with("-if")) pieces[0] = "InitFile";
  for (std::size_t i = 0; i < blanks.size(); ++i) {
    const std::size_t start = blanks[i] + kOptionStart.size();
    const std::size_t end = i + 1 < blanks.size() ? blanks[i + 1] : line.size();
    pieces.emplace_back(line.substr(start, end - start));
  }
  if (pieces[1].empty()) pieces[1] = line;
  return pieces;
}

ErrorNumber ApplyCommandLine(Program& program, const std::vector<std::string>& arguments) {
  Settings& settings = program.settings;
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    if (IsOption(arguments[i], "if")) {
      settings.CommandLine_SET = true;
      settings.InitFilePath = ResolveInitFilePath(program, program.host.system.ProgramFolder(),
                                                  OptionValue(arguments[i], "if"));
    } else if (IsOption(arguments[i], "dy")) {
      const Result<std::int16_t> delay = ToInteger16(OptionValue(arguments[i], "dy"));
      if (!delay) return delay.error;
      settings.AutoRunDelay = delay.value;
    }
  }
  return ErrorNumber::kNone;
}

std::vector<std::string> IgnoredPieces(const std::vector<std::string>& arguments) {
  std::vector<std::string> ignored;
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    if (IsOption(arguments[i], "if") || IsOption(arguments[i], "dy")) continue;
    // If the line begins with " -", the first piece is the whole line, and the line's pieces
    // follow.
    if (i == 1 && arguments[i].find(kOptionStart) != std::string::npos) continue;
    if (i > 1 || !arguments[i].empty()) ignored.push_back((i > 1 ? "-" : "") + arguments[i]);
  }
  return ignored;
}

std::string ResolveInitFilePath(const Program& program, const std::string& folder,
                                const std::string& name) {
  if (FileExists(program, name)) return name;
  const std::string in_folder = JoinPath(program, folder, name);
  return FileExists(program, in_folder) ? in_folder : name;
}

}  // namespace morvex
