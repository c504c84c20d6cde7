// Imports: the window's size, the scroll bar, the rows that are already there, and the handling of
// window events. Also files that cannot be read.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>

#include "core/list/list_file.h"
#include "core/list/list_operations.h"
#include "tests/core/list/grid_fixture.h"

namespace morvex::test {
namespace {

const std::string kList = "/list.txt";

class ListImport : public GridTest {
 protected:
  void Import(const std::string& bytes) {
    test_.files.AddFile(kList, bytes);
    ImportReplacementList(test_.program, kList);
  }
  static std::string Lines(int count) {
    std::string bytes;
    for (int i = 0; i < count; ++i) {
      bytes += "l" + std::to_string(i) + "|r" + std::to_string(i) + "\r\n";
    }
    return bytes;
  }
};

TEST_F(ListImport, TheAppendedRowIsTakenBackAtTheEndOfTheList) {
  const int first_height = grid_.height;
  for (int count = 1; count <= 9; ++count) {
    RefreshFormReplacements(test_.program);
    Import(Lines(count) + "|||\r\n");
    EXPECT_EQ(grid_.LastRow, count - 1);
    EXPECT_EQ(static_cast<int>(grid_.rows.size()), count);
    EXPECT_EQ(grid_.height.get(), first_height + 360 * std::min(count - 1, 5)) << count;
    EXPECT_EQ(grid_.VScroll1.visible.get(), count >= 6) << count;
    EXPECT_EQ(grid_.Top(count - 1), 360 * std::min(count, 6)) << count;
  }
}

TEST_F(ListImport, AListWithAFilledLastRowAppendsNoneBehindIt) {
  const int first_height = grid_.height;
  for (int count = 1; count <= 9; ++count) {
    RefreshFormReplacements(test_.program);
    Import(Lines(count - 1) + "last|row||\r\n");
    EXPECT_EQ(grid_.LastRow, count - 1);
    EXPECT_EQ(grid_.height.get(), first_height + 360 * std::min(count - 1, 5)) << count;
    EXPECT_EQ(grid_.VScroll1.visible.get(), count >= 7) << count;
    EXPECT_EQ(grid_.Top(count - 1), 360 * std::min(count, 6)) << count;
  }
}

TEST_F(ListImport, AnImportedListCanBeTypedOn) {
  Import(Lines(8) + "|||\r\n");
  Enter(7);
  EXPECT_EQ(grid_.LastRow, 8);
  EXPECT_EQ(VisibleRows(), "3 4 5 6 7 8");
  EXPECT_EQ(grid_.VScroll1.maximum(), 9);
  EXPECT_EQ(grid_.VScroll1.value(), 9);
}

TEST_F(ListImport, WithoutARefreshRowsAreWrittenOverFromTheFirstOn) {
  MakeRows(4);
  for (int row = 0; row < 4; ++row) {
    Type(Column::kLeft, row, "old " + std::to_string(row));
    Type(Column::kRight, row, "old");
  }
  Import("a|b\r\nc|d\r\n");
  EXPECT_EQ(test_.GridRows(), (Rows{{"a", "b"}, {"c", "d"}, {"old 2", "old"}, {"old 3", "old"}}));
}

TEST_F(ListImport, AFileThatCannotBeOpenedChangesNoRowButIsRecorded) {
  Type(Column::kLeft, 0, "kept");
  test_.files.AddFile(kList, "a|b||\r\n");
  test_.files.fail = [](const std::string& call, const std::string&) {
    return call == "OpenForReading" ? ErrorNumber::kPermissionDenied : ErrorNumber::kNone;
  };
  ImportReplacementList(test_.program, kList);
  EXPECT_EQ(test_.GridRows(), (Rows{{"kept", ""}}));
  EXPECT_EQ(test_.program.settings.SubstitutieFile, kList);
  EXPECT_TRUE(test_.user.messages.empty());
}

TEST_F(ListImport, AMissingFileAndAFolderAreRecordedToo) {
  for (const char* path : {"/none.txt", "/program", ""}) {
    test_.program.settings.SubstitutieFile = "/before.txt";
    ImportReplacementList(test_.program, path);
    EXPECT_EQ(test_.GridRows(), (Rows{{"", ""}}));
    EXPECT_EQ(test_.program.settings.SubstitutieFile, path);
  }
}

TEST_F(ListImport, AReadErrorKeepsTheRowsThatAreThere) {
  std::string bytes = Lines(3);
  bytes += std::string(600'000, 'x') + "\r\n" + Lines(3);  // more than one block
  test_.files.AddFile(kList, bytes);
  int reads = 0;
  test_.files.fail = [&](const std::string& call, const std::string&) {
    return call == "ReadAt" && ++reads > 1 ? ErrorNumber::kDeviceIo : ErrorNumber::kNone;
  };
  ImportReplacementList(test_.program, kList);
  EXPECT_EQ(test_.GridRows(), (Rows{{"l0", "r0"}, {"l1", "r1"}, {"l2", "r2"}, {"", ""}}));
  EXPECT_EQ(test_.program.settings.SubstitutieFile, kList);
  EXPECT_TRUE(test_.user.messages.empty());
}

TEST_F(ListImport, AFailureAtAnyCallLeavesRowsOfTheFileAndItsPath) {
  bool failed = true;
  for (int last_good = 0; failed; ++last_good) {
    TestProgram test;
    test.files.AddFile(kList, "a|b\r\nc|d||\r\n");
    failed = false;
    int calls = 0;
    test.files.fail = [&](const std::string&, const std::string&) {
      if (++calls <= last_good) return ErrorNumber::kNone;
      failed = true;
      return ErrorNumber::kDeviceIo;
    };
    ImportReplacementList(test.program, kList);
    const Rows all = {{"a", "b"}, {"c", "d"}};
    EXPECT_TRUE(test.GridRows() == (Rows{{"", ""}}) || test.GridRows() == all) << last_good;
    if (!failed) {
      EXPECT_EQ(test.GridRows(), all);
    }
    EXPECT_EQ(test.program.settings.SubstitutieFile, kList);
  }
}

TEST_F(ListImport, LoadsAnEditorThatIsNotLoadedWithoutShowingIt) {
  frmReplacements_Close(test_.program);
  Import("a|b||\r\n");
  EXPECT_TRUE(grid_.loaded);
  EXPECT_FALSE(grid_.visible.get());
  EXPECT_EQ(test_.GridRows(), (Rows{{"a", "b"}}));
  EXPECT_FALSE(grid_.focused_cell.has_value()) << "a hidden window has no focus to give";
}

TEST_F(ListImport, InAnOpenEditorTheFocusMovesAsItDoesWithEnter) {
  Import(Lines(8));
  EXPECT_TRUE(HasFocus(Column::kLeft, 5)) << "from there on the rows scroll";
  EXPECT_EQ(grid_.FocusCell, "Links_4");
}

TEST_F(ListImport, PendingEventsAreHandledAlongTheWay) {
  test_.system.step = std::chrono::milliseconds(20);
  Import(Lines(50));
  EXPECT_EQ(test_.user.events_handled, 50);
}

TEST_F(ListImport, EventsAreNotHandledMoreOftenThanEvery15Milliseconds) {
  test_.program.last_yield = test_.system.steady;
  Import(Lines(50));
  EXPECT_EQ(test_.user.events_handled, 0);
  EXPECT_EQ(grid_.LastRow, 50);
}

TEST_F(ListImport, TheSeparatorIsThatOfTheImportsBeginning) {
  test_.system.step = std::chrono::milliseconds(20);
  test_.user.on_events = [&] { test_.program.settings.gSeparator = ";"; };
  Import("a|b\r\nc|d\r\n|||\r\n");
  EXPECT_EQ(test_.GridRows(), (Rows{{"a", "b"}, {"c", "d"}}));
}

TEST_F(ListImport, ClosingTheEditorInBetweenEndsIt) {
  test_.system.step = std::chrono::milliseconds(20);
  int handled = 0;
  test_.user.on_events = [&] {
    if (++handled == 3) frmReplacements_Close(test_.program);
  };
  Import(Lines(20) + "|||\r\n");
  EXPECT_EQ(handled, 3);
  EXPECT_FALSE(grid_.loaded.get());
  EXPECT_TRUE(test_.program.frmMorvex.visible.get());
  EXPECT_EQ(test_.program.settings.SubstitutieFile, kList);
  imList_Click(test_.program);
  EXPECT_EQ(test_.GridRows(), (Rows{{"", ""}}));
  EXPECT_EQ(grid_.LastRow, 0);
}

TEST_F(ListImport, TheProgramsEndInBetweenEndsIt) {
  test_.system.step = std::chrono::milliseconds(20);
  int handled = 0;
  test_.user.on_events = [&] {
    ++handled;
    test_.program.Beeindigd = true;
  };
  Import(Lines(20) + "|||\r\n");
  EXPECT_EQ(handled, 1);
  EXPECT_FALSE(grid_.importing);
}

TEST_F(ListImport, WhatEndedItEarlyIsKept) {
  ImportReplacementList(test_.program, "/none.txt");
  EXPECT_EQ(test_.program.settings.list_file_error, ErrorNumber::kFileNotFound);
  Import("a|b||\r\n");
  EXPECT_EQ(test_.program.settings.list_file_error, ErrorNumber::kNone);
  test_.files.fail = [](const std::string& call, const std::string&) {
    return call == "ReadAt" ? ErrorNumber::kDeviceIo : ErrorNumber::kNone;
  };
  ImportReplacementList(test_.program, kList);
  EXPECT_EQ(test_.program.settings.list_file_error, ErrorNumber::kDeviceIo);
}

TEST_F(ListImport, AReadErrorThatPassesEndsItAllTheSame) {
  test_.files.AddFile(kList, "a|b\r\n" + std::string(600'000, 'x') + "\r\nc|d\r\n");
  int reads = 0;
  test_.files.fail = [&](const std::string& call, const std::string&) {
    return call == "ReadAt" && ++reads == 2 ? ErrorNumber::kDeviceIo : ErrorNumber::kNone;
  };
  ImportReplacementList(test_.program, kList);
  EXPECT_EQ(test_.GridRows(), (Rows{{"a", "b"}, {"", ""}}));
}

// Returns lines without a separator. Events are handled while they are read, but none of them
// becomes a row of the grid.
std::string Notes() {
  std::string notes;
  for (int i = 0; i < 1000; ++i) notes += "note\r\n";
  return notes;
}

TEST_F(ListImport, EventsAreHandledWhileTheFileIsReadAndCommandsWait) {
  test_.system.step = std::chrono::milliseconds(20);
  const Rows old = {{"old", ""}};
  int handled_while_reading = 0;
  test_.user.on_events = [&] {
    EXPECT_TRUE(grid_.importing);
    const Rows before = test_.GridRows();
    cmdReset_Click(test_.program);
    EXPECT_EQ(test_.GridRows(), before);
    handled_while_reading += before == old ? 1 : 0;
  };
  Type(Column::kLeft, 0, "old");
  Import(Notes() + "a|b||\r\n");
  test_.user.on_events = nullptr;
  EXPECT_EQ(test_.GridRows(), (Rows{{"a", "b"}}));
  EXPECT_EQ(handled_while_reading, 3) << "1001 lines, one yield every 256";
  EXPECT_FALSE(grid_.importing);
}

TEST_F(ListImport, ClosingTheEditorOrTheProgramEndsTheReading) {
  for (const bool ends : {false, true}) {
    TestProgram test;
    imList_Click(test.program);
    test.system.step = std::chrono::milliseconds(20);
    int handled = 0;
    test.user.on_events = [&] {
      ++handled;
      if (ends) {
        test.program.Beeindigd = true;
      } else {
        frmReplacements_Close(test.program);
      }
    };
    // The file has a second block, and reading it would fail.
    test.files.AddFile(kList, "a|b\r\n" + Notes() + std::string(300'000, '\n'));
    int reads = 0;
    test.files.fail = [&](const std::string& call, const std::string&) {
      return call == "ReadAt" && ++reads > 1 ? ErrorNumber::kDeviceIo : ErrorNumber::kNone;
    };
    ImportReplacementList(test.program, kList);
    EXPECT_EQ(handled, 1);
    EXPECT_EQ(reads, 1);
    EXPECT_EQ(test.program.frmReplacements.loaded.get(), ends);
    EXPECT_EQ(test.program.settings.list_file_error, ErrorNumber::kNone);
    EXPECT_EQ(test.program.settings.SubstitutieFile, kList);
  }
}

TEST_F(ListImport, RowsBehindTheFinalRowAreReadOnlyWhereTheGridHasRows) {
  for (const std::int64_t rows : {1, 3, 4}) {
    RefreshFormReplacements(test_.program);
    MakeRows(rows);
    test_.files.AddFile(kList, "a|b\r\nc|d||\r\ne|f..\r\ng|h..\r\n" + std::string(300'000, '\n'));
    int reads = 0;
    test_.files.fail = [&](const std::string& call, const std::string&) {
      return call == "ReadAt" && ++reads > 1 ? ErrorNumber::kDeviceIo : ErrorNumber::kNone;
    };
    ImportReplacementList(test_.program, kList);
    Rows expected = {{"a", "b"}, {"c", "d"}, {"e", "f"}, {"g", "h"}};
    expected.resize(static_cast<std::size_t>(std::max<std::int64_t>(rows, 2)));
    EXPECT_EQ(test_.GridRows(), expected);
    EXPECT_EQ(reads, rows == 4 ? 2 : 1) << rows;
  }
}

TEST_F(ListImport, LeavesTheWindowsCaption) {
  test_.system.step = std::chrono::milliseconds(20);
  const std::string caption = grid_.caption;
  int handled = 0;
  test_.user.on_events = [&] {
    ++handled;
    EXPECT_EQ(grid_.caption.get(), caption);
  };
  Import(Lines(3));
  EXPECT_EQ(handled, 3);
}

}  // namespace
}  // namespace morvex::test
