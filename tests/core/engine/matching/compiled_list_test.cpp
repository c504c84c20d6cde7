// What a list is compiled to before a run: prefixes, plain rows and rows that need an attempt.
#include "core/engine/matching/compiled_list.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/core/engine/engine_test.h"

namespace morvex::test {
namespace {

// A compiled list, with the tables that it refers to.
struct Ready {
  explicit Ready(const Rows& rows, char joker = '*') : Ready(rows, {joker, joker, joker}) {}
  Ready(const Rows& rows, Wildcards wildcards)
      : program(rows, wildcards),
        list(program.program.tables, static_cast<std::uint8_t>(wildcards.run)) {}

  EngineProgram program;
  CompiledList list;
};

std::string RightText(const CompiledList& list, std::size_t row) {
  const RowEffect& effect = list.effects.at(row);
  return list.right_bytes.substr(effect.right_begin, effect.right_size);
}

TEST(CompiledList, ThePrefixOfAPlainRowIsItsLeftText) {
  const Ready ready(Rows{{"Jansen", "Person"}});
  ASSERT_EQ(ready.list.rows.size(), 1u);
  EXPECT_EQ(ready.list.rows[0].prefix, "Jansen");
  EXPECT_EQ(ready.list.rows[0].attempt, CompiledRow::kPlain);
  EXPECT_EQ(RightText(ready.list, 0), "Person");
}

TEST(CompiledList, ThePrefixOfAWildcardRowEndsInFrontOfTheWildcard) {
  const Ready ready(Rows{{"Name: *;", "[*]"}});
  ASSERT_EQ(ready.list.rows.size(), 1u);
  EXPECT_EQ(ready.list.rows[0].prefix, "Name: ");
  ASSERT_EQ(ready.list.rows[0].attempt, 0);
  EXPECT_EQ(ready.list.tails.at(static_cast<std::size_t>(ready.list.attempts[0].tail)), ";");
  EXPECT_TRUE(ready.list.attempts[0].opens_span);
}

TEST(CompiledList, AWildcardInFirstPositionIsAPrefixOfItsOwn) {
  const Ready ready(Rows{{"*bc", "x"}});
  ASSERT_EQ(ready.list.rows.size(), 1u);
  EXPECT_EQ(ready.list.rows[0].prefix, "*");
  EXPECT_EQ(ready.list.rows[0].attempt, 0);
}

TEST(CompiledList, APrefixEndsWhereTheRowCouldMatchWithoutMore) {
  // The list was made with the wildcard "*", but the run's wildcard is "#", so the row's "*" stands
  // for itself. The tail "bc" also stands at the row's beginning, which makes the first four bytes
  // enough for a match.
  const Ready ready(Rows{{"bcx*bc", "y"}}, {'*', '*', '#'});
  ASSERT_EQ(ready.list.rows.size(), 1u);
  EXPECT_EQ(ready.list.rows[0].prefix, "bcx*");
}

TEST(CompiledList, RowsThatCanNeverMatchAreLeftOut) {
  EXPECT_TRUE(Ready(Rows{{"", "x"}}).list.rows.empty());
  EXPECT_TRUE(Ready(Rows{{std::string("a\0b", 3), "x"}}).list.rows.empty());
  EXPECT_TRUE(Ready(Rows{{std::string(32767, 'a'), "x"}}).list.rows.empty());
  EXPECT_EQ(Ready(Rows{{std::string(32766, 'a'), "x"}}).list.rows.size(), 1u);
}

TEST(CompiledList, RowsThatCutTheBufferAreKnownByTheirFirstByte) {
  const Ready ready(Rows{{"ab", ""}, {"a*c", ""}, {"ac", ""}, {std::string("a\0", 2), ""}});
  EXPECT_EQ(ready.list.cutting_rows['a'], (std::vector<std::int64_t>{0, 2, 3}));
  EXPECT_TRUE(ready.list.cutting_rows['b'].empty());
}

TEST(CompiledList, ARightTextIsKeptWithoutNulsAndWildcards) {
  const Ready ready(Rows{{"a*b", std::string("<*\0-*>", 6)}});
  EXPECT_EQ(RightText(ready.list, 0), "<->");
  EXPECT_EQ(ready.list.rows[0].wildcards, (std::vector<std::size_t>{1, 2}));
  EXPECT_TRUE(ready.list.effects[0].has_wildcards);
}

TEST(CompiledList, RowsWithTheSameTailShareIt) {
  const Ready ready(Rows{{"a*;", ""}, {"b*;", ""}, {"c*.", ""}});
  EXPECT_EQ(ready.list.tails.size(), 3u);  // the empty tail, ";" and "."
  EXPECT_EQ(ready.list.attempts[0].tail, ready.list.attempts[1].tail);
  EXPECT_NE(ready.list.attempts[0].tail, ready.list.attempts[2].tail);
}

}  // namespace
}  // namespace morvex::test
