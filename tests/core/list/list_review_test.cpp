// The diagnostics for a list file before it is used.
#include "core/list/list_review.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>

#include "core/list/list_file.h"
#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

using namespace std::string_literals;

// Without `joker` the wildcard is "*" if the list contains a "*"; otherwise there is no wildcard.
ListReview Review(const std::string& bytes, const std::string& separator = "|",
                  std::optional<char> joker = std::nullopt) {
  MemoryFiles files;
  files.AddFile("/list.txt", bytes);
  const char own = bytes.find('*') == std::string::npos ? '\0' : '*';
  return ReviewList(ReadListFile(files, "/list.txt", separator, OddLines::kKeep), separator,
                    static_cast<std::uint8_t>(joker.value_or(own)));
}

// The diagnostics as lines of text.
std::vector<std::string> Diagnostics(const ListReview& review) {
  constexpr std::array kNames = {"byte-order mark",
                                 "no separator",
                                 "rows lost",
                                 "empty left",
                                 "duplicate",
                                 "shadowed",
                                 "short",
                                 "open wildcard",
                                 "stray wildcard",
                                 "NUL",
                                 "UTF-16",
                                 "behind end",
                                 "carriage return",
                                 "blanks",
                                 "further separator",
                                 "too long",
                                 "no wildcard set",
                                 "unused wildcard",
                                 "own ending"};
  std::vector<std::string> lines;
  for (const ListDiagnostic& diagnostic : review.diagnostics) {
    std::string line = std::to_string(diagnostic.line) + " " +
                       kNames.at(static_cast<std::size_t>(diagnostic.problem)) + " " +
                       diagnostic.text;
    if (diagnostic.earlier_line != 0) {
      line += " by " + std::to_string(diagnostic.earlier_line) + " " + diagnostic.earlier_text;
    }
    if (diagnostic.count != 0)
      line += " " + std::string(1, diagnostic.character) + " " + std::to_string(diagnostic.count);
    if (!diagnostic.example.empty()) line += " " + diagnostic.example + " -> " + diagnostic.outcome;
    lines.push_back(line);
  }
  return lines;
}

using Lines = std::vector<std::string>;

TEST(ListReviewTest, AGoodListHasNoDiagnostic) {
  const ListReview review =
      Review("Renate Meyer|[tenant]\r\nMeyer|[tenant]\r\nBorn: *;|Born: [x];\r\n|||\r\n");
  EXPECT_EQ(Diagnostics(review), Lines{});
  EXPECT_TRUE(review.is_usable);
}

TEST(ListReviewTest, AListWithoutALeftTextIsOfNoUse) {
  for (const char* bytes : {"", "|||\r\n", "no row\r\n", "|right\r\n", "|\r\n|||\r\n"}) {
    EXPECT_FALSE(Review(bytes).is_usable) << bytes;
  }
  EXPECT_TRUE(Review("left|\r\n").is_usable);
}

TEST(ListReviewTest, AnEmptyLeftTextIsTold) {
  EXPECT_EQ(Diagnostics(Review("Anna|x\r\n|what\r\n")), Lines{"2 empty left what"});
}

TEST(ListReviewTest, ALeftTextWithANulIsOfNoUse) {
  const ListReview review = Review("An\0na|x\r\n"s);
  EXPECT_EQ(Diagnostics(review), Lines{"1 NUL An\0na"s});
  EXPECT_FALSE(review.is_usable);
  EXPECT_TRUE(Review("An\0na|x\r\nBert|y\r\n"s).is_usable);
}

TEST(ListReviewTest, AListInUtf16IsOfNoUseAndToldOnce) {
  for (const std::string& bytes : {"\xFF\xFE"
                                   "A\0n\0|\0x\0\r\0\n\0B\0|\0x\0"s,
                                   "\xFE\xFF\0A\0n\0|\0x\0\r\0\n\0B\0|\0x"s}) {
    const ListReview review = Review(bytes);
    EXPECT_EQ(Diagnostics(review), Lines{"1 UTF-16 "});
    EXPECT_FALSE(review.is_usable);
  }
}

TEST(ListReviewTest, ADuplicateNamesTheRowThatWins) {
  EXPECT_EQ(Diagnostics(Review("Anna|x\r\nBert|y\r\nAnna|z\r\n")),
            Lines{"3 duplicate Anna by 1 Anna"});
  EXPECT_EQ(Diagnostics(Review("A*na|x\r\nA*na|z\r\n")), Lines{"2 duplicate A*na by 1 A*na"});
}

TEST(ListReviewTest, ARowThatBeginsWithAnEarlierOneNamesIt) {
  EXPECT_EQ(Diagnostics(Review("Anna|x\r\nAnnabel|y\r\n")), Lines{"2 shadowed Annabel by 1 Anna"});
  EXPECT_EQ(Diagnostics(Review("Annabel|x\r\nAnna|y\r\n")), Lines{});
  EXPECT_EQ(Diagnostics(Review("Born|x\r\nBorn: *;|y\r\n")),
            Lines{"2 shadowed Born: *; by 1 Born"});
}

TEST(ListReviewTest, AnEarlierWildcardRowShadowsNothing) {
  EXPECT_EQ(Diagnostics(Review("Bo*n|x\r\nBo*nd|y\r\n")), Lines{});
}

TEST(ListReviewTest, OfSeveralBeginningsTheShortestIsNamed) {
  EXPECT_EQ(Diagnostics(Review("Annabel|x\r\nAnna|y\r\nAnnabelle|z\r\n")),
            Lines{"3 shadowed Annabelle by 2 Anna"});
}

TEST(ListReviewTest, OneAndTwoCharactersAreShortInBothEncodings) {
  EXPECT_EQ(Diagnostics(Review("a|x\r\nbc|y\r\nd\xC3\xA9|z\r\n\xE9|w\r\ndef|v\r\n")),
            (Lines{"1 short a", "2 short bc", "3 short d\xC3\xA9", "4 short \xE9"}));
  EXPECT_EQ(Diagnostics(Review("[CRLF]|x\r\n")), Lines{"1 short [CRLF]"});
}

TEST(ListReviewTest, WildcardsThatDoNoGoodAreTold) {
  EXPECT_EQ(Diagnostics(Review("Tel: *|x\r\nMeyer|*\r\n*abc|*\r\n")),
            (Lines{"1 open wildcard Tel: * Tel: Renate -> xenate", "2 stray wildcard Meyer",
                   "3 stray wildcard *abc"}));
  EXPECT_EQ(Diagnostics(Review("Tel: *|x\r\nMeyer|*\r\n", "|", '\0')), Lines{});
}

TEST(ListReviewTest, LinesThatAreNoRowAreToldUnlessTheyAreEmpty) {
  EXPECT_EQ(Diagnostics(Review("Anna;x\r\n\r\nBert|y\r\n")), Lines{"1 no separator Anna;x"});
  EXPECT_EQ(Diagnostics(Review("Anna;x\r\nBert;y\r\n", ";")), Lines{});
}

TEST(ListReviewTest, TheFirstRowBehindTheFinalOneIsToldAsLost) {
  EXPECT_EQ(Diagnostics(Review("Anna|x||\r\nBert|y\r\nCarl|z\r\n")),
            Lines{"2 rows lost Bert|y by 1 "});
  EXPECT_EQ(Diagnostics(Review("Anna|x||\r\n|||\r\n")), Lines{});
}

TEST(ListReviewTest, TheFirstLineBehindTheListsEndIsToldAsLost) {
  EXPECT_EQ(Diagnostics(Review("Anna|x\r\n|||\r\nBert|y\r\nCarl|z\r\n")),
            Lines{"3 behind end Bert|y by 2 "});
  EXPECT_EQ(Diagnostics(Review("Anna|x||\r\n|||\r\nBert|y\r\n")),
            Lines{"3 behind end Bert|y by 2 "});
  EXPECT_EQ(Diagnostics(Review("Anna|x\n|||\n|||\n\n|||\nBert\n")),
            Lines{"6 behind end Bert by 2 "});
  EXPECT_EQ(Diagnostics(Review("Anna|x\r\n|||\r\n\r\n|||\r\n\r\n")), Lines{});
}

TEST(ListReviewTest, ACarriageReturnInsideARowIsTold) {
  EXPECT_EQ(Diagnostics(Review("Anna|x\rBert|y\r")),
            (Lines{"1 carriage return Anna", "1 further separator Anna"}));
  EXPECT_EQ(Diagnostics(Review("Anna\rBert|y\r\nCarl|x\r\r\nDora|z\r\n")),
            (Lines{"1 carriage return Anna\rBert", "2 carriage return Carl"}));
  EXPECT_EQ(Diagnostics(Review("Anna|x\r\nBert|y\n|||")), Lines{});
}

TEST(ListReviewTest, BlanksBesideTheSeparatorAreTold) {
  for (const char* bytes : {"Anna |x\n", "Anna| x\n", "Anna | x\n", "Anna\t|x\n", "Anna|\tx\n"}) {
    EXPECT_EQ(Diagnostics(Review(bytes)).size(), 1u) << bytes;
    EXPECT_EQ(Review(bytes).diagnostics.front().problem, ListProblem::kBlanks) << bytes;
  }
  EXPECT_EQ(Diagnostics(Review(" Anna Lee|x y \nBert|\n")), Lines{});
  EXPECT_EQ(Diagnostics(Review("Anna Lee | x\n", " | ")), Lines{});
}

TEST(ListReviewTest, AFurtherSeparatorInARightTextIsTold) {
  EXPECT_EQ(Diagnostics(Review("Anna|x|y\n")), Lines{"1 further separator Anna"});
  EXPECT_EQ(Diagnostics(Review("Anna|x|y||\n")), Lines{"1 further separator Anna"});
  EXPECT_EQ(Diagnostics(Review("Anna||x\n")), Lines{"1 further separator Anna"});
  EXPECT_EQ(Diagnostics(Review("Anna|x|\nBert|y\n")), Lines{"1 further separator Anna"});
  EXPECT_EQ(Diagnostics(Review("Anna|x||\n")), Lines{});
  EXPECT_EQ(Diagnostics(Review("Anna||\n")), Lines{});
  EXPECT_EQ(Diagnostics(Review("Anna|||\n")), Lines{});
  // The last row ends in two separators of two bytes each. Two bytes are cut off, so one separator
  // stays.
  EXPECT_EQ(Diagnostics(Review("Anna::x::::\n", "::")), Lines{"1 further separator Anna"});
}

TEST(ListReviewTest, ALeftTextThatIsLongerThanAnyMatchIsTold) {
  EXPECT_EQ(Diagnostics(Review(std::string(32766, 'a') + "|x\n")), Lines{});
  EXPECT_EQ(Diagnostics(Review(std::string(32767, 'a') + "|x\n")),
            Lines{"1 too long " + std::string(32767, 'a')});
  // [CRLF] stands for a line break, which has two bytes.
  EXPECT_EQ(Review(std::string(32765, 'a') + "[CRLF]|x\n").diagnostics.size(), 1u);
}

TEST(ListReviewTest, SeveralTextsThatHoldAUsualWildcardAreToldWhereNoneIsSet) {
  EXPECT_EQ(Diagnostics(Review("note|x\nBorn: *;|x\nDied: *;|y\nLeft: *;|y\n", "|", '\0')),
            Lines{"2 no wildcard set Born: *; * 3"});
  EXPECT_EQ(Diagnostics(Review("Wh?|x\nAnna|x|y\nM?ller|y\n", "|", '\0')),
            (Lines{"1 no wildcard set Wh? ? 2", "2 further separator Anna"}));
  EXPECT_EQ(Diagnostics(Review("Born: *;|x\nWho?|y\n", "|", '\0')), Lines{});
  EXPECT_EQ(Diagnostics(Review("Wh?|x\nM?ller|y\nA#na|z\n", "|", '#')), Lines{});
}

TEST(ListReviewTest, AWildcardThatNoLeftTextHoldsIsToldOfTheWholeList) {
  EXPECT_EQ(Diagnostics(Review("Anna|x\nA|y\n", "|", '*')),
            (Lines{"0 unused wildcard ", "2 short A"}));
  EXPECT_EQ(Diagnostics(Review("Anna|x\nB*rt|y\n", "|", '*')), Lines{});
  EXPECT_EQ(Diagnostics(Review("|x\n", "|", '*')), Lines{"1 empty left x"});
}

// In each of these rows, the text behind the wildcard also stands in front of it. In a run, the
// match then ends two bytes behind the text in front of the wildcard. The expected diagnostics say
// what such a match leaves.
TEST(ListReviewTest, ARowThatEndsInItsOwnBeginningIsToldWithWhatARunLeaves) {
  EXPECT_EQ(Diagnostics(Review("name=\"*\"|name=\"[x]\"\n")),
            Lines{"1 own ending name=\"*\" name=\"Renate\" -> name=\"[x]\"nate\""});
  EXPECT_EQ(Diagnostics(Review(";*;|;[y];\n")), Lines{"1 own ending ;*; ;Renate; -> ;[y];nate;"});
  EXPECT_EQ(Diagnostics(Review("--*--|<*>\n")), Lines{"1 own ending --*-- --Renate-- -> <>nate--"});
  EXPECT_EQ(Diagnostics(Review("e*e|x\n")), Lines{"1 own ending e*e eVollmoore -> xllmoore"});
  EXPECT_EQ(Diagnostics(Review("Mr * |[m] \n")),
            (Lines{"1 blanks Mr * ", "1 own ending Mr *  Mr Renate  -> [m] nate "}));
  EXPECT_EQ(Diagnostics(Review("[CRLF]Name: *[CRLF]|x\n")),
            Lines{"1 own ending [CRLF]Name: *[CRLF] \r\nName: Renate\r\n -> xnate\r\n"});
}

TEST(ListReviewTest, ARowWhoseWildcardTakesInOneByteIsToldWithWhatARunLeaves) {
  EXPECT_EQ(Diagnostics(Review("Mr. *|Mr. X\n")),
            Lines{"1 open wildcard Mr. * Mr. Renate -> Mr. Xenate"});
  EXPECT_EQ(Diagnostics(Review("BSN: *|\nAnna|x\n")),
            Lines{"1 open wildcard BSN: * BSN: Renate -> enate"});
  EXPECT_EQ(Diagnostics(Review("BSN: *|\nAnna[CRLF]b|x\n")), Lines{"1 open wildcard BSN: *"});
}

TEST(ListReviewTest, ARowWhoseEndingStandsBehindTheWildcardAloneIsNotTold) {
  for (const char* left :
       {"Born: *;", "HSL-*/RM", "<b>*</b>", "-*--", "Phone: *[CRLF]", "*abc*;"}) {
    EXPECT_EQ(Diagnostics(Review(left + "|x\n"s)), Lines{}) << left;
  }
}

TEST(ListReviewTest, AListMayLackRowsWhereItsTextIsNotAllRows) {
  for (const char* bytes :
       {"\xEF\xBB\xBF"
        "Anna|x\n",
        "Anna|x\nBert;y\n", "Anna|x||\nBert|y\n", "Anna|x\n|||\nBert|y\n", "Anna|x\rBert|y\n"}) {
    EXPECT_TRUE(MayLackRows(Review(bytes))) << bytes;
  }
  EXPECT_TRUE(MayLackRows(Review(std::string("Anna|x\nB\0e\0|y\n", 14)))) << "partly UTF-16";
  EXPECT_FALSE(MayLackRows(Review("Anna |x|y\nAnna|z\na|b\n \t\n\nT*|x\n|x\n|||\n")));
}

TEST(ListReviewTest, AByteOrderMarkIsTold) {
  EXPECT_EQ(Diagnostics(Review("\xEF\xBB\xBF"
                               "Anna|x\r\n")),
            Lines{"1 byte-order mark "});
  // A byte-order mark inside the file, as when two files were joined.
  EXPECT_EQ(Diagnostics(Review("Anna|x\n\xEF\xBB\xBF"
                               "Bert|x\r\n")),
            Lines{"2 byte-order mark "});
}

TEST(ListReviewTest, EveryRowOfAnImportHasItsLine) {
  const std::string bytes = "note\r\nAnna|x\r\n\r\n|y\r\nBert|z||\r\nlost|row\r\n";
  EXPECT_EQ(Review(bytes).line_of_row, (std::vector<std::int64_t>{2, 4, 5}));
  TestProgram test;
  test.files.AddFile("/list.txt", bytes);
  ImportReplacementList(test.program, "/list.txt");
  EXPECT_EQ(test.GridRows(), (Rows{{"Anna", "x"}, {"", "y"}, {"Bert", "z"}}));
}

TEST(ListReviewTest, AListThatCannotBeReadIsAnError) {
  MemoryFiles files;
  const ListReading none = ReadListFile(files, "/none", "|", OddLines::kKeep);
  EXPECT_EQ(ReviewList(none, "|", 0).error, ErrorNumber::kFileNotFound);
  EXPECT_TRUE(ReviewList(none, "|", '*').diagnostics.empty());
  files.AddFile("/list.txt", "Anna|x\r\n");
  files.fail = [](const std::string& call, const std::string&) {
    return call == "ReadAt" ? ErrorNumber::kDeviceIo : ErrorNumber::kNone;
  };
  const ListReading unread = ReadListFile(files, "/list.txt", "|", OddLines::kKeep);
  EXPECT_EQ(ReviewList(unread, "|", 0).error, ErrorNumber::kDeviceIo);
}

TEST(ListReviewTest, OfAListInUtf16OnlyLine1IsRead) {
  MemoryFiles files;
  files.AddFile("/list.txt", "\xFF\xFE|\0a\0\n"s + std::string(std::size_t{300} << 10, '\n'));
  int reads = 0;
  files.fail = [&](const std::string& call, const std::string&) {
    return call == "ReadAt" && ++reads > 1 ? ErrorNumber::kDeviceIo : ErrorNumber::kNone;
  };
  const ListReview review =
      ReviewList(ReadListFile(files, "/list.txt", "|", OddLines::kKeep), "|", '*');
  EXPECT_EQ(Diagnostics(review), Lines{"1 UTF-16 "});
  EXPECT_EQ(review.error, ErrorNumber::kNone);
  EXPECT_EQ(reads, 1);
}

// The review does not report a read error behind the last line that it reviews.
TEST(ListReviewTest, AnErrorBehindTheReviewedLinesDoesNotCount) {
  for (const char* lines : {"Anna|x||\nBert|y\n", "Anna|x\n|||\nBert|y\n"}) {
    MemoryFiles files;
    files.AddFile("/list.txt", lines + std::string(std::size_t{300} << 10, '\n'));
    int reads = 0;
    files.fail = [&](const std::string& call, const std::string&) {
      return call == "ReadAt" && ++reads > 1 ? ErrorNumber::kDeviceIo : ErrorNumber::kNone;
    };
    const ListReading reading = ReadListFile(files, "/list.txt", "|", OddLines::kKeep);
    EXPECT_EQ(ReviewList(reading, "|", 0).error, ErrorNumber::kNone) << lines;
  }
}

}  // namespace
}  // namespace morvex::test
