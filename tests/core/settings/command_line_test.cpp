// The command line: splitting it, applying its options, finding the settings file.
#include "core/settings/command_line.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

using Pieces = std::vector<std::string>;

// Splits and applies, as the start does.
ErrorNumber Apply(TestProgram& test, const std::string& line) {
  return ApplyCommandLine(test.program, SplitCommandLine(line));
}

TEST(SplitCommandLine, GivesSettingsFileAndDelayAsTwoPieces) {
  EXPECT_EQ(SplitCommandLine("-if D:\\jobs\\nightly.dat -dy 3000"),
            (Pieces{"InitFile", "-if D:\\jobs\\nightly.dat", "dy 3000"}));
}

TEST(SplitCommandLine, ASingleOptionIsOnePieceWithItsHyphen) {
  EXPECT_EQ(SplitCommandLine("-if a.dat"), (Pieces{"InitFile", "-if a.dat"}));
}

TEST(SplitCommandLine, TextBeforeTheFirstOptionIsAPieceAndTheMarkerIsNoInitFile) {
  EXPECT_EQ(SplitCommandLine("x -if a.dat"), (Pieces{"NoInitFile", "x", "if a.dat"}));
}

TEST(SplitCommandLine, AnEmptyLineIsOneEmptyPiece) {
  EXPECT_EQ(SplitCommandLine(""), (Pieces{"InitFile", ""}));
}

TEST(SplitCommandLine, APathIsCutAtABlankAndHyphen) {
  EXPECT_EQ(SplitCommandLine("-if C:\\my -files\\a.dat"),
            (Pieces{"InitFile", "-if C:\\my", "files\\a.dat"}));
}

struct SplitCase {
  std::string line;
  Pieces pieces;
};

TEST(SplitCommandLine, CutsAtEveryBlankAndHyphen) {
  const std::vector<SplitCase> cases = {
      {"-a -b -c", {"NoInitFile", "-a", "b", "c"}},
      {"-dy 5 -if a", {"NoInitFile", "-dy 5", "if a"}},
      {"-a  -b", {"NoInitFile", "-a ", "b"}},
      {"a - b", {"NoInitFile", "a", " b"}},
      {"a -", {"NoInitFile", "a", ""}},
      {"a -- b", {"NoInitFile", "a", "- b"}},
      {"a-b", {"InitFile", "a-b"}},
      {"-if a-b.dat -dy 1", {"InitFile", "-if a-b.dat", "dy 1"}},
      {"a\t-b", {"InitFile", "a\t-b"}},
      {"--if a", {"InitFile", "--if a"}},
  };
  for (const SplitCase& split : cases) {
    EXPECT_EQ(SplitCommandLine(split.line), split.pieces) << split.line;
  }
}

TEST(SplitCommandLine, ALineThatStartsWithABlankAndHyphenIsItsOwnFirstPieceToo) {
  EXPECT_EQ(SplitCommandLine(" -if a.dat"), (Pieces{"InitFile", " -if a.dat", "if a.dat"}));
  EXPECT_EQ(SplitCommandLine(" - -"), (Pieces{"InitFile", " - -", "", ""}));
}

TEST(ApplyCommandLine, TakesSettingsFileAndDelay) {
  TestProgram test;
  EXPECT_EQ(Apply(test, "-if nightly.dat -dy 3000"), ErrorNumber::kNone);
  EXPECT_TRUE(test.program.settings.CommandLine_SET);
  EXPECT_EQ(test.program.settings.InitFilePath, "nightly.dat");
  EXPECT_EQ(test.program.settings.AutoRunDelay, 3000);
}

TEST(ApplyCommandLine, ALoneOptionWithoutACutIsTaken) {
  TestProgram test;
  EXPECT_EQ(Apply(test, "-if a.dat"), ErrorNumber::kNone);
  EXPECT_TRUE(test.program.settings.CommandLine_SET);
  EXPECT_EQ(test.program.settings.InitFilePath, "a.dat");
}

TEST(ApplyCommandLine, TheOptionBehindOtherTextIsTaken) {
  TestProgram test;
  EXPECT_EQ(Apply(test, "x -if a.dat"), ErrorNumber::kNone);
  EXPECT_TRUE(test.program.settings.CommandLine_SET);
  EXPECT_EQ(test.program.settings.InitFilePath, "a.dat");
}

TEST(ApplyCommandLine, AnEmptyLineSetsNothing) {
  TestProgram test;
  EXPECT_EQ(Apply(test, ""), ErrorNumber::kNone);
  EXPECT_FALSE(test.program.settings.CommandLine_SET);
  EXPECT_EQ(test.program.settings.InitFilePath, "");
  EXPECT_EQ(test.program.settings.AutoRunDelay, 0);
}

TEST(ApplyCommandLine, TheRestOfACutPathIsPassedOver) {
  TestProgram test;
  EXPECT_EQ(Apply(test, "-if C:\\my -files\\a.dat"), ErrorNumber::kNone);
  EXPECT_EQ(test.program.settings.InitFilePath, "C:\\my");
}

TEST(ApplyCommandLine, TheRestOfACutPathMayReadAsAnOption) {
  TestProgram test;
  EXPECT_EQ(Apply(test, "-if /jobs/a -if b.dat"), ErrorNumber::kNone);
  EXPECT_EQ(test.program.settings.InitFilePath, "b.dat");
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

TEST(ApplyCommandLine, ALaterOptionOfTheSameNameWins) {
  TestProgram test;
  EXPECT_EQ(Apply(test, "-if a.dat -dy 1 -if b.dat -dy 2"), ErrorNumber::kNone);
  EXPECT_EQ(test.program.settings.InitFilePath, "b.dat");
  EXPECT_EQ(test.program.settings.AutoRunDelay, 2);
}

TEST(ApplyCommandLine, OtherPiecesAndOtherCaseArePassedOver) {
  TestProgram test;
  EXPECT_EQ(Apply(test, "report.txt -IF a.dat -If a.dat -DY 5 -x -fi -yd"), ErrorNumber::kNone);
  EXPECT_FALSE(test.program.settings.CommandLine_SET);
  EXPECT_EQ(test.program.settings.InitFilePath, "");
  EXPECT_EQ(test.program.settings.AutoRunDelay, 0);
}

TEST(ApplyCommandLine, ADoubledHyphenIsAnOptionOnlyWhereTheCutTakesOneAway) {
  TestProgram first;
  EXPECT_EQ(Apply(first, "--if a.dat"), ErrorNumber::kNone);
  EXPECT_FALSE(first.program.settings.CommandLine_SET);
  TestProgram second;
  EXPECT_EQ(Apply(second, "x --if a.dat"), ErrorNumber::kNone);
  EXPECT_EQ(second.program.settings.InitFilePath, "a.dat");
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
