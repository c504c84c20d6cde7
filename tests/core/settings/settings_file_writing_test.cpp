// Writing the settings file: its lines, its folder, and the file after a failure.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/settings/settings_file.h"
#include "tests/core/settings/settings_lines.h"

namespace morvex::test {
namespace {

// Gives every setting a value.
void SetAll(TestProgram& test) {
  test.program.frmMorvex.Text1(kSourceBox).text = "/source";
  test.program.frmMorvex.Text1(kTargetBox).text = "/target";
  test.program.settings.SubstitutieFile = "/list.txt";
  test.program.frmOpties.chkLoggen.SetValue(1);
  test.program.settings.gSeparator = "::";
  test.program.settings.gJoker = '*';
  test.program.frmOpties.lstExtensie.entries = {{".txt", true}, {".doc", false}, {".xml", true}};
}

const std::vector<std::string> kAllLines = {
    "/source", "/target", "/list.txt", "log=1", "sep=::", "jok=*", "1.txt", "0.doc", "1.xml"};

TEST(WriteInitFile, WritesSixLinesAndOnePerExtension) {
  TestProgram test;
  SetAll(test);
  WriteInitFile(test.program);
  EXPECT_EQ(test.files.Bytes(kInitFile), InitLines(kAllLines));
}

TEST(WriteInitFile, ANewProgramsSettingsAreSixLines) {
  TestProgram test;
  WriteInitFile(test.program);
  EXPECT_EQ(test.files.Bytes(kInitFile),
            InitLines({"", "", "", "log=0", "sep=|", "jok=" + std::string(1, '\0')}));
}

TEST(WriteInitFile, ALongerFileIsReplacedWhole) {
  TestProgram test;
  test.files.AddFile(kInitFile, std::string(10'000, 'x'));
  SetAll(test);
  WriteInitFile(test.program);
  EXPECT_EQ(test.files.Bytes(kInitFile), InitLines(kAllLines));
}

TEST(WriteInitFile, GoesToTheProgramsFolderWhicheverFileWasRead) {
  TestProgram test;
  test.files.AddFile("/jobs/nightly.dat", "/named\r\n");
  test.program.settings.CommandLine_SET = true;
  test.program.settings.InitFilePath = "/jobs/nightly.dat";
  ReadInitFile(test.program);
  WriteInitFile(test.program);
  EXPECT_EQ(test.files.Bytes(kInitFile).substr(0, 8), "/named\r\n");
  EXPECT_EQ(test.files.Bytes("/jobs/nightly.dat"), "/named\r\n");
}

TEST(WriteInitFile, AProgramInADriveRootHasItsFileThere) {
  TestProgram test('\\');
  test.system.program_folder = "C:\\";
  SetAll(test);
  WriteInitFile(test.program);
  EXPECT_EQ(test.files.Bytes("C:\\Init.dat"), InitLines(kAllLines));
}

TEST(WriteInitFile, WritesNothingOnceTheProgramIsToStop) {
  TestProgram test;
  test.program.Beeindigd = true;
  test.program.settings.gSeparator = "";
  WriteInitFile(test.program);
  EXPECT_FALSE(test.files.Has(kInitFile));
  EXPECT_EQ(test.program.settings.gSeparator, "|") << "the separator is set before that is asked";
}

TEST(WriteInitFile, AFailureIsIgnoredAndLeavesTheOldFile) {
  TestProgram test;
  test.files.AddFile(kInitFile, "old");
  SetAll(test);
  bool asked = false;
  test.files.fail = [&](const std::string& call, const std::string& path) {
    asked = asked || (call == "ReplaceFile" && path == kInitFile);
    return ErrorNumber::kPermissionDenied;
  };
  WriteInitFile(test.program);
  EXPECT_TRUE(asked);
  EXPECT_EQ(test.files.Bytes(kInitFile), "old");
  EXPECT_TRUE(test.user.messages.empty());
  EXPECT_EQ(test.program.settings.gSeparator, "::");
}

TEST(WriteInitFile, AProgramFolderThatIsGoneIsIgnored) {
  TestProgram test;
  test.system.program_folder = "/gone";
  WriteInitFile(test.program);
  EXPECT_FALSE(test.files.Has("/gone"));
  EXPECT_TRUE(test.user.messages.empty());
}

TEST(WriteInitFile, TextsAreWrittenByteForByte) {
  TestProgram test;
  SetAll(test);
  const std::string bytes("/a\0b\xE9\xFF=|", 9);
  test.program.frmMorvex.Text1(kSourceBox).text = bytes;
  test.program.frmOpties.lstExtensie.entries = {{"." + bytes, true}};
  WriteInitFile(test.program);
  EXPECT_EQ(test.files.Bytes(kInitFile),
            InitLines({bytes, "/target", "/list.txt", "log=1", "sep=::", "jok=*", "1." + bytes}));
}

TEST(WriteInitFile, EveryLoggingValueIsWrittenAsItsNumber) {
  for (const int value : {0, 1, 2}) {
    TestProgram test;
    test.program.frmOpties.chkLoggen.SetValue(value);
    WriteInitFile(test.program);
    EXPECT_EQ(test.files.Bytes(kInitFile).substr(6, 7), "log=" + std::to_string(value) + "\r\n");
  }
}

}  // namespace
}  // namespace morvex::test
