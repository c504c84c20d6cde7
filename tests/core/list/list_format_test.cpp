// The grammar of list files: which lines become which rows, and which lines are written for which
// rows.
#include "core/list/list_format.h"

#include <gtest/gtest.h>

#include "tests/support/memory_files.h"

namespace morvex::test {
namespace {

using Kind = ListLine::Kind;
using Lines = std::vector<std::int64_t>;

ListReading Read(const std::string& bytes, const std::string& separator = "|",
                 OddLines odd_lines = OddLines::kKeep, std::int64_t rows_wanted = 0) {
  MemoryFiles files;
  files.AddFile("/list.txt", bytes);
  return ReadListFile(files, "/list.txt", separator, odd_lines, rows_wanted);
}

std::vector<ListRow> RowsOf(const std::string& bytes, const std::string& separator = "|") {
  return Read(bytes, separator).list.rows;
}

// Returns the odd lines with number, reason and text, such as "3 no separator note".
std::vector<std::string> OddLinesOf(const ListReading& reading) {
  constexpr std::array kNames = {"no separator", "final row", "behind final row", "behind end"};
  std::vector<std::string> lines;
  for (const ListLine& line : reading.odd_lines) {
    lines.push_back(std::to_string(line.number) + " " +
                    kNames.at(static_cast<std::size_t>(line.kind)) + " " + line.text);
  }
  return lines;
}

TEST(ListFormat, TheFirstSeparatorPartsLeftFromRight) {
  EXPECT_EQ(RowsOf("a|b\n|b\na|\na|b|c\n"),
            (std::vector<ListRow>{{"a", "b"}, {"", "b"}, {"a", ""}, {"a", "b|c"}}));
  EXPECT_FALSE(Read("a|b|c\n").has_final_row);
}

TEST(ListFormat, WithoutASeparatorThereIsNoRow) {
  EXPECT_TRUE(RowsOf("abc\n\n").empty());
  EXPECT_TRUE(RowsOf("a|b\n", "").empty());
}

TEST(ListFormat, ThreeSeparatorsEndTheList) {
  for (const char* separator : {"|", "=>"}) {
    const std::string end = std::string(separator) + separator + separator + "\n";
    const ListReading reading = Read("a" + std::string(separator) + "b\n" + end, separator);
    EXPECT_EQ(reading.end_line, 2);
    EXPECT_EQ(reading.list.rows.size(), 1u);
    EXPECT_FALSE(reading.has_final_row);
  }
}

TEST(ListFormat, FromTheFinalRowOnTwoBytesAreCutOff) {
  const ListReading reading = Read("a|b||\nc|def\nc|d\n", "|", OddLines::kKeep, 3);
  EXPECT_EQ(reading.list.rows, (std::vector<ListRow>{{"a", "b"}}));
  EXPECT_TRUE(reading.has_final_row);
  EXPECT_EQ(reading.rows_behind_final, (std::vector<ListRow>{{"c", "d"}, {"c", ""}}));
  EXPECT_EQ(RowsOf("a=>b=>=>\n", "=>"), (std::vector<ListRow>{{"a", "b=>"}}));
}

TEST(ListFormat, ARowHasThePathAndTheLineThatItComesFrom) {
  const ListReading reading = Read("note\r\na|b\r\n\r\nc|d||\r\ne|f\r\n");
  EXPECT_EQ(reading.list.path, "/list.txt");
  EXPECT_EQ(reading.line_of_row, (Lines{2, 4}));
}

TEST(ListFormat, OddLinesAreKeptWholeWhereTheyAreWanted) {
  const std::string bytes = "note\n \t\n\na|b||\nc|d||\ne|f\n|||\n\n|||\nlost\nlost, too\n";
  EXPECT_EQ(OddLinesOf(Read(bytes, "|", OddLines::kKeep, 3)),
            (std::vector<std::string>{"1 no separator note", "4 final row a|b||",
                                      "5 behind final row c|d||", "10 behind end lost"}));
  EXPECT_TRUE(Read(bytes, "|", OddLines::kDrop).odd_lines.empty());
}

TEST(ListFormat, AFileThatCannotBeOpenedHasNoRows) {
  MemoryFiles files;
  const ListReading reading = ReadListFile(files, "/none", "|", OddLines::kKeep);
  EXPECT_EQ(reading.error, ErrorNumber::kFileNotFound);
  EXPECT_TRUE(reading.list.rows.empty());
}

// Reads a list file of two blocks; reading the second block fails.
ListReading ReadHalf(const std::string& beginning, OddLines odd_lines = OddLines::kKeep) {
  MemoryFiles files;
  files.AddFile("/list.txt", beginning + std::string(std::size_t{300} << 10, '\n'));
  int reads = 0;
  files.fail = [&](const std::string& call, const std::string&) {
    return call == "ReadAt" && ++reads > 1 ? ErrorNumber::kDeviceIo : ErrorNumber::kNone;
  };
  return ReadListFile(files, "/list.txt", "|", odd_lines);
}

TEST(ListFormat, AnErrorEndsTheReadingAndKeepsTheRows) {
  EXPECT_EQ(ReadHalf("a|b\n").error, ErrorNumber::kDeviceIo);
  EXPECT_EQ(ReadHalf("a|b\n").list.rows, (std::vector<ListRow>{{"a", "b"}}));
  EXPECT_EQ(ReadHalf("a|b||\n").error, ErrorNumber::kDeviceIo);
}

TEST(ListFormat, BehindTheEndOnlyTheFirstTextIsLookedFor) {
  EXPECT_EQ(ReadHalf("a|b\n|||\n").error, ErrorNumber::kDeviceIo);
  EXPECT_EQ(ReadHalf("a|b\n|||\nlost\n").error, ErrorNumber::kNone);
  EXPECT_EQ(ReadHalf("a|b\n|||\n", OddLines::kDrop).error, ErrorNumber::kNone);
}

TEST(ListFormat, TheReadingStopsBehindTheRowsThatAreWanted) {
  const std::string bytes = "a|b\nc|d||\nnote\ne|fgh\ni|jkl\nlost, too\n|||\nlost\n";
  for (const std::int64_t wanted : {0, 1, 2}) {
    const ListReading reading = Read(bytes, "|", OddLines::kKeep, wanted);
    EXPECT_EQ(reading.list.rows.size(), 2u);
    EXPECT_TRUE(reading.rows_behind_final.empty());
    EXPECT_EQ(OddLinesOf(reading),
              (std::vector<std::string>{"2 final row c|d||", "3 no separator note",
                                        "4 behind final row e|fgh"}));
    EXPECT_EQ(reading.end_line, 0);
  }
  const ListReading three = Read(bytes, "|", OddLines::kDrop, 3);
  EXPECT_EQ(three.rows_behind_final, (std::vector<ListRow>{{"e", "f"}}));
  EXPECT_EQ(three.end_line, 0);
  EXPECT_EQ(Read(bytes, "|", OddLines::kDrop, 4).end_line, 7);
}

TEST(ListFormat, OfALongFileNoBlockIsReadBehindTheFirstRowThatIsNotWanted) {
  EXPECT_EQ(ReadHalf("a|b||\nc|d\n").error, ErrorNumber::kNone);
  EXPECT_EQ(ReadHalf("a|b||\nc|d\n", OddLines::kDrop).error, ErrorNumber::kNone);
}

TEST(ListFormat, WithOddLinesAUtf16FileIsReadNoFurtherThanLine1) {
  using namespace std::string_literals;
  for (const std::string& line : {"\xFF\xFE|\0a\0\n"s, "\xFE\xFF\0|\0a\0\n"s}) {
    const ListReading reading = ReadHalf(line);
    EXPECT_TRUE(reading.is_utf16);
    EXPECT_TRUE(reading.list.rows.empty());
    EXPECT_EQ(reading.error, ErrorNumber::kNone) << "no second block was read";
    const ListReading import = ReadHalf(line, OddLines::kDrop);
    EXPECT_FALSE(import.is_utf16);
    EXPECT_EQ(import.list.rows.size(), 1u);
    EXPECT_EQ(import.error, ErrorNumber::kDeviceIo);
  }
  EXPECT_FALSE(ReadHalf("\xFF\xFE|a\n").is_utf16) << "no NUL";
  EXPECT_FALSE(ReadHalf("a|b\n\xFF\xFE|\0a\n"s).is_utf16) << "line 2";
}

TEST(ListFormat, TheReadingAsksBeforeEachLineWhetherToGoOn) {
  MemoryFiles files;
  files.AddFile("/list.txt", "a|b\nc|d\ne|f\n");
  int asked = 0;
  const ListReading reading =
      ReadListFile(files, "/list.txt", "|", OddLines::kDrop, 0, [&] { return ++asked < 3; });
  EXPECT_EQ(asked, 3);
  EXPECT_EQ(reading.list.rows, (std::vector<ListRow>{{"a", "b"}, {"c", "d"}}));
  EXPECT_EQ(reading.error, ErrorNumber::kNone);
}

std::string Written(const std::vector<ListRow>& rows, const std::string& separator) {
  MemoryFiles files;
  EXPECT_EQ(WriteListFile(files, {"/list.txt", rows}, separator), ErrorNumber::kNone);
  return files.Bytes("/list.txt");
}

TEST(ListFormat, TheLastRowIsWrittenWithItsMarkAndEmptyRowsAreLeftOut) {
  EXPECT_EQ(Written({{"a", "b"}, {"", ""}, {"", "c"}, {"d", ""}}, "=>"),
            "a=>b\r\n=>c\r\nd=>=>=>\r\n");
  EXPECT_EQ(Written({{"a", "b"}, {"", ""}}, "|"), "a|b\r\n|||\r\n");
  EXPECT_EQ(Written({}, "|"), "");
}

TEST(ListFormat, AFailureToWriteIsReturned) {
  MemoryFiles files;
  files.fail = [](const std::string&, const std::string&) { return ErrorNumber::kDiskFull; };
  EXPECT_EQ(WriteListFile(files, {"/list.txt", {{"a", "b"}}}, "|"), ErrorNumber::kDiskFull);
}

}  // namespace
}  // namespace morvex::test
