// Every command, help text and message against a file that holds the commands, then what they say
// and their exit status. With MORVEX_GOLDEN=write in the environment the files are written anew
// from what the program now says; look at the difference before it is kept.
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

// The lines in front of the first that begins with "---": a script.
std::string ScriptOf(const std::string& golden) {
  std::istringstream lines(golden);
  std::string script;
  for (std::string line; std::getline(lines, line) && !line.starts_with("---");) {
    script += line + "\n";
  }
  return script;
}

// A last line without its end is shown by a mark.
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
