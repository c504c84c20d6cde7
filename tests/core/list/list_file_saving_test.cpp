// Saving a list: its lines, byte for byte, and the file after a failure.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/list/list_file.h"
#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

const std::string kList = "/list.txt";

// Returns the bytes of the list file after these rows were saved.
std::string Saved(const Rows& rows, const std::string& separator = "|") {
  TestProgram test;
  test.program.settings.gSeparator = separator;
  test.TypeRows(rows);
  EXPECT_EQ(SaveReplacementList(test.program, kList), ErrorNumber::kNone);
  return test.files.Bytes(kList);
}

TEST(SaveReplacementList, AListOfOneEmptyRowIsOneLineOfThreeSeparators) {
  EXPECT_EQ(Saved({{"", ""}}), "|||\r\n");
  EXPECT_EQ(Saved({{"", ""}}, "::"), "::::::\r\n");
}

TEST(SaveReplacementList, OneFilledRowIsOneLineThatEndsInTwoSeparators) {
  EXPECT_EQ(Saved({{"a", "b"}}), "a|b||\r\n");
}

TEST(SaveReplacementList, AnEmptyLastRowIsTheEndOfListLine) {
  EXPECT_EQ(Saved({{"Jansen", "Person A"}, {"Amsterdam", "City"}, {"", ""}}),
            "Jansen|Person A\r\nAmsterdam|City\r\n|||\r\n");
}

TEST(SaveReplacementList, AFilledLastRowHasTheMarkBehindIt) {
  EXPECT_EQ(Saved({{"Jansen", "Person A"}, {"Amsterdam", "City"}, {"Utrecht", "City B"}}),
            "Jansen|Person A\r\nAmsterdam|City\r\nUtrecht|City B||\r\n");
}

TEST(SaveReplacementList, EmptyRowsBeforeTheLastAreLeftOut) {
  EXPECT_EQ(Saved({{"", ""}, {"a", "b"}, {"", ""}, {"", ""}, {"c", "d"}}), "a|b\r\nc|d||\r\n");
}

TEST(SaveReplacementList, ARowWithOneEmptyCellIsWritten) {
  EXPECT_EQ(Saved({{"Jansen", ""}, {"", "b"}, {"c", ""}}), "Jansen|\r\n|b\r\nc|||\r\n");
}

TEST(SaveReplacementList, ALastRowWithOneEmptyCellHasItsMark) {
  EXPECT_EQ(Saved({{"", "b"}}), "|b||\r\n");
}

TEST(SaveReplacementList, ACellThatHoldsTheSeparatorIsWrittenAsItStands) {
  EXPECT_EQ(Saved({{"a|b", "d"}, {"", ""}}), "a|b|d\r\n|||\r\n");
}

TEST(SaveReplacementList, TokensWildcardsAndBytesAreWrittenAsTheyStand) {
  const std::string nul("a\0b", 3);
  EXPECT_EQ(Saved({{"Jan*[CRLF]", "[crlf]\t\xE9"}, {nul, nul}}),
            "Jan*[CRLF]|[crlf]\t\xE9\r\n" + nul + "|" + nul + "||\r\n");
}

TEST(SaveReplacementList, AnySeparatorIsWrittenBetweenTheCells) {
  const Rows rows = {{"a", "b"}, {"c", "d"}};
  EXPECT_EQ(Saved(rows, "::"), "a::b\r\nc::d::::\r\n");
  EXPECT_EQ(Saved(rows, " -> "), "a -> b\r\nc -> d ->  -> \r\n");
}

TEST(SaveReplacementList, AnEmptySeparatorBecomesTheBarBeforeRowsAreWrittenWithIt) {
  TestProgram test;
  test.program.settings.gSeparator = "";
  test.TypeRows({{"a", "b"}, {"c", "d"}});
  EXPECT_EQ(SaveReplacementList(test.program, kList), ErrorNumber::kNone);
  EXPECT_EQ(test.files.Bytes(kList), "a|b\r\nc|d||\r\n");
  EXPECT_EQ(test.program.settings.gSeparator, "|");
}

TEST(SaveReplacementList, AnExistingFileIsReplacedWhole) {
  TestProgram test;
  test.files.AddFile(kList, std::string(1000, 'x'));
  test.TypeRows({{"a", "b"}});
  EXPECT_EQ(SaveReplacementList(test.program, kList), ErrorNumber::kNone);
  EXPECT_EQ(test.files.Bytes(kList), "a|b||\r\n");
}

TEST(SaveReplacementList, ChangesNeitherGridNorSettings) {
  TestProgram test;
  test.program.settings.SubstitutieFile = "/other.txt";
  const Rows rows = {{"a", "b"}, {"", ""}, {"", ""}};
  test.TypeRows(rows);
  EXPECT_EQ(SaveReplacementList(test.program, kList), ErrorNumber::kNone);
  EXPECT_EQ(test.GridRows(), rows);
  EXPECT_EQ(test.program.settings.SubstitutieFile, "/other.txt");
}

TEST(SaveReplacementList, AFailureIsGivenAndTheOldFileStays) {
  for (const ErrorNumber error : {ErrorNumber::kDiskFull, ErrorNumber::kPermissionDenied}) {
    TestProgram test;
    test.files.AddFile(kList, "old");
    test.TypeRows({{"a", "b"}});
    test.files.fail = [error](const std::string& call, const std::string&) {
      return call == "ReplaceFile" ? error : ErrorNumber::kNone;
    };
    EXPECT_EQ(SaveReplacementList(test.program, kList), error);
    EXPECT_EQ(test.files.Bytes(kList), "old");
    EXPECT_TRUE(test.user.messages.empty());
  }
}

TEST(SaveReplacementList, APathThatCannotBeAFileIsAnError) {
  TestProgram test;
  test.TypeRows({{"a", "b"}});
  EXPECT_EQ(SaveReplacementList(test.program, "/none/list.txt"), ErrorNumber::kPathNotFound);
  EXPECT_EQ(SaveReplacementList(test.program, "/program"), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(SaveReplacementList(test.program, ""), ErrorNumber::kPathNotFound);
}

}  // namespace
}  // namespace morvex::test
