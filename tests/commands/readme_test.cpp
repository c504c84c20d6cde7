// What README.md shows of the commands is what they say: each block of a shell's commands is run,
// one behind the other, in a copy of examples/.
#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "tests/commands/command_scene.h"

namespace morvex::commands {
namespace {

struct Shown {
  std::string command;
  std::string output;
};

constexpr std::string_view kPrompt = "$ ";

// A block begins with the prompt; what it shows of a command reaches to the next prompt.
std::vector<Shown> ShownCommands(const std::string& readme) {
  std::vector<Shown> shown;
  std::istringstream lines(readme);
  bool in_block = false;
  bool is_shell = false;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("```")) {
      in_block = !in_block;
      is_shell = false;
    } else if (in_block && line.starts_with(kPrompt)) {
      is_shell = true;
      shown.push_back({line.substr(kPrompt.size()), ""});
    } else if (is_shell) {
      shown.back().output += line + "\n";
    }
  }
  return shown;
}

// The page is a text of lines: it does not show a carriage return.
std::string AsThePageShowsIt(std::string output) {
  std::erase(output, '\r');
  return WithoutTimes(output);
}

TEST(Readme, ShowsWhatTheCommandsSay) {
  const std::vector<Shown> shown =
      ShownCommands(whole_run::ReadWholeFile(SourceRoot() + "/README.md"));
  ASSERT_GE(shown.size(), 5u);
  const CommandScene scene;
  for (const Shown& each : shown) {
    EXPECT_EQ(AsThePageShowsIt(scene.Shell("exec 2>&1\n" + each.command).output), each.output)
        << each.command;
  }
}

// Lines in another language would be run by nobody: neither by a test nor by who builds the
// program.
TEST(Readme, ShowsNoProgramThatNothingRuns) {
  std::istringstream lines(whole_run::ReadWholeFile(SourceRoot() + "/README.md"));
  bool in_block = false;
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with("```")) continue;
    in_block = !in_block;
    EXPECT_TRUE(!in_block || line == "```") << line;
  }
}

}  // namespace
}  // namespace morvex::commands
