// Writing a settings file and reading it again, and reading one and writing it again.
#include "core/settings/settings_file.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/settings/options.h"
#include "tests/core/settings/settings_lines.h"

namespace morvex::test {
namespace {

const char* const kExample =
    "C:\\Data\\Project\r\n"
    "D:\\Export\r\n"
    "C:\\Data\\list.txt\r\n"
    "log=1\r\n"
    "sep=|\r\n"
    "jok=*\r\n"
    "1.txt\r\n"
    "0.doc\r\n"
    "1.xml\r\n";

TEST(SettingsFile, TheExampleIsReadIntoEverySetting) {
  TestProgram test('\\');
  test.files.AddFile("C:\\Morvex\\Init.dat", kExample);
  ReadInitFile(test.program);
  const Settings& settings = test.program.settings;
  EXPECT_EQ(test.program.frmMorvex.Text1(kSourceBox).text.get(), "C:\\Data\\Project");
  EXPECT_EQ(test.program.frmMorvex.Text1(kTargetBox).text.get(), "D:\\Export");
  EXPECT_EQ(settings.SubstitutieFile, "C:\\Data\\list.txt");
  EXPECT_EQ(test.program.frmOpties.chkLoggen.value(), 1);
  EXPECT_EQ(settings.LoggingStatusText, "Logging: enabled");
  EXPECT_EQ(settings.gSeparator, "|");
  EXPECT_EQ(settings.gJoker, '*');
  EXPECT_EQ(ExtensionLines(test), (std::vector<std::string>{"1.txt", "0.doc", "1.xml"}));
  EXPECT_EQ(settings.N_Extension_Selected, 2);
  EXPECT_EQ(settings.N_Extension_Total, 3);
  EXPECT_EQ(test.program.frmMorvex.lblExtensions.caption.get(), ".txt.xml");
  EXPECT_FALSE(settings.ReadingInitFile);
  EXPECT_FALSE(settings.AutoRunFromInitFile);
  EXPECT_FALSE(test.program.Beeindigd);
}

TEST(SettingsFile, TheExampleIsWrittenAgainByteForByte) {
  TestProgram test('\\');
  test.files.AddFile("C:\\Morvex\\Init.dat", kExample);
  ReadInitFile(test.program);
  test.files.DeleteFile("C:\\Morvex\\Init.dat");
  WriteInitFile(test.program);
  EXPECT_EQ(test.files.Bytes("C:\\Morvex\\Init.dat"), kExample);
}

TEST(SettingsFile, TheExampleWithItsListThereIsWrittenAgainByteForByte) {
  TestProgram test('\\');
  test.files.AddFile("C:\\Morvex\\Init.dat", kExample);
  test.files.AddFile("C:\\Data\\list.txt", "Jansen|Person A||\r\n");
  ReadInitFile(test.program);
  WriteInitFile(test.program);
  EXPECT_EQ(test.files.Bytes("C:\\Morvex\\Init.dat"), kExample);
}

TEST(SettingsFile, EmptySeparatorIsReadAndBecomesTheBarWhenWritten) {
  TestProgram test;
  ReadInitLines(test, InitLinesWith(4, "sep="));
  EXPECT_EQ(test.program.settings.gSeparator, "");
  WriteInitFile(test.program);
  EXPECT_EQ(test.program.settings.gSeparator, "|");
  EXPECT_EQ(test.files.Bytes(kInitFile),
            InitLines({"", "", "", "log=0", "sep=|", "jok=" + std::string(1, '\0')}));
}

TEST(SettingsFile, OnlyTheFirstEqualsSignSplitsTheSeparatorLine) {
  TestProgram test;
  ReadInitLines(test, InitLinesWith(4, "sep=a=b"));
  EXPECT_EQ(test.program.settings.gSeparator, "a=b");
}

TEST(SettingsFile, ALoneOneInTheFourthLineSwitchesLoggingOn) {
  TestProgram test;
  ReadInitLines(test, InitLinesWith(3, "1"));
  EXPECT_EQ(test.program.frmOpties.chkLoggen.value(), 1);
  EXPECT_EQ(test.program.settings.LoggingStatusText, "Logging: enabled");
}

TEST(SettingsFile, AnExtensionLineWithAnyMarkButZeroIsSelected) {
  TestProgram test;
  ReadInitLines(test, {"", "", "", "log=0", "sep=|", "jok=", "x.txt", "0.doc", "..a", " .b"});
  EXPECT_EQ(ExtensionLines(test), (std::vector<std::string>{"1.txt", "0.doc", "1.a", "1.b"}));
}

TEST(SettingsFile, EntriesBehindABlankLineAreLostAtTheNextWriting) {
  TestProgram test;
  ReadInitLines(test, {"", "", "", "log=0", "sep=|", "jok=*", "1.txt", "", "1.doc"});
  EXPECT_EQ(ExtensionLines(test), (std::vector<std::string>{"1.txt"}));
  WriteInitFile(test.program);
  EXPECT_EQ(test.files.Bytes(kInitFile),
            InitLines({"", "", "", "log=0", "sep=|", "jok=*", "1.txt"}));
}

TEST(SettingsFile, NoJokerSurvivesAsANulByte) {
  TestProgram test;
  test.program.settings.gJoker = 0;
  WriteInitFile(test.program);
  EXPECT_EQ(test.files.Bytes(kInitFile),
            InitLines({"", "", "", "log=0", "sep=|", "jok=" + std::string(1, '\0')}));
  test.program.settings.gJoker = '*';
  ReadInitFile(test.program);
  EXPECT_EQ(test.program.settings.gJoker, 0);
}

// A line feed cannot be typed into the wildcard's single-line box.
TEST(SettingsFile, EveryJokerButALineFeedSurvives) {
  for (int code = 0; code < 256; ++code) {
    if (code == '\n') continue;
    TestProgram test;
    test.program.settings.gJoker = static_cast<std::uint8_t>(code);
    test.program.frmOpties.lstExtensie.entries = {{".txt", true}};
    WriteInitFile(test.program);
    test.program.settings.gJoker = 1;
    test.program.frmOpties.lstExtensie.entries = {};
    ReadInitFile(test.program);
    EXPECT_EQ(test.program.settings.gJoker, code);
    EXPECT_EQ(ExtensionLines(test), (std::vector<std::string>{"1.txt"})) << "joker " << code;
  }
}

TEST(SettingsFile, AGreyedLoggingBoxIsWrittenAsTwoAndReadsBackAsDisabled) {
  TestProgram test;
  ASSERT_TRUE(test.program.frmOpties.chkLoggen.SetValue(2));
  WriteInitFile(test.program);
  EXPECT_EQ(test.files.Bytes(kInitFile).substr(6, 7), "log=2\r\n");
  test.program.frmOpties.chkLoggen.SetValue(1);
  ReadInitFile(test.program);
  EXPECT_EQ(test.program.frmOpties.chkLoggen.value(), 2);
  EXPECT_EQ(test.program.settings.LoggingStatusText, "Logging: disabled");
}

TEST(SettingsFile, SeparatorsOfAnyKindSurvive) {
  for (const std::string& separator :
       {std::string("::"), std::string(" "), std::string("="), std::string("a=b=c"),
        std::string("\t"), std::string("\xE9\xFF"), std::string("\0", 1), std::string(5000, ';')}) {
    TestProgram test;
    test.program.settings.gSeparator = separator;
    WriteInitFile(test.program);
    test.program.settings.gSeparator = "other";
    ReadInitFile(test.program);
    EXPECT_EQ(test.program.settings.gSeparator, separator);
  }
}

TEST(SettingsFile, AThousandExtensionsSurviveInOrder) {
  std::vector<std::string> lines = {"/s", "/t", "/l", "log=1", "sep=|", "jok=*"};
  for (int i = 0; i < 1000; ++i) lines.push_back((i % 3 ? "1.e" : "0.e") + std::to_string(i));
  TestProgram test;
  ReadInitLines(test, lines);
  EXPECT_EQ(test.program.settings.N_Extension_Total, 1000);
  EXPECT_EQ(test.program.settings.N_Extension_Selected, 666);
  test.files.AddFile(kInitFile, "");
  WriteInitFile(test.program);
  EXPECT_EQ(test.files.Bytes(kInitFile), InitLines(lines));
}

}  // namespace
}  // namespace morvex::test
