// A run over 2,000 files is killed at a random moment. Then a second run produces exactly the right
// tree, whatever the first run left. Every second round starts with an empty target, the others
// with unchanged copies of the source in the target. The test runs in several blocks:
// MORVEX_KILL_ROUNDS=N sets the number of rounds per block; MORVEX_SEED=S chooses other moments.
#include <signal.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <thread>

#include "tests/system/system_run.h"

namespace morvex::system_test {
namespace {

using std::chrono::microseconds;
using std::chrono::steady_clock;

constexpr int kFiles = 2000;
// More rounds would take too long with sanitizers. They are not needed, because
// call_faults_test.cpp kills a run at each single call.
constexpr int kUsualRounds = 8;

int FromEnvironment(const char* name, int usual) {
  const char* value = std::getenv(name);
  return value == nullptr ? usual : std::atoi(value);
}

// Returns small files and some large ones, a hundred per folder. A run copies every fifth file
// unchanged.
Files ManyFiles() {
  Files files;
  for (int i = 0; i < kFiles; ++i) {
    const std::string folder = i < 100 ? "" : "sub" + std::to_string(i / 100) + "/";
    const std::size_t size = i % 100 == 50 ? 300'000 : static_cast<std::size_t>(i % 97);
    files[folder + "f" + std::to_string(i) + (i % 5 == 0 ? ".bin" : ".txt")] =
        Text(size) + std::to_string(i);
  }
  return files;
}

class Kill : public SystemTest, public ::testing::WithParamInterface<int> {
 protected:
  Kill() { Put(source_); }

  microseconds TimeOfARun() {
    const auto start = steady_clock::now();
    EXPECT_EQ(Run().status, 0);
    return std::chrono::duration_cast<microseconds>(steady_clock::now() - start);
  }

  // Kills a run when `moment` has passed. Returns whether the run was still working.
  bool RunAndKill(microseconds moment) {
    const ProgramResult result = Run({{}, [moment](pid_t process) {
                                        std::this_thread::sleep_for(moment);
                                        kill(process, SIGKILL);
                                      }});
    return result.status == 128 + SIGKILL;
  }

  // Checks that every file of the target is right or unchanged since before the run; work files are
  // ignored.
  void ExpectNothingHalfMade(bool old_copies) {
    for (const auto& [name, bytes] : Target()) {
      if (name.ends_with("tijdel.enc")) continue;
      const bool right = bytes == right_.at(name);
      const bool old = old_copies && bytes == source_.at(name);
      ASSERT_TRUE(right || old) << name << " is half made";
    }
  }

  void ExpectRightTree() {
    ASSERT_TRUE(Source() == source_) << "the source has changed, or holds a temporary file";
    ASSERT_TRUE(Target() == right_);
    for (const std::string& name : scene_.ProgramFolderNames()) {
      ASSERT_TRUE(name == "Init.dat" || name == "Morvex.log") << name;
    }
  }

  const Files source_ = ManyFiles();
  const Files right_ = Copied(source_);
};

TEST_P(Kill, AtAnyMomentLosesNothingThatTheNextRunDoesNotMakeGood) {
  const microseconds whole = TimeOfARun();
  std::mt19937 random(static_cast<unsigned>(FromEnvironment("MORVEX_SEED", 1) * 100 + GetParam()));
  const int rounds = FromEnvironment("MORVEX_KILL_ROUNDS", kUsualRounds);
  int killed = 0;
  for (int round = 0; round < rounds && !HasFatalFailure(); ++round) {
    const microseconds moment(random() % static_cast<unsigned>(whole.count() + 1));
    SCOPED_TRACE("round " + std::to_string(round) + ", killed after " +
                 std::to_string(moment.count()) + " microseconds");
    const bool old_copies = round % 2 == 1;
    std::filesystem::remove_all(scene_.At("out"));
    if (old_copies) {
      std::filesystem::copy(scene_.At("src"), scene_.At("out"),
                            std::filesystem::copy_options::recursive);
    } else {
      scene_.MakeFolder("out");
    }
    killed += RunAndKill(moment) ? 1 : 0;
    ExpectNothingHalfMade(old_copies);
    const ProgramResult second = Run();
    ASSERT_EQ(second.status, 0) << second.errors;
    ASSERT_EQ(WithoutRemarks(second.errors), "");
    ExpectRightTree();
  }
  std::cout << rounds << " rounds, " << killed << " of them killed at work\n";
  EXPECT_GT(killed, rounds / 4);
}

INSTANTIATE_TEST_SUITE_P(Block, Kill, ::testing::Range(0, 4));

}  // namespace
}  // namespace morvex::system_test
