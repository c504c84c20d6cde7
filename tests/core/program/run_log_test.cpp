// The run log and the debug log.
#include "core/program/run_log.h"

#include <gtest/gtest.h>

#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

constexpr const char* kLog = "/program/Morvex.log";
constexpr const char* kDebug = "/program/Debug.log";

class RunLogTest : public ::testing::Test {
 protected:
  RunLogTest() { test_.program.run.LoggingOn = true; }

  TestProgram test_;
};

TEST_F(RunLogTest, ARecordIsTheTimeABlankAndTheMessageInQuotes) {
  test_.system.time_text = "23:14:37";
  gLog(test_.program, "message");
  EXPECT_EQ(test_.files.Bytes(kLog), "\"23:14:37 message\"\r\n");
}

TEST_F(RunLogTest, RecordsAreAppended) {
  test_.files.AddFile(kLog, "what stood there\r\n");
  gLog(test_.program, "one");
  test_.system.time_text = "1:02:03 PM";
  gLog(test_.program, "two");
  EXPECT_EQ(test_.files.Bytes(kLog),
            "what stood there\r\n\"12:34:56 one\"\r\n\"1:02:03 PM two\"\r\n");
}

TEST_F(RunLogTest, WithLoggingOffNoFileIsMade) {
  test_.program.run.LoggingOn = false;
  gLog(test_.program, "message");
  gLog(test_.program, "");
  EXPECT_FALSE(test_.files.Has(kLog));
}

TEST_F(RunLogTest, WithLoggingOffNothingIsAppended) {
  test_.files.AddFile(kLog, "old");
  test_.program.run.LoggingOn = false;
  gLog(test_.program, "message");
  EXPECT_EQ(test_.files.Bytes(kLog), "old");
}

TEST_F(RunLogTest, AnEmptyMessageAddsNoLineButMakesTheFile) {
  gLog(test_.program, "");
  EXPECT_EQ(test_.files.Bytes(kLog), "");
  gLog(test_.program, "message");
  gLog(test_.program, "");
  EXPECT_EQ(test_.files.Bytes(kLog), "\"12:34:56 message\"\r\n");
}

TEST_F(RunLogTest, BlanksAndQuotesStandAsTheyAre) {
  gLog(test_.program, "  ");
  gLog(test_.program, "a \"b\"");
  EXPECT_EQ(test_.files.Bytes(kLog), "\"12:34:56   \"\r\n\"12:34:56 a \"b\"\"\r\n");
}

TEST_F(RunLogTest, TheDebugLogIsWrittenWhetherLoggingIsOnOrNot) {
  gDebug(test_.program, "one");
  test_.program.run.LoggingOn = false;
  gDebug(test_.program, "two");
  gDebug(test_.program, "");
  EXPECT_EQ(test_.files.Bytes(kDebug), "\"12:34:56 one\"\r\n\"12:34:56 two\"\r\n");
  EXPECT_FALSE(test_.files.Has(kLog));
}

TEST_F(RunLogTest, OnceTheProgramIsToStopNothingIsWritten) {
  test_.program.Beeindigd = true;
  gLog(test_.program, "message");
  gDebug(test_.program, "message");
  EXPECT_EQ(test_.files.Below("/program"), std::vector<std::string>{});
}

TEST_F(RunLogTest, AProgramFolderAtADriveRootHasItsLogThere) {
  TestProgram test('\\');
  test.system.program_folder = "C:\\";
  test.program.run.LoggingOn = true;
  std::vector<std::string> paths;
  test.files.fail = [&](const std::string& call, const std::string& path) {
    if (call == "AppendToFile") paths.push_back(path);
    return ErrorNumber::kNone;
  };
  gLog(test.program, "message");
  gDebug(test.program, "message");
  EXPECT_EQ(paths, (std::vector<std::string>{"C:\\Morvex.log", "C:\\Debug.log"}));
}

TEST_F(RunLogTest, AnErrorIsIgnored) {
  test_.files.fail = [](const std::string&, const std::string&) {
    return ErrorNumber::kPermissionDenied;
  };
  gLog(test_.program, "lost");
  test_.files.fail = nullptr;
  gLog(test_.program, "kept");
  EXPECT_EQ(test_.files.Bytes(kLog), "\"12:34:56 kept\"\r\n");
}

}  // namespace
}  // namespace morvex::test
