// Clearing empty rows through the scratch file.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/list/list_operations.h"
#include "tests/core/list/grid_fixture.h"

namespace morvex::test {
namespace {

const std::string kScratch = "/program/temp.dat";

class ClearEmptyRows : public GridTest {
 protected:
  Rows Cleared(const Rows& rows) {
    RefreshFormReplacements(test_.program);
    test_.TypeRows(rows);
    cmdDeleteEmpty_Click(test_.program);
    EXPECT_EQ(grid_.LastRow + 1, std::ssize(grid_.rows));
    return test_.GridRows();
  }
};

TEST_F(ClearEmptyRows, LeavesTheRowsThatHoldSomething) {
  EXPECT_EQ(Cleared({{"a", "b"}, {"", ""}, {"d", "e"}, {"", ""}}), (Rows{{"a", "b"}, {"d", "e"}}));
}

TEST_F(ClearEmptyRows, OfAListWithNothingElseLeavesOne) {
  EXPECT_EQ(Cleared({{"", ""}, {"", ""}, {"", ""}}), (Rows{{"", ""}}));
  EXPECT_EQ(Cleared({{"", ""}}), (Rows{{"", ""}}));
}

TEST_F(ClearEmptyRows, KeepsRowsWithOneEmptyCellAndTheirOrder) {
  EXPECT_EQ(Cleared({{"", ""}, {"z", ""}, {"", ""}, {"", "y"}, {"a", "b"}}),
            (Rows{{"z", ""}, {"", "y"}, {"a", "b"}}));
}

TEST_F(ClearEmptyRows, OfAListWithoutAnyChangesNothing) {
  const Rows rows = {{"a", "b"}, {"c", "d"}, {"e", "f"}};
  EXPECT_EQ(Cleared(rows), rows);
}

TEST_F(ClearEmptyRows, BringsTheGridToTheSizeOfItsRows) {
  const int height = grid_.height;
  Cleared({{"a", "b"}, {"", ""}, {"", ""}, {"", ""}, {"", ""}, {"", ""}, {"", ""}, {"c", "d"}});
  EXPECT_EQ(grid_.height.get(), height + 360);
  EXPECT_FALSE(grid_.VScroll1.visible.get());
  EXPECT_EQ(VisibleRows(), "0 1");
}

TEST_F(ClearEmptyRows, LeavesTheScratchFileAndNamesItAsTheList) {
  test_.program.settings.SubstitutieFile = "/lists/mine.txt";
  Cleared({{"a", "b"}, {"", ""}, {"c", "d"}});
  EXPECT_EQ(test_.files.Bytes(kScratch), "a|b\r\nc|d||\r\n");
  EXPECT_EQ(test_.program.settings.SubstitutieFile, kScratch);
}

TEST_F(ClearEmptyRows, TheScratchFileLiesInTheProgramsFolderOnEveryHost) {
  TestProgram test('\\');
  test.TypeRows({{"a", "b"}});
  cmdDeleteEmpty_Click(test.program);
  EXPECT_EQ(test.files.Bytes("C:\\Morvex\\temp.dat"), "a|b||\r\n");
  EXPECT_EQ(test.program.settings.SubstitutieFile, "C:\\Morvex\\temp.dat");
}

TEST_F(ClearEmptyRows, AnOldScratchFileIsReplaced) {
  test_.files.AddFile(kScratch, "old|old\r\nold|old\r\nold|old||\r\n");
  EXPECT_EQ(Cleared({{"a", "b"}}), (Rows{{"a", "b"}}));
}

TEST_F(ClearEmptyRows, UsesTheSeparatorInForce) {
  test_.program.settings.gSeparator = ";";
  EXPECT_EQ(Cleared({{"a|b", "c||d"}, {"", ""}, {"e", "f"}}), (Rows{{"a|b", "c||d"}, {"e", "f"}}));
}

TEST_F(ClearEmptyRows, AppliesNothing) {
  Cleared({{"a", "b"}});
  EXPECT_EQ(test_.program.tables.PairCount, 0);
  EXPECT_TRUE(grid_.visible.get());
}

TEST_F(ClearEmptyRows, ClosingTheEditorWhileTheScratchFileIsReadLeavesItClosed) {
  Rows rows;
  for (int i = 0; i < 1000; ++i) rows.emplace_back("l" + std::to_string(i), "r");
  test_.TypeRows(rows);
  test_.system.step = std::chrono::milliseconds(20);
  int handled = 0;
  test_.user.on_events = [&] {
    ++handled;
    EXPECT_TRUE(grid_.importing);
    EXPECT_EQ(std::ssize(grid_.rows), 1000) << "the scratch file is still being read";
    frmReplacements_Close(test_.program);
  };
  cmdDeleteEmpty_Click(test_.program);
  EXPECT_EQ(handled, 1);
  EXPECT_FALSE(grid_.loaded.get());
  EXPECT_FALSE(grid_.visible.get());
  EXPECT_FALSE(grid_.importing);
  EXPECT_TRUE(test_.user.messages.empty());
  EXPECT_EQ(test_.program.settings.SubstitutieFile, kScratch);
  EXPECT_EQ(test_.program.settings.list_file_error, ErrorNumber::kNone);
}

struct FailureCase {
  ErrorNumber error;
  std::string text;
};

TEST_F(ClearEmptyRows, AScratchFileThatCannotBeWrittenIsReportedAndTheGridStays) {
  const std::vector<FailureCase> cases = {
      {ErrorNumber::kPermissionDenied, "Error 70: Permission denied"},
      {ErrorNumber::kDiskFull, "Error 61: Disk full"},
      {ErrorNumber::kPathNotFound, "Error 76: Path not found"},
  };
  for (const FailureCase& failure : cases) {
    TestProgram test;
    const Rows rows = {{"a", "b"}, {"", ""}, {"c", "d"}, {"", ""}};
    test.TypeRows(rows);
    test.program.settings.SubstitutieFile = "/lists/mine.txt";
    test.files.fail = [&](const std::string& call, const std::string& path) {
      return call == "ReplaceFile" && path == kScratch ? failure.error : ErrorNumber::kNone;
    };
    cmdDeleteEmpty_Click(test.program);
    EXPECT_EQ(test.GridRows(), rows);
    EXPECT_EQ(test.program.frmReplacements.LastRow, 3);
    EXPECT_EQ(test.user.messages,
              (std::vector<ShownMessage>{
                  {kScratch + "\r\n" + failure.text, MessageButtons::kOk, MessageIcon::kNone}}));
    EXPECT_EQ(test.program.settings.SubstitutieFile, "/lists/mine.txt");
    EXPECT_TRUE(test.program.frmReplacements.visible.get());
  }
}

TEST_F(ClearEmptyRows, AScratchFileThatCannotBeReadBackIsReportedAndTheGridStays) {
  const Rows rows = {{"a", "b"}, {"", ""}, {"c", "d"}};
  test_.TypeRows(rows);
  test_.files.fail = [](const std::string& call, const std::string&) {
    return call == "OpenForReading" ? ErrorNumber::kPermissionDenied : ErrorNumber::kNone;
  };
  cmdDeleteEmpty_Click(test_.program);
  EXPECT_EQ(test_.GridRows(), rows);
  ASSERT_EQ(test_.user.messages.size(), 1u);
  EXPECT_EQ(test_.user.messages[0].text, kScratch + "\r\nError 70: Permission denied");
}

// Whichever call fails, no row is lost: each row is in the grid or in the scratch file.
TEST_F(ClearEmptyRows, AFailureAtAnyCallLosesNoRow) {
  const Rows rows = {{"a", "b"}, {"", ""}, {"c", "d"}};
  bool failed = true;
  for (int failing = 1; failed; ++failing) {
    TestProgram test;
    test.TypeRows(rows);
    failed = false;
    int calls = 0;
    test.files.fail = [&](const std::string&, const std::string&) {
      if (++calls != failing) return ErrorNumber::kNone;
      failed = true;
      return ErrorNumber::kDeviceIo;
    };
    cmdDeleteEmpty_Click(test.program);
    const bool in_grid =
        test.GridRows() == rows || test.GridRows() == (Rows{{"a", "b"}, {"c", "d"}});
    const bool in_file =
        test.files.Has(kScratch) && test.files.Bytes(kScratch) == "a|b\r\nc|d||\r\n";
    EXPECT_TRUE(in_grid || in_file) << "call " << failing;
    if (!failed) {
      EXPECT_EQ(test.GridRows(), (Rows{{"a", "b"}, {"c", "d"}}));
    }
  }
}

}  // namespace
}  // namespace morvex::test
