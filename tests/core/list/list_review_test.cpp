// What is said of a list file before it is used.
#include "core/list/list_review.h"

#include <gtest/gtest.h>

#include <array>

#include "core/list/list_file.h"
#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

using namespace std::string_literals;

ListReview Review(const std::string& bytes, const std::string& separator = "|", char joker = '*') {
  MemoryFiles files;
  files.AddFile("/list.txt", bytes);
  const Result<ListReview> review =
      ReviewList(files, "/list.txt", separator, static_cast<std::uint8_t>(joker));
  EXPECT_TRUE(review);
  return review.value;
}

// The remarks as lines of text.
std::vector<std::string> Remarks(const ListReview& review) {
  constexpr std::array kNames = {"byte-order mark", "no separator", "rows lost", "empty left",
                                 "duplicate",       "forestalled",  "short",     "open wildcard",
                                 "stray wildcard",  "NUL",          "UTF-16"};
  std::vector<std::string> lines;
  for (const ListRemark& remark : review.remarks) {
    std::string line = std::to_string(remark.line) + " " +
                       kNames.at(static_cast<std::size_t>(remark.problem)) + " " + remark.text;
    if (remark.earlier_line != 0) {
      line += " by " + std::to_string(remark.earlier_line) + " " + remark.earlier_text;
    }
    lines.push_back(line);
  }
  return lines;
}

using Lines = std::vector<std::string>;

TEST(ListReviewTest, AGoodListHasNoRemark) {
  const ListReview review =
      Review("Renate Meyer|[tenant]\r\nMeyer|[tenant]\r\nBorn: *;|Born: [x];\r\n|||\r\n");
  EXPECT_EQ(Remarks(review), Lines{});
  EXPECT_TRUE(review.is_usable);
}

TEST(ListReviewTest, AListWithoutALeftTextIsOfNoUse) {
  for (const char* bytes : {"", "|||\r\n", "no row\r\n", "|right\r\n", "|\r\n|||\r\n"}) {
    EXPECT_FALSE(Review(bytes).is_usable) << bytes;
  }
  EXPECT_TRUE(Review("left|\r\n").is_usable);
}

TEST(ListReviewTest, AnEmptyLeftTextIsTold) {
  EXPECT_EQ(Remarks(Review("Anna|x\r\n|what\r\n")), Lines{"2 empty left what"});
}

TEST(ListReviewTest, ALeftTextWithANulIsOfNoUse) {
  const ListReview review = Review("An\0na|x\r\n"s);
  EXPECT_EQ(Remarks(review), Lines{"1 NUL An\0na"s});
  EXPECT_FALSE(review.is_usable);
  EXPECT_TRUE(Review("An\0na|x\r\nBert|y\r\n"s).is_usable);
}

TEST(ListReviewTest, AListInUtf16IsOfNoUseAndToldOnce) {
  for (const std::string& bytes : {"\xFF\xFE"
                                   "A\0n\0|\0x\0\r\0\n\0B\0|\0x\0"s,
                                   "\xFE\xFF\0A\0n\0|\0x\0\r\0\n\0B\0|\0x"s}) {
    const ListReview review = Review(bytes);
    EXPECT_EQ(Remarks(review), Lines{"1 UTF-16 "});
    EXPECT_FALSE(review.is_usable);
  }
}

TEST(ListReviewTest, ADuplicateNamesTheRowThatWins) {
  EXPECT_EQ(Remarks(Review("Anna|x\r\nBert|y\r\nAnna|z\r\n")), Lines{"3 duplicate Anna by 1 Anna"});
  EXPECT_EQ(Remarks(Review("A*na|x\r\nA*na|z\r\n")), Lines{"2 duplicate A*na by 1 A*na"});
}

TEST(ListReviewTest, ARowThatBeginsWithAnEarlierOneNamesIt) {
  EXPECT_EQ(Remarks(Review("Anna|x\r\nAnnabel|y\r\n")), Lines{"2 forestalled Annabel by 1 Anna"});
  EXPECT_EQ(Remarks(Review("Annabel|x\r\nAnna|y\r\n")), Lines{});
  EXPECT_EQ(Remarks(Review("Born|x\r\nBorn: *;|y\r\n")), Lines{"2 forestalled Born: *; by 1 Born"});
}

TEST(ListReviewTest, AnEarlierWildcardRowForestallsNothing) {
  EXPECT_EQ(Remarks(Review("Bo*n|x\r\nBo*nd|y\r\n")), Lines{});
}

TEST(ListReviewTest, OfSeveralBeginningsTheShortestIsNamed) {
  EXPECT_EQ(Remarks(Review("Annabel|x\r\nAnna|y\r\nAnnabelle|z\r\n")),
            Lines{"3 forestalled Annabelle by 2 Anna"});
}

TEST(ListReviewTest, OneAndTwoCharactersAreShortInBothEncodings) {
  EXPECT_EQ(Remarks(Review("a|x\r\nbc|y\r\nd\xC3\xA9|z\r\n\xE9|w\r\ndef|v\r\n")),
            (Lines{"1 short a", "2 short bc", "3 short d\xC3\xA9", "4 short \xE9"}));
  EXPECT_EQ(Remarks(Review("[CRLF]|x\r\n")), Lines{"1 short [CRLF]"});
}

TEST(ListReviewTest, WildcardsThatDoNoGoodAreTold) {
  EXPECT_EQ(Remarks(Review("Tel: *|x\r\nMeyer|*\r\n*abc|*\r\n")),
            (Lines{"1 open wildcard Tel: *", "2 stray wildcard Meyer", "3 stray wildcard *abc"}));
  EXPECT_EQ(Remarks(Review("Tel: *|x\r\nMeyer|*\r\n", "|", '\0')), Lines{});
}

TEST(ListReviewTest, LinesThatAreNoRowAreToldUnlessTheyAreEmpty) {
  EXPECT_EQ(Remarks(Review("Anna;x\r\n\r\nBert|y\r\n")), Lines{"1 no separator Anna;x"});
  EXPECT_EQ(Remarks(Review("Anna;x\r\nBert;y\r\n", ";")), Lines{});
}

TEST(ListReviewTest, TheFirstRowBehindTheFinalOneIsToldAsLost) {
  EXPECT_EQ(Remarks(Review("Anna|x||\r\nBert|y\r\nCarl|z\r\n")), Lines{"2 rows lost Bert|y by 1 "});
  EXPECT_EQ(Remarks(Review("Anna|x||\r\n|||\r\nBert|y\r\n")), Lines{});
}

TEST(ListReviewTest, AByteOrderMarkIsTold) {
  EXPECT_EQ(Remarks(Review("\xEF\xBB\xBF"
                           "Anna|x\r\n")),
            Lines{"1 byte-order mark "});
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
  EXPECT_EQ(ReviewList(files, "/none", "|", 0).error, ErrorNumber::kFileNotFound);
  files.AddFile("/list.txt", "Anna|x\r\n");
  files.fail = [](const std::string& call, const std::string&) {
    return call == "ReadAt" ? ErrorNumber::kDeviceIo : ErrorNumber::kNone;
  };
  const Result<ListReview> review = ReviewList(files, "/list.txt", "|", 0);
  ASSERT_TRUE(review);
  EXPECT_EQ(review.value.error, ErrorNumber::kDeviceIo);
}

}  // namespace
}  // namespace morvex::test
