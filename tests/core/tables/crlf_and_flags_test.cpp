// The line-break token, the cell rule, and the wildcard flags of the rows.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/tables/substitution_tables.h"

namespace morvex::test {
namespace {

using Flags = std::vector<bool>;

TEST(ExpandCRLF, TheTokenBetweenTwoCharactersBecomesCrLf) {
  EXPECT_EQ(ExpandCRLF("a[CRLF]b"), "a\r\nb");
}

TEST(ExpandCRLF, TheLowerCaseTokenStaysAsItIs) { EXPECT_EQ(ExpandCRLF("[crlf]"), "[crlf]"); }

TEST(ExpandCRLF, ATextOfFiveCharactersStaysAsItIs) { EXPECT_EQ(ExpandCRLF("[CRLF"), "[CRLF"); }

struct ExpandCase {
  std::string text;
  std::string expanded;
};

TEST(ExpandCRLF, ReplacesEveryExactTokenAndNothingElse) {
  const std::vector<ExpandCase> cases = {
      {"", ""},
      {"a", "a"},
      {"abcdefgh", "abcdefgh"},
      {"[CRLF]", "\r\n"},
      {"[CRLF][CRLF]", "\r\n\r\n"},
      {"[CRLF]x[CRLF]", "\r\nx\r\n"},
      {"[CRLF[CRLF]", "[CRLF\r\n"},
      {"[[CRLF]]", "[\r\n]"},
      {"[CRLF]CRLF]", "\r\nCRLF]"},
      {"[CRlF]", "[CRlF]"},
      {"[CR LF]", "[CR LF]"},
      {"CRLF]]", "CRLF]]"},
      {"\r\n[CRLF]", "\r\n\r\n"},
      {std::string("\0[CRLF]\0", 8), std::string("\0\r\n\0", 4)},
  };
  for (const ExpandCase& expand : cases) {
    EXPECT_EQ(ExpandCRLF(expand.text), expand.expanded) << expand.text;
  }
}

TEST(ExpandCRLF, TenThousandTokens) {
  std::string text;
  std::string expanded;
  for (int i = 0; i < 10'000; ++i) {
    text += "x[CRLF]";
    expanded += "x\r\n";
  }
  EXPECT_EQ(ExpandCRLF(text), expanded);
}

TEST(CharCodeAt, FollowsTheCellRule) {
  const std::vector<std::string> texts = {"ab", "", "\xFF"};
  EXPECT_EQ(CharCodeAt(texts, 0, 0), 0);
  EXPECT_EQ(CharCodeAt(texts, 1, 0), 'a');
  EXPECT_EQ(CharCodeAt(texts, 2, 0), 'b');
  EXPECT_EQ(CharCodeAt(texts, 3, 0), 0);
  EXPECT_EQ(CharCodeAt(texts, 1, 1), 0);
  EXPECT_EQ(CharCodeAt(texts, 1, 2), 0xFF);
  EXPECT_EQ(CharCodeAt(texts, 1, 3), 0) << "the spare row";
  EXPECT_EQ(CharCodeAt({}, 0, 0), 0);
}

TEST(SetJoker, ALowerIndexCutsTheFlagsBehindItOff) {
  SubstitutionTables tables;
  Set_Joker(tables, "Left", 3, true);
  Set_Joker(tables, "Left", 1, false);
  EXPECT_EQ(tables.JokerLeft, (Flags{false, false}));
}

TEST(SetJoker, AHigherIndexGrowsTheTableWithUnsetFlags) {
  SubstitutionTables tables;
  Set_Joker(tables, "Left", 0, true);
  Set_Joker(tables, "Left", 3, true);
  EXPECT_EQ(tables.JokerLeft, (Flags{true, false, false, true}));
}

TEST(SetJoker, TheFlagsThatRemainAreKept) {
  SubstitutionTables tables;
  for (int row = 0; row < 5; ++row) Set_Joker(tables, "Right", row, true);
  Set_Joker(tables, "Right", 2, false);
  EXPECT_EQ(tables.JokerRight, (Flags{true, true, false}));
}

TEST(HasEndingInBeginning, LooksForAllBehindTheWildcardInFrontOfIt) {
  for (const char* left : {"name=\"*\"", "Mr * ", ";*;", "--*--", "a-b*-", "**"}) {
    EXPECT_TRUE(HasEndingInBeginning(left, '*')) << left;
    EXPECT_FALSE(HasEndingInBeginning(left, 0)) << left;
    EXPECT_FALSE(HasEndingInBeginning(left, '#')) << left;
  }
  for (const char* left : {"", "*", "a", "a*", "a*b", "-*--", "*a", "*a*b", "<b>*</b>", "a*a*"}) {
    EXPECT_FALSE(HasEndingInBeginning(left, '*')) << left;
  }
}

TEST(TakesInOneByte, WhereTheWildcardEndsALeftTextThanWhichNoneIsLonger) {
  for (const char* left : {"a*", "Tel: *"}) {
    const std::size_t size = std::string(left).size();
    EXPECT_TRUE(TakesInOneByte(left, '*', 0)) << left;
    EXPECT_TRUE(TakesInOneByte(left, '*', size)) << left;
    EXPECT_FALSE(TakesInOneByte(left, '*', size + 1)) << left;
    EXPECT_FALSE(TakesInOneByte(left, 0, size)) << left;
  }
  for (const char* left : {"", "*", "**", "a", "a*b", "*a", "*a*", "a*b*"}) {
    EXPECT_FALSE(TakesInOneByte(left, '*', 0)) << left;
  }
}

TEST(SetJoker, EachColumnHasItsOwnFlags) {
  SubstitutionTables tables;
  Set_Joker(tables, "Left", 1, true);
  Set_Joker(tables, "Right", 0, true);
  EXPECT_EQ(tables.JokerLeft, (Flags{false, true}));
  EXPECT_EQ(tables.JokerRight, (Flags{true}));
}

TEST(SetJoker, AnyOtherColumnWordChangesNothing) {
  SubstitutionTables tables;
  tables.JokerLeft = {true, true};
  tables.JokerRight = {true, true};
  for (const char* word : {"left", "LEFT", "right", "Links", "Rechts", "", "Left ", " Right"}) {
    Set_Joker(tables, word, 0, false);
    EXPECT_EQ(tables.JokerLeft, (Flags{true, true})) << word;
    EXPECT_EQ(tables.JokerRight, (Flags{true, true})) << word;
  }
}

TEST(SetJoker, AnIndexBelowZeroIsABoundsErrorAndChangesNothing) {
  SubstitutionTables tables;
  tables.JokerLeft = {true};
  EXPECT_EQ(Set_Joker(tables, "Left", -1, false), ErrorNumber::kSubscriptOutOfRange);
  EXPECT_EQ(tables.JokerLeft, (Flags{true}));
  EXPECT_EQ(Set_Joker(tables, "neither", -1, false), ErrorNumber::kNone);
  EXPECT_EQ(Set_Joker(tables, "Left", 0, false), ErrorNumber::kNone);
}

}  // namespace
}  // namespace morvex::test
