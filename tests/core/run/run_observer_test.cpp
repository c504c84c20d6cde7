// What a run reports to its observer: every file and folder, and the hits of every row.
#include "core/program/run_observer.h"

#include "tests/core/engine/folder_program.h"
#include "tests/core/run/run_program.h"

namespace morvex::test {
namespace {

// Notes the outcomes as lines of text, in order.
class Notebook : public RunObserver {
 public:
  std::vector<std::string> lines;

  void OnOutcome(const Outcome& outcome) override {
    std::string line(outcome.path);
    if (outcome.is_folder) line += "/";
    switch (outcome.kind) {
      case OutcomeKind::kProcessed:
        line += " processed " + std::to_string(outcome.hits) + " hits";
        break;
      case OutcomeKind::kCopied:
        line += " copied";
        break;
      case OutcomeKind::kPassedOver:
        line += " passed over " + std::to_string(static_cast<int>(outcome.why));
        if (!outcome.leads_to.empty()) line += " to " + std::string(outcome.leads_to);
        break;
      case OutcomeKind::kFailed:
        line += " failed " + std::to_string(static_cast<int>(outcome.error)) + " " +
                std::string(outcome.error_path);
        break;
      case OutcomeKind::kStopped:
        line += " stopped";
        break;
      case OutcomeKind::kNotReached:
        line += " not reached";
        break;
    }
    lines.push_back(line + " " + std::to_string(outcome.bytes));
  }
};

std::string Why(PassedOver why) {
  return " passed over " + std::to_string(static_cast<int>(why)) + " ";
}

class RunObserverTest : public ::testing::Test {
 protected:
  RunObserverTest() { test_.program.observer = &notebook_; }

  RunProgram test_;
  Notebook notebook_;
};

TEST_F(RunObserverTest, EveryFileIsToldOnceWithItsOutcome) {
  test_.files.AddFile("/s/a.txt", "banana");
  test_.files.AddFile("/s/b.doc", "aaaa");
  test_.files.AddFile("/s/Morvex.txt", "a");
  test_.files.AddFile("/s/new.txt", "a", test_.system.now);
  test_.files.AddFile("/s/sub/tijdel.enc", "aa");
  test_.files.AddFile("/s/sub/recycler/x.txt", "a");
  test_.files.AddFile("/s/sub/c.txt", "a");
  test_.ArmAndGo();
  EXPECT_EQ(notebook_.lines,
            (std::vector<std::string>{"/s/a.txt processed 3 hits 6", "/s/b.doc copied 4",
                                      "/s/Morvex.txt" + Why(PassedOver::kOwnFile) + "1",
                                      "/s/new.txt" + Why(PassedOver::kChangedMeanwhile) + "1",
                                      "/s/sub/tijdel.enc" + Why(PassedOver::kStaleWorkFile) + "0",
                                      "/s/sub/c.txt processed 1 hits 1",
                                      "/s/sub/recycler/" + Why(PassedOver::kRecycleBin) + "0"}));
  EXPECT_EQ(test_.program.run.passed_over_files, 2);
  EXPECT_EQ(test_.program.run.left_out_folders, 1);
}

TEST_F(RunObserverTest, AFailureIsToldWithItsErrorAndThePathItIsAbout) {
  test_.files.AddFile("/s/a.txt", "a");
  test_.files.AddFile("/s/b.doc", "a");
  test_.files.AddFile("/s/sub/c.txt", "a");
  test_.files.fail = [](const std::string& call, const std::string& path) {
    const bool fails = (call == "OpenForReading" && path == "/s/a.txt") ||
                       (call == "CopyFile" && path == "/t/b.doc") ||
                       (call == "ListFolder" && path == "/s/sub");
    return fails ? ErrorNumber::kPermissionDenied : ErrorNumber::kNone;
  };
  test_.ArmAndGo();
  EXPECT_EQ(notebook_.lines, (std::vector<std::string>{"/s/a.txt failed 70 /s/a.txt 1",
                                                       "/s/b.doc failed 70 /s/b.doc 1",
                                                       "/s/sub/ failed 70 /s/sub 0"}));
  EXPECT_EQ(test_.program.run.failed_files, 3);
}

TEST_F(RunObserverTest, TheTargetInTheSourceAndALinkInALoopAreToldAsPassedOver) {
  Text1_Change(test_.program, kTargetBox, "/s/out");
  test_.files.AddFolder("/s/out");
  test_.files.AddFolder("/s/sub");
  test_.files.AddLink("/s/sub/up", "/s");
  test_.ArmAndGo();
  EXPECT_EQ(notebook_.lines,
            (std::vector<std::string>{"/s/out/" + Why(PassedOver::kTargetFolder) + "0",
                                      "/s/sub/up/" + Why(PassedOver::kLoop) + "0"}));
}

TEST_F(RunObserverTest, AFileThatAStopCutsShortIsToldAsStopped) {
  test_.files.AddFile("/s/a.txt", kLongText);
  test_.files.AddFile("/s/b.txt", "a");
  test_.OnEveryYield([this] {
    if (test_.program.run.FileOffset > 0) test_.program.Beeindigd = true;
  });
  test_.ArmAndGo();
  const std::string written = std::to_string(test_.files.Bytes("/t/a.txt").size());
  EXPECT_EQ(notebook_.lines,
            (std::vector<std::string>{"/s/a.txt stopped " + written, "/s/b.txt not reached 0"}));
}

TEST_F(RunObserverTest, WhatAStopLeavesUntouchedIsToldAsNotReached) {
  test_.files.AddFile("/s/0.txt", "a");
  test_.files.AddFile("/s/1/a.txt", "a");
  test_.files.AddFile("/s/1/b.txt", kLongText);
  test_.files.AddFile("/s/1/c.txt", "a");
  test_.files.AddFile("/s/1/below/d.txt", "a");
  test_.files.AddFile("/s/2/e.txt", "a");
  test_.files.AddFile("/s/last.txt", "a");
  test_.OnEveryYield([this] {
    if (test_.program.run.FileOffset > 0 && test_.program.run.FilesDone == 4) {
      test_.program.Beeindigd = true;
    }
  });
  test_.ArmAndGo();
  const std::string written = std::to_string(test_.files.Bytes("/t/1/b.txt").size());
  EXPECT_EQ(notebook_.lines,
            (std::vector<std::string>{
                "/s/0.txt processed 1 hits 1", "/s/last.txt processed 1 hits 1",
                "/s/1/a.txt processed 1 hits 1", "/s/1/b.txt stopped " + written,
                "/s/1/c.txt not reached 0", "/s/1/below/ not reached 0", "/s/2/ not reached 0"}));
}

TEST_F(RunObserverTest, AfterAStopAtTheTopEverySubFolderIsToldAsNotReached) {
  test_.files.AddFile("/s/0.txt", kLongText);
  test_.files.AddFile("/s/1/a.txt", "a");
  test_.files.AddFile("/s/more.doc", "a");
  test_.OnEveryYield([this] {
    if (test_.program.run.FileOffset > 0) test_.program.Beeindigd = true;
  });
  test_.ArmAndGo();
  ASSERT_EQ(notebook_.lines.size(), 3U);
  EXPECT_EQ(notebook_.lines[1], "/s/more.doc not reached 0");
  EXPECT_EQ(notebook_.lines[2], "/s/1/ not reached 0");
}

TEST_F(RunObserverTest, BrokenLinksAndPipesAreToldAndCounted) {
  test_.files.AddLink("/s/gone.txt", "/nowhere/Anna");
  test_.files.AddPipe("/s/sub/pipe.txt");
  test_.files.AddLink("/s/sub/way", "/s/sub/pipe.txt");
  test_.ArmAndGo();
  EXPECT_EQ(
      notebook_.lines,
      (std::vector<std::string>{"/s/gone.txt" + Why(PassedOver::kBrokenLink) + "to /nowhere/Anna 0",
                                "/s/sub/pipe.txt" + Why(PassedOver::kSpecialFile) + "0",
                                "/s/sub/way" + Why(PassedOver::kSpecialFile) + "0"}));
  EXPECT_EQ(test_.program.run.passed_over_files, 3);
  EXPECT_TRUE(test_.program.run.LacksCopies());
  EXPECT_EQ(test_.files.Below("/t"), std::vector<std::string>{"/t/sub/"});
}

TEST_F(RunObserverTest, ALinkWhoseTextCannotBeReadIsToldWithoutIt) {
  test_.files.AddLink("/s/gone.txt", "/nowhere");
  test_.files.fail = FailOn("LinkText", "/s/gone.txt", ErrorNumber::kPermissionDenied);
  test_.ArmAndGo();
  EXPECT_EQ(notebook_.lines,
            std::vector<std::string>{"/s/gone.txt" + Why(PassedOver::kBrokenLink) + "0"});
}

TEST_F(RunObserverTest, ASingleFileIsTold) {
  test_.files.AddFile("/s/a.txt", "banana");
  Text1_Change(test_.program, kSourceBox, "/s/a.txt");
  Text1_Change(test_.program, kTargetBox, "/t/copy.txt");
  test_.ArmAndGo();
  EXPECT_EQ(notebook_.lines, std::vector<std::string>{"/s/a.txt processed 3 hits 6"});
}

TEST_F(RunObserverTest, HitsAreCountedByRowOfTheList) {
  test_.ApplyRows({{"", "nothing"}, {"a", "b"}, {"x*;", "y"}, {"unused", "z"}}, '*');
  test_.files.AddFile("/s/1.txt", "a xqq; a");
  test_.files.AddFile("/s/2.txt", "aa x1;x2;");
  test_.ArmAndGo();
  EXPECT_EQ(test_.program.run.hits_of_rows, (std::vector<std::int64_t>{0, 4, 3, 0}));
}

TEST(RunWithoutObserver, CollectsNoHitsByRow) {
  RunProgram test;
  test.files.AddFile("/s/a.txt", "banana");
  test.ArmAndGo();
  EXPECT_EQ(test.program.run.HitsTotal, 3);
  EXPECT_TRUE(test.program.run.hits_of_rows.empty());
}

}  // namespace
}  // namespace morvex::test
