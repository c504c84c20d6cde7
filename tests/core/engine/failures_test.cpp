// What is told of files and folders without a copy.
#include "core/engine/failures.h"

#include <gtest/gtest.h>

#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

TEST(Failures, AnErrorIsLoggedAsPathAndErrorOnTwoLines) {
  TestProgram test;
  test.program.run.LoggingOn = true;
  LogError(test.program, "/s/a.txt", ErrorNumber::kPermissionDenied);
  EXPECT_EQ(test.LogMessages(),
            (std::vector<std::string>{"/s/a.txt", "Error 70: Permission denied"}));
}

TEST(Failures, WithoutLoggingAnErrorLeavesNoLine) {
  TestProgram test;
  LogError(test.program, "/s/a.txt", ErrorNumber::kPermissionDenied);
  EXPECT_FALSE(test.files.Has("/program/Morvex.log"));
}

TEST(Failures, OfTheFailuresTheFirstIsKept) {
  TestProgram test;
  CountFailure(test.program, "/s/a", ErrorNumber::kPathFileAccess);
  CountFailure(test.program, "/s/b", ErrorNumber::kPermissionDenied);
  EXPECT_EQ(test.program.run.failed_files, 2);
  EXPECT_EQ(test.program.run.first_failure.path, "/s/a");
  EXPECT_EQ(test.program.run.first_failure.error, ErrorNumber::kPathFileAccess);
}

}  // namespace
}  // namespace morvex::test
