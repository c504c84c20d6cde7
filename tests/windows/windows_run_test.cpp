// The random whole runs of the console program on Windows, judged by the same model. The seeds are
// fixed. MORVEX_SEED=N runs one seed and keeps its folder; MORVEX_SEEDS=N runs the first N seeds.

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

#include "tests/windows/windows_scene.h"

namespace morvex::whole_run {
namespace {

constexpr std::uint64_t kSeeds = 120;

std::uint64_t NumberIn(const char* variable, std::uint64_t otherwise) {
  const char* text = std::getenv(variable);
  return text == nullptr ? otherwise : std::strtoull(text, nullptr, 10);
}

void WriteEntries(const Scene& scene, const RandomCase& made) {
  for (const Entry& entry : made.entries) {
    const std::string path = scene.At(entry.name);
    MakeFolders(entry.is_folder ? path : ParentPath(path));
    if (entry.is_folder) continue;
    WriteWholeFile(path, entry.bytes);
    SetPermissions(path, entry.permissions);
    SetModified(path, entry.modified_ns);
  }
  if (!made.old_init_dat.empty()) {
    WriteWholeFile(scene.program_folder() + "/Init.dat", made.old_init_dat);
  }
  if (!made.old_log.empty()) {
    WriteWholeFile(scene.program_folder() + "/Morvex.log", made.old_log);
  }
}

// Predicts the run and runs the program. The model reads the settings with paths as it writes them;
// the program reads the settings with Windows paths.
ProgramResult RunOnWindows(const WindowsScene& scene, const RandomCase& made,
                           RunOutcome* expected) {
  *expected = scene.Predict(made.settings_name, made.settings_argument, made.delay_ms);
  const std::string settings = scene.At(made.settings_name);
  const std::string bytes = ReadWholeFile(settings);
  WriteWholeFile(settings, WindowsSettings(bytes));
  std::vector<std::string> arguments = made.arguments;
  for (std::string& argument : arguments) {
    if (argument == made.settings_argument) argument = WindowsPath(argument);
  }
  const ProgramResult result = scene.RunInModelText(arguments);
  WriteWholeFile(settings, bytes);
  for (const Entry& entry : made.entries) {
    if (entry.name == made.settings_name) SetModified(settings, entry.modified_ns);
  }
  return result;
}

void CheckSeed(std::uint64_t seed, bool keep) {
  WindowsScene scene;
  const RandomCase made = ForWindows(MakeRandomCase(seed, scene.work()));
  WriteEntries(scene, made);
  RunOutcome expected;
  const ProgramResult result = RunOnWindows(scene, made, &expected);
  const std::string problems = Problems(scene, expected, result, made.old_log);
  EXPECT_TRUE(problems.empty()) << "seed " << seed << " (repeat it alone with MORVEX_SEED=" << seed
                                << ")\n"
                                << problems;
  if (keep) {
    scene.Keep();
    std::cout << "seed " << seed << " ran in " << scene.root() << "\n";
  }
}

TEST(WindowsRun, TheProgramIsGiven) {
  const char* program = std::getenv("MORVEX_CLI");
  ASSERT_NE(program, nullptr) << "MORVEX_CLI must name morvex-cli.exe";
  ASSERT_NE(std::getenv("MORVEX_UNDER"), nullptr) << "MORVEX_UNDER must name what runs it";
  EXPECT_EQ(ReadWholeFile(program).substr(0, 2), "MZ");
}

TEST(WindowsRun, RandomTreesLeaveWhatTheModelPredicts) {
  if (std::getenv("MORVEX_SEED") != nullptr) {
    CheckSeed(NumberIn("MORVEX_SEED", 0), true);
    return;
  }
  const std::uint64_t seeds = NumberIn("MORVEX_SEEDS", kSeeds);
  for (std::uint64_t seed = 0; seed < seeds; ++seed) CheckSeed(seed, false);
}

}  // namespace
}  // namespace morvex::whole_run
