// Every form of a left text is found at every offset, and nothing else is found.
#include "core/leftovers/leftover_search.h"

#include <algorithm>

#include "core/engine/matching/bytes_in_memory.h"
#include "core/text/letter_case.h"
#include "tests/core/leftovers/leftovers_test.h"

namespace morvex::test {
namespace {

using namespace std::string_literals;
using Finds = std::vector<FoundLeftover>;

const std::string kMueller = "M\xC3\xBCller";

struct Form {
  const char* name;
  std::string bytes;
  Encoding encoding;
  bool as_written;
};

std::vector<Form> FormsOfMueller() {
  return {
      {"as it stands", "M\xC3\xBCller", Encoding::kUtf8, true},
      {"upper case", "M\xC3\x9CLLER", Encoding::kUtf8, false},
      {"lower case", "m\xC3\xBCller", Encoding::kUtf8, false},
      {"mixed case", "mUeLlEr"s.replace(1, 2, "\xC3\x9C"), Encoding::kUtf8, false},
      {"Windows-1252", "M\xFCller", Encoding::kWindows1252, true},
      {"Windows-1252, upper case", "M\xDCLLER", Encoding::kWindows1252, false},
      {"UTF-16LE", "M\0\xFC\0l\0l\0e\0r\0"s, Encoding::kUtf16Le, true},
      {"UTF-16LE, upper case", "M\0\xDC\0L\0L\0E\0R\0"s, Encoding::kUtf16Le, false},
      {"UTF-16BE", "\0M\0\xFC\0l\0l\0e\0r"s, Encoding::kUtf16Be, true},
      {"UTF-16BE, upper case", "\0M\0\xDC\0L\0L\0E\0R"s, Encoding::kUtf16Be, false},
  };
}

TEST(LeftoverSearchTest, EveryFormIsFoundAtTheFirstAndAtTheLastByteAndBetween) {
  const SoughtList list(Rows{{kMueller, "[tenant]"}});
  for (const Form& form : FormsOfMueller()) {
    const std::uint64_t size = form.bytes.size();
    const FoundLeftover first{0, 1, 0, form.encoding, form.as_written, size};
    EXPECT_EQ(list.Find(form.bytes), Finds{first}) << form.name;
    EXPECT_EQ(list.Find(form.bytes + " lives here."), Finds{first}) << form.name;
    FoundLeftover last = first;
    last.offset = 12;
    last.line = 2;
    EXPECT_EQ(list.Find("here lives:\n" + form.bytes), Finds{last}) << form.name;
    EXPECT_EQ(list.Find("here lives:\n" + form.bytes + "."), Finds{last}) << form.name;
  }
}

TEST(LeftoverSearchTest, EveryFormIsFoundAcrossTheBorderOfABlock) {
  const SoughtList list(Rows{{kMueller, "[tenant]"}});
  constexpr std::size_t kBlock = 64;
  for (const Form& form : FormsOfMueller()) {
    // The text is found at every even offset around the first borders between blocks.
    for (std::size_t at = 0; at < 1000; at += 2) {
      const std::string bytes = std::string(at, '.') + form.bytes + std::string(300, '.');
      EXPECT_EQ(list.Find(bytes, kBlock),
                Finds({{at, 1, 0, form.encoding, form.as_written, form.bytes.size()}}))
          << form.name << " at " << at;
    }
  }
}

TEST(LeftoverSearchTest, WhatOnlyLooksLikeATextIsNotFound) {
  const SoughtList list(Rows{{kMueller, "[tenant]"}, {"a@b[1]", "x"}});
  for (const std::string& bytes :
       {""s, "M\xC3\xBClle"s, "M\xC3\xBC"s, "Mueller"s, "Muller"s, "\xC3\xBCller"s,
        "m\xC3\xBDller"s, "M\xC3\xBC"s + "\xCC"s + "ler"s, "M\xE3\xBCller"s, "M\0\xFC\0l\0l\0e\0r"s,
        "\0M\0\xFC\0l\0l\0e\0"s, "a`b[1]"s, "a@b{1}"s, "A@B[\x11]"s, "M\xC3\xBC ller"s}) {
    EXPECT_EQ(list.Find(bytes), Finds{}) << bytes;
  }
}

TEST(LeftoverSearchTest, Utf16IsFoundOnceInItsOwnByteOrder) {
  const SoughtList list(Rows{{"Anna", "x"}});
  const std::string little = "x\0A\0n\0n\0a\0y\0"s;
  const std::string big = "\0x\0A\0n\0n\0a\0y"s;
  EXPECT_EQ(list.Find(little), Finds({{2, 1, 0, Encoding::kUtf16Le, true, 8}}));
  EXPECT_EQ(list.Find(big), Finds({{2, 1, 0, Encoding::kUtf16Be, true, 8}}));
  // The text is found at odd offsets, too.
  EXPECT_EQ(list.Find("?" + little).size(), 1u);
  EXPECT_EQ(list.Find("?" + big).size(), 1u);
}

// In UTF-16, an ASCII part that stands beside another ASCII character also matches in the other
// byte order, one byte away. The search must report it only once.
TEST(LeftoverSearchTest, AWildcardRowInUtf16IsFoundOnceAtEveryOffset) {
  const SoughtList list(Rows{{"Born: *.;", ""}, {"aa*bb*cc", ""}});
  for (const char32_t* text :
       {U"Born: 1 May.;", U"aa1bb2cc", U"x Born: 1 May.; y", U"xxaa1bb2ccxx"}) {
    for (const Encoding encoding : {Encoding::kUtf16Le, Encoding::kUtf16Be}) {
      const std::string wide = *Encode(text, encoding);
      for (std::size_t before = 0; before < 80; ++before) {
        for (const char filler : {'?', '\0'}) {
          const std::string bytes = std::string(before, filler) + wide + "\xD8\xD8";
          EXPECT_EQ(list.Find(bytes, 16).size(), 1u)
              << *Encode(text, Encoding::kUtf8) << " behind " << before << " of " << +filler;
        }
      }
    }
  }
}

TEST(LeftoverSearchTest, ALongSAndAKelvinSignOfTheListAreFoundAsWrittenAndInOtherCase) {
  const std::string long_s = "\xC5\xBF";
  const std::string kelvin = "\xE2\x84\xAA";
  const SoughtList list(Rows{{"Me" + long_s + long_s + "er", "x"}, {kelvin + "elly", "x"}});
  const std::vector<std::pair<std::string, bool>> texts = {{"Me" + long_s + long_s + "er", true},
                                                           {"ME" + long_s + long_s + "ER", false},
                                                           {"Me" + long_s + "ser", false},
                                                           {"Messer", false},
                                                           {"Me\xC3\x9F" + "er"s, false},
                                                           {kelvin + "elly", true},
                                                           {kelvin + "ELLY", false},
                                                           {"kelly", false}};
  for (const auto& [text, as_written] : texts) {
    const Finds found = list.Find(text);
    ASSERT_EQ(found.size(), 1u) << text;
    EXPECT_EQ(found.front().as_written, as_written) << text;
    for (const Encoding encoding : {Encoding::kUtf16Le, Encoding::kUtf16Be}) {
      EXPECT_EQ(list.Find(*Encode(*Decode(text, Encoding::kUtf8), encoding)).size(), 1u) << text;
    }
  }
  EXPECT_EQ(SoughtList(Rows{{"Messer", "x"}}).Find("Me" + long_s + long_s + "er"), Finds{});
}

// Every letter that has another case, and every ligature, is found between other letters in every
// encoding.
TEST(LeftoverSearchTest, EveryLetterWithAnotherFormIsFoundAsWritten) {
  Rows rows;
  std::vector<std::u32string> texts;
  for (char32_t letter = 0x80; letter < 0x20000; ++letter) {
    const bool has_form =
        !OtherCases(letter).empty() || WithoutLigatures({&letter, 1}) != std::u32string(1, letter);
    if (!has_form) continue;
    texts.push_back(U"q" + std::u32string(1, letter) + U"q");
    rows.push_back({*Encode(texts.back(), Encoding::kUtf8), "x"});
  }
  ASSERT_GT(rows.size(), 2700u);
  const SoughtList list(rows);
  for (const Encoding encoding :
       {Encoding::kUtf8, Encoding::kWindows1252, Encoding::kUtf16Le, Encoding::kUtf16Be}) {
    std::string bytes;
    std::vector<std::size_t> places(texts.size(), std::string::npos);
    for (std::size_t i = 0; i < texts.size(); ++i) {
      const std::optional<std::string> text = Encode(texts[i], encoding);
      if (!text) continue;
      places[i] = bytes.size();
      bytes += *text;
    }
    const Finds found = list.Find(bytes);
    std::vector<bool> seen(texts.size());
    for (const FoundLeftover& each : found) {
      const auto row = static_cast<std::size_t>(each.row);
      if (each.offset == places[row] && each.encoding == encoding && each.as_written)
        seen[row] = true;
    }
    for (std::size_t i = 0; i < texts.size(); ++i) {
      EXPECT_EQ(seen[i], places[i] != std::string::npos)
          << std::hex << +texts[i][1] << " in " << static_cast<int>(encoding);
    }
  }
}

TEST(LeftoverSearchTest, ARowThatEndsInItsOwnBeginningIsFoundBehindItsRightText) {
  const SoughtList list(Rows{{"name=\"*\"", "name=\"[x]\""}});
  EXPECT_TRUE(list.sought->rows_not_judged().empty());
  EXPECT_EQ(list.Find("name=\"[x]\"nate\""), Finds({{0, 1, 0, Encoding::kUtf8, true, 15}}));
  EXPECT_EQ(list.Find("name=\"Renate\""), Finds({{0, 1, 0, Encoding::kUtf8, true, 13}}));
  EXPECT_EQ(list.Find("name=\"[x]\"\""), Finds{});
  EXPECT_EQ(list.Find("name=\"[x]\" and no more"), Finds{});
  const std::string wide = *Encode(U"name=\"[x]\"nate\"", Encoding::kUtf16Le);
  EXPECT_EQ(list.Find(wide), Finds({{0, 1, 0, Encoding::kUtf16Le, true, 30}}));
  EXPECT_EQ(list.Find(*Encode(U"name=\"[x]\"\"", Encoding::kUtf16Le)), Finds{});
}

TEST(LeftoverSearchTest, ARowThatEndsInItsOwnBeginningAndPutsInOtherTextCannotBeJudged) {
  const SoughtList list(Rows{{"Mr * ", "[m]"}, {"Born: *;", "[b]"}, {";*;", ""}, {"a*a", "a*a"}});
  EXPECT_EQ(list.sought->rows_not_judged(), (std::vector<std::int64_t>{0, 2}));
  EXPECT_EQ(list.sought->rows_that_stay(), std::vector<std::int64_t>{3});
  EXPECT_EQ(list.Find("Mr Renate "), Finds({{0, 1, 0, Encoding::kUtf8, true, 10}}));
}

TEST(LeftoverSearchTest, ARowWhoseWildcardTakesInOneByteCannotBeJudged) {
  const Rows rows = {{"Mr *", "Mr X"}, {"Dr *", "[d]"}, {"Tel *", "Tel *"}};
  const SoughtList narrow(Rows(rows.begin(), rows.begin() + 2));
  EXPECT_EQ(narrow.sought->rows_not_judged(), (std::vector<std::int64_t>{0, 1}));
  EXPECT_EQ(narrow.Find("Mr Renate"), Finds({{0, 1, 0, Encoding::kUtf8, true, 3}}));
  EXPECT_TRUE(SoughtList(rows).sought->rows_not_judged().empty());
  EXPECT_EQ(SoughtList(rows).sought->rows_that_stay(), std::vector<std::int64_t>{2});
}

TEST(LeftoverSearchTest, AListInWindows1252IsFoundInUtf8) {
  const SoughtList list(Rows{{"M\xFCller", "x"}}, '*', Encoding::kWindows1252);
  EXPECT_EQ(list.Find("M\xFCller M\xC3\xBCller"), Finds({{0, 1, 0, Encoding::kWindows1252, true, 6},
                                                         {7, 1, 0, Encoding::kUtf8, true, 7}}));
}

TEST(LeftoverSearchTest, ATextThatTheListsEncodingCannotReadIsSoughtAsBytes) {
  const SoughtList list(Rows{{"M\xFCller", "x"}}, '*', Encoding::kUtf8);
  EXPECT_EQ(list.Find("M\xFCller m\xFCLLER M\xDC"
                      "ller"),
            Finds({{0, 1, 0, Encoding::kBytes, true, 6}, {7, 1, 0, Encoding::kBytes, false, 6}}));
}

TEST(LeftoverSearchTest, LettersWhoseCasesDifferInMoreThanABitAreFound) {
  const std::vector<std::pair<std::string, std::string>> texts = {
      {"\xC5\x81\xC3\xB3"
       "d\xC5\xBA",
       "\xC5\x82\xC3\x93"
       "D\xC5\xB9"},                                                             // Polish
      {"\xD0\xA0\xD1\x83\xD1\x81\xD1\x8F", "\xD1\x80\xD0\xA3\xD0\xA1\xD0\xAF"},  // Russian
      {"\xCE\xA0\xCF\x8D\xCF\x81\xCE\xB3\xCE\xBF\xCF\x82",
       "\xCF\x80\xCE\x8E\xCE\xA1\xCE\x93\xCE\x9F\xCE\xA3"},  // Greek, with a final sigma
      {"Stra\xC3\x9F"
       "e",
       "STRASSE"},
      {"Y\xC4\xB1lmaz", "YILMAZ"},
      {"\xC5\xA0t\xC4\x9Bp\xC3\xA1n", "\xC5\xA1T\xC4\x9AP\xC3\x81N"}};
  for (const auto& [left, other] : texts) {
    const SoughtList list(Rows{{left, "x"}});
    EXPECT_EQ(list.Find(left), Finds({{0, 1, 0, Encoding::kUtf8, true, left.size()}})) << left;
    EXPECT_EQ(list.Find(other), Finds({{0, 1, 0, Encoding::kUtf8, false, other.size()}})) << left;
    const std::u32string text = *Decode(other, Encoding::kUtf8);
    for (const Encoding encoding : {Encoding::kUtf16Le, Encoding::kUtf16Be}) {
      const std::string wide = *Encode(text, encoding);
      EXPECT_EQ(list.Find(wide), Finds({{0, 1, 0, encoding, false, wide.size()}})) << left;
    }
  }
}

TEST(LeftoverSearchTest, ALineBreakInALeftTextIsOneInTheFile) {
  const SoughtList list(Rows{{"van der[CRLF]Linden", "x"}});
  EXPECT_EQ(list.Find("Zoe van der\r\nLinden"), Finds({{4, 1, 0, Encoding::kUtf8, true, 15}}));
}

TEST(LeftoverSearchTest, EveryRowThatStandsAtAPlaceIsTold) {
  const SoughtList list(Rows{{"Anna", "x"}, {"Annabel", "y"}, {"ANNA", "z"}, {"abel", "w"}});
  const Finds found = list.Find("Annabel");
  EXPECT_EQ(found.size(), 4u);
  for (std::int64_t row = 0; row < 4; ++row) {
    EXPECT_EQ(std::count_if(found.begin(), found.end(),
                            [row](const FoundLeftover& each) { return each.row == row; }),
              1)
        << row;
  }
}

TEST(LeftoverSearchTest, OccurrencesOfOneRowDoNotOverlap) {
  const SoughtList list(Rows{{"aa", "x"}});
  EXPECT_EQ(list.Find("aaaaa").size(), 2u);
}

TEST(LeftoverSearchTest, AnEmptyListFindsNothing) {
  EXPECT_EQ(SoughtList(Rows{{"", "x"}}).Find("anything"), Finds{});
}

TEST(LeftoverSearchTest, LinesAreCountedFromOneByTheirLineFeeds) {
  const SoughtList list(Rows{{"Anna", "x"}});
  EXPECT_EQ(list.Find("Anna\r\nAnna\n\nAnna\n"s + std::string(500, '\n') + "Anna", 64),
            Finds({{0, 1, 0, Encoding::kUtf8, true, 4},
                   {6, 2, 0, Encoding::kUtf8, true, 4},
                   {12, 4, 0, Encoding::kUtf8, true, 4},
                   {517, 505, 0, Encoding::kUtf8, true, 4}}));
}

TEST(LeftoverSearchTest, LinesAreCountedWhereEveryByteIsABreak) {
  const SoughtList list(Rows{{"Anna", "x"}});
  for (const unsigned breaks : {254U, 255U, 256U, 510U, 511U, 100'000U}) {
    EXPECT_EQ(
        list.Find(std::string(breaks, '\n') + "Anna"),
        Finds({{breaks, static_cast<std::int64_t>(breaks) + 1, 0, Encoding::kUtf8, true, 4}}));
  }
}

TEST(LeftoverSearchTest, AWildcardRowIsFoundWhereItsPartsFollowEachOther) {
  const SoughtList list(Rows{{"Born: *;", ""}});
  EXPECT_EQ(list.Find("Born: 1 May;"), Finds({{0, 1, 0, Encoding::kUtf8, true, 12}}));
  EXPECT_EQ(list.Find("x\nborn: 1 May;"), Finds({{2, 2, 0, Encoding::kUtf8, false, 12}}));
  EXPECT_EQ(list.Find("Born: 1 May"), Finds{});
  EXPECT_EQ(list.Find("; Born: "), Finds{});
  EXPECT_EQ(list.Find("Born: a; Born: b;").size(), 2u);
  const std::string wide = *Encode(U"Born: 1 May;", Encoding::kUtf16Be);
  EXPECT_EQ(list.Find(wide), Finds({{0, 1, 0, Encoding::kUtf16Be, true, 24}}));
}

TEST(LeftoverSearchTest, PartsDoNotShareBytes) {
  const SoughtList list(Rows{{"aa*ab", "x"}});
  EXPECT_EQ(list.Find("aab"), Finds{});
  EXPECT_EQ(list.Find("aaab"), Finds({{0, 1, 0, Encoding::kUtf8, true, 4}}));
  EXPECT_EQ(list.Find("aaaab"), Finds({{1, 1, 0, Encoding::kUtf8, true, 4}}));
}

TEST(LeftoverSearchTest, PartsCountAsFarApartAsAMatchReaches) {
  const SoughtList list(Rows{{"Born: *;", ""}});
  const auto apart = [](std::size_t span) { return "Born: " + std::string(span - 7, '.') + ";"; };
  EXPECT_EQ(list.Find(apart(32766), 4096).size(), 1u);
  EXPECT_EQ(list.Find(apart(32767), 4096).size(), 0u);
}

TEST(LeftoverSearchTest, WhatARunPutInForAWildcardRowIsNoLeftover) {
  const SoughtList list(Rows{{"Born: *;", "Born: [withheld];"}});
  EXPECT_EQ(list.Find("Born: [withheld];"), Finds{});
  EXPECT_EQ(list.Find("Born: [withheld] and 1 May;").size(), 1u);
  const std::string wide = *Encode(U"Born: [withheld];", Encoding::kUtf16Le);
  EXPECT_EQ(list.Find(wide), Finds{});
}

TEST(LeftoverSearchTest, ARightTextThatDropsAPartHidesNothing) {
  const SoughtList list(Rows{{"Born: *;", "Born: "}});
  EXPECT_EQ(list.Find("Born: 1 May;").size(), 1u);
}

TEST(LeftoverSearchTest, ARowThatPutsBackAllItTookIsNotSought) {
  const SoughtList list(Rows{{"Name: *;", "Name: <*>;"}, {"HSL-*/RM", "HSL-*"}});
  EXPECT_EQ(list.sought->rows_that_stay(), std::vector<std::int64_t>{0});
  EXPECT_EQ(list.Find("Name: Anna; HSL-0417/RM"), Finds({{12, 1, 1, Encoding::kUtf8, true, 11}}));
  EXPECT_EQ(list.Find("HSL-0417"), Finds{});
}

TEST(LeftoverSearchTest, AWildcardInFirstOrLastPlaceLeavesOnePart) {
  EXPECT_EQ(SoughtList(Rows{{"Tel: *", ""}}).Find("Tel: 12"),
            Finds({{0, 1, 0, Encoding::kUtf8, true, 5}}));
  EXPECT_EQ(SoughtList(Rows{{"*ab", "x"}}).Find("ab *ab"),
            Finds({{3, 1, 0, Encoding::kUtf8, true, 3}}));
}

TEST(LeftoverSearchTest, ASearchStartsAfreshWithEveryFile) {
  const SoughtList list(Rows{{"Born: *;", ""}, {"Anna", "x"}});
  LeftoverSearch search(*list.sought);
  EXPECT_EQ(SoughtList::FindWith(search, "Born: \nAnna"),
            Finds({{7, 2, 1, Encoding::kUtf8, true, 4}}));
  EXPECT_EQ(SoughtList::FindWith(search, "; Anna"), Finds({{2, 1, 1, Encoding::kUtf8, true, 4}}));
}

TEST(LeftoverSearchTest, WhatStandsAroundIsGiven) {
  const SoughtList list(Rows{{"Anna", "x"}});
  LeftoverSearch search(*list.sought);
  MemorySource file("before Anna behind");
  int calls = 0;
  search.Run(file, [&](const Leftover& leftover) {
    ++calls;
    EXPECT_EQ(leftover.around, "before Anna behind");
    EXPECT_EQ(leftover.before, 7u);
  });
  EXPECT_EQ(calls, 1);
}

TEST(LeftoverSearchTest, AReadErrorEndsTheSearch) {
  class Broken : public ByteSource {
    Result<std::size_t> ReadAt(std::uint64_t, char*, std::size_t) override {
      return ErrorNumber::kDeviceIo;
    }
  };
  const SoughtList list(Rows{{"Anna", "x"}});
  LeftoverSearch search(*list.sought);
  Broken file;
  EXPECT_EQ(search.Run(file, [](const Leftover&) {}), ErrorNumber::kDeviceIo);
  MemorySource whole("Anna");
  EXPECT_EQ(search.Run(
                whole, [](const Leftover&) {}, [] { return false; }),
            ErrorNumber::kInvalidCall);
}

TEST(LeftoverSearchTest, ARareFormIsFoundAtEveryPlaceAroundABlocksBorder) {
  const SoughtList list(Rows{{"Grossmann", "x"}, {"Yilmaz", "x"}});
  const std::string gross = "Gro\xC3\x9Fmann";
  const std::string yilmaz = "Y\xC4\xB1lmaz";
  for (std::size_t at = 0; at < 1000; ++at) {
    const std::string bytes = std::string(at, '.') + gross + yilmaz + std::string(300, '.');
    EXPECT_EQ(list.Find(bytes, 64),
              Finds({{at, 1, 0, Encoding::kUtf8, false, gross.size()},
                     {at + gross.size(), 1, 1, Encoding::kUtf8, false, yilmaz.size()}}))
        << "at " << at;
  }
  // The text is found at every offset around the border between two blocks of candidates.
  for (std::size_t at = 4000; at < 4200; ++at) {
    EXPECT_EQ(list.Find(std::string(at, '.') + gross).size(), 1u) << "at " << at;
  }
}

TEST(LeftoverSearchTest, ManyNearMatchesAreFoundAsWell) {
  Rows rows;
  for (std::size_t size = 2; size < 60; ++size) rows.push_back({std::string(size, 'a') + "b", ""});
  const SoughtList list(rows);
  const std::string bytes = std::string(300'000, 'A') + "B" + std::string(100'000, 'a') + "b";
  const Finds found = list.Find(bytes);
  EXPECT_EQ(found.size(), 2 * rows.size());
  EXPECT_EQ(std::count_if(found.begin(), found.end(),
                          [](const FoundLeftover& each) { return each.as_written; }),
            static_cast<long>(rows.size()));
}

}  // namespace
}  // namespace morvex::test
