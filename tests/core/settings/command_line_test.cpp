// The command line: splitting it, applying its options, finding the settings file.
#include "core/settings/command_line.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

using Pieces = std::vector<std::string>;

// Splits the command line and applies it, as the start does.
ErrorNumber Apply(TestProgram& test, const std::string& line) {
  return ApplyCommandLine(test.program, SplitCommandLine(line));
}

struct SplitCase {
  std::string line;
  Pieces pieces;
};

TEST(SplitCommandLine, CutsAtEveryBlankAndHyphen) {
  const std::vector<SplitCase> cases = {
      // SplitCommandLine returns a marker, then the pieces. It cuts the line at each blank that a
      // hyphen follows, and leaves out this blank and this hyphen.
      {"", {"InitFile", ""}},
      {"-if a.dat", {"InitFile", "-if a.dat"}},
      {"-if D:\\jobs\\nightly.dat -dy 3000", {"InitFile", "-if D:\\jobs\\nightly.dat", "dy 3000"}},
      {"-if C:\\my -files\\a.dat", {"InitFile", "-if C:\\my", "files\\a.dat"}},
      {"-if a-b.dat -dy 1", {"InitFile", "-if a-b.dat", "dy 1"}},
      {"a-b", {"InitFile", "a-b"}},
      {"a\t-b", {"InitFile", "a\t-b"}},
      {"--if a", {"InitFile", "--if a"}},
      // The marker is "NoInitFile" if the line is cut behind its first character or later, and its
      // first piece does not begin with "-if".
      {"x -if a.dat", {"NoInitFile", "x", "if a.dat"}},
      {"-a -b -c", {"NoInitFile", "-a", "b", "c"}},
      {"-dy 5 -if a", {"NoInitFile", "-dy 5", "if a"}},
      {"-a  -b", {"NoInitFile", "-a ", "b"}},
      {"a - b", {"NoInitFile", "a", " b"}},
      {"a -", {"NoInitFile", "a", ""}},
      {"a -- b", {"NoInitFile", "a", "- b"}},
  };
  for (const SplitCase& split : cases) {
    EXPECT_EQ(SplitCommandLine(split.line), split.pieces) << split.line;
  }
}

TEST(SplitCommandLine, ALineThatStartsWithABlankAndHyphenIsItsOwnFirstPieceToo) {
  EXPECT_EQ(SplitCommandLine(" -if a.dat"), (Pieces{"InitFile", " -if a.dat", "if a.dat"}));
  EXPECT_EQ(SplitCommandLine(" - -"), (Pieces{"InitFile", " - -", "", ""}));
}

struct LineCase {
  std::string what;
  std::string line;
  bool taken;  // the line names a settings file (CommandLine_SET)
  std::string path;
  int delay;
};

TEST(ApplyCommandLine, TakesTheOptionsOfALine) {
  const std::vector<LineCase> cases = {
      {"settings file and delay", "-if nightly.dat -dy 3000", true, "nightly.dat", 3000},
      {"a lone option without a cut", "-if a.dat", true, "a.dat", 0},
      {"the option behind other text", "x -if a.dat", true, "a.dat", 0},
      {"an empty line sets nothing", "", false, "", 0},
      {"the rest of a cut path is passed over", "-if C:\\my -files\\a.dat", true, "C:\\my", 0},
      {"the rest of a cut path may read as an option", "-if /jobs/a -if b.dat", true, "b.dat", 0},
      {"a later option of the same name wins", "-if a.dat -dy 1 -if b.dat -dy 2", true, "b.dat", 2},
      {"other pieces and other case are passed over",
       "report.txt -IF a.dat -If a.dat -DY 5 -x -fi -yd", false, "", 0},
      {"a doubled hyphen is no option", "--if a.dat", false, "", 0},
      {"but where the cut takes one away", "x --if a.dat", true, "a.dat", 0},
  };
  for (const LineCase& row : cases) {
    SCOPED_TRACE(row.what + ": " + row.line);
    TestProgram test;
    EXPECT_EQ(Apply(test, row.line), ErrorNumber::kNone);
    EXPECT_EQ(test.program.settings.CommandLine_SET, row.taken);
    EXPECT_EQ(test.program.settings.InitFilePath, row.path);
    EXPECT_EQ(test.program.settings.AutoRunDelay, row.delay);
  }
}

TEST(ApplyCommandLine, OptionsMayComeInAnyOrderWithOrWithoutHyphen) {
  for (const Pieces& pieces : {Pieces{"", "-dy 7", "if a"}, Pieces{"", "if a", "-dy 7"},
                               Pieces{"", "dy 7", "junk", "-if a"}}) {
    TestProgram test;
    EXPECT_EQ(ApplyCommandLine(test.program, pieces), ErrorNumber::kNone);
    EXPECT_EQ(test.program.settings.InitFilePath, "a");
    EXPECT_EQ(test.program.settings.AutoRunDelay, 7);
  }
}

TEST(ApplyCommandLine, TheMarkerInFrontIsNoOption) {
  TestProgram test;
  EXPECT_EQ(ApplyCommandLine(test.program, {"-if a.dat"}), ErrorNumber::kNone);
  EXPECT_FALSE(test.program.settings.CommandLine_SET);
  EXPECT_EQ(ApplyCommandLine(test.program, {}), ErrorNumber::kNone);
  EXPECT_FALSE(test.program.settings.CommandLine_SET);
}

struct ValueCase {
  std::string piece;
  std::string path;
};

TEST(ApplyCommandLine, TheValueStandsBehindTheFirstNameAndOneMoreCharacter) {
  const std::vector<ValueCase> cases = {
      {"-if a if b.dat", "a if b.dat"},
      {"-if=a.dat", "a.dat"},
      {"ifa.dat", ".dat"},
      {"-if  a.dat", " a.dat"},
      {"-if a.dat ", "a.dat "},
      {"-if ", ""},
      {"-if", ""},
      {"if", ""},
  };
  for (const ValueCase& value : cases) {
    TestProgram test;
    EXPECT_EQ(ApplyCommandLine(test.program, {"", value.piece}), ErrorNumber::kNone);
    EXPECT_TRUE(test.program.settings.CommandLine_SET) << value.piece;
    EXPECT_EQ(test.program.settings.InitFilePath, value.path) << value.piece;
  }
}

TEST(IgnoredPieces, AreThoseOfNoOptionWithTheirHyphens) {
  const auto ignored = [](std::string_view line) { return IgnoredPieces(SplitCommandLine(line)); };
  EXPECT_EQ(ignored("-if a.dat -dy 3"), Pieces());
  EXPECT_EQ(ignored("-if a.dat"), Pieces());
  EXPECT_EQ(ignored(" -if a.dat"), Pieces());
  EXPECT_EQ(ignored(""), Pieces());
  EXPECT_EQ(ignored("x -if a.dat"), Pieces{"x"});
  EXPECT_EQ(ignored("-IF a.dat -if b.dat"), Pieces{"-IF a.dat"});
  EXPECT_EQ(ignored("-if a.dat -v -- -"), (Pieces{"-v", "--", "-"}));
  EXPECT_EQ(ignored("-if my case -2024.dat"), Pieces{"-2024.dat"});
}

}  // namespace
}  // namespace morvex::test
