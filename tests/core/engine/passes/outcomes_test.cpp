// How outcomes are counted, logged and reported.
#include "core/engine/passes/outcomes.h"

#include <gtest/gtest.h>

#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

TEST(Outcomes, AnErrorIsLoggedAsPathAndErrorOnTwoLines) {
  TestProgram test;
  test.program.run.LoggingOn = true;
  LogError(test.program, "/s/a.txt", ErrorNumber::kPermissionDenied);
  EXPECT_EQ(test.LogMessages(),
            (std::vector<std::string>{"/s/a.txt", "Error 70: Permission denied"}));
}

TEST(Outcomes, WithoutLoggingAnErrorLeavesNoLine) {
  TestProgram test;
  LogError(test.program, "/s/a.txt", ErrorNumber::kPermissionDenied);
  EXPECT_FALSE(test.files.Has("/program/Morvex.log"));
}

TEST(Outcomes, OfTheFailuresTheFirstIsKept) {
  TestProgram test;
  NoteFailedFolder(test.program, "/s/a", ErrorNumber::kPathFileAccess);
  NoteFailedFolder(test.program, "/s/b", ErrorNumber::kPermissionDenied);
  EXPECT_EQ(test.program.run.failed_files, 2);
  EXPECT_EQ(test.program.run.first_failure.path, "/s/a");
  EXPECT_EQ(test.program.run.first_failure.error, ErrorNumber::kPathFileAccess);
}

TEST(Outcomes, WhatIsPassedOverIsCountedOnlyWhenTheSourceMissesIt) {
  TestProgram test;
  for (const bool is_folder : {false, true}) {
    for (const PassedOver why :
         {PassedOver::kOwnFile, PassedOver::kRecycleBin, PassedOver::kChangedMeanwhile,
          PassedOver::kNameEnding, PassedOver::kStaleWorkFile, PassedOver::kTargetFolder,
          PassedOver::kLoop, PassedOver::kBrokenLink, PassedOver::kSpecialFile,
          PassedOver::kLinkedTooOften}) {
      Outcome outcome;
      outcome.kind = OutcomeKind::kPassedOver;
      outcome.is_folder = is_folder;
      outcome.why = why;
      NoteOutcome(test.program, outcome);
    }
  }
  EXPECT_EQ(test.program.run.passed_over_files, 7);
  EXPECT_EQ(test.program.run.left_out_folders, 7);
  EXPECT_EQ(test.program.run.failed_files, 0);
}

TEST(Outcomes, WhatHasACopyOrWasStoppedIsNotCounted) {
  TestProgram test;
  for (const OutcomeKind kind :
       {OutcomeKind::kProcessed, OutcomeKind::kCopied, OutcomeKind::kStopped}) {
    Outcome outcome;
    outcome.kind = kind;
    NoteOutcome(test.program, outcome);
  }
  const RunState& run = test.program.run;
  EXPECT_EQ(run.passed_over_files + run.left_out_folders + run.failed_files, 0);
}

}  // namespace
}  // namespace morvex::test
