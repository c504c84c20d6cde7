// The delay of an unattended start, and which settings file a name stands for.
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "core/run/start_up.h"
#include "core/settings/command_line.h"
#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

struct DelayCase {
  std::string piece;
  int delay;
};

TEST(ApplyCommandLine, TheDelayIsA16BitNumber) {
  const std::vector<DelayCase> cases = {
      {"-dy 3000", 3000}, {"dy 0", 0},      {"dy 32767", 32767},     {"dy -32768", -32768},
      {"dy  20 ", 20},    {"dy 1e3", 1000}, {"dy 1.5", 2},           {"dy 2.5", 2},
      {"dy -2.5", -2},    {"dy=40", 40},    {"dy -32768.5", -32768},
  };
  for (const DelayCase& delay : cases) {
    TestProgram test;
    EXPECT_EQ(ApplyCommandLine(test.program, {"", delay.piece}), ErrorNumber::kNone) << delay.piece;
    EXPECT_EQ(test.program.settings.AutoRunDelay, delay.delay) << delay.piece;
  }
}

TEST(ApplyCommandLine, ADelayThatIsNoNumberIsATypeMismatch) {
  for (const char* piece : {"-dy", "-dy ", "dy soon", "dy 3s", "dy 1 2", "dy ,", "dys"}) {
    TestProgram test;
    EXPECT_EQ(ApplyCommandLine(test.program, {"", piece}), ErrorNumber::kTypeMismatch) << piece;
  }
}

TEST(ApplyCommandLine, ADelayBeyond16BitsOverflows) {
  for (const char* piece : {"dy 32768", "dy 32767.5", "dy -32769", "dy 1e300", "dy 1e400"}) {
    TestProgram test;
    EXPECT_EQ(ApplyCommandLine(test.program, {"", piece}), ErrorNumber::kOverflow) << piece;
  }
}

// A blank followed by a hyphen begins another piece, even if the hyphen belongs to a negative
// number.
TEST(ApplyCommandLine, ANegativeDelayBehindABlankIsCutOff) {
  TestProgram test;
  EXPECT_EQ(ApplyCommandLine(test.program, SplitCommandLine("-dy -5")), ErrorNumber::kTypeMismatch);
}

TEST(ApplyCommandLine, ABadDelayKeepsWhatStoodBeforeIt) {
  TestProgram test;
  EXPECT_EQ(ApplyCommandLine(test.program, {"", "dy 5", "if a", "dy x", "if b"}),
            ErrorNumber::kTypeMismatch);
  EXPECT_EQ(test.program.settings.AutoRunDelay, 5);
  EXPECT_EQ(test.program.settings.InitFilePath, "a");
}

TEST(ApplyCommandLine, ANameInTheProgramFolderResolvesToTheFileThere) {
  TestProgram test;
  test.files.AddFile("/program/nightly.dat", "");
  EXPECT_EQ(ApplyCommandLine(test.program, SplitCommandLine("-if nightly.dat")),
            ErrorNumber::kNone);
  EXPECT_EQ(test.program.settings.InitFilePath, "/program/nightly.dat");
}

struct NameCase {
  std::string what;
  char separator;
  std::vector<std::string> files;  // the current folder is the root
  std::vector<std::string> folders;
  std::string folder;
  std::string name;
  std::string path;
};

TEST(ResolveInitFilePath, PrefersTheFileAsGivenThenTheOneInTheFolder) {
  const std::vector<NameCase> cases = {
      {"the file as given comes first",
       '/',
       {"/nightly.dat", "/program/nightly.dat"},
       {},
       "/program",
       "nightly.dat",
       "nightly.dat"},
      {"then the file in the folder",
       '/',
       {"/jobs/nightly.dat"},
       {},
       "/jobs",
       "nightly.dat",
       "/jobs/nightly.dat"},
      {"else the name unchanged", '/', {}, {}, "/program", "none.dat", "none.dat"},
      {"an empty name stays empty", '/', {}, {}, "/program", "", ""},
      {"a folder of that name is no file",
       '/',
       {},
       {"/jobs", "/program/jobs"},
       "/program",
       "jobs",
       "jobs"},
      {"joined with the host's separator",
       '\\',
       {"C:\\Morvex\\nightly.dat"},
       {},
       "C:\\Morvex",
       "nightly.dat",
       "C:\\Morvex\\nightly.dat"},
  };
  for (const NameCase& row : cases) {
    SCOPED_TRACE(row.what);
    TestProgram test(row.separator);
    for (const std::string& file : row.files) test.files.AddFile(file, "");
    for (const std::string& folder : row.folders) test.files.AddFolder(folder);
    EXPECT_EQ(ResolveInitFilePath(test.program, row.folder, row.name), row.path);
  }
}

TEST(ResolveInitFilePath, AFileThatCannotBeLookedUpGivesTheNameUnchanged) {
  TestProgram test;
  test.files.AddFile("/program/nightly.dat", "");
  test.files.fail = [](const std::string&, const std::string&) {
    return ErrorNumber::kPermissionDenied;
  };
  EXPECT_EQ(ResolveInitFilePath(test.program, "/program", "nightly.dat"), "nightly.dat");
}

// Starts the program with a settings file whose run copies one file; counts the waits during the
// delay.
class DelayAtStart : public testing::Test {
 protected:
  int WaitsWith(const std::string& command_line) {
    test_.files.AddFile("/in/a.txt", "text");
    test_.files.AddFolder("/out");
    test_.files.AddFile("/program/job.dat", "/in\r\n/out\r\n\r\nlog=0\r\nsep=|\r\njok=\r\n");
    test_.system.command_line = command_line;
    int waits = 0;
    test_.user.on_wait = [&](std::chrono::milliseconds longest) {
      ++waits;
      waited_caption_ = test_.program.frmMorvex.lblTotalFiles.caption;
      test_.system.steady += longest;
    };
    EXPECT_EQ(StartUp(test_.program), ErrorNumber::kNone);
    EXPECT_EQ(test_.program.run.end, RunEnd::kFinished);
    return waits;
  }

  TestProgram test_;
  std::string waited_caption_;
};

TEST_F(DelayAtStart, RunsAtOnceWithADelayOfZero) { EXPECT_EQ(WaitsWith("-if job.dat -dy 0"), 0); }

TEST_F(DelayAtStart, RunsAtOnceWithoutADelay) { EXPECT_EQ(WaitsWith("-if job.dat"), 0); }

TEST_F(DelayAtStart, RunsAtOnceWithANegativeDelay) {
  EXPECT_EQ(WaitsWith("-if job.dat -dy=-5"), 0);
}

TEST_F(DelayAtStart, WaitsForADelayAboveZero) {
  EXPECT_EQ(WaitsWith("-if job.dat -dy 3000"), 1);
  EXPECT_EQ(waited_caption_, "Momentje...");
}

TEST(CommandLineAtStart, WithAnEmptyCommandLineReadsTheProgramsOwnSettingsFile) {
  TestProgram test;
  test.files.AddFile("/program/Init.dat", "/own source\r\n/own target\r\n");
  EXPECT_EQ(StartUp(test.program), ErrorNumber::kNone);
  EXPECT_EQ(test.program.frmMorvex.Text1(kSourceBox).text.get(), "/own source");
  EXPECT_FALSE(test.program.settings.CommandLine_SET);
  EXPECT_EQ(test.program.run.end, RunEnd::kNone);
  EXPECT_FALSE(HasEnded(test.program));
}

}  // namespace
}  // namespace morvex::test
