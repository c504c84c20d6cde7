// Long lists and wide rows, from the file through the grid into the tables and back.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/forms/keys.h"
#include "core/list/list_file.h"
#include "core/list/list_operations.h"
#include "tests/core/list/grid_fixture.h"

namespace morvex::test {
namespace {

constexpr int kLongList = 100'000;

struct LongList {
  Rows rows;
  std::string file;  // the bytes of the list file
};

// Every tenth row has the wildcard on the left, every hundredth the line-break token on the right.
LongList MakeLongList() {
  LongList list;
  for (int i = 0; i < kLongList; ++i) {
    const std::string number = std::to_string(i);
    const std::string left = i % 10 == 0 ? "name*" + number : "name" + number;
    const std::string right = i % 100 == 0 ? "p[CRLF]" + number : "p" + number;
    list.rows.emplace_back(left, right);
    list.file += left + "|" + right + (i + 1 == kLongList ? "||\r\n" : "\r\n");
  }
  return list;
}

class LargeList : public GridTest {
 protected:
  LargeList() {
    test_.program.settings.gJoker = '*';
    RefreshFormReplacements(test_.program);
  }
  void Import(const std::string& path) {
    test_.user.choices.push_back({0, path});
    cmdImport_Click(test_.program);
  }
  // Checks every table that OK makes of these rows.
  void ExpectTables(const Rows& rows) {
    const SubstitutionTables& tables = test_.program.tables;
    ASSERT_EQ(tables.PairCount, static_cast<std::int64_t>(rows.size()));
    ASSERT_EQ(tables.JokerLeft.size(), rows.size());
    ASSERT_EQ(tables.JokerRight.size(), rows.size());
    ASSERT_EQ(tables.JokerTail.size(), rows.size());
    std::size_t wrong = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const auto& [left, right] = rows[i];
      const std::size_t joker = left.find('*');
      const bool has_joker = joker != std::string::npos;
      const bool right_is = tables.LeftTexts[i] == ExpandCRLF(left) &&
                            tables.RightTexts[i] == ExpandCRLF(right) &&
                            tables.LeftLengths[i] == std::ssize(tables.LeftTexts[i]) &&
                            tables.RightLengths[i] == std::ssize(tables.RightTexts[i]) &&
                            tables.JokerLeft[i] == has_joker && !tables.JokerRight[i] &&
                            tables.JokerTail[i] == (has_joker ? left.substr(joker + 1) : "");
      wrong += right_is ? 0 : 1;
    }
    EXPECT_EQ(wrong, 0u);
  }
};

TEST_F(LargeList, AHundredThousandRowsAreImportedAppliedAndSaved) {
  const LongList list = MakeLongList();
  test_.files.AddFile("/long.txt", list.file);
  Import("/long.txt");
  EXPECT_TRUE(test_.GridRows() == list.rows);
  EXPECT_EQ(grid_.LastRow, kLongList - 1);
  EXPECT_EQ(grid_.VScroll1.maximum(), kLongList);
  EXPECT_EQ(VisibleRows(), "99994 99995 99996 99997 99998 99999");

  test_.user.choices.push_back({0, "/copy.txt"});
  cmdSaveList_Click(test_.program);
  EXPECT_TRUE(test_.files.Bytes("/copy.txt") == list.file);

  cmdOK_Click(test_.program);
  ExpectTables(list.rows);
  EXPECT_EQ(grid_.SavedLinks.size(), list.rows.size());
  EXPECT_EQ(grid_.SavedRechts.back(), list.rows.back().second);
}

TEST_F(LargeList, AHundredThousandRowsWithAnEmptyLastOne) {
  LongList list = MakeLongList();
  list.file.replace(list.file.size() - 4, 4, "\r\n|||\r\n");
  test_.files.AddFile("/long.txt", list.file);
  Import("/long.txt");
  EXPECT_TRUE(test_.GridRows() == list.rows);
  EXPECT_EQ(grid_.LastRow, kLongList - 1);
}

TEST_F(LargeList, AHundredThousandRowsAreMirroredAndMirroredBack) {
  const LongList list = MakeLongList();
  test_.files.AddFile("/long.txt", list.file);
  Import("/long.txt");
  cmdMirror_Click(test_.program);
  EXPECT_EQ(Text(Column::kLeft, kLongList - 1), list.rows.back().second);
  EXPECT_EQ(Text(Column::kRight, 0), list.rows.front().first);
  cmdMirror_Click(test_.program);
  EXPECT_TRUE(test_.GridRows() == list.rows);
}

TEST_F(LargeList, AHundredThousandRowsWithEmptyOnesAreCleared) {
  Rows kept;
  std::string file;
  for (int i = 0; i < kLongList / 2; ++i) {
    kept.emplace_back("l" + std::to_string(i), "r");
    file += kept.back().first + "|r\r\n|\r\n";
  }
  test_.files.AddFile("/half.txt", file);
  Import("/half.txt");
  ASSERT_EQ(grid_.LastRow, kLongList) << "an empty row behind each and one behind the last";
  cmdDeleteEmpty_Click(test_.program);
  EXPECT_TRUE(test_.GridRows() == kept);
}

TEST_F(LargeList, RowsOfAMegabyteSurviveImportSaveAndApply) {
  const std::string wide(1'000'000, 'w');
  const Rows rows = {{"a", "b"}, {wide + "1", wide + "2"}, {wide + "*" + wide, ""}, {"", wide}};
  std::string file;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    file += rows[i].first + "|" + rows[i].second + (i + 1 == rows.size() ? "||\r\n" : "\r\n");
  }
  test_.files.AddFile("/wide.txt", file);
  Import("/wide.txt");
  EXPECT_TRUE(test_.GridRows() == rows);
  EXPECT_EQ(SaveReplacementList(test_.program, "/copy.txt"), ErrorNumber::kNone);
  EXPECT_TRUE(test_.files.Bytes("/copy.txt") == file);
  cmdOK_Click(test_.program);
  ExpectTables(rows);
  EXPECT_EQ(test_.program.tables.MaxLeftLen, 2'000'001);
  EXPECT_EQ(test_.program.tables.MaxRightLen, 1'000'001);
}

TEST_F(LargeList, ASeparatorOnABlockBorderIsFound) {
  // With each `shift`, the second block of 256 KiB begins at another byte, from the line feed of
  // the first row to the last separator of the second.
  for (std::size_t shift = 0; shift < 6; ++shift) {
    const std::string wide((256u << 10) - 3 - shift, 'w');
    const Rows rows = {{wide, "r"}, {"a", "b"}};
    test_.files.AddFile("/border.txt", wide + "|r\r\na|b||\r\n");
    Import("/border.txt");
    EXPECT_TRUE(test_.GridRows() == rows) << shift;
  }
}

}  // namespace
}  // namespace morvex::test
