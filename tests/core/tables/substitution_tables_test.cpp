// The tables of a run: texts, byte matrices, lengths, wildcard flags and tails.
#include "core/tables/substitution_tables.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace morvex::test {
namespace {

using Texts = std::vector<std::string>;
using Cells = std::vector<std::optional<std::uint8_t>>;

ReplacementList ListOf(const std::vector<std::pair<std::string, std::string>>& rows) {
  ReplacementList list;
  for (const auto& [left, right] : rows) list.rows.push_back({left, right});
  return list;
}

// Returns the tables of these rows; the flags say which left texts use the wildcard.
SubstitutionTables TablesOf(const std::vector<std::pair<std::string, std::string>>& rows,
                            const std::vector<bool>& flags, std::uint8_t joker = '*') {
  SubstitutionTables tables;
  tables.JokerLeft = flags;
  EXPECT_EQ(FillArrays(ListOf(rows), joker, tables), ErrorNumber::kNone);
  return tables;
}

Cells LeftRow(const SubstitutionTables& tables, std::int64_t row) {
  Cells cells;
  for (std::int64_t i = 0; i <= tables.MaxLeftLen; ++i) cells.push_back(tables.LeftBytes(row, i));
  return cells;
}

Cells RightRow(const SubstitutionTables& tables, std::int64_t row) {
  Cells cells;
  for (std::int64_t i = 0; i <= tables.MaxRightLen; ++i) cells.push_back(tables.RightBytes(row, i));
  return cells;
}

TEST(FillArrays, AnEmptyEditorGivesMatricesOfOneCellAndNoTexts) {
  const SubstitutionTables tables = TablesOf({}, {});
  EXPECT_EQ(tables.PairCount, 0);
  EXPECT_EQ(tables.MaxLeftLen, 0);
  EXPECT_EQ(tables.MaxRightLen, 0);
  EXPECT_EQ(LeftRow(tables, 0), (Cells{0}));
  EXPECT_EQ(RightRow(tables, 0), (Cells{0}));
  EXPECT_EQ(tables.LeftBytes(1, 0), std::nullopt);
  EXPECT_EQ(tables.LeftBytes(0, 1), std::nullopt);
  EXPECT_EQ(tables.RightBytes(1, 0), std::nullopt);
  EXPECT_EQ(tables.RightBytes(0, 1), std::nullopt);
  EXPECT_TRUE(tables.LeftTexts.empty());
  EXPECT_TRUE(tables.RightTexts.empty());
  EXPECT_TRUE(tables.LeftLengths.empty());
  EXPECT_TRUE(tables.JokerTail.empty());
}

TEST(FillArrays, AShorterTextIsFollowedByZeros) {
  const SubstitutionTables tables = TablesOf({{"ab", ""}, {"abcde", ""}}, {false, false});
  EXPECT_EQ(LeftRow(tables, 0), (Cells{0, 'a', 'b', 0, 0, 0}));
  EXPECT_EQ(LeftRow(tables, 1), (Cells{0, 'a', 'b', 'c', 'd', 'e'}));
}

TEST(FillArrays, TheRightMatrixHasItsOwnWidth) {
  const SubstitutionTables tables = TablesOf({{"abcde", "x"}, {"a", "yz"}}, {false, false});
  EXPECT_EQ(tables.MaxLeftLen, 5);
  EXPECT_EQ(tables.MaxRightLen, 2);
  EXPECT_EQ(RightRow(tables, 0), (Cells{0, 'x', 0}));
  EXPECT_EQ(RightRow(tables, 1), (Cells{0, 'y', 'z'}));
}

TEST(FillArrays, TheSpareRowIsAllZeros) {
  const SubstitutionTables tables = TablesOf({{"abc", "xy"}}, {false});
  EXPECT_EQ(LeftRow(tables, 1), (Cells{0, 0, 0, 0}));
  EXPECT_EQ(RightRow(tables, 1), (Cells{0, 0, 0}));
}

TEST(FillArrays, ACellOutsideOfTheBoundsIsNone) {
  const SubstitutionTables tables = TablesOf({{"abc", "xy"}}, {false});
  const std::vector<std::pair<std::int64_t, std::int64_t>> outside = {
      {-1, 0}, {2, 0}, {0, -1}, {0, 4}, {1, 4}, {1'000'000'000'000, 1}, {0, 1'000'000'000'000}};
  for (const auto& [row, position] : outside) {
    EXPECT_EQ(tables.LeftBytes(row, position), std::nullopt) << row << ", " << position;
    EXPECT_EQ(tables.RightBytes(row, position), std::nullopt) << row << ", " << position;
  }
  EXPECT_EQ(tables.RightBytes(0, 3), std::nullopt);
}

TEST(FillArrays, EveryByteIsItsOwnCode) {
  std::string bytes;
  for (int code = 0; code < 256; ++code) bytes += static_cast<char>(code);
  const SubstitutionTables tables = TablesOf({{bytes, bytes}}, {false});
  for (int code = 0; code < 256; ++code) {
    EXPECT_EQ(tables.LeftBytes(0, code + 1), code);
    EXPECT_EQ(tables.RightBytes(0, code + 1), code);
  }
  EXPECT_EQ(tables.LeftLengths, (std::vector<std::int64_t>{256}));
}

TEST(FillArrays, LengthsAreThoseOfTheExpandedTexts) {
  const SubstitutionTables tables = TablesOf({{"a[CRLF]b", "[CRLF]"}, {"", "abc"}}, {false, false});
  EXPECT_EQ(tables.LeftTexts, (Texts{"a\r\nb", ""}));
  EXPECT_EQ(tables.RightTexts, (Texts{"\r\n", "abc"}));
  EXPECT_EQ(tables.LeftLengths, (std::vector<std::int64_t>{4, 0}));
  EXPECT_EQ(tables.RightLengths, (std::vector<std::int64_t>{2, 3}));
  EXPECT_EQ(tables.MaxLeftLen, 4);
  EXPECT_EQ(tables.MaxRightLen, 3);
  EXPECT_EQ(LeftRow(tables, 0), (Cells{0, 'a', '\r', '\n', 'b'}));
}

TEST(FillArrays, AFlaggedRowsTailIsWhatFollowsTheFirstWildcard) {
  const SubstitutionTables tables = TablesOf({{"x*yz", ""}}, {true});
  EXPECT_EQ(tables.JokerTail, (Texts{"yz"}));
}

TEST(FillArrays, AFlaggedRowWithoutWildcardHasItsWholeTextAsTail) {
  const SubstitutionTables tables = TablesOf({{"xyz", ""}}, {true});
  EXPECT_EQ(tables.JokerTail, (Texts{"xyz"}));
}

TEST(FillArrays, TailsOfSeveralRows) {
  const SubstitutionTables tables =
      TablesOf({{"*", ""}, {"a*b*c", ""}, {"a*", ""}, {"a*b", ""}, {"", ""}, {"*[CRLF]", ""}},
               {true, true, true, false, true, true});
  EXPECT_EQ(tables.JokerTail, (Texts{"", "b*c", "", "", "", "\r\n"}));
}

TEST(FillArrays, ALetterAsWildcardIsLookedForInItsExactCase) {
  EXPECT_EQ(TablesOf({{"aXbxc", ""}}, {true}, 'x').JokerTail, (Texts{"c"}));
  EXPECT_EQ(TablesOf({{"a\xE9z", ""}}, {true}, 0xE9).JokerTail, (Texts{"z"}));
}

TEST(FillArrays, WithoutAWildcardAFlaggedRowHasItsWholeTextAsTail) {
  EXPECT_EQ(TablesOf({{std::string("a\0b", 3), ""}}, {true}, 0).JokerTail,
            (Texts{std::string("a\0b", 3)}));
}

TEST(FillArrays, ARowWithoutAFlagIsABoundsError) {
  SubstitutionTables tables;
  tables.JokerLeft = {true};
  EXPECT_EQ(FillArrays(ListOf({{"a*b", "x"}, {"c*d", "y"}}), '*', tables),
            ErrorNumber::kSubscriptOutOfRange);
  EXPECT_EQ(tables.LeftTexts, (Texts{"a*b", "c*d"}));
  ASSERT_GE(tables.JokerTail.size(), 1u);
  EXPECT_EQ(tables.JokerTail[0], "b");
}

TEST(FillArrays, RebuildsEveryTableButTheFlags) {
  const ReplacementList list = ListOf({{"a*bcd", "x"}, {"c", "long right"}, {"d", ""}});
  SubstitutionTables tables;
  tables.JokerLeft = {true, false, true};
  tables.JokerRight = {false, true, false, true};
  ASSERT_EQ(FillArrays(list, '*', tables), ErrorNumber::kNone);
  ASSERT_EQ(FillArrays(ListOf({{"z", "r"}}), '*', tables), ErrorNumber::kNone);
  EXPECT_EQ(tables.PairCount, 1);
  EXPECT_EQ(tables.LeftTexts, (Texts{"z"}));
  EXPECT_EQ(tables.RightTexts, (Texts{"r"}));
  EXPECT_EQ(tables.MaxLeftLen, 1);
  EXPECT_EQ(tables.MaxRightLen, 1);
  EXPECT_EQ(tables.LeftLengths, (std::vector<std::int64_t>{1}));
  EXPECT_EQ(tables.RightLengths, (std::vector<std::int64_t>{1}));
  EXPECT_EQ(tables.JokerTail, (Texts{"z"}));
  EXPECT_EQ(tables.JokerLeft, (std::vector<bool>{true, false, true}));
  EXPECT_EQ(tables.JokerRight, (std::vector<bool>{false, true, false, true}));
}

TEST(FillArrays, ARowOfAMegabyteIsHeldWhole) {
  const std::string wide(1'000'000, 'w');
  const SubstitutionTables tables = TablesOf({{"a", "b"}, {wide, wide + "!"}}, {false, false});
  EXPECT_EQ(tables.MaxLeftLen, 1'000'000);
  EXPECT_EQ(tables.MaxRightLen, 1'000'001);
  EXPECT_EQ(tables.LeftBytes(1, 1'000'000), 'w');
  EXPECT_EQ(tables.LeftBytes(0, 1'000'000), 0);
  EXPECT_EQ(tables.LeftBytes(1, 1'000'001), std::nullopt);
  EXPECT_EQ(tables.RightBytes(1, 1'000'001), '!');
}

TEST(ApplyCrlfHandler, FillsTheTextsAlone) {
  SubstitutionTables tables;
  tables.LeftTexts = {"old", "old", "old"};
  tables.MaxLeftLen = 77;
  Apply_CRLF_Hndlr(ListOf({{"a[CRLF]", "b"}, {"c", "[CRLF]d"}}), tables);
  EXPECT_EQ(tables.PairCount, 2);
  EXPECT_EQ(tables.LeftTexts, (Texts{"a\r\n", "c"}));
  EXPECT_EQ(tables.RightTexts, (Texts{"b", "\r\nd"}));
  EXPECT_EQ(tables.MaxLeftLen, 77);
}

TEST(MakeTables, TakesTheFlagsOfTheList) {
  ReplacementList list = ListOf({{"a*b", "x"}, {"c", "*"}, {"d*", "y*"}});
  list.rows[0].left_has_wildcard = true;
  list.rows[1].right_has_wildcard = true;
  SubstitutionTables tables;
  tables.JokerLeft = {false, true, true, true};
  MakeTables(list, '*', tables);
  EXPECT_EQ(tables.JokerLeft, (std::vector<bool>{true, false, false}));
  EXPECT_EQ(tables.JokerRight, (std::vector<bool>{false, true, false}));
  EXPECT_EQ(tables.JokerTail, (Texts{"b", "", ""}));
  EXPECT_EQ(tables.LeftTexts, (Texts{"a*b", "c", "d*"}));
  EXPECT_EQ(tables.RightLengths, (std::vector<std::int64_t>{1, 1, 2}));
}

}  // namespace
}  // namespace morvex::test
