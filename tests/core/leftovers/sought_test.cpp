// What the search looks for, and the keys by which it finds that.
#include "core/leftovers/sought.h"

#include <algorithm>

#include "tests/core/leftovers/leftovers_test.h"

namespace morvex::test {
namespace {

std::vector<Encoding> EncodingsOf(const Sought& sought) {
  std::vector<Encoding> encodings;
  for (const SoughtRow& row : sought.rows()) encodings.push_back(row.encoding);
  return encodings;
}

TEST(SoughtTest, AsciiIsTheSameInBothNarrowEncodings) {
  EXPECT_EQ(EncodingsOf(*SoughtList(Rows{{"Anna", "x"}}).sought),
            (std::vector<Encoding>{Encoding::kUtf8, Encoding::kUtf16Le, Encoding::kUtf16Be}));
}

TEST(SoughtTest, OtherLettersAreSoughtInEveryEncodingThatHasThem) {
  EXPECT_EQ(EncodingsOf(*SoughtList(Rows{{"Zo\xC3\xAB", "x"}}).sought),
            (std::vector<Encoding>{Encoding::kUtf8, Encoding::kWindows1252, Encoding::kUtf16Le,
                                   Encoding::kUtf16Be}));
  EXPECT_EQ(EncodingsOf(*SoughtList(Rows{{"\xC5\x81ukasz", "x"}}).sought),
            (std::vector<Encoding>{Encoding::kUtf8, Encoding::kUtf16Le, Encoding::kUtf16Be}));
}

TEST(SoughtTest, BytesThatAreNoTextAreSoughtAsTheyAre) {
  EXPECT_EQ(EncodingsOf(*SoughtList(Rows{{"Zo\xEB", "x"}}).sought),
            std::vector<Encoding>{Encoding::kBytes});
}

TEST(SoughtTest, ATextWhoseCasesDifferInABitHasOneKeyAnEncoding) {
  const SoughtList list(Rows{{"M\xC3\xBCller", "x"}});
  EXPECT_EQ(list.sought->keys().rows().size(), 4u);
  EXPECT_TRUE(list.sought->rare_keys().rows().empty());
}

TEST(SoughtTest, LettersWhoseCasesDifferOtherwiseMultiplyTheKeysOnlyUpToALimit) {
  std::string left;
  // The two cases of this letter still differ after their bytes are folded (see Folded).
  for (int i = 0; i < 40; ++i) left += "\xC5\x82";
  const SoughtList list(Rows{{left, "x"}});
  EXPECT_EQ(list.sought->keys().rows().size(), 3u * 16u);
  for (const CompiledRow& key : list.sought->keys().rows()) EXPECT_EQ(key.prefix.size(), 8u);
}

TEST(SoughtTest, EveryKeyIsFoldedAndLeadsToAPart) {
  const SoughtList list(Rows{{"Stra\xC3\x9F"
                              "e",
                              "x"},
                             {"Born: *;", ""},
                             {"STRASSE", "y"}});
  for (const SoughtKeys* keys : {&list.sought->keys(), &list.sought->rare_keys()}) {
    ASSERT_FALSE(keys->rows().empty());
    for (std::size_t key = 0; key < keys->rows().size(); ++key) {
      for (const char byte : keys->rows()[key].prefix) {
        const auto code = static_cast<std::uint8_t>(byte);
        EXPECT_TRUE(code == Folded(0) || code == Folded(code)) << +code;
      }
      EXPECT_FALSE(keys->PartsOf(static_cast<std::int32_t>(key)).empty());
    }
  }
  // A key that two rows share leads to both rows, in UTF-8 and in Windows-1252.
  const SoughtKeys& keys = list.sought->keys();
  const auto shared = std::find_if(keys.rows().begin(), keys.rows().end(),
                                   [](const CompiledRow& key) { return key.prefix == "strasse"; });
  ASSERT_NE(shared, keys.rows().end());
  EXPECT_EQ(keys.PartsOf(static_cast<std::int32_t>(shared - keys.rows().begin())).size(), 4u);
}

TEST(SoughtTest, ARareKeyHoldsARareFormNotFarFromItsBeginning) {
  const std::string far = std::string(200, 'a');
  // In Windows-1252 the mu of the last row can be written in a single way, and that way is rare.
  const SoughtList list(Rows{
      {"Rossi", "x"}, {far + "ss" + far, "x"}, {"ss" + far, "x"}, {far + "\xCE\xBC" + far, "x"}});
  const std::vector<CompiledRow>& forms = list.sought->rare_forms().rows();
  ASSERT_FALSE(list.sought->rare_keys().rows().empty());
  for (const CompiledRow& key : list.sought->rare_keys().rows()) {
    EXPECT_LE(key.prefix.size(), Sought::kLongestRareKey);
    EXPECT_TRUE(std::any_of(forms.begin(), forms.end(), [&](const CompiledRow& form) {
      return key.prefix.find(form.prefix) != std::string_view::npos;
    })) << key.prefix;
  }
}

TEST(SoughtTest, WhatIsInEveryFileIsNoRareForm) {
  // The other cases of the dotless i include the usual i and I.
  const SoughtList list(Rows{{"Y\xC4\xB1lmaz", "x"}});
  for (const CompiledRow& form : list.sought->rare_forms().rows()) {
    EXPECT_NE(form.prefix, "i");
    EXPECT_NE(form.prefix, std::string("i\x01"));
    EXPECT_NE(form.prefix, std::string("\x01i"));
  }
}

TEST(SoughtTest, AWildcardRowHasAPartBetweenItsWildcards) {
  const SoughtList list(Rows{{"a*b**c", "x"}});
  EXPECT_EQ(list.sought->rows().front().parts, 3u);
  EXPECT_TRUE(list.sought->rows().front().is_wildcard);
  EXPECT_GE(list.sought->look_behind(), 32766u);
}

TEST(SoughtTest, AVeryLongTextIsSoughtByItsBeginning) {
  const std::string left(100'000, 'a');
  const SoughtList list(Rows{{left, "x"}});
  EXPECT_LE(list.sought->look_ahead(), 32'000u);
  EXPECT_GE(list.sought->look_ahead(), 16'000u);
  EXPECT_FALSE(list.Find(left).empty());
}

TEST(SoughtTest, AListIsReadAsUtf8WhenAllOfItIsThat) {
  TestProgram test;
  test.ApplyRows({{"M\xC3\xBCller", "x"}, {"Anna", "\xFF"}});
  EXPECT_EQ(GuessEncoding(test.program.tables), Encoding::kUtf8);
  TestProgram other;
  other.ApplyRows({{"M\xC3\xBCller", "x"}, {"Zo\xEB", "y"}});
  EXPECT_EQ(GuessEncoding(other.program.tables), Encoding::kWindows1252);
}

}  // namespace
}  // namespace morvex::test
