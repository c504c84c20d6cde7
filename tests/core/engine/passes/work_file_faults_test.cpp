// One file is copied while the N-th call on the file system fails, for N = 1, 2, 3, ... and for
// each way in which a work file can end: it is moved to a free name, moved over an old copy,
// discarded, or delivered in part after a stop request.
#include <gtest/gtest.h>

#include <set>

#include "core/engine/passes/file_step.h"
#include "tests/core/engine/folder_program.h"
#include "tests/support/failing_files.h"

namespace morvex::test {
namespace {

constexpr int kMostCalls = 100;
constexpr const char* kSource = "/s/a.txt";
constexpr const char* kTarget = "/t/a.txt";
constexpr const char* kWorkFile = "/s/tijdel.enc";
constexpr const char* kOld = "an old copy";

struct Ending {
  std::string target = kTarget;
  bool has_old_copy = false;
  bool stops = false;
  WorkFileAtStop at_stop = WorkFileAtStop::kStays;
};

class WorkFileFaults : public ::testing::Test {
 protected:
  // Copies the file once. Returns whether a call on the file system failed.
  bool CopyWithFault(const Ending& ending, const Fault& fault) {
    FolderProgram scene;
    scene.files.AddFile(kSource, kLongText);
    if (ending.has_old_copy) scene.files.AddFile(kTarget, kOld);
    FailingFiles files(scene.files);
    Program program(Host{files, scene.system, scene.user});
    program.tables = scene.program.tables;
    program.run.ArmedAt = scene.system.now + std::chrono::seconds(1);
    if (ending.stops) {
      scene.OnEveryYield([&] { program.Beeindigd = program.run.FileOffset > 0; });
    }
    files.Set(fault);
    const Outcome outcome =
        MakeProcessedCopy(program, LookUpSource(program, "/s", "a.txt"), ending.target,
                          ending.at_stop, StaleWorkFile::kNotListed);
    for (const FailedCall& call : files.failed()) failed_calls_.insert(call.name);

    EXPECT_EQ(scene.files.Bytes(kSource), kLongText);
    const bool may_stay = files.HasFailed("Discard") || ending.stops;
    EXPECT_EQ(program.run.left_work_file.empty(), !scene.files.Has(kWorkFile));
    EXPECT_TRUE(may_stay || !scene.files.Has(kWorkFile));
    if (scene.files.Has(kTarget)) {
      const std::string& bytes = scene.files.Bytes(kTarget);
      const bool is_part = outcome.kind == OutcomeKind::kStopped && kLongResult.starts_with(bytes);
      EXPECT_TRUE(bytes == kOld || bytes == kLongResult || is_part);
    }
    if (outcome.kind == OutcomeKind::kProcessed) {
      EXPECT_EQ(scene.files.Bytes(kTarget), kLongResult);
    }
    return !files.failed().empty();
  }

  void FailEachCall(const Ending& ending) {
    for (int call = 1; call < kMostCalls; ++call) {
      SCOPED_TRACE(call);
      if (!CopyWithFault(ending, {FaultKind::kError, call, ErrorNumber::kDeviceIo, false})) return;
    }
    FAIL() << "the copy does not come to an end";
  }

  std::set<std::string> failed_calls_;
};

TEST_F(WorkFileFaults, EveryCallOnAWorkFileFailsOnceAndNothingHalfMadeIsLeft) {
  FailEachCall({});
  FailEachCall({.has_old_copy = true});
  FailEachCall({.target = kSource});
  FailEachCall({.stops = true});
  FailEachCall({.stops = true, .at_stop = WorkFileAtStop::kGoes});
  for (const char* call :
       {"CreateWorkFile", "WriteAt", "Close", "MoveToFreeName", "MoveTo", "CopyTo", "Discard"}) {
    EXPECT_TRUE(failed_calls_.contains(call)) << call;
  }
}

}  // namespace
}  // namespace morvex::test
