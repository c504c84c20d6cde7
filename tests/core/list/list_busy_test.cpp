// While a run works or a list is being read, the editor's commands change nothing.
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "core/list/list_file.h"
#include "core/list/list_operations.h"
#include "tests/core/list/grid_fixture.h"

namespace morvex::test {
namespace {

struct Command {
  std::string name;
  void (*click)(Program&);
};

const std::vector<Command> kCommands = {
    {"cmdImport", cmdImport_Click}, {"cmdSaveList", cmdSaveList_Click},
    {"cmdJoker", cmdJoker_Click},   {"cmdCRLF", cmdCRLF_Click},
    {"cmdMirror", cmdMirror_Click}, {"cmdReset", cmdReset_Click},
    {"cmdOK", cmdOK_Click},         {"cmdDeleteEmpty", cmdDeleteEmpty_Click},
    {"imList", imList_Click},
};

class BusyEditor : public GridTest {
 protected:
  BusyEditor() {
    test_.program.settings.gJoker = '*';
    RefreshFormReplacements(test_.program);
    test_.TypeRows({{"a", "b"}, {"", ""}, {"c", "d"}});
    LeaveWithCaretAt(Column::kLeft, 0, 1);
    test_.files.AddFile("/l.txt", "x|y\r\nz|w\r\n|||\r\n");
    // No dialog may appear. If one does, it returns this path, and ExpectNothingAsked notices.
    for (int i = 0; i < 100; ++i) test_.user.choices.push_back({0, "/chosen.txt"});
  }
  void ExpectNothingAsked(const std::string& name) {
    EXPECT_TRUE(test_.user.opened.empty()) << name;
    EXPECT_TRUE(test_.user.saved.empty()) << name;
    EXPECT_TRUE(test_.user.messages.empty()) << name;
    EXPECT_FALSE(test_.files.Has("/chosen.txt")) << name;
    EXPECT_FALSE(test_.files.Has("/program/temp.dat")) << name;
    EXPECT_EQ(test_.program.tables.PairCount, 0) << name;
    EXPECT_TRUE(grid_.SavedLinks.empty()) << name;
    EXPECT_TRUE(grid_.visible.get()) << name;
  }
};

TEST_F(BusyEditor, CommandsDoNothingWhileARunWorks) {
  test_.program.run.working = true;
  for (const Command& command : kCommands) {
    command.click(test_.program);
    EXPECT_EQ(test_.GridRows(), (Rows{{"a", "b"}, {"", ""}, {"c", "d"}})) << command.name;
    ExpectNothingAsked(command.name);
  }
}

TEST_F(BusyEditor, CommandsDoNothingWhileAListIsBeingRead) {
  test_.system.step = std::chrono::milliseconds(20);
  for (const Command& command : kCommands) {
    int handled = 0;
    test_.user.on_events = [&] {
      ++handled;
      EXPECT_TRUE(grid_.importing);
      const Rows before = test_.GridRows();
      command.click(test_.program);
      EXPECT_EQ(test_.GridRows(), before) << command.name;
    };
    ImportReplacementList(test_.program, "/l.txt");
    EXPECT_EQ(handled, 2);
    EXPECT_FALSE(grid_.importing);
    ExpectNothingAsked(command.name);
  }
}

TEST_F(BusyEditor, KeysAndTypingDoNothingWhileAListIsBeingRead) {
  test_.system.step = std::chrono::milliseconds(20);
  int handled = 0;
  test_.user.on_events = [&] {
    ++handled;
    const Rows before = test_.GridRows();
    Type(Column::kLeft, 0, "typed");
    for (const int key : {kKeyEnter, kKeyUp, kKeyDown}) {
      Press(Column::kRight, grid_.LastRow, key);
    }
    EXPECT_EQ(test_.GridRows(), before);
  };
  ImportReplacementList(test_.program, "/l.txt");
  EXPECT_EQ(handled, 2);
}

TEST_F(BusyEditor, AfterwardsTheyWorkAgain) {
  ImportReplacementList(test_.program, "/l.txt");
  Type(Column::kLeft, 0, "typed");
  EXPECT_EQ(Text(Column::kLeft, 0), "typed");
  cmdReset_Click(test_.program);
  EXPECT_EQ(test_.GridRows(), (Rows{{"", ""}}));
}

}  // namespace
}  // namespace morvex::test
