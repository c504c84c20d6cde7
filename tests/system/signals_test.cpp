// Interrupt, terminate and hang-up signals stop the console program like a stop request, and the
// program says so.
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <filesystem>
#include <functional>
#include <iterator>

#include "tests/system/system_run.h"

namespace morvex::system_test {
namespace {

// The largest number of runs. On a busy machine, a run may end before its signal comes; then the
// test starts another run.
constexpr int kAttempts = 10;

class Signals : public SystemTest, public ::testing::WithParamInterface<int> {
 protected:
  // Starts a run and sends the signal once `holds` returns true. If the run ends before that,
  // starts another run.
  ProgramResult RunAndSendWhen(const std::function<bool()>& holds) {
    const auto send = [&](pid_t process) {
      Await("the moment of the signal", [&] { return holds() || HasEnded(process); });
      kill(process, GetParam());
    };
    ProgramResult result;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
      result = Run({{}, send});
      if (result.status != 0) break;
      std::filesystem::remove_all(scene_.At("out"));
      scene_.MakeFolder("out");
      std::filesystem::remove(scene_.program_folder() + "/Morvex.log");
    }
    return result;
  }

 private:
  // Returns whether the process has ended, without collecting its exit status.
  static bool HasEnded(pid_t process) {
    siginfo_t info{};
    return waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid == process;
  }
};

TEST_P(Signals, InTheMiddleOfAFileLeaveAPartialCopyAndSaySo) {
  const std::string bytes = Text(60'000'000);
  Put({{"a.txt", bytes}});
  scene_.Write("src/later/b.txt", "ab");
  const std::string temporary = scene_.At("src/tijdel.enc");
  const ProgramResult result = RunAndSendWhen([&] {
    struct stat status {};
    return stat(temporary.c_str(), &status) == 0 && status.st_size > 1'000'000;
  });
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
  Put(source);
  const ProgramResult result = RunAndSendWhen([&] {
    constexpr std::ptrdiff_t kSome = 20;
    return std::distance(std::filesystem::directory_iterator(scene_.At("out")), {}) > kSome;
  });
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.errors.find("Interrupted: the run was stopped"), std::string::npos);
  // The stop may come in the middle of a file. The program then leaves its work file in the source.
  if (result.errors.find("Left in the source") != std::string::npos) return;
  ExpectNothingWrong(source);
  EXPECT_LT(Target().size(), source.size());
}

TEST_P(Signals, DuringTheDelayEndTheProgramBeforeTheRun) {
  Put({{"a.txt", "ab"}});
  const ProgramResult result = Run({{},
                                    [](pid_t process) {
                                      AwaitHandler(process, GetParam());
                                      kill(process, GetParam());
                                    },
                                    {"-dy", "30000"}});
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
