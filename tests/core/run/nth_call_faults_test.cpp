// Whole unattended runs in which the N-th call on the file system fails, for N = 1, 2, 3, ... until
// a run finishes without a failed call. Either that call alone fails or all later calls fail, too.
// A call that fails returns one of several errors, or reads or writes too few bytes. After each
// run, the source has every byte, no file of the target is incomplete or mixes two files, no work
// file of the run is left unless deleting it failed, and the counters, the log and the exit status
// say what happened.
#include <gtest/gtest.h>

#include <iostream>
#include <map>
#include <string_view>
#include <utility>

#include "tests/core/run/run_program.h"
#include "tests/support/failing_files.h"

namespace morvex::test {
namespace {

constexpr int kMostCalls = 5000;
constexpr const char* kList = "/list.txt";

using Contents = std::map<std::string, std::string>;

struct Scenario {
  std::string name;
  std::string source;
  std::string target;
  Contents files;  // of the source, and all other files that must not change
  std::map<std::string, std::string> links;  // by path: the path that the link leads to
  Contents before;                           // what the target holds before the run
  std::string left_over;                     // path of a stale work file
  bool one_file_system = true;
  bool target_is_there = true;
  bool logging = true;
};

void PrintTo(const Scenario& scenario, std::ostream* out) { *out << scenario.name; }

const Contents kTree = {{"/s/1.txt", "aca"},
                        {"/s/2.bin", "aca"},
                        {"/s/sub/3.txt", "aaaa"},
                        {"/s/sub/deep/4.bin", "aaaa"},
                        {"/s/other/3.txt", "another"}};

Contents Below(const MemoryFiles& disk, const std::string& folder) {
  Contents contents;
  for (const std::string& path : disk.Below(folder)) {
    if (!path.ends_with('/') && !disk.IsLink(path)) contents[path] = disk.Bytes(path);
  }
  return contents;
}

// One run of a scenario, with its own disk in memory.
class FaultyRun {
 public:
  FaultyRun(const Scenario& scenario, const Fault& fault) : scenario_(scenario) {
    MemoryFiles& disk = host_.files;
    disk.moves_in_one_step = scenario.one_file_system;
    for (const auto& [path, bytes] : scenario.files) disk.AddFile(path, bytes);
    for (const auto& [path, bytes] : scenario.before) disk.AddFile(path, bytes);
    for (const auto& [path, leads_to] : scenario.links) disk.AddLink(path, leads_to);
    if (!scenario.left_over.empty()) disk.AddFile(scenario.left_over, "of an earlier run");
    const bool one_file = scenario.target.ends_with(".txt");
    if (scenario.target_is_there && !one_file) disk.AddFolder(scenario.target);
    if (one_file) disk.AddFolder("/t");
    disk.AddFile(kList, kListText);
    disk.AddFile("/job.dat", Settings());
    host_.system.command_line = "-if /job.dat";
    host_.user.answers = {Answer::kYes};
    files_.Set(fault);
    EXPECT_EQ(StartUp(program_), ErrorNumber::kNone);
  }

  bool any_failed() const { return !files_.failed().empty(); }
  std::size_t failed_calls() const { return files_.failed().size(); }
  const FailingFiles& files() const { return files_; }
  const Program& program() const { return program_; }
  const MemoryFiles& disk() const { return host_.files; }

  std::string Settings() const {
    return SettingsText(scenario_.source, scenario_.target, scenario_.logging);
  }
  // The target's files, by path, without those of the source.
  Contents Target() const {
    const MemoryFiles& disk = host_.files;
    if (!disk.IsFolder(scenario_.target)) return Below(disk, "/t");
    Contents target = Below(disk, scenario_.target);
    for (const auto& [path, bytes] : scenario_.files) target.erase(path);
    return target;
  }
  std::vector<std::string> LogMessages() const { return host_.LogMessages(); }

 private:
  const Scenario& scenario_;
  TestProgram host_;  // for its disk, clock and user
  FailingFiles files_{host_.files};
  Program program_{Host{files_, host_.system, host_.user}};
};

class NthCall : public ::testing::TestWithParam<Scenario> {
 protected:
  static void TearDownTestSuite() {
    std::cout << "N-th call: " << scenarios << " scenarios, " << runs << " runs with "
              << failed_calls << " failed calls, " << findings << " findings\n";
  }

  void SetUp() override {
    ++scenarios;
    const FaultyRun run(GetParam(), {});
    faultless_target_ = run.Target();
    faultless_log_ = run.LogMessages();
    faultless_passed_over_ = run.program().run.passed_over_files;
    faultless_end_ = ExitStatus(run.program());
  }

  // Repeats the run so that the first call fails, then the second call, and so on.
  void FailEachCall(Fault fault) {
    for (fault.call = 1; fault.call < kMostCalls; ++fault.call) {
      const FaultyRun run(GetParam(), fault);
      if (!run.any_failed()) return;
      SCOPED_TRACE(GetParam().name + ", error " + std::to_string(static_cast<int>(fault.error)) +
                   (fault.from_then_on ? " from call " : " at call ") + std::to_string(fault.call) +
                   ": " + run.files().Description());
      ++runs;
      failed_calls += run.failed_calls();
      const int before = Failures();
      Check(run, fault);
      findings += Failures() > before ? 1 : 0;
    }
    FAIL() << "the run does not come to an end";
  }

 private:
  static int Failures() {
    return ::testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
  }

  void Check(const FaultyRun& run, const Fault& fault) {
    // If there was no run, or if the disk was full in a sub-folder, the forms stay loaded.
    const RunState& state = run.program().run;
    EXPECT_TRUE(HasEnded(run.program()) || state.disk_full || state.end == RunEnd::kNone);
    EXPECT_FALSE(run.program().run.working);
    CheckSource(run);
    CheckTarget(run, fault);
    CheckLog(run, fault);
    CheckProgramFolder(run);
  }

  // Whether the list file counted as missing, so that the run began without a list.
  static bool IsWithoutList(const FaultyRun& run, const Fault& fault) {
    const std::vector<FailedCall>& failed = run.files().failed();
    return fault.error == ErrorNumber::kFileNotFound &&
           std::any_of(failed.begin(), failed.end(), [](const FailedCall& call) {
             return call.name == "LookUpFile" && call.path == kList;
           });
  }

  // Returns the bytes that the target's file `path` must have; empty when there must be no file.
  std::string Right(const std::string& path) const {
    const auto faultless = faultless_target_.find(path);
    if (faultless != faultless_target_.end()) return faultless->second;
    // In a run without faults, a link of the target may stay at this path. After a fault, a copy
    // may take the link's place.
    const Scenario& scenario = GetParam();
    const auto source = scenario.files.find(scenario.source + path.substr(scenario.target.size()));
    if (source == scenario.files.end()) return "";
    std::string right = source->second;
    if (path.ends_with(".txt")) std::replace(right.begin(), right.end(), 'a', 'b');
    return right;
  }

  void CheckSource(const FaultyRun& run) {
    for (const auto& [path, bytes] : GetParam().files) {
      ASSERT_TRUE(run.disk().Has(path)) << path;
      EXPECT_EQ(run.disk().Bytes(path), bytes) << path;
    }
    for (const std::string& path : run.disk().Below("/")) {
      if (!path.ends_with("/tijdel.enc") || GetParam().files.contains(path)) continue;
      const bool could_not_be_deleted =
          run.files().HasFailed("DeleteFile") || run.files().HasFailed("Discard");
      const bool not_touched =
          path == GetParam().left_over && run.disk().Bytes(path) == "of an earlier run";
      EXPECT_TRUE(could_not_be_deleted || not_touched) << path;
    }
  }

  // Checks that every file of the target is as a run without faults makes it, or as it was before,
  // or missing. If a file is not as a run without faults makes it, the program must report a
  // failure.
  void CheckTarget(const FaultyRun& run, const Fault& fault) {
    const Contents target = run.Target();
    const Contents& before = GetParam().before;
    for (const auto& [path, bytes] : target) {
      if (path.ends_with("/tijdel.enc")) continue;
      const auto old = before.find(path);
      if (old != before.end() && bytes == old->second) continue;
      if (IsWithoutList(run, fault)) continue;
      EXPECT_EQ(bytes, Right(path)) << path;
    }
    bool complete = true;
    for (const auto& [path, bytes] : faultless_target_) {
      const auto found = target.find(path);
      complete = complete && found != target.end() && found->second == bytes;
    }
    const RunState& state = run.program().run;
    const bool told = state.end != RunEnd::kFinished || state.failed_files > 0 ||
                      state.passed_over_files > faultless_passed_over_ || IsWithoutList(run, fault);
    EXPECT_TRUE(complete || told) << "a file is missing and nobody is told";
    const int status = ExitStatus(run.program());
    if (state.end != RunEnd::kFinished) {
      EXPECT_EQ(status, 1);
    } else if (IsWithoutList(run, fault)) {
      EXPECT_EQ(status, state.failed_files == 0 ? faultless_end_ : 3);
    } else {
      EXPECT_EQ(status, complete && state.failed_files == 0 ? faultless_end_ : 3);
    }
  }

  // Checks that the totals in the log are those of the run, unless a line could not be written.
  void CheckLog(const FaultyRun& run, const Fault& fault) {
    const std::vector<std::string> log = run.LogMessages();
    if (run.files().HasFailed("AppendToFile")) return;
    const RunState& state = run.program().run;
    std::int64_t hits = 0;
    for (const std::string& line : log) {
      EXPECT_FALSE(line.starts_with("malformed")) << line;
      if (line.starts_with("gemorvexeerd: ")) {
        EXPECT_EQ(line, "gemorvexeerd: " + std::to_string(state.FilesDone) + " bestanden");
      }
      if (line.starts_with("Overgeslagen: ")) {
        EXPECT_EQ(line, "Overgeslagen: " + std::to_string(state.FilesSkipped) + " bestanden");
      }
      if (line.starts_with("Vervangingen: ")) {
        EXPECT_EQ(line, "Vervangingen: " + std::to_string(state.HitsTotal));
      }
      // A processed file has the same hits as in a run without faults.
      constexpr std::string_view kHits = "  ----  Hits: ";
      const std::size_t at = line.find(kHits);
      if (at == std::string::npos || IsWithoutList(run, fault)) continue;
      hits += std::stoll(line.substr(at + kHits.size()));
      EXPECT_NE(std::find(faultless_log_.begin(), faultless_log_.end(), line), faultless_log_.end())
          << line;
    }
    const bool all_logged = GetParam().logging && !IsWithoutList(run, fault);
    EXPECT_EQ(hits, all_logged ? state.HitsTotal : hits);
  }

  void CheckProgramFolder(const FaultyRun& run) {
    for (const auto& [path, bytes] : Below(run.disk(), "/program")) {
      if (path == "/program/Morvex.log") continue;
      EXPECT_EQ(path, "/program/Init.dat");
      EXPECT_EQ(bytes, run.Settings());
    }
  }

  Contents faultless_target_;
  std::vector<std::string> faultless_log_;
  std::int64_t faultless_passed_over_ = 0;
  int faultless_end_ = 0;

  static inline int scenarios = 0;
  static inline std::int64_t runs = 0;
  static inline std::size_t failed_calls = 0;
  static inline int findings = 0;
};

TEST_P(NthCall, EndsWell) {
  for (const ErrorNumber error :
       {ErrorNumber::kDiskFull, ErrorNumber::kDeviceIo, ErrorNumber::kPermissionDenied,
        ErrorNumber::kPathFileAccess, ErrorNumber::kFileNotFound}) {
    for (const bool from_then_on : {false, true}) {
      FailEachCall({FaultKind::kError, 0, error, from_then_on});
    }
  }
  for (const bool from_then_on : {false, true}) {
    FailEachCall({FaultKind::kShortRead, 0, ErrorNumber::kNone, from_then_on});
    FailEachCall({FaultKind::kShortWrite, 0, ErrorNumber::kDiskFull, from_then_on});
  }
}

Contents LongFiles() {
  std::string text;
  while (text.size() < 400'000) text += "aca" + std::to_string(text.size());
  return {{"/s/1.txt", text}, {"/s/2.bin", text}};
}

std::vector<Scenario> Scenarios() {
  std::vector<Scenario> all = {
      {"folders", "/s", "/t", kTree, {}, {}, ""},
      {"one_file", "/s/1.txt", "/t/1.txt", kTree, {}, {}, ""},
      {"long_files", "/s", "/t", LongFiles(), {}, {}, ""},
      {"target_in_source", "/s", "/s/out", kTree, {}, {}, ""},
      {"source_in_target",
       "/t/s",
       "/t",
       {{"/t/s/1.txt", "aca"}, {"/t/s/s/2.txt", "a"}},
       {},
       {},
       ""},
      {"target_is_source", "/s", "/s", kTree, {}, {}, ""},
      {"one_file_onto_itself", "/s/1.txt", "/s/1.txt", kTree, {}, {}, ""},
      {"links_in_source",
       "/s",
       "/t",
       kTree,
       {{"/s/loop", "/s"}, {"/s/l", "/s/sub"}, {"/s/l.txt", "/s/1.txt"}, {"/s/to", "/t/in"}},
       {{"/t/in/5.txt", "aa"}},
       ""},
      {"links_in_target",
       "/s",
       "/t",
       kTree,
       {{"/t/sub", "/s/other"}, {"/t/1.txt", "/s/1.txt"}, {"/t/2.bin", "/s/2.bin"}},
       {},
       ""},
      {"old_copies", "/s", "/t", kTree, {}, {{"/t/1.txt", "old"}, {"/t/sub/3.txt", "old"}}, ""},
      {"left_over", "/s", "/t", kTree, {}, {}, "/s/sub/tijdel.enc"},
      {"link_to_left_over",
       "/s",
       "/t",
       {{"/s/2.bin", "a"}, {"/s/tijdel.enc", "aca"}},
       {{"/s/1.txt", "/s/tijdel.enc"}},
       {},
       ""},
      {"temporary_name_as_source",
       "/s/tijdel.enc",
       "/t/1.txt",
       {{"/s/tijdel.enc", "aca"}},
       {},
       {},
       ""},
      {"skip_rules",
       "/s",
       "/t",
       {{"/s/Morvex.txt", "a"}, {"/s/1.txt", "a"}, {"/s/Recycler/2.txt", "a"}},
       {},
       {},
       ""},
  };
  Scenario other_disk = all[0];
  other_disk.name = "other_file_system";
  other_disk.one_file_system = false;
  Scenario one_file_other_disk = all[1];
  one_file_other_disk.name = "one_file_other_file_system";
  one_file_other_disk.one_file_system = false;
  Scenario no_target = all[0];
  no_target.name = "target_to_be_made";
  no_target.target = "/t/new/deeper";
  no_target.target_is_there = false;
  Scenario no_log = all[0];
  no_log.name = "no_log";
  no_log.logging = false;
  for (Scenario& more : {std::ref(other_disk), std::ref(one_file_other_disk), std::ref(no_target),
                         std::ref(no_log)}) {
    all.push_back(more);
  }
  return all;
}

INSTANTIATE_TEST_SUITE_P(Scenarios, NthCall, ::testing::ValuesIn(Scenarios()),
                         [](const auto& scenario) { return scenario.param.name; });

}  // namespace
}  // namespace morvex::test
