// Start-up: the locations, the order of the steps, and the forms afterwards.
#include "core/run/start_up.h"

#include <gtest/gtest.h>

#include "tests/core/run/run_program.h"

namespace morvex::test {
namespace {

std::string LocalAppData(const std::vector<std::string>& environment) {
  FakeSystem system;
  system.environment = environment;
  return FindLocalAppData(system);
}

std::string CommonFiles(const std::vector<std::string>& environment) {
  FakeSystem system;
  system.environment = environment;
  return FindCommonFilesLocation(system);
}

TEST(LocalAppData, IsTheValueOfItsEntry) {
  EXPECT_EQ(LocalAppData({"PATH=/bin", "LOCALAPPDATA=C:\\Users\\ada\\Local", "X=1"}),
            "C:\\Users\\ada\\Local");
  EXPECT_EQ(LocalAppData({"LOCALAPPDATA=a=b"}), "a=b");
}

TEST(LocalAppData, OfTwoEntriesTheFirstIsUsed) {
  EXPECT_EQ(LocalAppData({"LOCALAPPDATA=one", "LOCALAPPDATA=two"}), "one");
}

TEST(LocalAppData, AnEnvironmentWithoutItLeavesItEmpty) {
  EXPECT_EQ(LocalAppData({}), "");
  EXPECT_EQ(LocalAppData({"PATH=/bin"}), "");
}

TEST(LocalAppData, AnEmptyValueLeavesItEmpty) {
  EXPECT_EQ(LocalAppData({"LOCALAPPDATA="}), "");
  EXPECT_EQ(LocalAppData({"LOCALAPPDATA=", "LOCALAPPDATA=two"}), "");
}

TEST(LocalAppData, TheNameIsComparedExactly) {
  EXPECT_EQ(LocalAppData({"LocalAppData=x", "LOCALAPPDATA2=x", "MYLOCALAPPDATA=x"}), "");
}

TEST(LocalAppData, NothingBehindTheFirstEmptyEntryIsLookedAt) {
  EXPECT_EQ(LocalAppData({"A=1", "", "LOCALAPPDATA=x"}), "");
}

TEST(CommonFilesLocation, IsTheValueCutBehindItsSecondBackslash) {
  EXPECT_EQ(CommonFiles({"CommonProgramFiles(x86)=C:\\Program Files (x86)\\Common Files"}),
            "C:\\Program Files (x86)\\");
  EXPECT_EQ(CommonFiles({"CommonProgramFiles(x86)=C:\\a\\b\\c"}), "C:\\a\\");
  EXPECT_EQ(CommonFiles({"CommonProgramFiles(x86)=\\\\"}), "\\\\");
}

TEST(CommonFilesLocation, OfTwoEntriesTheLaterIsUsed) {
  EXPECT_EQ(CommonFiles({"CommonProgramFiles(x86)=C:\\one\\x", "A=1",
                         "CommonProgramFiles(x86)=C:\\two\\x", "B=2"}),
            "C:\\two\\");
}

TEST(CommonFilesLocation, AValueWithOnlyOneBackslashLeavesItEmpty) {
  EXPECT_EQ(CommonFiles({"CommonProgramFiles(x86)=C:\\Common"}), "");
  EXPECT_EQ(CommonFiles({"CommonProgramFiles(x86)=Common"}), "");
}

TEST(CommonFilesLocation, AnEnvironmentWithoutItLeavesItEmpty) {
  EXPECT_EQ(CommonFiles({}), "");
  EXPECT_EQ(CommonFiles({"CommonProgramFiles=C:\\a\\b", "COMMONPROGRAMFILES(X86)=C:\\a\\b"}), "");
}

TEST(CommonFilesLocation, AnEmptyValueEndsTheWalk) {
  EXPECT_EQ(CommonFiles({"CommonProgramFiles(x86)=C:\\one\\x",
                         "CommonProgramFiles(x86)=", "CommonProgramFiles(x86)=C:\\two\\x"}),
            "");
}

TEST(CommonFilesLocation, NothingBehindTheFirstEmptyEntryIsLookedAt) {
  EXPECT_EQ(
      CommonFiles({"CommonProgramFiles(x86)=C:\\one\\x", "", "CommonProgramFiles(x86)=C:\\two\\x"}),
      "C:\\one\\");
}

class StartUpTest : public ::testing::Test {
 protected:
  StartUpTest() { test_.program.settings.gSeparator = ""; }

  TestProgram test_;
  Program& program_ = test_.program;
};

TEST_F(StartUpTest, FixesTheLocations) {
  test_.system.environment = {"LOCALAPPDATA=C:\\Local", "CommonProgramFiles(x86)=C:\\P\\Common"};
  EXPECT_EQ(StartUp(program_), ErrorNumber::kNone);
  EXPECT_EQ(program_.locations.help_file, "/program/MorvexHELP.chm");
  EXPECT_EQ(program_.locations.gLocalAppData, "C:\\Local");
  EXPECT_EQ(program_.locations.gCommonFilesLocation, "C:\\P\\");
}

TEST_F(StartUpTest, AProgramFolderAtADriveRootGivesAHelpFileWithADoubledBackslash) {
  TestProgram test('\\');
  test.system.program_folder = "C:\\";
  EXPECT_EQ(StartUp(test.program), ErrorNumber::kNone);
  EXPECT_EQ(test.program.locations.help_file, "C:\\\\MorvexHELP.chm");
}

TEST_F(StartUpTest, AnEmptySeparatorBecomesTheBar) {
  StartUp(program_);
  EXPECT_EQ(program_.settings.gSeparator, "|");
}

TEST_F(StartUpTest, ASeparatorThatIsSetStays) {
  program_.settings.gSeparator = ";";
  StartUp(program_);
  EXPECT_EQ(program_.settings.gSeparator, ";");
}

TEST_F(StartUpTest, TheSettingsFilesSeparatorReplacesTheDefault) {
  test_.files.AddFile("/program/Init.dat", "/s\r\n/t\r\n\r\nlog=0\r\nsep=::\r\njok=*\r\n");
  StartUp(program_);
  EXPECT_EQ(program_.settings.gSeparator, "::");
}

TEST_F(StartUpTest, AProgramThatIsToEndAlreadyStopsBehindTheSeparator) {
  test_.files.AddFile("/program/Init.dat", SettingsText("/s", "/t"));
  test_.system.environment = {"LOCALAPPDATA=C:\\Local"};
  test_.system.command_line = "-dy 55";
  program_.Beeindigd = true;
  program_.settings.AutoRunDelay = 1234;
  EXPECT_EQ(StartUp(program_), ErrorNumber::kNone);
  EXPECT_EQ(program_.locations.gLocalAppData, "C:\\Local");
  EXPECT_EQ(program_.settings.gSeparator, "|");
  EXPECT_EQ(program_.settings.AutoRunDelay, 1234);
  EXPECT_EQ(program_.frmMorvex.Text1(kSourceBox).text.get(), "");
  EXPECT_FALSE(program_.frmOpties.loaded);
}

TEST_F(StartUpTest, TheDelayStartsAtZero) {
  program_.settings.AutoRunDelay = 1234;
  StartUp(program_);
  EXPECT_EQ(program_.settings.AutoRunDelay, 0);
}

TEST_F(StartUpTest, LeavesAnIdleWindow) {
  StartUp(program_);
  EXPECT_TRUE(program_.frmMorvex.loaded);
  EXPECT_TRUE(program_.frmMorvex.visible);
  EXPECT_FALSE(program_.frmMorvex.cmdGo.enabled);
  EXPECT_EQ(program_.frmMorvex.cmdGo.caption.get(), ">----------->");
  EXPECT_TRUE(program_.frmMorvex.cmdAnonymize.enabled);
  EXPECT_FALSE(program_.frmMorvex.ProgressBar1.visible);
  EXPECT_FALSE(HasEnded(program_));
  EXPECT_EQ(program_.run.end, RunEnd::kNone);
}

TEST_F(StartUpTest, LeavesTheOptionsWindowLoadedAndHidden) {
  StartUp(program_);
  EXPECT_TRUE(program_.frmOpties.loaded);
  EXPECT_FALSE(program_.frmOpties.visible);
  EXPECT_FALSE(program_.frmOpties.lstExtensie.visible);
  EXPECT_FALSE(program_.frmReplacements.loaded);
}

TEST_F(StartUpTest, TheLoggingBoxStartsWithLoggingDisabledAsItsHintEvenWhenItIsChecked) {
  test_.files.AddFile("/program/Init.dat", SettingsText("/s", "/t"));
  StartUp(program_);
  EXPECT_EQ(program_.frmOpties.chkLoggen.value(), 1);
  EXPECT_EQ(program_.frmOpties.chkLoggen.tool_tip.get(), "Logging disabled");
}

TEST_F(StartUpTest, ReadsTheProgramsOwnSettingsWithoutACommandLine) {
  test_.files.AddFile("/list.txt", kListText);
  test_.files.AddFile("/program/Init.dat", SettingsText("/s", "/t"));
  StartUp(program_);
  EXPECT_EQ(program_.frmMorvex.Text1(kSourceBox).text.get(), "/s");
  EXPECT_EQ(program_.frmMorvex.Text1(kTargetBox).text.get(), "/t");
  EXPECT_EQ(program_.tables.LeftTexts, std::vector<std::string>{"a"});
  EXPECT_FALSE(program_.settings.AutoRunFromInitFile);
  // Go is disabled, because reading the settings file changed the path boxes. The window is
  // visible, because applying the list showed it.
  EXPECT_FALSE(program_.frmMorvex.cmdGo.enabled);
  EXPECT_TRUE(program_.frmMorvex.visible);
}

TEST_F(StartUpTest, ANamedSettingsFileThatIsMissingEndsTheProgram) {
  test_.files.AddFile("/program/Init.dat", SettingsText("/s", "/t"));
  test_.system.command_line = "-if missing.dat";
  EXPECT_EQ(StartUp(program_), ErrorNumber::kNone);
  EXPECT_TRUE(program_.Beeindigd);
  EXPECT_TRUE(HasEnded(program_));
  EXPECT_FALSE(program_.frmMorvex.visible);
  EXPECT_EQ(test_.LogMessages(),
            std::vector<std::string>{"Initialisatiebestand bestaat niet: missing.dat"});
  EXPECT_EQ(test_.files.Bytes("/program/Init.dat"), SettingsText("/s", "/t"));
  EXPECT_EQ(program_.run.end, RunEnd::kNone);
  EXPECT_EQ(ExitStatus(program_), 1);
}

TEST_F(StartUpTest, TheEndOfTheProgramUnloadsMainWindowEditorAndOptionsInThisOrder) {
  test_.system.command_line = "-if missing.dat";
  program_.frmMorvex.loaded = true;
  program_.frmOpties.loaded = true;
  program_.frmReplacements.loaded = true;
  const UnloadOrder order(program_);
  StartUp(program_);
  EXPECT_EQ(order.names, (std::vector<std::string>{"main", "editor", "options"}));
}

TEST_F(StartUpTest, ACommandLineThatCannotBeConvertedEndsTheProgram) {
  struct Case {
    const char* line;
    ErrorNumber error;
  };
  for (const Case& tested :
       {Case{"-dy soon", ErrorNumber::kTypeMismatch}, Case{"-dy 32768", ErrorNumber::kOverflow}}) {
    TestProgram test;
    test.files.AddFile("/program/Init.dat", SettingsText("/s", "/t"));
    test.system.command_line = tested.line;
    EXPECT_EQ(StartUp(test.program), tested.error) << tested.line;
    EXPECT_TRUE(HasEnded(test.program));
    EXPECT_EQ(test.program.frmMorvex.Text1(kSourceBox).text.get(), "");
  }
}

}  // namespace
}  // namespace morvex::test
