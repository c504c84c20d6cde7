// "check" finds a leftover in every encoding and letter case, in contents and in names, and finds
// nothing in a clean tree.
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
  // The offsets of the leftovers, some of them around multiples of 64 KiB, where a block of the
  // search may end. With the last offset, the leftover stands at the end of the file.
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
  // Read as UTF-8, the list's bytes C3 BC are one character, which the file lacks. Read as
  // Windows-1252, they are two characters, which the file holds in UTF-8.
  scene.Write("tree/a", "m\xC3\x83\xC2\xBCller");
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
  if (scene.Shell("test \"$(id -u)\" -eq 0").status == 0) return;  // root may read everything
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

TEST(CheckCommandTest, FoldersThatLeadToEachOtherAreGoneThroughOnce) {
  const CommandScene scene;
  scene.Write("list.txt", "Anna|x\r\n");
  for (const char* folder : {"a", "b", "c", "d", "e", "f", "g", "h"}) {
    scene.Write("tree/"s + folder + "/file", "Anna");
    scene.Write("outside/"s + folder + "/file", "Anna");
  }
  const std::string link_all =
      "cd $root && for from in a b c d e f g h; do for to in a b c d e f g h; do\n"
      "ln -s \"$PWD/$to\" $from/to-$to; done; done";
  ASSERT_EQ(scene.Shell("root=tree; " + link_all).status, 0);
  ASSERT_EQ(scene.Shell("root=outside; " + link_all).status, 0);
  ASSERT_EQ(scene.Shell("ln -s ../../outside/c tree/c/away && ln -s ../outside/d tree/zz").status,
            0);
  const json found = Check(scene, "tree --list list.txt", 3);
  std::vector<std::string> paths;
  for (const json& finding : found["findings"]) paths.push_back(finding["path"]);
  // A file in the tree is reported under its own path. A file outside the tree is reported under
  // the first path that leads to it.
  EXPECT_EQ(paths,
            (std::vector<std::string>{
                "tree/a/file", "tree/b/file", "tree/c/away/file", "tree/c/away/to-a/file",
                "tree/c/away/to-a/to-b/file", "tree/c/away/to-a/to-b/to-d/file",
                "tree/c/away/to-a/to-b/to-d/to-e/file", "tree/c/away/to-a/to-b/to-d/to-e/to-f/file",
                "tree/c/away/to-a/to-b/to-d/to-e/to-f/to-g/file",
                "tree/c/away/to-a/to-b/to-d/to-e/to-f/to-g/to-h/file", "tree/c/file", "tree/d/file",
                "tree/e/file", "tree/f/file", "tree/g/file", "tree/h/file"}));
  EXPECT_EQ(found["totals"]["folders"], 1 + 8 + 8);
  EXPECT_EQ(found["totals"]["names"], 64 + (64 - 7) + 1);
}

TEST(CheckCommandTest, TheNameOfALinkCountsWhereItsFolderIsGoneThroughElsewhere) {
  const CommandScene scene;
  scene.Write("list.txt", "Anna|x\r\n");
  scene.Write("tree/sub/a", "nothing");
  ASSERT_EQ(scene.Shell("ln -s sub tree/Anna && ln -s . tree/anna").status, 0);
  const json found = Check(scene, "tree --list list.txt", 3);
  ASSERT_EQ(found["findings"].size(), 2u);
  EXPECT_EQ(found["findings"][0]["path"], "tree/Anna");
  EXPECT_EQ(found["findings"][1]["path"], "tree/anna");
  EXPECT_EQ(found["totals"]["names_with_findings"], 2);
}

TEST(CheckCommandTest, NamesOfWhatIsNoFileAndTextsOfLinksAreSearchedAndTold) {
  const CommandScene scene;
  scene.Write("list.txt", "Anna|x\r\n");
  scene.Write("tree/file", "nothing");
  scene.Write("elsewhere/Anna/file", "nothing");
  ASSERT_EQ(
      scene
          .Shell("cd tree && mkfifo pipe pipe-of-Anna && ln -s nowhere broken && "
                 "ln -s /srv/anna/letter broken-too && ln -s ../elsewhere/Anna/file to-file && "
                 "ln -s ../elsewhere/Anna to-folder")
          .status,
      0);
  const json found = Check(scene, "tree --list list.txt", 3);
  std::vector<std::string> places;
  for (const json& finding : found["findings"]) {
    places.push_back(finding["path"].get<std::string>() + " " +
                     finding["where"].get<std::string>());
  }
  EXPECT_EQ(places, (std::vector<std::string>{"tree/broken-too link", "tree/pipe-of-Anna name",
                                              "tree/to-file link", "tree/to-folder link"}));
  EXPECT_EQ(found["totals"]["names"], 4);
  EXPECT_EQ(found["totals"]["names_with_findings"], 2);
  ASSERT_EQ(found["names_alone"].size(), 4u);
  EXPECT_EQ(found["names_alone"][0],
            json({{"path", "tree/broken"}, {"what", "broken link"}, {"link", "nowhere"}}));
  EXPECT_EQ(found["names_alone"][2],
            json({{"path", "tree/pipe"}, {"what", "pipe, socket or device"}}));
}

TEST(CheckCommandTest, ALinkToItselfIsABrokenOneAndItsNameAndTextAreSearched) {
  const CommandScene scene;
  scene.Write("list.txt", "Anna|x\r\n");
  scene.scene().MakeFolder("tree");
  ASSERT_EQ(scene.Shell("ln -s Anna tree/Anna").status, 0);
  const json found = Check(scene, "tree --list list.txt", 3);
  EXPECT_EQ(found["findings"].size(), 2u);
  EXPECT_EQ(found["names_alone"][0]["what"], "broken link");
}

TEST(CheckCommandTest, ATreeThatIsALinkIsSearchedForItsTextToo) {
  const CommandScene scene;
  scene.Write("list.txt", "Anna|x\r\n");
  scene.Write("Anna/file", "nothing");
  ASSERT_EQ(scene.Shell("ln -s Anna tree").status, 0);
  const json found = Check(scene, "tree --list list.txt", 3);
  ASSERT_FALSE(found["findings"].empty());
  EXPECT_EQ(found["findings"].back()["where"], "link");
}

TEST(CheckCommandTest, FilesAndFoldersWithFindingsAreCountedApart) {
  const CommandScene scene;
  scene.Write("list.txt", "Anna|x\r\n");
  scene.Write("tree/Anna/Anna", "Anna, Anna");
  scene.Write("tree/b", "nothing");
  const json totals = Check(scene, "tree --list list.txt", 3)["totals"];
  EXPECT_EQ(totals["findings"], 4);
  EXPECT_EQ(totals["files_with_findings"], 1);
  EXPECT_EQ(totals["folders_with_findings"], 1);
  const ProgramResult lines = scene.Shell("morvex-cli check tree --list list.txt");
  EXPECT_EQ(lines.errors, "4 findings in 1 of 2 files and 1 of 2 folders, 17 bytes.\n");
}

// The signal comes after 3 seconds, long before the check reaches the end of the file of 4 TiB.
TEST(CheckCommandTest, CtrlCEndsWithAMessageAWholeDocumentAndStatus1) {
  const CommandScene scene;
  scene.Write("list.txt", "Anna|x\r\n");
  scene.Write("tree/a", "Anna");
  scene.Write("tree/c", "Anna");
  ASSERT_EQ(scene.Shell("truncate -s 4T tree/b").status, 0);
  const std::string check =
      "timeout --foreground --preserve-status -s INT 3 morvex-cli check tree --list list.txt";
  const ProgramResult document = scene.Shell(check + " --json --quiet");
  EXPECT_EQ(document.status, 1);
  EXPECT_EQ(document.errors,
            "Interrupted: the check was stopped, not everything was looked through.\n");
  const json found = json::parse(document.output);
  EXPECT_EQ(found["interrupted"], true);
  EXPECT_EQ(found["findings"].size(), 1u);
  EXPECT_EQ(found["totals"]["unreadable"], 0);
  const ProgramResult lines = scene.Shell(check);
  EXPECT_EQ(lines.status, 1);
  EXPECT_NE(lines.output.find("tree/a:1: "), std::string::npos) << lines.output;
  EXPECT_NE(lines.errors.find("Interrupted: "), std::string::npos) << lines.errors;
}

// When the signal comes, the check is waiting for the slow reader of its output.
TEST(CheckCommandTest, CtrlCLeavesTheDocumentWholeWhoeverReadsItSlowly) {
  const CommandScene scene;
  scene.Write("list.txt", "Anna|x\r\n");
  std::string many;
  for (int i = 0; i < 2000; ++i) many += "Anna and more\n";
  for (int file = 0; file < 300; ++file) scene.Write("tree/" + std::to_string(file), many);
  ASSERT_EQ(scene.Shell("mkfifo pipe").status, 0);
  const ProgramResult slow = scene.Shell(
      "(sleep 3; cat) < pipe > out.json & exec 3> pipe; "
      "timeout --foreground --preserve-status -s INT 2 morvex-cli check tree --list list.txt "
      "--json --quiet >&3; status=$?; exec 3>&-; wait; exit $status");
  EXPECT_EQ(slow.status, 1);
  EXPECT_EQ(slow.errors,
            "Interrupted: the check was stopped, not everything was looked through.\n");
  const json found = json::parse(scene.Read("out.json"), nullptr, false);
  ASSERT_FALSE(found.is_discarded());
  EXPECT_EQ(found["interrupted"], true);
}

TEST(CheckCommandTest, AListThatMayLackRowsNeverPasses) {
  const CommandScene scene;
  scene.Write("tree/a", "nothing");
  for (const char* list :
       {"\xEF\xBB\xBF"
        "Anna|x\n",
        "Anna|x\nBert;y\n", "Anna|x||\nBert|y\n", "Anna|x\n|||\nBert|y\n", "Anna|x\rBert|y\r"}) {
    scene.Write("list.txt", list);
    const ProgramResult lines = scene.Shell("morvex-cli check tree --list list.txt --quiet");
    EXPECT_EQ(lines.status, 3) << list;
    EXPECT_NE(lines.errors.find("list.txt: warning: not all rows were looked for"),
              std::string::npos)
        << lines.errors;
    const json found = Check(scene, "tree --list list.txt", 3);
    EXPECT_EQ(found["all_rows"], false) << list;
    EXPECT_TRUE(found["findings"].empty()) << list;
    EXPECT_EQ(scene.Shell("morvex-cli check tree --list list.txt --strict").status, 1) << list;
  }
  scene.Write("list.txt", "Anna|x\n|||\n");
  EXPECT_EQ(Check(scene, "tree --list list.txt", 0)["all_rows"], true);
}

TEST(CheckCommandTest, AByteOrderMarkIsDroppedFromWhatIsSought) {
  const CommandScene scene;
  scene.Write("list.txt",
              "\xEF\xBB\xBF"
              "Anna|x\n\xEF\xBB\xBF"
              "Born: *;|\n");
  scene.Write("tree/a", "Anna. Born: 1 May;");
  const json found = Check(scene, "tree --list list.txt --joker '*'", 3);
  ASSERT_EQ(found["findings"].size(), 2u);
  EXPECT_EQ(found["findings"][0]["left"], "Anna");
  EXPECT_EQ(found["findings"][1]["left"], "Born: *;");
}

TEST(CheckCommandTest, WhatARowThatEndsInItsOwnBeginningLeavesIsFoundOrNotJudged) {
  const CommandScene scene;
  scene.Write("tree/a", "name=\"Renate\" Mr Renate ;Renate;");
  const std::vector<std::pair<const char*, std::size_t>> lists = {
      {"name=\"*\"|name=\"[x]\"\n", 1}, {"Mr * |[m]\n", 0}, {";*;|;[y];\n", 1}, {";*;|\n", 0}};
  for (const auto& [list, findings] : lists) {
    scene.Write("list.txt", list);
    const std::string options = " --list list.txt --joker '*'";
    ASSERT_EQ(scene.Shell("rm -rf out && morvex-cli run tree out --all --yes" + options).status, 0);
    ASSERT_NE(scene.Read("out/a").find("nate"), std::string::npos) << list;
    const json found = Check(scene, "out" + options, 3);
    EXPECT_EQ(found["findings"].size(), findings) << list;
    EXPECT_EQ(found["all_rows"], findings > 0) << list;
  }
}

TEST(CheckCommandTest, WhatAWildcardLeavesThatTakesInOneByteIsNotJudged) {
  const CommandScene scene;
  scene.Write("tree/a", "Mr Renate");
  const std::string options = " --list list.txt --joker '*'";
  for (const char* right : {"", "[m]", "Mr X"}) {
    scene.Write("list.txt", "Mr *|" + std::string(right) + "\n");
    ASSERT_EQ(scene.Shell("rm -rf out && morvex-cli run tree out --all --yes" + options).status, 0);
    ASSERT_NE(scene.Read("out/a").find("enate"), std::string::npos) << right;
    EXPECT_EQ(Check(scene, "out" + options, 3)["all_rows"], false) << right;
  }
  // If the list also has a longer row, the wildcard at the end of the first row takes in the rest
  // of the file.
  scene.Write("list.txt", "Mr *|[m]\nVollmoor|x\n");
  ASSERT_EQ(scene.Shell("rm -rf out && morvex-cli run tree out --all --yes" + options).status, 0);
  EXPECT_EQ(scene.Read("out/a"), "[m]");
  EXPECT_EQ(Check(scene, "out" + options, 0)["all_rows"], true);
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
