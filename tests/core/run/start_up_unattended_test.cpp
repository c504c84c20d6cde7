// A start with a settings file on the command line, up to the program's end.
#include <gtest/gtest.h>

#include "core/list/editor.h"
#include "core/settings/options.h"
#include "core/settings/settings_file.h"
#include "tests/core/run/run_program.h"

namespace morvex::test {
namespace {

using std::chrono::milliseconds;

class UnattendedTest : public ::testing::Test {
 protected:
  UnattendedTest() {
    test_.files.AddFile("/s/a.txt", "aca");
    test_.files.AddFile("/s/sub/b.bin", "aca");
    test_.files.AddFolder("/t");
    test_.files.AddFile("/list.txt", kListText);
    test_.files.AddFile("/job.dat", SettingsText("/s", "/t"));
    test_.user.on_wait = [this](milliseconds longest) {
      waits_.push_back(test_.program.frmMorvex.lblTotalFiles.caption);
      test_.system.steady += std::min(longest, milliseconds(100));
    };
  }
  void Start(const std::string& command_line) {
    test_.system.command_line = command_line;
    EXPECT_EQ(StartUp(program_), ErrorNumber::kNone);
  }
  void ExpectEnded(int status) {
    EXPECT_TRUE(HasEnded(program_));
    EXPECT_FALSE(program_.frmMorvex.visible);
    EXPECT_TRUE(program_.Beeindigd);
    EXPECT_EQ(ExitStatus(program_), status);
  }

  TestProgram test_;
  Program& program_ = test_.program;
  std::vector<std::string> waits_;  // what lblTotalFiles showed at each wait
};

TEST_F(UnattendedTest, ArmsRunsAndEndsWithStatus0) {
  Start("-if /job.dat");
  EXPECT_EQ(test_.files.Bytes("/t/a.txt"), "bcb");
  EXPECT_EQ(test_.files.Bytes("/t/sub/b.bin"), "aca");
  EXPECT_EQ(program_.run.end, RunEnd::kFinished);
  ExpectEnded(0);
  EXPECT_EQ(program_.frmMorvex.lblPercentage.caption.get(), "Hits: 2\r\nDone !");
}

TEST_F(UnattendedTest, ArmingWritesTheProgramsOwnSettingsFile) {
  Start("-if /job.dat");
  EXPECT_EQ(test_.files.Bytes("/program/Init.dat"), SettingsText("/s", "/t"));
  EXPECT_EQ(test_.files.Bytes("/job.dat"), SettingsText("/s", "/t"));
}

TEST_F(UnattendedTest, WhatWasOpenedDuringTheDelayIsPutAsideForTheRun) {
  const auto opened = [this] {
    return std::vector<bool>{program_.frmMorvex.visible, program_.frmOpties.visible,
                             program_.frmReplacements.visible,
                             program_.frmMorvex.FolderTreeview1.visible};
  };
  test_.user.on_wait = [&](milliseconds longest) {
    Text1_DblClick(program_, kTargetBox);
    imOpties_Click(program_);
    imList_Click(program_);
    EXPECT_EQ(opened(), (std::vector<bool>{false, true, true, true}));
    test_.system.steady += longest;
  };
  std::vector<std::vector<bool>> during_run;
  test_.user.on_events = [&] {
    if (program_.run.working) during_run.push_back(opened());
  };
  test_.system.step = milliseconds(15);
  Start("-if /job.dat -dy 100");
  ASSERT_FALSE(during_run.empty());
  for (const std::vector<bool>& seen : during_run) {
    EXPECT_EQ(seen, (std::vector<bool>{true, false, false, false}));
  }
  EXPECT_EQ(test_.files.Bytes("/t/a.txt"), "bcb") << "the list that was read stays in force";
  ExpectEnded(0);
}

TEST_F(UnattendedTest, TheSummaryNamesTheSettingsFileOfTheCommandLine) {
  Start("-if /job.dat");
  const std::vector<std::string> log = test_.LogMessages();
  EXPECT_NE(std::find(log.begin(), log.end(), "Initialisatie-bestand: /job.dat"), log.end());
}

TEST_F(UnattendedTest, ADelayOf0StartsAtOnceWithoutTheWait) {
  Start("-if /job.dat -dy 0");
  EXPECT_TRUE(waits_.empty());
  EXPECT_EQ(program_.frmMorvex.lblTotalFiles.caption.get(), "Scanned: 1\r\nSkipped: 1");
  EXPECT_EQ(program_.run.end, RunEnd::kFinished);
}

TEST_F(UnattendedTest, WithoutADelayItStartsAtOnceToo) {
  Start("-if /job.dat");
  EXPECT_TRUE(waits_.empty());
  EXPECT_EQ(program_.run.end, RunEnd::kFinished);
}

TEST_F(UnattendedTest, ANegativeDelayMeansNoWait) {
  Start("-if /job.dat -dy=-5");
  EXPECT_EQ(program_.settings.AutoRunDelay, -5);
  EXPECT_TRUE(waits_.empty());
  EXPECT_EQ(program_.run.end, RunEnd::kFinished);
}

TEST_F(UnattendedTest, ADelayIsWaitedForWithTheWindowAlive) {
  bool copied_early = false;
  test_.user.on_events = [&] { copied_early = copied_early || test_.files.Has("/t/a.txt"); };
  const milliseconds start = test_.system.steady;
  Start("-if /job.dat -dy 250");
  EXPECT_EQ(waits_, (std::vector<std::string>(3, "Momentje...")));
  EXPECT_GE(test_.system.steady - start, milliseconds(250));
  EXPECT_FALSE(copied_early);
  EXPECT_TRUE(test_.files.Has("/t/a.txt"));
  ExpectEnded(0);
}

TEST_F(UnattendedTest, ExitDuringTheDelayEndsTheProgramWithoutARun) {
  int waits = 0;
  test_.user.on_wait = [&](milliseconds) {
    ++waits;
    cmdExit_Click(program_);
  };
  Start("-if /job.dat -dy 30000");
  EXPECT_EQ(waits, 1);
  EXPECT_FALSE(test_.files.Has("/t/a.txt"));
  EXPECT_FALSE(test_.files.Has("/program/Init.dat"));
  EXPECT_EQ(program_.run.end, RunEnd::kNone);
  ExpectEnded(1);
}

TEST_F(UnattendedTest, ASourceThatIsMissingEndsWithStatus1) {
  test_.files.AddFile("/job.dat", SettingsText("/none", "/t"));
  Start("-if /job.dat");
  ASSERT_EQ(test_.user.messages.size(), 1u);
  EXPECT_EQ(test_.user.messages[0].text, "/none\r\nSource folder doesn't exist.");
  EXPECT_EQ(program_.run.end, RunEnd::kCouldNotRun);
  ExpectEnded(1);
}

TEST_F(UnattendedTest, ATargetThatIsRefusedEndsWithStatus1) {
  test_.files.AddFile("/job.dat", SettingsText("/s", "/none"));
  Start("-if /job.dat");
  EXPECT_EQ(program_.run.end, RunEnd::kCouldNotRun);
  ExpectEnded(1);
}

TEST_F(UnattendedTest, ADiskFullEndsWithStatus1) {
  test_.files.fail = FailOn("MoveTo", "/t/a.txt", ErrorNumber::kDiskFull);
  Start("-if /job.dat");
  EXPECT_EQ(program_.run.end, RunEnd::kStopped);
  ExpectEnded(1);
}

TEST_F(UnattendedTest, AListThatBreaksOffStartsNoRun) {
  // The list is so long that it is read in more than one block.
  std::string list;
  while (list.size() < 600'000) list += "filler" + std::to_string(list.size()) + "|x\r\n";
  test_.files.AddFile("/list.txt", list + kListText);
  int reads = 0;
  test_.files.fail = [&](const std::string& call, const std::string& path) {
    const bool second = call == "ReadAt" && path == "/list.txt" && ++reads == 2;
    return second ? ErrorNumber::kDeviceIo : ErrorNumber::kNone;
  };
  Start("-if /job.dat");
  EXPECT_EQ(program_.settings.list_file_error, ErrorNumber::kDeviceIo);
  EXPECT_FALSE(program_.settings.AutoRunFromInitFile);
  EXPECT_EQ(program_.run.end, RunEnd::kNone);
  EXPECT_EQ(test_.files.Below("/t"), std::vector<std::string>{});
  EXPECT_GT(program_.frmReplacements.rows.size(), 1u) << "the rows that were read stay";
  ExpectEnded(1);
  EXPECT_EQ(WhyNoRun(program_),
            (std::vector<std::string>{
                "The replacement list could not be read to its end: /list.txt: Error 57: Device "
                "I/O error",
                "Nothing was run: a row that is missing is a name that stays."}));
}

TEST_F(UnattendedTest, ASettingsFileThatBreaksOffEndsTheProgramWithoutARun) {
  // The settings file is so long that it is read in more than one block.
  std::string settings = SettingsText("/s", "/t");
  while (settings.size() < 600'000) settings += "1.e" + std::to_string(settings.size()) + "\r\n";
  test_.files.AddFile("/job.dat", settings);
  int reads = 0;
  test_.files.fail = [&](const std::string& call, const std::string& path) {
    const bool second = call == "ReadAt" && path == "/job.dat" && ++reads == 2;
    return second ? ErrorNumber::kDeviceIo : ErrorNumber::kNone;
  };
  Start("-if /job.dat");
  EXPECT_EQ(program_.run.end, RunEnd::kNone);
  EXPECT_EQ(test_.files.Below("/t"), std::vector<std::string>{});
  ExpectEnded(1);
  EXPECT_EQ(WhyNoRun(program_), std::vector<std::string>{"/job.dat: Error 57: Device I/O error"});
}

TEST_F(UnattendedTest, ASettingsFileThatIsMissingIsNamedAsTheReason) {
  Start("-if /none.dat");
  ExpectEnded(1);
  EXPECT_EQ(WhyNoRun(program_),
            std::vector<std::string>{"Initialisatiebestand bestaat niet: /none.dat"});
}

TEST_F(UnattendedTest, ARunThatWasStartedNeedsNoReasonWhyNot) {
  Start("-if /job.dat");
  EXPECT_EQ(WhyNoRun(program_), std::vector<std::string>{});
}

TEST_F(UnattendedTest, AListThatCannotBeReadKeepsAProgramWithAUserOpen) {
  test_.files.AddFile("/program/Init.dat", SettingsText("/s", "/t"));
  test_.files.fail = FailOn("LookUpFile", "/list.txt", ErrorNumber::kDeviceIo);
  Start("");
  EXPECT_FALSE(HasEnded(program_));
  EXPECT_TRUE(program_.frmMorvex.visible);
  EXPECT_EQ(WhyNoRun(program_), std::vector<std::string>{});
}

TEST_F(UnattendedTest, AListOfWhichNothingCanBeToldStartsNoRun) {
  for (const ErrorNumber error : {ErrorNumber::kDeviceIo, ErrorNumber::kPathFileAccess}) {
    TestProgram test;
    test.files.AddFile("/s/a.txt", "aca");
    test.files.AddFolder("/t");
    test.files.AddFile("/list.txt", kListText);
    test.files.AddFile("/job.dat", SettingsText("/s", "/t"));
    test.system.command_line = "-if /job.dat";
    test.files.fail = FailOn("LookUpFile", "/list.txt", error);
    EXPECT_EQ(StartUp(test.program), ErrorNumber::kNone);
    EXPECT_EQ(test.program.run.end, RunEnd::kNone);
    EXPECT_EQ(test.files.Below("/t"), std::vector<std::string>{});
    EXPECT_TRUE(HasEnded(test.program)) << "nobody is there to end it";
    EXPECT_EQ(ExitStatus(test.program), 1);
  }
}

TEST_F(UnattendedTest, AListThatDoesNotExistStartsTheRunWithoutRows) {
  test_.files.AddFile("/job.dat", "/s\r\n/t\r\n/none.txt\r\nlog=0\r\nsep=|\r\njok=\r\n1.txt\r\n");
  Start("-if /job.dat");
  EXPECT_EQ(test_.files.Bytes("/t/a.txt"), "aca");
  ExpectEnded(0);
}

TEST_F(UnattendedTest, ASingleFileWithoutCopyEndsWithStatus1) {
  test_.files.AddFile("/job.dat", SettingsText("/s/a.txt", "/t"));
  Start("-if /job.dat");
  EXPECT_EQ(program_.run.end, RunEnd::kCouldNotRun);
  ExpectEnded(1);
}

TEST_F(UnattendedTest, ASingleFileWithItsCopyEndsWithStatus0) {
  test_.files.AddFile("/job.dat", SettingsText("/s/a.txt", "/t/copy"));
  Start("-if /job.dat");
  EXPECT_EQ(test_.files.Bytes("/t/copy"), "bcb");
  ExpectEnded(0);
}

TEST_F(UnattendedTest, SingleFilesThatCouldNotBeCopiedEndAFinishedRunWithStatus3) {
  test_.files.fail = FailOn("MoveTo", "/t/a.txt", ErrorNumber::kPermissionDenied);
  Start("-if /job.dat");
  EXPECT_EQ(program_.run.failed_files, 1);
  EXPECT_EQ(program_.run.end, RunEnd::kFinished);
  ExpectEnded(3);
}

TEST_F(UnattendedTest, FilesThatAreNotSelectedAndCouldNotBeCopiedEndWithStatus3Too) {
  test_.files.fail = FailOn("CopyFile", "/t/sub/b.bin", ErrorNumber::kPermissionDenied);
  Start("-if /job.dat");
  ExpectEnded(3);
}

TEST_F(UnattendedTest, FilesAndFoldersThatArePassedOverEndWithStatus3) {
  for (const char* path : {"/s/Morvex.txt", "/s/RECYCLER/x.txt"}) {
    TestProgram test;
    test.files.AddFile("/s/a.txt", "aca");
    test.files.AddFile(path, "aca");
    test.files.AddFolder("/t");
    test.files.AddFile("/list.txt", kListText);
    test.files.AddFile("/job.dat", SettingsText("/s", "/t"));
    test.system.command_line = "-if /job.dat";
    EXPECT_EQ(StartUp(test.program), ErrorNumber::kNone);
    EXPECT_EQ(ExitStatus(test.program), 3) << path;
  }
}

TEST_F(UnattendedTest, WhatIsNoPartOfTheSourceIsMissedByNobody) {
  test_.files.AddFile("/s/tijdel.enc", "left over");
  test_.files.AddFolder("/s/out");
  test_.files.AddLink("/s/loop", "/s");
  test_.files.AddFile("/job.dat", SettingsText("/s", "/s/out"));
  Start("-if /job.dat");
  EXPECT_EQ(test_.files.Bytes("/s/out/a.txt"), "bcb");
  ExpectEnded(0);
}

}  // namespace
}  // namespace morvex::test
