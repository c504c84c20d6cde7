// "run" compared with "-if": the same settings make the same target and the same log. "run" leaves
// the program's own settings file alone.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/commands/command_scene.h"

namespace morvex::commands {
namespace {

using namespace std::string_literals;
using whole_run::LogMessages;

// Returns a settings file for the example.
std::string Settings(const CommandScene& scene, const std::string& target) {
  const whole_run::Scene& at = scene.scene();
  return at.At("case") + "\r\n" + at.At(target) + "\r\n" + at.At("replacements.txt") +
         "\r\nlog=1\r\nsep=|\r\njok=*\r\n1.txt\r\n1.csv\r\n1.log\r\n0.xml\r\n";
}

// Returns the log's messages with fixed durations and without the message that names the settings
// file.
std::vector<std::string> Comparable(std::vector<std::string> messages) {
  std::erase_if(messages, [](const std::string& message) {
    return message.starts_with("Initialisatie-bestand: ");
  });
  for (std::string& message : messages) message = WithoutTimes(message);
  return messages;
}

TEST(RunCommandTest, GivesTheSameTargetAndLogAsTheFormWithASettingsFile) {
  const CommandScene by_file;
  by_file.Write("settings.dat", Settings(by_file, "handover"));
  by_file.scene().MakeFolder("handover");
  const ProgramResult file_result = by_file.Shell("morvex-cli -if settings.dat");
  ASSERT_EQ(file_result.status, 0) << file_result.errors;

  // The second run gets the same folder names, so that the logs can be compared.
  const std::string wanted_log = by_file.scene().RunLog();
  const ProgramResult moved = by_file.Shell(
      "mv handover by_file && rm \"$(dirname \"$(command -v morvex-cli)\")/Morvex.log\" && "
      "mkdir handover && morvex-cli run \"$PWD/case\" \"$PWD/handover\" --list "
      "\"$PWD/replacements.txt\" --ext .txt,.csv,.log --joker '*' --log && diff -r by_file "
      "handover");
  EXPECT_EQ(moved.status, 0) << moved.output << moved.errors;
  EXPECT_EQ(WithoutTimes(moved.output), WithoutTimes(file_result.output));
  EXPECT_EQ(Comparable(LogMessages(by_file.scene().RunLog())), Comparable(LogMessages(wanted_log)));

  const ProgramResult from = by_file.Shell(
      "rm -r handover \"$(dirname \"$(command -v morvex-cli)\")/Morvex.log\" && mkdir handover && "
      "morvex-cli run --from settings.dat && diff -r by_file handover");
  EXPECT_EQ(from.status, 0) << from.output << from.errors;
  const std::vector<std::string> log = LogMessages(by_file.scene().RunLog());
  EXPECT_EQ(Comparable(log), Comparable(LogMessages(wanted_log)));
  EXPECT_EQ(std::count(log.begin(), log.end(), "Initialisatie-bestand: settings.dat"), 1);
}

TEST(RunCommandTest, TheLogSaysThatTheSettingsCameFromTheCommandLine) {
  const CommandScene scene;
  ASSERT_EQ(
      scene.Shell("morvex-cli run case handover --list replacements.txt --all --yes --log").status,
      0);
  const std::vector<std::string> messages = LogMessages(scene.scene().RunLog());
  EXPECT_EQ(std::count(messages.begin(), messages.end(), "Initialisatie-bestand: (opdrachtregel)"),
            1);
}

TEST(RunCommandTest, NeitherReadsNorWritesTheProgramsSettings) {
  const CommandScene scene;
  const std::string init = scene.scene().program_folder() + "/Init.dat";
  whole_run::WriteWholeFile(init, "/nowhere\r\n/nowhere\r\n/none\r\nlog=1\r\nsep=;\r\njok=?\r\n");
  const std::string before = whole_run::ReadWholeFile(init);
  const ProgramResult result =
      scene.Shell("morvex-cli run case handover --list replacements.txt --joker '*' --all --yes");
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_EQ(whole_run::ReadWholeFile(init), before);
  EXPECT_EQ(scene.scene().ProgramFolderNames(), std::vector<std::string>{"Init.dat"});
}

TEST(RunCommandTest, WhatIsGivenGoesBeforeWhatTheSettingsFileSays) {
  const CommandScene scene;
  scene.Write("settings.dat", Settings(scene, "unused"));
  scene.Write("other.txt", "Linden;[W]\r\n;;;\r\n");
  const ProgramResult result = scene.Shell(
      "morvex-cli run case handover --from settings.dat --list other.txt --separator ';' --yes "
      "--ext .txt --quiet");
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_FALSE(scene.Exists("unused"));
  EXPECT_NE(scene.Read("handover/hearing/notes.txt").find("[W]"), std::string::npos);
  EXPECT_EQ(scene.Read("handover/portal.log"), scene.Read("case/portal.log"));
}

TEST(RunCommandTest, AllFilesAreProcessedInSubFoldersToo) {
  const CommandScene scene;
  scene.Write("tree/page.html", "Anna");
  scene.Write("tree/sub/page.html", "Anna");
  scene.Write("tree/sub/README", "Anna");
  scene.Write("list.txt", "Anna|[A]\r\n");
  EXPECT_EQ(scene.Shell("morvex-cli run tree out --list list.txt --all --yes").status, 0);
  for (const char* name : {"out/page.html", "out/sub/page.html", "out/sub/README"}) {
    EXPECT_EQ(scene.Read(name), "[A]") << name;
  }
}

TEST(RunCommandTest, TheReportCountsEveryFileAndEveryRow) {
  const CommandScene scene;
  scene.Write("tree/a.txt", "Anna and Bert, Anna");
  scene.Write("tree/b.bin", "Anna");
  scene.Write("tree/article", "x");
  scene.Write("tree/sub/cle.txt", "Bert");
  scene.Write("tree/sub/xcle", "Bert");
  scene.Write("tree/recycler/c.txt", "Bert");
  scene.Write("list.txt", "no row\r\nAnna|[A]\r\nBert|[B]\r\nCarl|[C]\r\n|||\r\n");
  const ProgramResult result = scene.Shell(
      "ln -s .. tree/sub/up && morvex-cli run tree out --list list.txt --all --yes --report "
      "report.json");
  EXPECT_EQ(result.status, 3) << result.errors;
  const nlohmann::json report = nlohmann::json::parse(scene.Read("report.json"));
  EXPECT_EQ(report["program"], "Morvex");
  EXPECT_EQ(report["end"], "finished");
  EXPECT_EQ(report["exit_status"], 3);
  EXPECT_EQ(report["settings"]["source"], "tree");
  EXPECT_EQ(report["settings"]["all"], true);
  EXPECT_EQ(report["totals"]["processed"], 3);
  EXPECT_EQ(report["totals"]["passed_over"], 4);
  EXPECT_EQ(report["totals"]["hits"], 5);
  ASSERT_EQ(report["rows"].size(), 3u);
  EXPECT_EQ(
      report["rows"][0],
      (nlohmann::json{{"row", 1}, {"line", 2}, {"left", "Anna"}, {"right", "[A]"}, {"hits", 3}}));
  EXPECT_EQ(report["rows"][1]["hits"], 2);
  EXPECT_EQ(report["rows"][2]["hits"], 0);
  std::map<std::string, std::string> outcomes;
  for (const nlohmann::json& file : report["files"]) {
    const std::string path = file["path"];
    outcomes[path.substr(path.find("/tree/") + 6)] = file["outcome"];
  }
  EXPECT_EQ(outcomes, (std::map<std::string, std::string>{{"a.txt", "processed"},
                                                          {"b.bin", "processed"},
                                                          {"article", "passed over"},
                                                          {"sub/cle.txt", "processed"},
                                                          {"sub/xcle", "passed over"},
                                                          {"sub/up", "passed over"},
                                                          {"recycler", "passed over"}}));
}

TEST(RunCommandTest, AFailureStandsInTheReportWithItsError) {
  const CommandScene scene;
  scene.Write("tree/a.txt", "Anna");
  scene.Write("list.txt", "Anna|[A]\r\n");
  const ProgramResult result = scene.Shell(
      "mkdir -p out/a.txt && morvex-cli run tree out --list list.txt --all --report report.json");
  EXPECT_EQ(result.status, 3);
  const nlohmann::json report = nlohmann::json::parse(scene.Read("report.json"));
  ASSERT_EQ(report["files"].size(), 1u);
  EXPECT_EQ(report["files"][0]["outcome"], "failed");
  EXPECT_EQ(report["files"][0]["error"], 75);
}

TEST(RunCommandTest, ARunThatCouldNotBeDoneHasAReportAsWell) {
  const CommandScene scene;
  scene.Write("list.txt", "Anna|[A]\r\n");
  EXPECT_EQ(scene.Shell("morvex-cli run none out --list list.txt --all --report r.json").status, 1);
  const nlohmann::json report = nlohmann::json::parse(scene.Read("r.json"));
  EXPECT_EQ(report["end"], "could not run");
  EXPECT_TRUE(report["files"].empty());
}

TEST(RunCommandTest, AReportThatCannotBeWrittenIsAFailure) {
  const CommandScene scene;
  const ProgramResult result = scene.Shell(
      "morvex-cli run case out --list replacements.txt --all --yes --report none/report.json");
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.errors.find("none/report.json: error: "), std::string::npos) << result.errors;
}

TEST(RunCommandTest, NamesThatAreNoTextLeaveTheReportWhole) {
  const CommandScene scene;
  scene.Write("tree/x\xFE\x1B[31m\n\"\\.txt", "Anna");
  scene.Write("list.txt", "Anna|[\xFF\"]\r\n");
  ASSERT_EQ(
      scene.Shell("morvex-cli run tree out --list list.txt --all --yes --report r.json").status, 0);
  const nlohmann::json report = nlohmann::json::parse(scene.Read("r.json"));
  const std::string path = report["files"][0]["path"];
  EXPECT_TRUE(path.ends_with("/tree/x\\xFE\\x1B[31m\\x0A\"\\.txt")) << path;
  EXPECT_EQ(scene.Read("out/x\xFE\x1B[31m\n\"\\.txt"), "[\xFF\"]");
}

TEST(RunCommandTest, AReportThatCannotBeWrittenIsToldOfBeforeTheRun) {
  const CommandScene scene;
  EXPECT_EQ(scene
                .Shell("morvex-cli run case out --list replacements.txt --all --yes --report "
                       "none/report.json")
                .status,
            1);
  EXPECT_FALSE(scene.Exists("out"));
}

TEST(RunCommandTest, AReportNeverTakesThePlaceOfWhatTheRunReads) {
  const CommandScene scene;
  scene.Write("settings.dat", Settings(scene, "out"));
  const std::string list = scene.Read("replacements.txt");
  const std::string settings = scene.Read("settings.dat");
  ASSERT_EQ(scene.Shell("ln -s replacements.txt link; ln replacements.txt hard").status, 0);
  for (const char* report : {"replacements.txt", "case/../replacements.txt", "link", "hard",
                             "settings.dat", "$PWD/settings.dat"}) {
    EXPECT_EQ(scene.Shell("morvex-cli run --from settings.dat --yes --report "s + report).status, 1)
        << report;
  }
  EXPECT_EQ(scene.Read("replacements.txt"), list);
  EXPECT_EQ(scene.Read("settings.dat"), settings);
  EXPECT_FALSE(scene.Exists("out"));
}

TEST(RunCommandTest, StrictStopsBeforeAnythingIsCopied) {
  const CommandScene scene;
  scene.Write("list.txt", "Anna|x\r\nAnnabel|y\r\n");
  const ProgramResult strict =
      scene.Shell("morvex-cli run case out --list list.txt --all --yes --strict");
  EXPECT_EQ(strict.status, 1);
  EXPECT_FALSE(scene.Exists("out"));
  EXPECT_NE(strict.errors.find("list.txt:2: error: "), std::string::npos) << strict.errors;
  const ProgramResult usual = scene.Shell("morvex-cli run case out --list list.txt --all --yes");
  EXPECT_EQ(usual.status, 0);
  EXPECT_NE(usual.errors.find("list.txt:2: warning: "), std::string::npos) << usual.errors;
}

}  // namespace
}  // namespace morvex::commands
