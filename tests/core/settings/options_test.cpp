// The options window: opening, applying wildcard and separator, the logging box.
#include "core/settings/options.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

TEST(OptionsWindowOpening, ThePictureShowsTheWindowAndActivatesIt) {
  TestProgram test;
  test.program.settings.gSeparator = "::";
  imOpties_Click(test.program);
  EXPECT_TRUE(test.program.frmOpties.visible.get());
  EXPECT_EQ(test.program.frmOpties.txtSeparator.text.get(), "::");
  EXPECT_EQ(test.program.frmOpties.focus.get(), &test.program.frmOpties.txtExtensie);
}

TEST(OptionsWindowOpening, NotWhileARunWorks) {
  TestProgram test;
  test.program.run.working = true;
  imOpties_Click(test.program);
  EXPECT_FALSE(test.program.frmOpties.visible.get());
}

TEST(OptionsWindowOpening, NotWhileAListIsBeingRead) {
  TestProgram test;
  test.program.frmReplacements.importing = true;
  imOpties_Click(test.program);
  EXPECT_FALSE(test.program.frmOpties.visible.get());
}

TEST(OptionsWindowOpening, ActivationShowsTheSettings) {
  TestProgram test;
  test.program.settings.gSeparator = "sep";
  test.program.settings.gJoker = 0xE9;
  test.program.frmOpties.lstExtensie.entries = {{".a", true}, {".b", false}, {".c", true}};
  frmOpties_Activate(test.program);
  EXPECT_EQ(test.program.frmOpties.txtSeparator.text.get(), "sep");
  EXPECT_EQ(test.program.frmOpties.txtJoker.text.get(), "\xE9");
  EXPECT_EQ(test.program.frmOpties.lblExtensies.caption.get(), "extensions 2(3)");
  EXPECT_EQ(test.program.frmOpties.focus.get(), &test.program.frmOpties.txtExtensie);
}

TEST(OptionsWindowOpening, TenEntriesWithThreeSelectedAreCaptionedSo) {
  TestProgram test;
  std::vector<ListEntry> entries;
  for (int i = 0; i < 10; ++i) entries.push_back({".e" + std::to_string(i), i < 3});
  test.program.frmOpties.lstExtensie.entries = entries;
  frmOpties_Activate(test.program);
  EXPECT_EQ(test.program.frmOpties.lblExtensies.caption.get(), "extensions 3(10)");
}

TEST(OptionsWindowOpening, WithoutAWildcardItsBoxIsEmpty) {
  TestProgram test;
  test.program.frmOpties.txtJoker.text = "#";
  frmOpties_Activate(test.program);
  EXPECT_EQ(test.program.frmOpties.txtJoker.text.get(), "");
}

TEST(OptionsWindowClosing, TheCloseBoxAppliesNothing) {
  TestProgram test;
  test.program.settings.gJoker = '*';
  imOpties_Click(test.program);
  test.program.frmOpties.txtSeparator.text = ";";
  test.program.frmOpties.txtJoker.text = "#";
  frmOpties_Close(test.program);
  EXPECT_FALSE(test.program.frmOpties.visible.get());
  EXPECT_EQ(test.program.settings.gSeparator, "|");
  EXPECT_EQ(test.program.settings.gJoker, '*');
}

TEST(OptionsWindowClosing, HidingAndShowingKeepsTheList) {
  TestProgram test;
  test.program.frmOpties.lstExtensie.entries = {{".a", true}, {".b", false}};
  imOpties_Click(test.program);
  frmOpties_Close(test.program);
  imOpties_Click(test.program);
  EXPECT_EQ(test.program.frmOpties.lstExtensie.entries.get(),
            (std::vector<ListEntry>{{".a", true}, {".b", false}}));
}

// Opens the window, fills its two boxes and applies them.
void Apply(TestProgram& test, const std::string& separator, const std::string& joker) {
  imOpties_Click(test.program);
  test.program.frmOpties.txtSeparator.text = separator;
  test.program.frmOpties.txtJoker.text = joker;
  cmdToepassen_Click(test.program);
}

TEST(OptionsApplying, AnEmptySeparatorBoxAppliesTheBar) {
  TestProgram test;
  test.program.settings.gSeparator = ";";
  Apply(test, "", "");
  EXPECT_EQ(test.program.settings.gSeparator, "|");
}

TEST(OptionsApplying, ASeparatorOfTwoColonsIsAppliedWhole) {
  TestProgram test;
  Apply(test, "::", "");
  EXPECT_EQ(test.program.settings.gSeparator, "::");
}

TEST(OptionsApplying, AnySeparatorIsTakenAsItIs) {
  for (const std::string& separator : {std::string(" "), std::string(" | "), std::string("a=b"),
                                       std::string("\t"), std::string(1000, 's')}) {
    TestProgram test;
    Apply(test, separator, "");
    EXPECT_EQ(test.program.settings.gSeparator, separator);
  }
}

TEST(OptionsApplying, TheFirstCharacterOfTheWildcardBoxIsTheWildcard) {
  TestProgram test;
  Apply(test, "|", "ab");
  EXPECT_EQ(test.program.settings.gJoker, 'a');
}

TEST(OptionsApplying, AnEmptyWildcardBoxIsNoWildcard) {
  TestProgram test;
  test.program.settings.gJoker = '*';
  Apply(test, "|", "");
  EXPECT_EQ(test.program.settings.gJoker, 0);
}

TEST(OptionsApplying, AWildcardOfSeveralBytesIsNoneInUtf8AndSaysNothing) {
  TestProgram test;
  test.system.codec = TextCodec::kUtf8;
  test.program.settings.gJoker = '*';
  Apply(test, "|", "\xE2\x82\xAC");
  EXPECT_EQ(test.program.settings.gJoker, 0);
  EXPECT_TRUE(test.user.messages.empty());
}

TEST(OptionsApplying, OpeningAndApplyingChangesNoWildcard) {
  for (const TextCodec codec : {TextCodec::kSingleByte, TextCodec::kUtf8}) {
    for (int code = 0; code < 256; ++code) {
      TestProgram test;
      test.system.codec = codec;
      test.program.settings.gJoker = static_cast<std::uint8_t>(code);
      imOpties_Click(test.program);
      cmdToepassen_Click(test.program);
      EXPECT_EQ(test.program.settings.gJoker, code);
    }
  }
}

TEST(OptionsApplying, AppliesNothingWhileARunWorksOrAListIsBeingRead) {
  for (const bool run : {true, false}) {
    TestProgram test;
    imOpties_Click(test.program);
    test.program.frmOpties.txtSeparator.text = ";";
    test.program.frmOpties.txtJoker.text = "#";
    (run ? test.program.run.working : test.program.frmReplacements.importing) = true;
    cmdToepassen_Click(test.program);
    EXPECT_EQ(test.program.settings.gSeparator, "|");
    EXPECT_EQ(test.program.settings.gJoker, 0);
    EXPECT_TRUE(test.program.frmOpties.visible.get());
  }
}

TEST(OptionsApplying, HidesTheWindowAndWritesNothing) {
  TestProgram test;
  const std::int64_t calls = test.files.calls;
  Apply(test, ";", "*");
  EXPECT_FALSE(test.program.frmOpties.visible.get());
  EXPECT_EQ(test.files.calls, calls);
}

TEST(LoggingBox, CheckedItsToolTipIsTheRunLogsPath) {
  TestProgram test;
  chkLoggen_Click(test.program, 1);
  EXPECT_EQ(test.program.frmOpties.chkLoggen.value(), 1);
  EXPECT_EQ(test.program.frmOpties.chkLoggen.tool_tip.get(), "/program/Morvex.log");
}

TEST(LoggingBox, TheDoubledBackslashOfADriveRootIsCleaned) {
  TestProgram test('\\');
  test.system.program_folder = "C:\\";
  chkLoggen_Click(test.program, 1);
  EXPECT_EQ(test.program.frmOpties.chkLoggen.tool_tip.get(), "C:\\Morvex.log");
}

TEST(LoggingBox, UncheckedItsToolTipSaysSo) {
  TestProgram test;
  chkLoggen_Click(test.program, 1);
  chkLoggen_Click(test.program, 0);
  EXPECT_EQ(test.program.frmOpties.chkLoggen.value(), 0);
  EXPECT_EQ(test.program.frmOpties.chkLoggen.tool_tip.get(), "Logging disabled");
}

TEST(LoggingBox, AValueThatItCannotTakeChangesNothing) {
  for (const int value : {-1, 3, 256, -32768, 32767}) {
    TestProgram test;
    chkLoggen_Click(test.program, 1);
    chkLoggen_Click(test.program, value);
    EXPECT_EQ(test.program.frmOpties.chkLoggen.value(), 1);
    EXPECT_EQ(test.program.frmOpties.chkLoggen.tool_tip.get(), "/program/Morvex.log");
  }
}

TEST(LoggingBox, ChangesNothingOfARunThatIsSetUp) {
  TestProgram test;
  chkLoggen_Click(test.program, 1);
  EXPECT_FALSE(test.program.run.LoggingOn) << "a run reads the box at its start";
  EXPECT_TRUE(test.files.Below("/program").empty());
}

}  // namespace
}  // namespace morvex::test
