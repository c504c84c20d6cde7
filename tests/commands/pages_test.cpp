// The pages show what the commands print: each block that begins with the prompt is run, one block
// after the other, in a copy of examples/. Each page starts with a new copy.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <sstream>
#include <vector>

#include "tests/commands/command_scene.h"

namespace morvex::commands {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPrompt = "$ ";
constexpr std::string_view kFence = "```";
constexpr std::string_view kProgram = "morvex-cli ";
constexpr std::ptrdiff_t kLongestReadme = 150;  // lines

struct Shown {
  std::string command;
  std::string output;
};

using Block = std::vector<std::string>;

std::string Text(const std::string& page) {
  return whole_run::ReadWholeFile(SourceRoot() + "/" + page);
}

// Returns the paths of the pages, relative to the project's folder.
std::vector<std::string> Pages() {
  std::vector<std::string> pages = {"README.md"};
  for (const fs::directory_entry& entry : fs::directory_iterator(SourceRoot() + "/docs")) {
    if (entry.path().extension() == ".md") {
      pages.push_back("docs/" + entry.path().filename().string());
    }
  }
  std::sort(pages.begin(), pages.end());
  return pages;
}

// Returns the blocks between fences, each with its opening fence as the first line.
std::vector<Block> Blocks(const std::string& page) {
  std::vector<Block> blocks;
  std::istringstream lines(Text(page));
  bool in_block = false;
  for (std::string line; std::getline(lines, line);) {
    const bool is_fence = line.starts_with(kFence);
    if (is_fence) in_block = !in_block;
    if (is_fence && in_block) blocks.emplace_back();
    if (in_block) blocks.back().push_back(line);
  }
  EXPECT_FALSE(in_block) << page;
  return blocks;
}

// Returns the commands that a block shows, each with its output: the lines up to the next prompt.
std::vector<Shown> ShownCommands(const Block& block) {
  std::vector<Shown> shown;
  if (block.size() < 2 || !block[1].starts_with(kPrompt)) return shown;
  for (std::size_t i = 1; i < block.size(); ++i) {
    if (block[i].starts_with(kPrompt)) {
      shown.push_back({block[i].substr(kPrompt.size()), ""});
    } else {
      shown.back().output += block[i] + "\n";
    }
  }
  return shown;
}

// Returns the output without carriage returns and with fixed durations, as pages show it.
std::string AsThePageShowsIt(std::string output) {
  std::erase(output, '\r');
  return WithoutTimes(output);
}

std::size_t RunPage(const std::string& page) {
  CommandScene scene;
  scene.Write("settings.dat", Text("examples/settings.dat"));
  std::size_t commands = 0;
  for (const Block& block : Blocks(page)) {
    for (const Shown& each : ShownCommands(block)) {
      ++commands;
      EXPECT_EQ(AsThePageShowsIt(scene.Shell("exec 2>&1\n" + each.command).output), each.output)
          << page << ": " << each.command;
    }
  }
  return commands;
}

TEST(Pages, ShowWhatTheCommandsSay) {
  std::map<std::string, std::size_t> commands;
  for (const std::string& page : Pages()) commands[page] = RunPage(page);
  EXPECT_GE(commands["README.md"], 5u);
  EXPECT_GE(commands["docs/manual.md"], 10u);
  EXPECT_GE(commands["docs/commands.md"], 10u);
}

// The tests run only blocks that begin with a prompt, so no other block may have a line that calls
// the program. No block may name a programming language, because the tests run no other programs.
TEST(Pages, ShowNoProgramThatNothingRuns) {
  for (const std::string& page : Pages()) {
    for (const Block& block : Blocks(page)) {
      EXPECT_EQ(block[0], kFence) << page;
      if (!ShownCommands(block).empty()) continue;
      for (const std::string& line : block) {
        EXPECT_FALSE(line.starts_with(kProgram)) << page << ": " << line;
      }
    }
  }
}

// The program says "Morvex 11.0", the pages say "11.0".
TEST(Pages, OfChangesAndSecurityNameThePresentVersion) {
  std::string version = CommandScene().Shell("morvex-cli --version").output;
  version = version.substr(0, version.find_last_not_of("\r\n") + 1);
  version = version.substr(version.rfind(' ') + 1);
  ASSERT_FALSE(version.empty());
  const std::string changes = Text("CHANGELOG.md");
  const std::size_t first = changes.find("\n## ");
  ASSERT_NE(first, std::string::npos);
  EXPECT_TRUE(changes.substr(first).starts_with("\n## " + version + "\n")) << version;
  EXPECT_NE(Text("SECURITY.md").find("\n| " + version + " | yes |\n"), std::string::npos)
      << version;
}

TEST(Pages, TheReadmeIsShort) {
  const std::string text = Text("README.md");
  EXPECT_LE(std::count(text.begin(), text.end(), '\n'), kLongestReadme);
  EXPECT_TRUE(text.ends_with('\n'));
}

}  // namespace
}  // namespace morvex::commands
