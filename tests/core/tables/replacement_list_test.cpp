// A replacement list as data.
#include "core/tables/replacement_list.h"

#include <gtest/gtest.h>

namespace morvex::test {
namespace {

TEST(FlagWildcards, FlagsEveryTextThatHoldsTheWildcard) {
  ReplacementList list{"", {{"a*b", "c"}, {"a", "*"}, {"*", "**"}, {"", ""}}};
  FlagWildcards(list, "*");
  EXPECT_EQ(list.rows, (std::vector<ListRow>{{"a*b", "c", true, false},
                                             {"a", "*", false, true},
                                             {"*", "**", true, true},
                                             {"", "", false, false}}));
}

TEST(FlagWildcards, FlagsNothingWithoutAWildcardAndTakesOldFlagsBack) {
  ReplacementList list{"", {{std::string("a\0", 2), "*", true, true}}};
  FlagWildcards(list, "");
  EXPECT_FALSE(list.rows[0].left_has_wildcard);
  EXPECT_FALSE(list.rows[0].right_has_wildcard);
}

TEST(WildcardText, IsTheWildcardOrNothing) {
  EXPECT_EQ(WildcardText(0), "");
  EXPECT_EQ(WildcardText('*'), "*");
  EXPECT_EQ(WildcardText(0xFF), "\xFF");
}

}  // namespace
}  // namespace morvex::test
