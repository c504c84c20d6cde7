// Random whole runs of the console program, each judged by the model. The seeds are fixed, so that
// failures repeat. MORVEX_SEED=N runs one seed and keeps its folder; MORVEX_SEED=N-M runs a range
// of seeds.

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <sstream>

#include "program_run.h"
#include "random_case.h"

namespace morvex::whole_run {
namespace {

constexpr std::uint64_t kBlocks = 24;
constexpr std::uint64_t kSeedsPerBlock = 20;

void WriteEntries(const Scene& scene, const RandomCase& made) {
  for (const Entry& entry : made.entries) {
    const std::string path = scene.At(entry.name);
    if (entry.is_folder) {
      MakeFolders(path);
      continue;
    }
    MakeFolders(ParentPath(path));
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

std::string Described(const RandomCase& made) {
  std::ostringstream text;
  text << "  " << made.description << ", arguments:";
  for (const std::string& argument : made.arguments) {
    text << " [" << Escaped(argument) << "]";
  }
  text << "\n";
  for (const Entry& entry : made.entries) {
    text << "  " << (entry.is_folder ? "folder " : "file   ") << Escaped(entry.name);
    if (!entry.is_folder && entry.bytes.size() <= 2000) {
      text << " = " << Escaped(entry.bytes);
    } else if (!entry.is_folder) {
      text << " (" << entry.bytes.size() << " bytes)";
    }
    text << "\n";
  }
  return text.str();
}

void CheckSeed(std::uint64_t seed, bool keep) {
  Scene scene;
  const RandomCase made = MakeRandomCase(seed, scene.work());
  WriteEntries(scene, made);
  RunInput input = scene.Input(made.settings_name);
  input.settings_path = made.settings_argument;
  input.delay_ms = made.delay_ms;
  const RunOutcome expected = PredictRun(input);
  const ProgramResult result = scene.Run(made.arguments);
  const std::string problems = Problems(scene, expected, result, made.old_log);
  EXPECT_TRUE(problems.empty()) << "seed " << seed << " (repeat it alone with MORVEX_SEED=" << seed
                                << ")\n"
                                << problems << "the case:\n"
                                << Described(made);
  if (keep) {
    scene.Keep();
    std::cout << "seed " << seed << " ran in " << scene.root() << "\n";
  }
}

class WholeRun : public testing::TestWithParam<std::uint64_t> {};

TEST_P(WholeRun, LeavesWhatTheModelPredicts) {
  if (std::getenv("MORVEX_SEED") != nullptr) {
    GTEST_SKIP() << "MORVEX_SEED names the seeds to run";
  }
  for (std::uint64_t at = 0; at < kSeedsPerBlock; ++at) {
    CheckSeed(GetParam() * kSeedsPerBlock + at, false);
  }
}

INSTANTIATE_TEST_SUITE_P(Block, WholeRun, testing::Range(std::uint64_t{0}, kBlocks));

TEST(WholeRunByHand, RunsTheSeedsThatMorvexSeedNames) {
  const char* wanted = std::getenv("MORVEX_SEED");
  if (wanted == nullptr) {
    GTEST_SKIP() << "MORVEX_SEED is not set";
  }
  char* end = nullptr;
  const std::uint64_t first = std::strtoull(wanted, &end, 10);
  const std::uint64_t last = *end == '-' ? std::strtoull(end + 1, nullptr, 10) : first;
  for (std::uint64_t seed = first; seed <= last; ++seed) {
    CheckSeed(seed, first == last);
  }
}

}  // namespace
}  // namespace morvex::whole_run
