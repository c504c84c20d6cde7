// The grammar of a list file's lines.
#include "core/list/list_line.h"

#include <gtest/gtest.h>

namespace morvex::test {
namespace {

void ExpectRow(const ListLine& line, const std::string& left, const std::string& right) {
  EXPECT_EQ(line.kind, ListLine::Kind::kRow);
  EXPECT_EQ(line.left, left);
  EXPECT_EQ(line.right, right);
}

TEST(ListLineTest, TheFirstSeparatorPartsLeftFromRight) {
  ListLineParser parser("|");
  ExpectRow(parser.Parse("a|b"), "a", "b");
  ExpectRow(parser.Parse("|b"), "", "b");
  ExpectRow(parser.Parse("a|"), "a", "");
  ExpectRow(parser.Parse("a|b|c"), "a", "b|c");
  EXPECT_FALSE(parser.final_row_seen());
}

TEST(ListLineTest, WithoutASeparatorThereIsNoRow) {
  EXPECT_EQ(ListLineParser("|").Parse("abc").kind, ListLine::Kind::kNoRow);
  EXPECT_EQ(ListLineParser("|").Parse("").kind, ListLine::Kind::kNoRow);
  EXPECT_EQ(ListLineParser("").Parse("a|b").kind, ListLine::Kind::kNoRow);
}

TEST(ListLineTest, ThreeSeparatorsEndTheList) {
  EXPECT_EQ(ListLineParser("|").Parse("|||").kind, ListLine::Kind::kEnd);
  EXPECT_EQ(ListLineParser("=>").Parse("=>=>=>").kind, ListLine::Kind::kEnd);
}

TEST(ListLineTest, FromTheFinalRowOnTwoCharactersAreCutOff) {
  ListLineParser parser("|");
  ExpectRow(parser.Parse("a|b||"), "a", "b");
  EXPECT_TRUE(parser.final_row_seen());
  ExpectRow(parser.Parse("c|def"), "c", "d");
  ExpectRow(parser.Parse("c|d"), "c", "");
  ListLineParser wide("=>");
  ExpectRow(wide.Parse("a=>b=>=>"), "a", "b=>");
}

}  // namespace
}  // namespace morvex::test
