// The command line: which settings file a run uses, and the delay. A command line that cannot be
// understood leaves nothing behind.

#include <gtest/gtest.h>

#include <chrono>

#include "program_run.h"

namespace morvex::whole_run {
namespace {

using std::string;

// A scene with a source of one file, a list, a target, and "job.dat", which names all three.
class CommandLine : public testing::Test {
 protected:
  CommandLine() {
    scene_.Write("src/a.txt", "ab and ab");
    scene_.Write("list", "ab|X\r\n|||\r\n");
    scene_.MakeFolder("out");
    scene_.Write("job.dat", SettingsFor("out"));
  }

  string SettingsFor(const string& target) const {
    return UsualSettings(scene_.At("src"), scene_.At(target), scene_.At("list"));
  }

  // Runs the program, and checks that neither the work folder nor the program folder has changed.
  ProgramResult RunWithoutTrace(const std::vector<string>& arguments) {
    const Disk before = Disk::Snapshot(scene_.root());
    const ProgramResult result = scene_.Run(arguments);
    EXPECT_EQ(Differences(before, Disk::Snapshot(scene_.root())), "");
    return result;
  }

  void ExpectCopy() { EXPECT_EQ(scene_.Read("out/a.txt"), "X and X"); }

  Scene scene_;
};

TEST_F(CommandLine, NoArgumentsGivesUsageAndTheSettingsFileItWouldRead) {
  const ProgramResult result = RunWithoutTrace({});
  EXPECT_EQ(result.status, 2);
  const string said = result.output + result.errors;
  EXPECT_NE(said.find("-if"), string::npos) << said;
  EXPECT_NE(said.find("-dy"), string::npos) << said;
  EXPECT_NE(said.find(scene_.program_folder() + "/Init.dat"), string::npos) << said;
}

TEST_F(CommandLine, ProgramAloneInItsFolderNeedsNothingElse) {
  const ProgramResult result =
      RunProgram(scene_.program_folder() + "/morvex-cli", {}, scene_.program_folder(), 60);
  EXPECT_EQ(result.status, 2);
  EXPECT_TRUE(scene_.ProgramFolderNames().empty());
}

TEST_F(CommandLine, UpperCaseOptionIsNoOption) {
  const ProgramResult result = RunWithoutTrace({"-IF", scene_.At("job.dat")});
  EXPECT_NE(result.status, 0);
}

TEST_F(CommandLine, DelayPassesBeforeTheRun) {
  Scene scene;
  scene.MakeFolder("src");
  scene.MakeFolder("out");
  scene.Write("job.dat", UsualSettings(scene.At("src"), scene.At("out"), scene.At("none")));
  RunInput input = scene.Input("job.dat");
  input.delay_ms = 300;
  const RunOutcome expected = PredictRun(input);
  const auto start = std::chrono::steady_clock::now();
  const ProgramResult result = scene.Run({"-if", scene.At("job.dat"), "-dy", "300"});
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(295));
  EXPECT_EQ(expected.captions[0], "Bezig met scannen...");
  EXPECT_EQ(Problems(scene, expected, result), "");
}

TEST_F(CommandLine, DelayOfNothingStartsAtOnce) {
  for (const char* delay : {"0", "00", " 0", "0.5"}) {
    EXPECT_EQ(scene_.Run({"-if", scene_.At("job.dat"), "-dy", delay}).status, 0) << delay;
    ExpectCopy();
  }
}

TEST_F(CommandLine, LastDelayCounts) {
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(scene_.Run({"-dy", "32767", "-if", scene_.At("job.dat"), "-dy", "1"}).status, 0);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
  ExpectCopy();
}

TEST_F(CommandLine, DelayThatIsNoNumberIsATypeMismatch) {
  // In the line that ends in "-dy -5", "-5" counts as an option of its own, so the delay is empty.
  const std::vector<std::vector<string>> lines{{"-dy", "x"},
                                               {"-if", scene_.At("job.dat"), "-dy", "x"},
                                               {"-dy", "x", "-if", scene_.At("job.dat")},
                                               {"-if", scene_.At("job.dat"), "-dy"},
                                               {"-if", scene_.At("job.dat"), "-dy", "-5"},
                                               {"-if", scene_.At("job.dat"), "-dy", "12ms"}};
  for (const std::vector<string>& line : lines) {
    const ProgramResult result = RunWithoutTrace(line);
    EXPECT_EQ(result.errors, "Run-time error '13': Type mismatch\n") << line.back();
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.status, 2);
  }
}

TEST_F(CommandLine, DelayBeyondSixteenBitsIsAnOverflow) {
  for (const char* delay : {"40000", "32768", "99999999999999999999"}) {
    const ProgramResult result = RunWithoutTrace({"-if", scene_.At("job.dat"), "-dy", delay});
    EXPECT_EQ(result.errors, "Run-time error '6': Overflow\n") << delay;
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.status, 2);
  }
  EXPECT_EQ(RunWithoutTrace({"-dy", "40000"}).status, 2);
}

TEST_F(CommandLine, MissingSettingsFileIsLoggedAndEndsTheProgram) {
  const Disk before = Disk::Snapshot(scene_.work());
  const string path = scene_.At("none.dat");
  const string message = "Initialisatiebestand bestaat niet: " + path;
  const ProgramResult result = scene_.Run({"-if", path});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.errors, message + "\n");
  EXPECT_EQ(LogMessages(scene_.RunLog()), std::vector<string>{message});
  EXPECT_EQ(scene_.ProgramFolderNames(), std::vector<string>{"Morvex.log"});
  EXPECT_EQ(Differences(before, Disk::Snapshot(scene_.work())), "");
}

TEST_F(CommandLine, MissingSettingsFileLeavesAnOldInitDatAlone) {
  WriteWholeFile(scene_.program_folder() + "/Init.dat", SettingsFor("out"));
  EXPECT_EQ(scene_.Run({"-if", "none.dat"}).status, 1);
  EXPECT_EQ(scene_.InitDat(), SettingsFor("out"));
  EXPECT_FALSE(scene_.Exists("out/a.txt"));
}

TEST_F(CommandLine, FolderIsNoSettingsFile) {
  const ProgramResult result = scene_.Run({"-if", scene_.At("src")});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.errors, "Initialisatiebestand bestaat niet: " + scene_.At("src") + "\n");
}

TEST_F(CommandLine, SettingsFileIsFoundInTheProgramFolder) {
  const string path = scene_.program_folder() + "/nightly.dat";
  WriteWholeFile(path, SettingsFor("out"));
  EXPECT_EQ(scene_.Run({"-if", "nightly.dat"}).status, 0);
  ExpectCopy();
  const std::vector<string> messages = LogMessages(scene_.RunLog());
  ASSERT_GT(messages.size(), 4U);
  EXPECT_EQ(messages[3], "Initialisatie-bestand: " + path);
}

TEST_F(CommandLine, SettingsFileOfTheCurrentFolderGoesFirst) {
  WriteWholeFile(scene_.program_folder() + "/job.dat", SettingsFor("wrong"));
  EXPECT_EQ(scene_.Run({"-if", "job.dat"}).status, 0);
  ExpectCopy();
  EXPECT_NE(scene_.RunLog().find("Initialisatie-bestand: job.dat\""), string::npos);
}

TEST_F(CommandLine, InitDatOfTheProgramFolderCanBeNamedAndIsWrittenAgain) {
  WriteWholeFile(scene_.program_folder() + "/Init.dat", SettingsFor("out") + "x.doc\r\n\r\n1.no");
  EXPECT_EQ(scene_.Run({"-if", "Init.dat"}).status, 0);
  ExpectCopy();
  EXPECT_EQ(scene_.InitDat(), SettingsFor("out") + "1.doc\r\n");
}

TEST_F(CommandLine, LastSettingsFileCounts) {
  EXPECT_EQ(scene_.Run({"-if", "none.dat", "-if", scene_.At("job.dat")}).status, 0);
  ExpectCopy();
}

TEST_F(CommandLine, OtherWordsAreIgnored) {
  EXPECT_EQ(scene_.Run({"x", "-if", scene_.At("job.dat"), "-y", "-z"}).status, 0);
  ExpectCopy();
}

TEST_F(CommandLine, AnyCharacterMayStandBetweenOptionAndValue) {
  EXPECT_EQ(scene_.Run({"-if=job.dat", "-dy:0"}).status, 0);
  ExpectCopy();
}

TEST_F(CommandLine, PathIsCutAtABlankAndHyphen) {
  scene_.Write("night -run.dat", SettingsFor("out"));
  const ProgramResult result = scene_.Run({"-if", scene_.At("night -run.dat")});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.errors.starts_with("morvex-cli: warning: \"-run.dat\" was ignored"))
      << result.errors;
  EXPECT_TRUE(
      result.errors.ends_with(".\nInitialisatiebestand bestaat niet: " + scene_.At("night") + "\n"))
      << result.errors;
}

TEST_F(CommandLine, SettingsPathMayHoldBlanks) {
  scene_.Write("night run.dat", SettingsFor("out"));
  EXPECT_EQ(scene_.Run({"-if", "night run.dat"}).status, 0);
  ExpectCopy();
}

}  // namespace
}  // namespace morvex::whole_run
