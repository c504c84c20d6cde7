// Importing a list: which lines become which rows of the grid.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/list/editor.h"
#include "core/list/list_file.h"
#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

const std::string kList = "/list.txt";

// The rows of a fresh editor after it has read these bytes.
Rows Imported(const std::string& bytes, const std::string& separator = "|") {
  TestProgram test;
  test.program.settings.gSeparator = separator;
  test.files.AddFile(kList, bytes);
  imList_Click(test.program);
  ImportReplacementList(test.program, kList);
  EXPECT_EQ(test.program.settings.SubstitutieFile, kList);
  EXPECT_EQ(test.program.frmReplacements.LastRow + 1,
            static_cast<std::int64_t>(test.program.frmReplacements.rows.size()));
  return test.GridRows();
}

// Types the rows, saves them, and reads them into a fresh editor.
Rows ThereAndBack(const Rows& rows, const std::string& separator = "|") {
  TestProgram test;
  test.program.settings.gSeparator = separator;
  test.TypeRows(rows);
  EXPECT_EQ(SaveReplacementList(test.program, kList), ErrorNumber::kNone);
  return Imported(test.files.Bytes(kList), separator);
}

TEST(ImportReplacementList, TheEndOfListLineAloneLeavesOneEmptyRow) {
  EXPECT_EQ(Imported("|||\r\n"), (Rows{{"", ""}}));
  EXPECT_EQ(ThereAndBack({{"", ""}}), (Rows{{"", ""}}));
}

TEST(ImportReplacementList, OneFilledRowComesBackAsItWas) {
  EXPECT_EQ(Imported("a|b||\r\n"), (Rows{{"a", "b"}}));
  EXPECT_EQ(ThereAndBack({{"a", "b"}}), (Rows{{"a", "b"}}));
}

TEST(ImportReplacementList, TheRowsOfAnEmptyLastRowComeBackWithoutIt) {
  EXPECT_EQ(Imported("Jansen|Person A\r\nAmsterdam|City\r\n|||\r\n"),
            (Rows{{"Jansen", "Person A"}, {"Amsterdam", "City"}}));
}

TEST(ImportReplacementList, EmptyRowsVanishAndAHalfRowSurvives) {
  EXPECT_EQ(ThereAndBack({{"", ""}, {"left only", ""}, {"", ""}, {"", "right only"}, {"c", "d"}}),
            (Rows{{"left only", ""}, {"", "right only"}, {"c", "d"}}));
}

TEST(ImportReplacementList, AFileWithoutADoubledSeparatorEndsWithOneEmptyRow) {
  EXPECT_EQ(Imported("a|b\r\nc|d\r\n"), (Rows{{"a", "b"}, {"c", "d"}, {"", ""}}));
}

TEST(ImportReplacementList, ACellWithTheSeparatorComesBackCutAtTheFirst) {
  EXPECT_EQ(ThereAndBack({{"a|b", "d"}, {"x", "y"}}), (Rows{{"a", "b|d"}, {"x", "y"}}));
}

TEST(ImportReplacementList, ADoubledSeparatorInTheMiddleEndsTheList) {
  EXPECT_EQ(Imported("x|y\r\na||b\r\nc|d\r\ne|f\r\n|||\r\n"), (Rows{{"x", "y"}, {"a", ""}}));
}

TEST(ImportReplacementList, ALongSeparatorLeavesPartOfItInTheLastRightCell) {
  EXPECT_EQ(ThereAndBack({{"a", "b"}}, "::"), (Rows{{"a", "b::"}}));
  EXPECT_EQ(Imported("1<->2<-><->\r\n", "<->"), (Rows{{"1", "2<-><"}}));
}

TEST(ImportReplacementList, LinesWithoutTheSeparatorArePassedOver) {
  EXPECT_EQ(Imported("heading\r\n\r\na|b\r\nnot a row\r\n;\r\nc|d||\r\nend\r\n"),
            (Rows{{"a", "b"}, {"c", "d"}}));
}

TEST(ImportReplacementList, AFileOfOtherLinesLeavesOneEmptyRow) {
  EXPECT_EQ(Imported("heading\r\nnothing\r\n"), (Rows{{"", ""}}));
  EXPECT_EQ(Imported(""), (Rows{{"", ""}}));
  EXPECT_EQ(Imported("\r\n\r\n"), (Rows{{"", ""}}));
}

TEST(ImportReplacementList, WhatStandsBehindTheEndOfListIsNotRead) {
  EXPECT_EQ(Imported("a|b\r\n|||\r\nc|d\r\n"), (Rows{{"a", "b"}}));
  EXPECT_EQ(Imported("|||\r\nc|d\r\n"), (Rows{{"", ""}}));
}

TEST(ImportReplacementList, TheEndOfListIsExactlyThreeSeparators) {
  EXPECT_EQ(Imported("a|b\r\n||||\r\n"), (Rows{{"a", "b"}, {"", "|"}}));
  EXPECT_EQ(Imported("a|b\r\n||\r\n"), (Rows{{"a", "b"}, {"", ""}}));
  EXPECT_EQ(Imported("a|b\r\n||| \r\n"), (Rows{{"a", "b"}, {"", "|"}}));
}

TEST(ImportReplacementList, TheRightCellIsEverythingBehindTheFirstSeparator) {
  EXPECT_EQ(Imported("a|b|c|d\r\ne|f||\r\n"), (Rows{{"a", "b|c|d"}, {"e", "f"}}));
}

TEST(ImportReplacementList, ARightCellShorterThanTheMarkIsEmpty) {
  EXPECT_EQ(Imported("a||\r\n"), (Rows{{"a", ""}}));
}

TEST(ImportReplacementList, SeparatorsOfSeveralCharactersAreFoundWhole) {
  EXPECT_EQ(Imported("a:b::c:d\r\n::::::\r\n", "::"), (Rows{{"a:b", "c:d"}}));
  EXPECT_EQ(Imported("a -> b\r\nc->d\r\ne -> f\r\n", " -> "),
            (Rows{{"a", "b"}, {"e", "f"}, {"", ""}}));
}

TEST(ImportReplacementList, TheSeparatorIsFoundInItsExactCase) {
  EXPECT_EQ(Imported("aXbxc\r\n", "x"), (Rows{{"aXb", "c"}, {"", ""}}));
}

TEST(ImportReplacementList, WithAnEmptySeparatorNoRowIsRead) {
  EXPECT_EQ(Imported("a|b\r\n\r\n|||\r\n", ""), (Rows{{"", ""}}));
}

TEST(ImportReplacementList, LinesMayEndInLfAlone) {
  EXPECT_EQ(Imported("a|b\nc|d\n|||\n"), (Rows{{"a", "b"}, {"c", "d"}}));
}

TEST(ImportReplacementList, TheLastLineNeedsNoEnd) {
  EXPECT_EQ(Imported("a|b\r\nc|d||"), (Rows{{"a", "b"}, {"c", "d"}}));
  EXPECT_EQ(Imported("a|b\r\n|||"), (Rows{{"a", "b"}}));
  EXPECT_EQ(Imported("a|b"), (Rows{{"a", "b"}, {"", ""}}));
}

TEST(ImportReplacementList, ACrAloneIsPartOfItsLine) {
  EXPECT_EQ(Imported("a|b\rc|d\r\n|||\r\n"), (Rows{{"a", "b\rc|d"}}));
  EXPECT_EQ(Imported("a|b\r\r\n|||\r\n"), (Rows{{"a", "b\r"}}));
  EXPECT_EQ(Imported("a|b\r"), (Rows{{"a", "b\r"}, {"", ""}}));
}

TEST(ImportReplacementList, BytesAreTakenAsTheyStand) {
  std::string bytes;
  for (int code = 0; code < 256; ++code) {
    if (code != '\n' && code != '|') bytes += static_cast<char>(code);
  }
  EXPECT_EQ(Imported(bytes + "|" + bytes + "\r\n|||\r\n"), (Rows{{bytes, bytes}}));
  EXPECT_EQ(ThereAndBack({{bytes, bytes}, {"[CRLF]*", "[crlf]"}}),
            (Rows{{bytes, bytes}, {"[CRLF]*", "[crlf]"}}));
}

TEST(ImportReplacementList, EveryListComesBackWithoutItsEmptyRows) {
  const std::vector<Rows> lists = {
      {{"a", "b"}, {"c", "d"}, {"e", "f"}},
      {{"a", "b"}, {"", ""}},
      {{"", ""}, {"", ""}, {"", ""}},
      {{"", ""}, {"a", ""}},
      {{"", "b"}},
      {{"a", "b"}, {"a", "b"}},
      {{" ", " "}, {"\t", ""}},
  };
  for (const Rows& rows : lists) {
    Rows expected;
    for (const auto& row : rows) {
      if (!row.first.empty() || !row.second.empty()) expected.push_back(row);
    }
    if (expected.empty()) expected.push_back({"", ""});
    EXPECT_EQ(ThereAndBack(rows), expected);
  }
}

}  // namespace
}  // namespace morvex::test
