// "run --report PLACE" with a PLACE that holds another file: nothing is run, and the file stays.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "tests/commands/command_scene.h"

namespace morvex::commands {
namespace {

using namespace std::string_literals;

// A source tree "src" with two files, one of them in a sub-folder, and a list beside this tree.
class ReportPlaceTest : public ::testing::Test {
 protected:
  ReportPlaceTest() {
    scene.Write("src/a.txt", "Anna");
    scene.Write("src/sub/b.txt", "Anna");
    scene.Write("list.txt", "Anna Meyer|[A]\r\n|||\r\n");
    scene.Write("settings.dat", "src\r\nout\r\nlist.txt\r\nlog=1\r\nsep=|\r\njok=\r\n1.txt\r\n");
  }

  ProgramResult Run(const std::string& report, const std::string& more = "") const {
    return scene.Shell("morvex-cli run src out --list list.txt --all --yes --quiet " + more +
                       " --report '" + report + "'");
  }
  void ExpectRefused(const std::string& report, const std::string& why,
                     const std::string& more = "") const {
    const ProgramResult result = Run(report, more);
    EXPECT_EQ(result.status, 1) << report << ": " << result.errors;
    EXPECT_NE(result.errors.find(why), std::string::npos) << report << ": " << result.errors;
    EXPECT_NE(result.errors.find("Nothing was run."), std::string::npos) << result.errors;
  }
  bool IsReport(const std::string& name) const {
    return scene.Exists(name) && nlohmann::json::parse(scene.Read(name))["program"] == "Morvex";
  }

  CommandScene scene;
};

TEST_F(ReportPlaceTest, AFileOfTheSourceIsNeverTaken) {
  ASSERT_EQ(scene.Shell("ln -s src/a.txt link; ln -s src tree").status, 0);
  for (const char* place :
       {"src/a.txt", "src/sub/b.txt", "src/sub/../a.txt", "./src//a.txt", "tree/a.txt", "link"}) {
    ExpectRefused(place, "is an existing file in the source");
  }
  EXPECT_EQ(scene.Read("src/a.txt"), "Anna");
  EXPECT_FALSE(scene.Exists("out"));
}

TEST_F(ReportPlaceTest, AHardLinkToAFileOfTheSourceHoldsNoReportAndIsNotTaken) {
  ASSERT_EQ(scene.Shell("ln src/a.txt hard").status, 0);
  ExpectRefused("hard", "is not an older report");
  EXPECT_EQ(scene.Read("src/a.txt"), "Anna");
}

TEST_F(ReportPlaceTest, AFinishedCopyIsNeverTaken) {
  ASSERT_EQ(scene.Shell("morvex-cli run src out --list list.txt --all --yes --quiet").status, 0);
  scene.Write("out/old.txt", "of an earlier run");
  for (const char* place : {"out/a.txt", "out/sub/b.txt", "out/old.txt"}) {
    ExpectRefused(place, "is an existing file in the target");
  }
  EXPECT_EQ(scene.Read("out/old.txt"), "of an earlier run");
}

TEST_F(ReportPlaceTest, AnOlderReportInSourceOrTargetIsNotTakenEither) {
  ASSERT_EQ(Run("out/r.json").status, 0);
  ASSERT_TRUE(IsReport("out/r.json"));
  ExpectRefused("out/r.json", "is an existing file in the target");
  ASSERT_EQ(Run("src/r.json").status, 0);
  ExpectRefused("src/r.json", "is an existing file in the source");
}

TEST_F(ReportPlaceTest, ThePlaceOfACopyThatIsStillToBeMadeIsNotTaken) {
  for (const char* place : {"out/a.txt", "./out/sub/b.txt", "out/sub", "nowhere/../out/a.txt"}) {
    const ProgramResult result = Run(place);
    EXPECT_EQ(result.status, 1) << place;
    EXPECT_FALSE(scene.Exists("out")) << place << ": " << result.errors;
  }
  ASSERT_EQ(scene.Shell("mkdir real; ln -s real out").status, 0);
  ExpectRefused("real/a.txt", "where the copy of src/a.txt will be");
}

TEST_F(ReportPlaceTest, AFolderOfTheTargetThatNobodyMakesIsNoPlace) {
  ExpectRefused("out/other/r.json", "Path not found");
  EXPECT_FALSE(scene.Exists("out"));
  EXPECT_EQ(Run("out/sub/r.json").status, 0);
  EXPECT_TRUE(IsReport("out/sub/r.json"));
}

TEST_F(ReportPlaceTest, NeighboursOfASingleFileStay) {
  scene.Write("src/notes.txt", "keep me");
  scene.Write("made/old.txt", "keep me too");
  for (const char* place : {"src/notes.txt", "made/old.txt", "src/a.txt", "made/a.txt"}) {
    const ProgramResult result = scene.Shell(
        "morvex-cli run src/a.txt made/a.txt --list list.txt --report " + std::string(place));
    EXPECT_EQ(result.status, 1) << place;
    EXPECT_NE(result.errors.find("Nothing was run."), std::string::npos) << result.errors;
  }
  EXPECT_EQ(scene.Read("src/notes.txt"), "keep me");
  EXPECT_EQ(scene.Read("made/old.txt"), "keep me too");
  EXPECT_FALSE(scene.Exists("made/a.txt"));
}

TEST_F(ReportPlaceTest, TheReportBesideASingleFileGivesWayToTheNextOne) {
  const std::string command =
      "cd src && morvex-cli run a.txt made.txt --list ../list.txt --report run.json";
  for (int run = 0; run < 2; ++run) {
    const ProgramResult result = scene.Shell(command);
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_TRUE(IsReport("src/run.json"));
  }
}

TEST_F(ReportPlaceTest, TheFilesOfTheProgramFolderStay) {
  const std::string folder = scene.scene().program_folder();
  for (const char* name : {"Morvex.log", "Init.dat", "Debug.log"}) {
    ExpectRefused(folder + "/" + name, "is a file of the program's own", "--log");
  }
  whole_run::WriteWholeFile(folder + "/Morvex.log", "\"a record\"\r\n");
  ASSERT_EQ(scene.Shell("ln '" + folder + "/Morvex.log' hard; ln -s '" + folder + "' there").status,
            0);
  for (const char* place : {"hard", "there/Morvex.log"}) {
    ExpectRefused(place, "is a file of the program's own");
  }
  ExpectRefused(folder + "/morvex-cli", "is not an older report");
  EXPECT_EQ(whole_run::ReadWholeFile(folder + "/Morvex.log"), "\"a record\"\r\n");
}

TEST_F(ReportPlaceTest, TheListAndTheSettingsFileStayWhateverTheyAreCalled) {
  ASSERT_EQ(scene.Shell("ln list.txt hard; ln -s settings.dat link").status, 0);
  ExpectRefused("hard", "is the replacement list");
  const ProgramResult result = scene.Shell("morvex-cli run --from settings.dat --report link");
  EXPECT_NE(result.errors.find("link: error: is the settings file"), std::string::npos)
      << result.errors;
  EXPECT_EQ(result.status, 1);
}

TEST_F(ReportPlaceTest, TheNameOfTheWorkFileIsNoPlace) {
  ASSERT_EQ(scene.Shell("mkdir out").status, 0);
  for (const char* place :
       {"tijdel.enc", "src/tijdel.enc", "src/sub/tijdel.enc", "out/tijdel.enc"}) {
    ExpectRefused(place, "has the name of a run's work file");
  }
  ASSERT_EQ(scene
                .Shell("morvex-cli run src out --list list.txt --all --quiet --report r.json && "
                       "ln -s r.json tijdel.enc")
                .status,
            0);
  ExpectRefused("tijdel.enc", "has the name of a run's work file");
}

TEST_F(ReportPlaceTest, WhatIsNoOrdinaryFileIsNoPlace) {
  scene.Write("real/x", "x");
  ASSERT_EQ(scene.Shell("mkfifo pipe; ln -s nowhere broken; ln -s loop loop").status, 0);
  ExpectRefused("pipe", "is not an ordinary file");
  ExpectRefused("broken", "is not an ordinary file");
  ExpectRefused("loop", "Error 75");
  ExpectRefused("/dev/null", "is not an ordinary file");
  // In this test, the standard output of the program is a file.
  ExpectRefused("/dev/stdout", "is not an older report");
  ExpectRefused("real", "is a folder");
  EXPECT_FALSE(scene.Exists("nowhere"));
  EXPECT_FALSE(scene.Exists("out"));
}

TEST_F(ReportPlaceTest, OnlyAnOlderReportIsReplaced) {
  for (const char* other :
       {"", "a text", "{\"program\":\"Morvex\"}", "{\"program\":\"Morvex\",\"tree\":\"x\"", "[]",
        R"({"program":"Another","version":"1","started":"","end":"","settings":{},"totals":{},)"
        R"("rows":[],"files":[]})"}) {
    scene.Write("place.json", other);
    ExpectRefused("place.json", "is not an older report");
    EXPECT_EQ(scene.Read("place.json"), other);
  }
  ASSERT_EQ(
      scene.Shell("rm place.json; morvex-cli check src --list list.txt --json > place.json").status,
      0);
  ExpectRefused("place.json", "is not an older report");

  ASSERT_EQ(Run("report.json").status, 0);
  ASSERT_EQ(scene.Shell("ln -s report.json link").status, 0);
  scene.Write("src/c.txt", "Anna");
  ASSERT_EQ(Run("link").status, 0);
  EXPECT_TRUE(IsReport("report.json"));
  EXPECT_NE(scene.Read("report.json").find("c.txt"), std::string::npos);
}

TEST_F(ReportPlaceTest, AReportWithAnythingBehindItIsNotReplaced) {
  ASSERT_EQ(Run("report.json").status, 0);
  for (const std::string& behind : {"a novel"s, "\0a novel"s, "\n\0\0\0"s, "{}"s}) {
    const std::string kept = scene.Read("report.json") + behind;
    scene.Write("place.json", kept);
    ExpectRefused("place.json", "is not an older report");
    EXPECT_EQ(scene.Read("place.json"), kept);
  }
}

TEST_F(ReportPlaceTest, WhatAppearsThereDuringTheRunStaysAndTheReportLiesBesideIt) {
  // The run claims the report's place and then asks its question. Before the script answers, it
  // puts a file of its own at that place.
  const ProgramResult result = scene.Shell(
      "cat > question.py <<'END'\n"
      "import os, pty, sys\n"
      "pid, fd = pty.fork()\n"
      "if pid == 0:\n"
      "    os.execvp('morvex-cli', ['morvex-cli', 'run', 'src', 'out', '--list', 'list.txt',\n"
      "              '--all', '--quiet', '--report', 'r.json'])\n"
      "seen = b''\n"
      "while b'[y/N]' not in seen: seen += os.read(fd, 1000)\n"
      "open('r.json', 'w').write('of somebody else')\n"
      "os.write(fd, b'y\\n')\n"
      "try:\n"
      "    while True:\n"
      "        more = os.read(fd, 1000)\n"
      "        if not more: break\n"
      "        seen += more\n"
      "except OSError: pass\n"
      "sys.stdout.buffer.write(seen)\n"
      "sys.exit(os.waitstatus_to_exitcode(os.waitpid(pid, 0)[1]))\n"
      "END\n"
      "timeout 60 python3 question.py");
  EXPECT_EQ(result.status, 1) << result.output << result.errors;
  EXPECT_EQ(scene.Read("r.json"), "of somebody else");
  EXPECT_TRUE(IsReport("morvex-report-1.json"));
  EXPECT_NE(result.output.find("The report is in ./morvex-report-1.json"), std::string::npos)
      << result.output;
  EXPECT_EQ(scene.Read("out/a.txt"), "Anna");
}

TEST_F(ReportPlaceTest, AFolderThatTakesNoFileIsToldOfBeforeTheRun) {
  ExpectRefused("/proc/r.json", "Error");
  EXPECT_FALSE(scene.Exists("out"));
}

TEST_F(ReportPlaceTest, TheListInTheSourceIsWarnedOf) {
  const std::string warning = "is in the source folder, so it will be copied";
  ASSERT_EQ(scene
                .Shell("mv list.txt settings.dat src; ln -s src/list.txt list.txt; "
                       "ln -s src/settings.dat settings.dat")
                .status,
            0);
  for (const char* list : {"src/list.txt", "list.txt", "src/sub/../list.txt"}) {
    const ProgramResult result =
        scene.Shell("morvex-cli run src out --yes --quiet --all --list " + std::string(list));
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.errors.find("src/list.txt: warning: the replacement list " + warning),
              std::string::npos)
        << result.errors;
  }
  const ProgramResult settings =
      scene.Shell("rm -r out; morvex-cli run --from settings.dat --list list.txt --yes --strict");
  EXPECT_EQ(settings.status, 1);
  EXPECT_NE(settings.errors.find("src/settings.dat: error: the settings file " + warning),
            std::string::npos)
      << settings.errors;
  EXPECT_FALSE(scene.Exists("out"));
}

TEST_F(ReportPlaceTest, AListThatALinkInTheSourceLeadsToIsWarnedOf) {
  for (const char* link : {"ln -s ../list.txt src/link.txt", "ln list.txt src/sub/hard.txt",
                           "mkdir lists; mv list.txt lists; ln -s lists/list.txt list.txt; ln -s "
                           "../lists src/lists"}) {
    ASSERT_EQ(scene.Shell(link).status, 0) << link;
    const ProgramResult result = Run("r.json", "--strict");
    EXPECT_EQ(result.status, 1) << link;
    EXPECT_NE(result.errors.find(": error: the replacement list is in the source folder"),
              std::string::npos)
        << link << "\n"
        << result.errors;
    scene.Shell("rm -f src/link.txt src/sub/hard.txt");
  }
  EXPECT_FALSE(scene.Exists("out"));
}

TEST_F(ReportPlaceTest, AListBesideTheSourceOrInATargetWithinItIsNotWarnedOf) {
  scene.Write("src/out/list.txt", "Anna Meyer|[A]\r\n|||\r\n");
  scene.Write("srcs/list.txt", "Anna Meyer|[A]\r\n|||\r\n");
  for (const char* list : {"list.txt", "srcs/list.txt", "src/out/list.txt"}) {
    EXPECT_EQ(
        scene.Shell("morvex-cli run src src/out --quiet --all --strict --list " + std::string(list))
            .errors.find("is in the source folder"),
        std::string::npos)
        << list;
  }
}

TEST_F(ReportPlaceTest, AListInASourceThatLiesInItsTargetIsWarnedOf) {
  scene.Write("out/src/list.txt", "Anna Meyer|[A]\r\n|||\r\n");
  const ProgramResult result =
      scene.Shell("morvex-cli run out/src out --quiet --all --strict --list out/src/list.txt");
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.errors.find("is in the source folder"), std::string::npos) << result.errors;
}

TEST_F(ReportPlaceTest, ASingleSourceThatIsTheListOrAReportIsWarnedOf) {
  ASSERT_EQ(scene.Shell("ln list.txt hard").status, 0);
  ProgramResult result = scene.Shell("morvex-cli run hard made.txt --list list.txt --strict");
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.errors.find("list.txt: error: the replacement list is the source"),
            std::string::npos)
      << result.errors;
  ASSERT_EQ(Run("r.json").status, 0);
  result = scene.Shell("morvex-cli run r.json made.txt --list list.txt --strict");
  EXPECT_NE(result.errors.find("r.json: error: an older report is the source"), std::string::npos)
      << result.errors;
  EXPECT_FALSE(scene.Exists("made.txt"));
}

TEST_F(ReportPlaceTest, AnOlderReportAnywhereInTheSourceIsWarnedOf) {
  ASSERT_EQ(Run("src/r.JSON").status, 0);
  scene.Write("src/other.json", "{\"program\": \"Morvex\"}");
  ASSERT_EQ(scene
                .Shell("mkdir -p src/sub/deep away; cp src/r.JSON src/sub/deep/d.json; "
                       "cp src/r.JSON away/e.json; ln -s ../away src/link; ln -s . src/sub/loop; "
                       "for i in 1 2 3 4 5 6 7 8 9; do ln -s sub src/$i; done")
                .status,
            0);
  const ProgramResult result = Run("r2.json", "--strict");
  EXPECT_EQ(result.status, 1);
  for (const char* report : {"src/r.JSON", "src/sub/deep/d.json", "src/link/e.json"}) {
    const std::string told =
        std::string(report) + ": error: an older report is in the source folder";
    EXPECT_NE(result.errors.find(told), std::string::npos) << report << "\n" << result.errors;
  }
  EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 3) << result.errors;
  EXPECT_EQ(result.errors.find("other.json"), std::string::npos) << result.errors;
}

}  // namespace
}  // namespace morvex::commands
