// "check": a leftover in every form, in contents and in names, and nothing where nothing is left.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <vector>

#include "tests/commands/command_scene.h"

namespace morvex::commands {
namespace {

using namespace std::string_literals;
using nlohmann::json;

json Check(const CommandScene& scene, const std::string& arguments, int status) {
  const ProgramResult result = scene.Shell("morvex-cli check " + arguments + " --json");
  EXPECT_EQ(result.status, status) << result.output << result.errors;
  return json::parse(result.output);
}

struct Planted {
  const char* form;
  std::string bytes;
};

std::vector<Planted> FormsOfMueller() {
  return {{"as it stands", "M\xC3\xBCller"},
          {"other letter case", "M\xC3\x9CLLER"},
          {"other letter case", "m\xC3\xBCller"},
          {"Windows-1252", "M\xFCller"},
          {"Windows-1252, other letter case", "M\xDCLLER"},
          {"UTF-16LE", "M\0\xFC\0l\0l\0e\0r\0"s},
          {"UTF-16LE, other letter case", "M\0\xDC\0L\0L\0E\0R\0"s},
          {"UTF-16BE", "\0M\0\xFC\0l\0l\0e\0r"s},
          {"UTF-16BE, other letter case", "\0m\0\xDC\0L\0L\0E\0R"s}};
}

TEST(CheckCommandTest, FindsEveryFormInAFileAtItsFirstByteAcrossBlocksAndAtItsLast) {
  const std::vector<Planted> forms = FormsOfMueller();
  const CommandScene scene;
  scene.Write("list.txt", "M\xC3\xBCller|[tenant]\r\n");
  // Around the end of what is read at once, and of the page cache's pieces.
  const std::vector<std::size_t> places = {0,       1000,    65'530,  131'068, 262'140,
                                           262'200, 262'210, 524'284, 999'998};
  for (std::size_t form = 0; form < forms.size(); ++form) {
    for (std::size_t place = 0; place < places.size(); ++place) {
      std::string bytes(places[place], '.');
      bytes += forms[form].bytes;
      if (places[place] != 999'998) bytes += std::string(300'000, '.');
      scene.Write("tree/" + std::to_string(form) + "/" + std::to_string(place) + ".bin", bytes);
    }
  }
  const json found = Check(scene, "tree --list list.txt", 3);
  ASSERT_EQ(found["findings"].size(), forms.size() * places.size());
  for (std::size_t i = 0; i < found["findings"].size(); ++i) {
    const json& finding = found["findings"][i];
    const std::size_t form = i / places.size();
    const std::size_t place = i % places.size();
    EXPECT_EQ(finding["path"],
              "tree/" + std::to_string(form) + "/" + std::to_string(place) + ".bin");
    EXPECT_EQ(finding["form"], forms[form].form);
    EXPECT_EQ(finding["byte"], places[place]);
    EXPECT_EQ(finding["size"], forms[form].bytes.size());
    EXPECT_EQ(finding["where"], "contents");
    EXPECT_EQ(finding["row"], 1);
    EXPECT_EQ(finding["line"], 1);
  }
}

TEST(CheckCommandTest, FindsEveryFormInNamesOfFilesAndFolders) {
  const CommandScene scene;
  scene.Write("list.txt", "M\xC3\xBCller|[tenant]\r\n");
  const std::vector<Planted> forms = {{"as it stands", "letter to M\xC3\xBCller.txt"},
                                      {"other letter case", "M\xC3\x9CLLER"},
                                      {"Windows-1252", "x M\xFCller"},
                                      {"Windows-1252, other letter case", "M\xDCLLER.doc"}};
  for (std::size_t form = 0; form < forms.size(); ++form) {
    const std::string at = "tree/" + std::to_string(form) + "/";
    scene.Write(at + "files/" + forms[form].bytes, "nothing");
    scene.Write(at + forms[form].bytes + "/file", "nothing");
  }
  const json found = Check(scene, "tree --list list.txt", 3);
  ASSERT_EQ(found["findings"].size(), 2 * forms.size());
  std::vector<int> seen(forms.size());
  for (const json& finding : found["findings"]) {
    const std::string path = finding["path"];
    const std::size_t form = static_cast<std::size_t>(path.at(5) - '0');
    ++seen.at(form);
    EXPECT_EQ(finding["where"], "name");
    EXPECT_EQ(finding["form"], forms.at(form).form) << path;
  }
  EXPECT_EQ(seen, std::vector<int>(forms.size(), 2));
}

TEST(CheckCommandTest, TheTreesOwnNameCountsHoweverItIsWritten) {
  const CommandScene scene;
  scene.Write("Mueller/file", "nothing");
  scene.Write("list.txt", "Mueller|x\r\n");
  for (const char* tree : {"Mueller", "Mueller/", "./Mueller", "Mueller/."}) {
    EXPECT_EQ(Check(scene, tree + " --list list.txt"s, 3)["findings"].size(), 1u) << tree;
  }
  EXPECT_EQ(scene.Shell("cd Mueller && morvex-cli check . --list ../list.txt").status, 3);
}

TEST(CheckCommandTest, FindsNothingInWhatARunHasMade) {
  const CommandScene scene;
  ASSERT_EQ(
      scene.Shell("morvex-cli run case out --list replacements.txt --joker '*' --all --yes").status,
      0);
  const json found = Check(scene, "out --list replacements.txt --joker '*'", 0);
  EXPECT_TRUE(found["findings"].empty());
  EXPECT_EQ(found["totals"]["files"], 9);
}

TEST(CheckCommandTest, FindsInTheSourceAtLeastEveryPlaceThatARunReplaces) {
  const CommandScene scene;
  const ProgramResult run = scene.Shell(
      "morvex-cli run case out --list replacements.txt --joker '*' --all --yes --report r.json");
  ASSERT_EQ(run.status, 0);
  const json report = json::parse(scene.Read("r.json"));
  const json found = Check(scene, "case --list replacements.txt --joker '*'", 3);
  EXPECT_GE(found["findings"].size(), report["totals"]["hits"].get<std::size_t>());
  std::vector<int> of_rows(report["rows"].size());
  for (const json& finding : found["findings"]) ++of_rows.at(finding["row"].get<std::size_t>() - 1);
  for (std::size_t row = 0; row < of_rows.size(); ++row) {
    EXPECT_GE(of_rows[row], report["rows"][row]["hits"].get<int>()) << "row " << row + 1;
  }
}

TEST(CheckCommandTest, TheListMayBeReadInTheEncodingThatIsNamed) {
  const CommandScene scene;
  scene.Write("list.txt", "M\xC3\xBCller|x\r\n");
  scene.Write("tree/a",
              "m\xC3\x83\xC2\xBCller");  // the list's bytes read as Windows-1252, in UTF-8
  EXPECT_EQ(scene.Shell("morvex-cli check tree --list list.txt").status, 0);
  EXPECT_EQ(scene.Shell("morvex-cli check tree --list list.txt --list-encoding utf-8").status, 0);
  const json found = Check(scene, "tree --list list.txt --list-encoding windows-1252", 3);
  EXPECT_EQ(found["findings"][0]["form"], "UTF-8, other letter case");
  EXPECT_EQ(found["list_encoding"], "Windows-1252");
}

TEST(CheckCommandTest, WhatCannotBeReadIsToldAndEndsWithStatus1) {
  const CommandScene scene;
  scene.Write("list.txt", "Anna|x\r\n");
  scene.Write("tree/a", "Anna");
  const ProgramResult missing = scene.Shell("morvex-cli check none --list list.txt");
  EXPECT_EQ(missing.status, 1);
  EXPECT_NE(missing.errors.find("none: error: Error 76: Path not found"), std::string::npos)
      << missing.errors;
  if (scene.Shell("test \"$(id -u)\" -eq 0").status == 0) return;  // may read everything
  const ProgramResult closed =
      scene.Shell("cp tree/a tree/b && chmod 0 tree/b && morvex-cli check tree --list list.txt");
  EXPECT_EQ(closed.status, 1);
  EXPECT_NE(closed.output.find("tree/a:1: "), std::string::npos);
}

TEST(CheckCommandTest, FollowsLinksButNotInCircles) {
  const CommandScene scene;
  scene.Write("list.txt", "Anna|x\r\n");
  scene.Write("tree/sub/a", "Anna");
  scene.Write("elsewhere/b", "Anna");
  ASSERT_EQ(scene.Shell("ln -s .. tree/sub/up && ln -s ../elsewhere tree/away").status, 0);
  const json found = Check(scene, "tree --list list.txt", 3);
  ASSERT_EQ(found["findings"].size(), 2u);
  EXPECT_EQ(found["findings"][0]["path"], "tree/away/b");
  EXPECT_EQ(found["findings"][1]["path"], "tree/sub/a");
}

TEST(CheckCommandTest, ManyFilesAreToldInTheOrderOfTheTree) {
  const CommandScene scene;
  scene.Write("list.txt", "Anna|x\r\n");
  for (int i = 0; i < 600; ++i) {
    scene.Write("tree/" + std::to_string(1000 + i),
                std::string(static_cast<std::size_t>(i % 7) * 10'000, '.') + "Anna");
  }
  const json found = Check(scene, "tree --list list.txt", 3);
  ASSERT_EQ(found["findings"].size(), 600u);
  for (std::size_t i = 0; i < 600; ++i) {
    EXPECT_EQ(found["findings"][i]["path"], "tree/" + std::to_string(1000 + i));
  }
}

TEST(CheckCommandTest, FindingsBeyondTheMostThatAreKeptAreCounted) {
  const CommandScene scene;
  scene.Write("list.txt", "Anna|x\r\n");
  std::string bytes;
  for (int i = 0; i < 100'003; ++i) bytes += "Anna ";
  scene.Write("tree/a", bytes);
  const json found = Check(scene, "tree --list list.txt", 3);
  EXPECT_EQ(found["findings"].size(), 100'000u);
  EXPECT_EQ(found["totals"]["findings"], 100'003);
  EXPECT_EQ(found["not_listed"], json::array({json::array({"tree/a", 3})}));
}

TEST(CheckCommandTest, WhateverBytesStandAroundTheDocumentIsWhole) {
  const CommandScene scene;
  scene.Write("list.txt", "Anna|x\r\n\xFF\xFE\x80|y\r\n");
  std::mt19937 random(20240229);
  std::string bytes;
  for (int i = 0; i < 400; ++i) {
    for (std::size_t n = random() % 70; n > 0; --n) bytes += static_cast<char>(random() % 256);
    bytes += i % 3 == 0 ? "\xFF\xFE\x80" : i % 3 == 1 ? "Anna" : "\0A\0n\0n\0a"s;
  }
  scene.Write("tree/a", bytes);
  scene.Write("tree/Anna \xFF\x1B[31m\n\"\\\xED\xA0\x80", "nothing");
  const json found = Check(scene, "tree --list list.txt", 3);
  EXPECT_GE(found["findings"].size(), 401u);
  EXPECT_EQ(found["findings"][0]["path"], "tree/Anna \\xFF\\x1B[31m\\x0A\"\\\\\\xED\\xA0\\x80");
}

TEST(CheckCommandTest, FindingsOfManyFilesDoNotPileUp) {
  const CommandScene scene;
  scene.Write("list.txt", "Anna|x\r\n");
  std::string bytes;
  for (int i = 0; i < 60'000; ++i) bytes += "Anna\n";
  for (int i = 0; i < 12; ++i) scene.Write("tree/" + std::to_string(10 + i), bytes);
  const ProgramResult result =
      scene.Shell("morvex-cli check tree --list list.txt --quiet | cut -d: -f1 | uniq -c | wc -l");
  EXPECT_EQ(result.output, "12\n") << result.errors;
}

TEST(CheckCommandTest, ColoursAreShownOnATerminalAndNeverWithNoColor) {
  const CommandScene scene;
  const std::string check =
      "script -qec \"morvex-cli check case/hearing --list replacements.txt\" /dev/null";
  EXPECT_NE(scene.Shell("TERM=xterm " + check).output.find("\x1b[1;31mM"), std::string::npos);
  EXPECT_EQ(scene.Shell("NO_COLOR=1 TERM=xterm " + check).output.find('\x1b'), std::string::npos);
  EXPECT_EQ(scene.Shell("TERM=xterm morvex-cli check case/hearing --list replacements.txt")
                .output.find('\x1b'),
            std::string::npos);
}

}  // namespace
}  // namespace morvex::commands
