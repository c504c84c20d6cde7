// Interrupt, terminate and hang-up: the console program stops as a stop request does, and says so.
#include <signal.h>
#include <sys/stat.h>

#include <chrono>
#include <thread>

#include "tests/system/system_run.h"

namespace morvex::system_test {
namespace {

class Signals : public SystemTest, public ::testing::WithParamInterface<int> {
 protected:
  // Sends the signal once a file of that name is there and longer than so many bytes.
  Start SendAt(const std::string& path, off_t longer_than) const {
    return {{}, [path, longer_than](pid_t process) {
              const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
              struct stat status {};
              while (stat(path.c_str(), &status) != 0 || status.st_size <= longer_than) {
                if (std::chrono::steady_clock::now() > limit) {
                  ADD_FAILURE() << path << " does not come";
                  break;
                }
                std::this_thread::sleep_for(std::chrono::microseconds(200));
              }
              kill(process, GetParam());
            }};
  }
};

TEST_P(Signals, InTheMiddleOfAFileLeaveAPartialCopyAndSaySo) {
  const std::string bytes = Text(60'000'000);
  Put({{"a.txt", bytes}});
  scene_.Write("src/later/b.txt", "ab");
  const ProgramResult result = Run(SendAt(scene_.At("src/tijdel.enc"), 1'000'000));
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.errors.find("Interrupted: the run was stopped, the target is not complete.\n"),
            std::string::npos)
      << result.errors;
  EXPECT_NE(result.errors.find("Cut short: " + scene_.At("out/a.txt")), std::string::npos);
  EXPECT_NE(result.errors.find("Left in the source: " + scene_.At("src/tijdel.enc")),
            std::string::npos);
  EXPECT_FALSE(scene_.Exists("out/later"));
  EXPECT_TRUE(scene_.Read("src/a.txt") == bytes);
  const std::string partial = scene_.Read("out/a.txt");
  const std::string right = Copied({{"a.txt", bytes}}).at("a.txt");
  EXPECT_LT(partial.size(), right.size());
  EXPECT_TRUE(right.starts_with(partial));
  for (const std::string& line : Log()) EXPECT_FALSE(line.starts_with("gemorv")) << line;
}

TEST_P(Signals, BetweenFilesLeaveWholeCopiesAndNothingElse) {
  Files source;
  for (int i = 0; i < 3000; ++i) source["f" + std::to_string(i) + (i % 2 ? ".txt" : ".bin")] = "ab";
  source["f1.bin"] = Text(3'000'000);
  Put(source);
  const ProgramResult result = Run(SendAt(scene_.At("out/f1.bin"), 0));
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.errors.find("Interrupted: the run was stopped"), std::string::npos);
  // A stop that meets a file at work leaves it cut short; these are too small for that.
  if (result.errors.find("Left in the source") != std::string::npos) return;
  ExpectNothingWrong(source);
  EXPECT_LT(Target().size(), source.size());
}

TEST_P(Signals, DuringTheDelayEndTheProgramBeforeTheRun) {
  Put({{"a.txt", "ab"}});
  const std::string job = scene_.At("job.dat");
  const std::string program = scene_.program_folder() + "/morvex-cli";
  const std::string script = "env --default-signal \"$0\" -if \"$1\" -dy 30000 & sleep 1; kill -" +
                             std::to_string(GetParam()) + " $!; wait $!";
  // A shell without job control lets its background programs ignore interrupts, and so may whoever
  // starts the tests.
  const ProgramResult result =
      whole_run::RunProgram("/bin/bash", {"-mc", script, program, job}, scene_.work(), 60);
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.errors.find("Interrupted before the run began.\n"), std::string::npos)
      << result.errors;
  EXPECT_EQ(Target().size(), 0u);
}

INSTANTIATE_TEST_SUITE_P(Kind, Signals, ::testing::Values(SIGINT, SIGTERM, SIGHUP),
                         [](const auto& number) {
                           return std::string(number.param == SIGINT    ? "interrupt"
                                              : number.param == SIGTERM ? "terminate"
                                                                        : "hang_up");
                         });

}  // namespace
}  // namespace morvex::system_test
