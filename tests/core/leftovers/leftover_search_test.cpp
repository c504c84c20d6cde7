// Every form of a left text is found wherever it stands, and nothing else is.
#include "core/leftovers/leftover_search.h"

#include <algorithm>
#include <random>

#include "core/leftovers/letter_case.h"
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
    // Every place around the first few borders, wherever they lie.
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
  // Out of step it is still found.
  EXPECT_EQ(list.Find("?" + little).size(), 1u);
  EXPECT_EQ(list.Find("?" + big).size(), 1u);
}

// Behind ASCII every part but the first also stands in the other byte order.
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

// Every letter that has another case or is taken apart, between others, in every encoding.
TEST(LeftoverSearchTest, EveryLetterWithAnotherFormIsFoundAsWritten) {
  Rows rows;
  std::vector<std::u32string> texts;
  for (char32_t letter = 0x80; letter < 0x20000; ++letter) {
    const bool has_form =
        !OtherCases(letter).empty() || TakenApart({&letter, 1}) != std::u32string(1, letter);
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
  BytesAsFile file("before Anna behind");
  int calls = 0;
  search.Run(file, [&](const Leftover& leftover) {
    ++calls;
    EXPECT_EQ(leftover.around, "before Anna behind");
    EXPECT_EQ(leftover.before, 7u);
  });
  EXPECT_EQ(calls, 1);
}

TEST(LeftoverSearchTest, AReadErrorEndsTheSearch) {
  class Broken : public InputFile {
    Result<std::size_t> ReadAt(std::uint64_t, char*, std::size_t) override {
      return ErrorNumber::kDeviceIo;
    }
  };
  const SoughtList list(Rows{{"Anna", "x"}});
  LeftoverSearch search(*list.sought);
  Broken file;
  EXPECT_EQ(search.Run(file, [](const Leftover&) {}), ErrorNumber::kDeviceIo);
  BytesAsFile whole("Anna");
  EXPECT_EQ(search.Run(
                whole, [](const Leftover&) {}, [] { return false; }),
            ErrorNumber::kInvalidCall);
}

// What is found by trying every row, in every encoding, at every place.
Finds FoundByTrying(const Rows& rows, const std::string& bytes) {
  Finds found;
  Alphabet alphabet;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    const std::u32string text = *Decode(rows[row].first, Encoding::kUtf8);
    for (const Encoding encoding :
         {Encoding::kUtf8, Encoding::kWindows1252, Encoding::kUtf16Le, Encoding::kUtf16Be}) {
      const std::optional<Spelling> spelling = alphabet.Spell(text, encoding);
      if (!spelling) continue;
      for (std::size_t at = 0; at < bytes.size();) {
        const std::optional<Standing> standing =
            StandsAt(*spelling, std::string_view(bytes).substr(at));
        if (!standing) {
          ++at;
          continue;
        }
        const auto line =
            1 + std::count(bytes.begin(), bytes.begin() + static_cast<long>(at), '\n');
        const std::string_view there = std::string_view(bytes).substr(at, standing->size);
        const bool is_ascii_there =
            std::all_of(there.begin(), there.end(), [](char c) { return (c & 0x80) == 0; });
        if (!is_ascii_there || encoding != Encoding::kWindows1252) {
          found.push_back({at, line, static_cast<std::int64_t>(row), encoding, standing->as_written,
                           standing->size});
        }
        at += standing->size;
      }
    }
  }
  return found;
}

Finds Sorted(Finds found) {
  std::sort(found.begin(), found.end(), [](const FoundLeftover& a, const FoundLeftover& b) {
    return std::tuple(a.offset, a.row, a.encoding) < std::tuple(b.offset, b.row, b.encoding);
  });
  return found;
}

std::string Made(std::mt19937& random, const std::vector<std::string>& of, std::size_t most) {
  std::string made;
  for (std::size_t n = 1 + random() % most; n > 0; --n) made += of[random() % of.size()];
  return made;
}

void ExpectToFindWhatTryingFinds(const Rows& rows, const std::string& bytes, int round) {
  const SoughtList list(rows);
  const Finds expected = Sorted(FoundByTrying(rows, bytes));
  for (const Kernel kernel : {Kernel::kPortable, Kernel::kSsse3, Kernel::kAvx2}) {
    if (!IsSupported(kernel)) continue;
    ASSERT_EQ(Sorted(list.Find(bytes, 100, kernel)), expected) << "round " << round;
  }
}

// Texts of few letters, so that they meet often; no NUL, which would let both byte orders fit.
TEST(LeftoverSearchTest, ItFindsWhatTryingEverythingFinds) {
  std::mt19937 random(20240117);
  const std::vector<std::string> letters = {"a",        "A",        "b", "\xC3\xBC", "\xC3\x9C",
                                            "\xC5\x82", "\xC3\x9F", "s", "\n"};
  const std::vector<std::string> pieces = {"a",        "A",    "b",    "B",        "\xC3\xBC",
                                           "\xC3\x9C", "\xFC", "\xDC", "\xC5\x82", "\xC5\x81",
                                           "\xC3\x9F", "ss",   "S",    "\n",       "\xC3"};
  for (int round = 0; round < 300; ++round) {
    Rows rows;
    for (std::size_t n = 1 + random() % 12; n > 0; --n) {
      rows.push_back({Made(random, letters, 5), "x"});
    }
    ExpectToFindWhatTryingFinds(rows, Made(random, pieces, 600), round);
  }
}

// In the list or in the file or in both; far from each other and close together.
TEST(LeftoverSearchTest, RareFormsOfLettersAreFoundAsWell) {
  std::mt19937 random(20240118);
  const std::vector<std::string> letters = {"i", "I", "\xC4\xB1", "\xC4\xB0", "s",           "t",
                                            "f", "S", "\xC3\x9F", "\xCE\xBC", "\xEF\xAC\x81"};
  std::vector<std::string> pieces = letters;
  for (const char* piece : {"i\xCC\x87", "\xC2\xB5", "\xB5", "\xDF", "\xE1\xBA\x9E", "\xEF\xAC\x86",
                            "\xEF\xAC\x83", "ss", "st", "fi", "\n"}) {
    pieces.emplace_back(piece);
  }
  for (int round = 0; round < 300; ++round) {
    Rows rows;
    for (std::size_t n = 1 + random() % 8; n > 0; --n) {
      const std::string before = random() % 4 == 0 ? std::string(random() % 150, 's') : "";
      rows.push_back({before + Made(random, letters, 5), "x"});
    }
    std::string bytes;
    for (int part = 0; part < 4; ++part) {
      bytes += std::string(random() % 300, part % 2 == 0 ? 's' : '.');
      bytes += Made(random, pieces, 40);
      bytes += rows[random() % rows.size()].first;
    }
    ExpectToFindWhatTryingFinds(rows, bytes, round);
  }
}

// A part of a wildcard row, or the parts up to it.
struct Chain {
  std::size_t begin = 0;
  std::size_t end = 0;
  bool as_written = true;
  bool in_other_order = false;
};

// What is found of one wildcard row in one byte order by looking for every part at every place: the
// parts follow each other, each begins as far behind as it can, and no two findings overlap. What
// begins at an odd offset and stands as a whole in the other order, a byte apart, is not told.
Finds FoundByParts(std::int64_t row, const std::vector<Spelling>& parts,
                   const std::vector<Spelling>& others, const std::string& bytes) {
  Finds found;
  const bool is_little = parts.front().encoding == Encoding::kUtf16Le;
  const std::string_view all = bytes;
  std::vector<std::vector<Chain>> chains(parts.size());
  std::size_t not_before = 0;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    for (std::size_t number = 0; number < parts.size(); ++number) {
      const std::optional<Standing> standing = StandsAt(parts[number], all.substr(at));
      if (!standing || (number == 0 && at < not_before)) continue;
      const std::size_t aside = is_little ? at - 1 : at + 1;
      Chain chain{at, at + standing->size, standing->as_written,
                  at % 2 == 1 && aside < all.size() && StandsAt(others[number], all.substr(aside))};
      if (number > 0) {
        const std::vector<Chain>& begun = chains[number - 1];
        const auto last = std::find_if(begun.rbegin(), begun.rend(),
                                       [at](const Chain& each) { return each.end <= at; });
        if (last == begun.rend()) continue;
        chain.begin = last->begin;
        chain.as_written = chain.as_written && last->as_written;
        chain.in_other_order = chain.in_other_order && last->in_other_order;
      }
      chains[number].push_back(chain);
    }
    if (chains.back().empty()) continue;
    const Chain chain = chains.back().front();
    const auto line =
        1 + std::count(bytes.begin(), bytes.begin() + static_cast<long>(chain.begin), '\n');
    if (!chain.in_other_order) {
      found.push_back({chain.begin, line, row, parts.front().encoding, chain.as_written,
                       chain.end - chain.begin});
    }
    not_before = chain.end;
    for (std::vector<Chain>& each : chains) each.clear();
  }
  return found;
}

// Few letters and many NULs, so that the byte orders meet in every way.
TEST(LeftoverSearchTest, WildcardRowsInUtf16AreFoundAsByTryingEveryPartAtEveryPlace) {
  std::mt19937 random(20240119);
  const std::vector<std::string> letters = {"a", "b", "A", "ab", "\xC4\x81"};
  const std::vector<std::string> pieces = {"a\0"s, "\0a"s, "b\0"s, "\0b"s,  "\0"s,
                                           "a",    "x",    "A\0"s, "\1\1"s, "\n"};
  std::size_t seen = 0;
  std::size_t seen_odd = 0;
  for (int round = 0; round < 2000; ++round) {
    Rows rows;
    for (std::size_t n = 1 + random() % 3; n > 0; --n) {
      std::string left = Made(random, letters, 3) + "*" + Made(random, letters, 2);
      if (random() % 3 == 0) left += "*" + Made(random, letters, 2);
      rows.push_back({left, "-"});
    }
    const std::string bytes = Made(random, pieces, 60);
    Finds expected;
    Alphabet alphabet;
    for (std::size_t row = 0; row < rows.size(); ++row) {
      std::vector<Spelling> little;
      std::vector<Spelling> big;
      std::string_view rest = rows[row].first;
      while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('*'), rest.size());
        const std::u32string part = *Decode(rest.substr(0, end), Encoding::kUtf8);
        little.push_back(*alphabet.Spell(part, Encoding::kUtf16Le));
        big.push_back(*alphabet.Spell(part, Encoding::kUtf16Be));
        rest.remove_prefix(std::min(end + 1, rest.size()));
      }
      const auto number = static_cast<std::int64_t>(row);
      for (const Finds& each :
           {FoundByParts(number, little, big, bytes), FoundByParts(number, big, little, bytes)}) {
        expected.insert(expected.end(), each.begin(), each.end());
      }
    }
    const SoughtList list(rows);
    Finds found = list.Find(bytes, 16);
    std::erase_if(found,
                  [](const FoundLeftover& each) { return each.encoding == Encoding::kUtf8; });
    ASSERT_EQ(Sorted(found), Sorted(expected)) << "round " << round;
    seen += expected.size();
    seen_odd += static_cast<std::size_t>(
        std::count_if(expected.begin(), expected.end(),
                      [](const FoundLeftover& each) { return each.offset % 2 == 1; }));
  }
  EXPECT_GT(seen, 1000u);
  EXPECT_GT(seen_odd, 100u);
}

// The signs that only a list can bring in.
TEST(LeftoverSearchTest, TheLongSAndTheKelvinSignAreFoundAsByTryingEverything) {
  std::mt19937 random(20240120);
  const std::vector<std::string> letters = {"s", "S",       "\xC5\xBF", "k", "\xE2\x84\xAA",
                                            "t", "\xC3\x9F"};
  std::vector<std::string> pieces = letters;
  pieces.insert(pieces.end(), {"K", "\xEF\xAC\x85", "st", "\n", "\xDF", "ss"});
  for (int round = 0; round < 300; ++round) {
    Rows rows;
    for (std::size_t n = 1 + random() % 8; n > 0; --n) {
      rows.push_back({Made(random, letters, 7), "x"});
    }
    std::string bytes = Made(random, pieces, 300);
    bytes += rows[random() % rows.size()].first;
    ExpectToFindWhatTryingFinds(rows, bytes, round);
  }
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
  // Where the places are looked at in their thousands.
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
