// Runs the console program again and again. In the N-th run, the N-th file call of the program
// fails, or the program is killed at that call. The test ends when a run makes fewer than N file
// calls. So the system calls below the file service fail in each step of a copy, of the log and of
// the settings file.
#include <signal.h>

#include <cerrno>
#include <filesystem>
#include <iostream>

#include "tests/system/call_gate.h"
#include "tests/system/system_run.h"

namespace morvex::system_test {
namespace {

namespace fs = std::filesystem;

constexpr int kMostCalls = 2000;

struct CallFault {
  const char* name;
  int code;
};

class CallFaults : public SystemTest, public ::testing::WithParamInterface<CallFault> {
 protected:
  CallFaults() { Put(source_); }

  void SetUp() override {
    if (!CallGate::IsPossibleHere()) GTEST_SKIP() << "this system lets nobody filter its calls";
  }

  // Creates a target with old copies and a source with a stale work file. Deletes the run log and
  // the settings file.
  void StartAnew() {
    for (const char* folder : {"src", "out"}) fs::remove_all(scene_.At(folder));
    Put(source_);
    scene_.Write("src/sub/tijdel.enc", kStale);
    scene_.MakeFolder("out");
    for (const auto& [name, bytes] : old_) scene_.Write("out/" + name, bytes);
    for (const std::string& name : scene_.ProgramFolderNames()) {
      fs::remove(scene_.program_folder() + "/" + name);
    }
  }

  ProgramResult RunAndStrike(int call, int code, std::string* struck) {
    CallGate gate(call, code);
    const auto begin = [&] {
      // The sanitizer's check for leaks would make file calls of its own.
      setenv("ASAN_OPTIONS", "detect_leaks=0", 0);
      gate.Install();
    };
    const ProgramResult result = Run({begin, [&](pid_t process) { gate.Watch(process); }});
    *struck = gate.struck();
    return result;
  }

  // Checks that every file of the target except work files is right or unchanged since before the
  // run.
  void ExpectNothingHalfMade() {
    for (const auto& [name, bytes] : Target()) {
      if (name.ends_with("tijdel.enc")) continue;
      const auto old = old_.find(name);
      if (old != old_.end() && bytes == old->second) continue;
      EXPECT_TRUE(right_.contains(name) && right_.at(name) == bytes) << name << " is half made";
    }
  }

  void ExpectSource() {
    Files now = Source();
    for (const auto& [name, bytes] : source_) {
      EXPECT_TRUE(now[name] == bytes) << name << " has changed";
    }
  }

  static constexpr const char* kStale = "of an earlier run";
  const Files source_ = {{"a.txt", "ab1"}, {"b.bin", "ab2"}, {"sub/c.txt", Text(9000)}};
  const Files old_ = {{"a.txt", "an old copy"}, {"b.bin", "another"}};
  const Files right_ = Copied(source_);
};

TEST_P(CallFaults, LeaveNothingHalfMadeAndAreTold) {
  int call = 1;
  for (std::string struck; call < kMostCalls && !HasFailure(); ++call) {
    StartAnew();
    const ProgramResult result = RunAndStrike(call, GetParam().code, &struck);
    if (struck.empty()) break;
    SCOPED_TRACE("call " + std::to_string(call) + ", " + struck + "\n" + result.errors);
    ExpectSource();
    ExpectNothingHalfMade();
    const bool whole = Target() == right_;
    EXPECT_TRUE(result.status == 1 || result.status == 3 || (result.status == 0 && whole))
        << "status " << result.status << (whole ? "" : ", and a file is missing");
    EXPECT_EQ(result.status == 0, WithoutRemarks(result.errors).empty()) << result.errors;
    for (const auto& [name, bytes] : Source()) {
      if (source_.contains(name) || bytes == kStale) continue;
      EXPECT_TRUE(struck == "unlinkat" &&
                  result.errors.find("Left in the source") != std::string::npos)
          << name << " is left and nobody is told";
    }
    for (const std::string& line : Log()) EXPECT_FALSE(line.starts_with("malformed")) << line;
  }
  std::cout << call - 1 << " calls failed\n";
  EXPECT_GT(call, 50);
}

INSTANTIATE_TEST_SUITE_P(With, CallFaults,
                         ::testing::Values(CallFault{"disk_full", ENOSPC},
                                           CallFault{"input_output", EIO},
                                           CallFault{"no_permission", EACCES}),
                         [](const auto& fault) { return std::string(fault.param.name); });

class KillAtCall : public CallFaults {};

TEST_P(KillAtCall, LosesNothingThatTheNextRunDoesNotMakeGood) {
  int call = 1;
  for (std::string struck; call < kMostCalls && !HasFailure(); ++call) {
    StartAnew();
    const ProgramResult result = RunAndStrike(call, GetParam().code, &struck);
    if (struck.empty()) break;
    SCOPED_TRACE("call " + std::to_string(call) + ", " + struck);
    EXPECT_EQ(result.status, 128 + SIGKILL);
    ExpectSource();
    ExpectNothingHalfMade();
    const ProgramResult second = Run();
    EXPECT_EQ(second.status, 0) << second.errors;
    EXPECT_EQ(WithoutRemarks(second.errors), "");
    EXPECT_TRUE(Source() == source_) << "a temporary file is left";
    EXPECT_TRUE(Target() == right_);
    EXPECT_EQ(scene_.ProgramFolderNames(), (std::vector<std::string>{"Init.dat", "Morvex.log"}));
    for (const std::string& line : Log()) EXPECT_FALSE(line.starts_with("malformed")) << line;
  }
  std::cout << "killed at " << call - 1 << " calls\n";
  EXPECT_GT(call, 50);
}

INSTANTIATE_TEST_SUITE_P(With, KillAtCall, ::testing::Values(CallFault{"kill", 0}),
                         [](const auto& fault) { return std::string(fault.param.name); });

}  // namespace
}  // namespace morvex::system_test
