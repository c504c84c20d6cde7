// Run requests: made from the forms, and performed without forms.
#include <gtest/gtest.h>

#include "core/settings/options.h"
#include "tests/core/run/run_program.h"

namespace morvex::test {
namespace {

TEST(RequestFromForms, DescribesTheRunThatTheFormsShow) {
  RunProgram test("/s", "/t");
  test.program.frmOpties.lstExtensie.entries =
      std::vector<ListEntry>{{".doc", true}, {".txt", false}, {".xml", true}};
  const RunRequest request = RequestFromForms(test.program);
  EXPECT_EQ(request.source, "/s");
  EXPECT_EQ(request.target, "/t");
  EXPECT_EQ(request.list, "/list.txt");
  EXPECT_EQ(request.settings_file, "/program/Init.dat");
  EXPECT_EQ(request.extensions, (std::vector<std::string>{".doc", ".xml"}));
  EXPECT_FALSE(request.all_files);
  EXPECT_TRUE(request.logging);
}

TEST(RequestFromForms, NamesTheSettingsFileOfAnUnattendedRun) {
  RunProgram test;
  test.program.settings.InitFilePath = "/jobs/nightly.dat";
  EXPECT_EQ(RequestFromForms(test.program).settings_file, "/program/Init.dat");
  test.program.settings.AutoRunFromInitFile = true;
  EXPECT_EQ(RequestFromForms(test.program).settings_file, "/jobs/nightly.dat");
}

TEST(RequestFromForms, LogsOnlyWithACheckedBox) {
  RunProgram test("/s", "/t", false);
  EXPECT_FALSE(RequestFromForms(test.program).logging);
  chkLoggen_Click(test.program, 2);
  EXPECT_FALSE(RequestFromForms(test.program).logging);
  chkLoggen_Click(test.program, 1);
  EXPECT_TRUE(RequestFromForms(test.program).logging);
}

// The forms have other values than the request.
class PerformRunTest : public ::testing::Test {
 protected:
  PerformRunTest() {
    test_.files.AddFolder("/in");
    test_.files.AddFolder("/out");
    test_.files.AddFile("/in/a.doc", "a");
    test_.files.AddFile("/in/a.txt", "a");
    test_.files.AddFile("/s/never.txt", "a");
    RunRequest& request = test_.program.request;
    request.source = "/in";
    request.target = "/out";
    request.list = "a list";
    request.settings_file = "some settings";
    request.extensions = {".doc"};
    request.logging = true;
    ArmRun(test_.program);
  }

  RunProgram test_{"/s", "/t", false};
};

TEST_F(PerformRunTest, TheRequestAloneCounts) {
  PerformRun(test_.program);
  EXPECT_EQ(test_.program.run.end, RunEnd::kFinished);
  EXPECT_EQ(test_.files.Bytes("/out/a.doc"), "b");
  EXPECT_EQ(test_.files.Bytes("/out/a.txt"), "a");
  EXPECT_FALSE(test_.files.Has("/t/never.txt"));
  const std::vector<std::string> log = test_.LogMessages();
  ASSERT_GE(log.size(), 8u);
  EXPECT_EQ(log[log.size() - 7], "Initialisatie-bestand: some settings");
  EXPECT_EQ(log[log.size() - 6], "Substitutie-bestand: a list");
}

TEST_F(PerformRunTest, AllFilesAreProcessedWhateverTheExtensions) {
  test_.program.request.all_files = true;
  PerformRun(test_.program);
  EXPECT_EQ(test_.files.Bytes("/out/a.doc"), "b");
  EXPECT_EQ(test_.files.Bytes("/out/a.txt"), "b");
}

TEST_F(PerformRunTest, DoesNothingWhileARunWorks) {
  test_.program.run.working = true;
  PerformRun(test_.program);
  EXPECT_FALSE(test_.files.Has("/out/a.doc"));
  EXPECT_TRUE(test_.program.run.working);
}

TEST_F(PerformRunTest, AGoOfTheWindowReplacesTheRequest) {
  test_.Go();
  EXPECT_EQ(test_.program.request.source, "/s");
  EXPECT_TRUE(test_.files.Has("/t/never.txt"));
  EXPECT_FALSE(test_.files.Has("/out/a.doc"));
}

}  // namespace
}  // namespace morvex::test
