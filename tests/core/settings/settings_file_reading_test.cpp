// Reading a settings file: every line's conversion, short files, line ends, the extension list.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/settings/options.h"
#include "core/settings/settings_file.h"
#include "tests/core/settings/settings_lines.h"

namespace morvex::test {
namespace {

struct LogCase {
  std::string line;
  int before;
  int after;
};

TEST(ReadInitFile, TheLoggingLineIsTheNumberBehindTheFirstEqualsSign) {
  const std::vector<LogCase> cases = {
      {"log=1", 0, 1},   {"log=0", 1, 0},    {"log=2", 1, 2},    {"log= 1", 0, 1},
      {"log=1 ", 0, 1},  {"log=1abc", 0, 1}, {"log=+1", 0, 1},   {"log=1e0", 0, 1},
      {"log=0.5", 1, 0}, {"log=1.5", 0, 2},  {"log=0.51", 0, 1}, {"1", 0, 1},
      {"0", 1, 0},       {"2", 0, 2},        {"=1", 0, 1},       {"anything=1", 0, 1},
      {"log=yes", 1, 0}, {"log=", 1, 0},     {"", 1, 0},         {"log", 1, 0},
      {"log==1", 1, 0},  {"log=x=1", 1, 0},
  };
  for (const LogCase& log : cases) {
    TestProgram test;
    test.program.frmOpties.chkLoggen.SetValue(log.before);
    ReadInitLines(test, InitLinesWith(3, log.line));
    EXPECT_EQ(test.program.frmOpties.chkLoggen.value(), log.after) << log.line;
    EXPECT_EQ(test.program.settings.LoggingStatusText,
              log.after == 1 ? "Logging: enabled" : "Logging: disabled")
        << log.line;
  }
}

TEST(ReadInitFile, ALoggingValueThatDoesNotFitTheBoxLeavesItAsItWas) {
  for (const char* line : {"log=3", "log=-1", "log=-32768", "log=40000", "log=1e400"}) {
    for (const int before : {0, 1, 2}) {
      TestProgram test;
      test.program.frmOpties.chkLoggen.SetValue(before);
      ReadInitLines(test, InitLinesWith(3, line));
      EXPECT_EQ(test.program.frmOpties.chkLoggen.value(), before) << line;
      EXPECT_EQ(test.program.settings.LoggingStatusText,
                before == 1 ? "Logging: enabled" : "Logging: disabled")
          << line;
      EXPECT_EQ(test.program.settings.gSeparator, "|") << "the lines behind it are still read";
    }
  }
}

TEST(ReadInitFile, TheLoggingBoxGetsItsToolTip) {
  TestProgram test;
  ReadInitLines(test, InitLinesWith(3, "log=1"));
  EXPECT_EQ(test.program.frmOpties.chkLoggen.tool_tip.get(), "/program/Morvex.log");
  ReadInitLines(test, InitLinesWith(3, "log=0"));
  EXPECT_EQ(test.program.frmOpties.chkLoggen.tool_tip.get(), "Logging disabled");
}

struct TextCase {
  std::string line;
  std::string value;
};

TEST(ReadInitFile, TheSeparatorIsWhateverStandsBehindTheFirstEqualsSign) {
  const std::vector<TextCase> cases = {
      {"sep=|", "|"}, {"sep=::", "::"}, {"sep= ", " "}, {"sep=  | ", "  | "},
      {"=;", ";"},    {"|", "|"},       {"sep", "sep"}, {"sep==", "="},
      {"", ""},       {"x=y=z", "y=z"},
  };
  for (const TextCase& separator : cases) {
    TestProgram test;
    test.program.settings.gSeparator = "before";
    ReadInitLines(test, InitLinesWith(4, separator.line));
    EXPECT_EQ(test.program.settings.gSeparator, separator.value) << separator.line;
  }
}

struct JokerCase {
  std::string line;
  int code;
};

TEST(ReadInitFile, TheJokerIsTheFirstCharacterBehindTheFirstEqualsSign) {
  const std::vector<JokerCase> cases = {
      {"jok=*", '*'},
      {"jok=ab", 'a'},
      {"jok==", '='},
      {"jok= ", ' '},
      {"jok=\xE9", 0xE9},
      {"jok=", 0},
      {std::string("jok=\0", 5), 0},
      {std::string("jok=\0*", 6), 0},
      {"", 0},
      {"x=y=z", 'y'},
  };
  for (const JokerCase& joker : cases) {
    TestProgram test;
    test.program.settings.gJoker = '#';
    ReadInitLines(test, InitLinesWith(5, joker.line));
    EXPECT_EQ(test.program.settings.gJoker, joker.code) << joker.line;
  }
}

TEST(ReadInitFile, AJokerOfSeveralBytesIsNoneInUtf8) {
  TestProgram test;
  test.program.settings.gJoker = '#';
  test.system.codec = TextCodec::kUtf8;
  ReadInitLines(test, InitLinesWith(5, "jok=\xC3\xA9"));
  EXPECT_EQ(test.program.settings.gJoker, 0);
}

// The settings as texts, so that a test can compare them before and after.
std::vector<std::string> State(const TestProgram& test) {
  return {test.program.frmMorvex.Text1(kSourceBox).text,
          test.program.frmMorvex.Text1(kTargetBox).text,
          test.program.settings.SubstitutieFile,
          std::to_string(test.program.frmOpties.chkLoggen.value()),
          test.program.settings.gSeparator,
          std::to_string(test.program.settings.gJoker)};
}

TEST(ReadInitFile, ValuesThatAShortFileDoesNotGiveStayAsTheyWere) {
  const std::vector<std::string> lines = {"/s", "/t", "/l", "log=1", "sep=::", "jok=*"};
  const std::vector<std::string> given = {"/s", "/t", "/l", "1", "::", "42"};
  const std::vector<std::string> before = {"/old s", "/old t", "/old l", "2", ";", "35"};
  for (std::size_t count = 0; count <= lines.size(); ++count) {
    TestProgram test;
    test.program.frmMorvex.Text1(kSourceBox).text = before[0];
    test.program.frmMorvex.Text1(kTargetBox).text = before[1];
    test.program.settings.SubstitutieFile = before[2];
    test.program.frmOpties.chkLoggen.SetValue(2);
    test.program.settings.gSeparator = before[4];
    test.program.settings.gJoker = '#';
    test.program.frmOpties.lstExtensie.entries = {{".old", true}};
    ReadInitLines(test, {lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(count)});
    std::vector<std::string> expected = before;
    for (std::size_t i = 0; i < count; ++i) expected[i] = given[i];
    EXPECT_EQ(State(test), expected) << count << " lines";
    EXPECT_EQ(ExtensionLines(test), (std::vector<std::string>{"1.old"})) << count << " lines";
    EXPECT_FALSE(test.program.settings.ReadingInitFile);
  }
}

TEST(ReadInitFile, LinesMayEndInLfAloneAndTheLastInNothing) {
  TestProgram test;
  test.files.AddFile(kInitFile, "/s\n/t\r\n/l\nlog=1\nsep=::\r\njok=*\n1.txt\n0.doc");
  ReadInitFile(test.program);
  EXPECT_EQ(State(test), (std::vector<std::string>{"/s", "/t", "/l", "1", "::", "42"}));
  EXPECT_EQ(ExtensionLines(test), (std::vector<std::string>{"1.txt", "0.doc"}));
}

TEST(ReadInitFile, ACrAloneIsPartOfItsLine) {
  TestProgram test;
  test.files.AddFile(kInitFile, "/s\r/x\r\r\n/t\r\n");
  ReadInitFile(test.program);
  EXPECT_EQ(test.program.frmMorvex.Text1(kSourceBox).text.get(), "/s\r/x\r");
  EXPECT_EQ(test.program.frmMorvex.Text1(kTargetBox).text.get(), "/t");
}

TEST(ReadInitFile, BytesAreTakenAsTheyStand) {
  std::string bytes;
  for (int code = 0; code < 256; ++code) {
    if (code != '\n') bytes += static_cast<char>(code);
  }
  TestProgram test;
  ReadInitLines(test, {bytes, "", "", "", "", "", "1" + bytes});
  EXPECT_EQ(test.program.frmMorvex.Text1(kSourceBox).text.get(), bytes);
  EXPECT_EQ(ExtensionLines(test), (std::vector<std::string>{"1" + bytes}));
}

TEST(ReadInitFile, APathOfAMegabyteIsReadWhole) {
  const std::string path = "/" + std::string(1'000'000, 'p');
  TestProgram test;
  ReadInitLines(test, {path, "/t"});
  EXPECT_EQ(test.program.frmMorvex.Text1(kSourceBox).text.get(), path);
  EXPECT_EQ(test.program.frmMorvex.Text1(kTargetBox).text.get(), "/t");
}

TEST(ReadInitFile, ExtensionsReplaceEntriesByTheirPlaceAndAddToTheCounters) {
  TestProgram test;
  test.program.frmOpties.lstExtensie.entries = {{".a", false}, {".b", true}, {".c", true}};
  test.program.settings.N_Extension_Selected = 2;
  test.program.settings.N_Extension_Total = 3;
  test.program.frmMorvex.lblExtensions.caption = ".b.c";
  ReadInitLines(test, {"", "", "", "", "", "", "1.x", "0.y"});
  EXPECT_EQ(ExtensionLines(test), (std::vector<std::string>{"1.x", "0.y", "1.c"}));
  EXPECT_EQ(test.program.settings.N_Extension_Selected, 3);
  EXPECT_EQ(test.program.settings.N_Extension_Total, 5);
  EXPECT_EQ(test.program.frmMorvex.lblExtensions.caption.get(), ".b.c.x");
}

TEST(ReadInitFile, AMarkAloneIsAnEntryWithoutText) {
  TestProgram test;
  ReadInitLines(test, {"", "", "", "", "", "", "1", "0", "1.a"});
  EXPECT_EQ(ExtensionLines(test), (std::vector<std::string>{"1", "0", "1.a"}));
  EXPECT_EQ(test.program.settings.N_Extension_Selected, 2);
  EXPECT_EQ(test.program.settings.N_Extension_Total, 3);
}

TEST(ReadInitFile, TheFileLabelIsResetToTwelveBlanksInTheHighlightColour) {
  TestProgram test;
  test.program.frmMorvex.lblFiles.caption = "/in/a.txt";
  ReadInitLines(test, {"/s"});
  EXPECT_EQ(test.program.frmMorvex.lblFiles.caption.get(), "            ");
  EXPECT_EQ(test.program.frmMorvex.lblFiles.colour.get(), Colour::kSystemHighlight);
}

TEST(ReadInitFile, ChangedPathsDisableGo) {
  TestProgram test;
  test.program.frmMorvex.cmdGo.enabled = true;
  ReadInitLines(test, {"/s", "/t"});
  EXPECT_FALSE(test.program.frmMorvex.cmdGo.enabled.get());
}

}  // namespace
}  // namespace morvex::test
