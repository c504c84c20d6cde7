// Each golden file holds commands, then their output and their exit status. A test runs the
// commands and compares the results with the file. With MORVEX_GOLDEN=write in the environment, the
// tests write the files anew: check the differences before you keep the new files.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <vector>

#include "tests/commands/command_scene.h"

namespace morvex::commands {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> GoldenFiles() {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry :
       fs::directory_iterator(SourceRoot() + "/tests/commands/golden")) {
    if (entry.path().extension() == ".txt") names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

// Returns the script of a golden file: the lines in front of the first line that begins with "---".
std::string ScriptOf(const std::string& golden) {
  std::istringstream lines(golden);
  std::string script;
  for (std::string line; std::getline(lines, line) && !line.starts_with("---");) {
    script += line + "\n";
  }
  return script;
}

// Returns a section of a golden file. If the text's last line has no line end, a mark behind it
// says so.
std::string Section(const std::string& name, const std::string& text) {
  if (text.empty()) return "";
  return "--- " + name + "\n" + text + (text.ends_with('\n') ? "" : "\n--- (no line end)\n");
}

class GoldenTest : public ::testing::TestWithParam<std::string> {};

TEST_P(GoldenTest, SaysWhatItsFileHolds) {
  const std::string path = SourceRoot() + "/tests/commands/golden/" + GetParam() + ".txt";
  const std::string golden = whole_run::ReadWholeFile(path);
  const std::string script = ScriptOf(golden);
  ASSERT_FALSE(script.empty());
  const ProgramResult result = CommandScene().Shell(script);
  const std::string said = script + Section("output", WithoutTimes(result.output)) +
                           Section("errors", result.errors) + "--- status " +
                           std::to_string(result.status) + "\n";
  const char* const mode = std::getenv("MORVEX_GOLDEN");
  if (mode != nullptr && std::string(mode) == "write") whole_run::WriteWholeFile(path, said);
  EXPECT_EQ(said, golden);
}

INSTANTIATE_TEST_SUITE_P(Commands, GoldenTest, ::testing::ValuesIn(GoldenFiles()),
                         [](const auto& golden) {
                           std::string name = golden.param;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

}  // namespace
}  // namespace morvex::commands
