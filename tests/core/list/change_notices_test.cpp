// Every visible change of the editor notifies its form, so that a user interface need not poll it.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "core/list/list_file.h"
#include "core/list/list_operations.h"
#include "tests/core/list/grid_fixture.h"

namespace morvex::test {
namespace {

struct Action {
  std::string name;
  std::function<void(TestProgram&)> does;
};

constexpr CellAddress kFirstLeft{Column::kLeft, 0};
constexpr CellAddress kLastLeft{Column::kLeft, 6};

const std::vector<Action> kActions = {
    {"typing", [](TestProgram& t) { Cell_Change(t.program, kFirstLeft, "new"); }},
    {"moving the caret", [](TestProgram& t) { Cell_SelectionChange(t.program, kLastLeft, 2); }},
    {"entering a cell", [](TestProgram& t) { Cell_GotFocus(t.program, kFirstLeft); }},
    {"leaving a cell", [](TestProgram& t) { Cell_LostFocus(t.program, kLastLeft); }},
    {"Enter", [](TestProgram& t) { Cell_KeyDown(t.program, kLastLeft, kKeyEnter); }},
    {"an arrow key", [](TestProgram& t) { Cell_KeyDown(t.program, kLastLeft, kKeyUp); }},
    {"scrolling", [](TestProgram& t) { VScroll1_Change(t.program, 6); }},
    {"adding a row", [](TestProgram& t) { AddRow(t.program.frmReplacements); }},
    {"removing a row", [](TestProgram& t) { RemoveRow(t.program.frmReplacements, 6); }},
    {"growing", [](TestProgram& t) { GrowWindow(t.program.frmReplacements, 1); }},
    {"shifting", [](TestProgram& t) { ShiftRows(t.program.frmReplacements, 1); }},
    {"mirror", [](TestProgram& t) { cmdMirror_Click(t.program); }},
    {"reset", [](TestProgram& t) { cmdReset_Click(t.program); }},
    {"clearing empty rows", [](TestProgram& t) { cmdDeleteEmpty_Click(t.program); }},
    {"OK", [](TestProgram& t) { cmdOK_Click(t.program); }},
    {"a refresh", [](TestProgram& t) { RefreshFormReplacements(t.program); }},
    {"closing", [](TestProgram& t) { frmReplacements_Close(t.program); }},
    {"an import", [](TestProgram& t) { ImportReplacementList(t.program, "/l.txt"); }},
    {"the import command", [](TestProgram& t) { cmdImport_Click(t.program); }},
    {"inserting a line break",
     [](TestProgram& t) {
       t.program.frmReplacements.FocusCell = "Links_6";
       cmdCRLF_Click(t.program);
     }},
};

TEST(EditorChangeNotice, IsGivenOfEverythingThatIsSeen) {
  for (const Action& action : kActions) {
    TestProgram test;
    test.files.AddFile("/l.txt", "a|b||\r\n");
    test.TypeRows(Rows(7, {"left", "right"}));
    Cell_GotFocus(test.program, kLastLeft);
    int noticed = 0;
    test.program.frmReplacements.changes.on_change = [&] { ++noticed; };
    action.does(test);
    EXPECT_GT(noticed, 0) << action.name;
  }
}

TEST(EditorChangeNotice, IsGivenAfterTheLastChangeOfAnInsertion) {
  TestProgram test;
  test.TypeRows({{"Jansen", ""}});
  Cell_GotFocus(test.program, kFirstLeft);
  Cell_SelectionChange(test.program, kFirstLeft, 3);
  Cell_LostFocus(test.program, kFirstLeft);
  std::size_t caret_seen = 0;
  ReplacementsForm& grid = test.program.frmReplacements;
  grid.changes.on_change = [&] { caret_seen = grid.At(kFirstLeft).selection_end; };
  cmdCRLF_Click(test.program);
  EXPECT_EQ(caret_seen, 12u);
}

TEST(EditorChangeNotice, ThatATextOrCaretStaysAsItIsIsNoChange) {
  TestProgram test;
  test.TypeRows({{"Jansen", ""}});
  Cell_SelectionChange(test.program, kFirstLeft, 3);
  const std::uint64_t revision = test.program.frmReplacements.changes.revision();
  Cell_Change(test.program, kFirstLeft, "Jansen");
  Cell_SelectionChange(test.program, kFirstLeft, 3);
  EXPECT_EQ(test.program.frmReplacements.changes.revision(), revision);
}

TEST(EditorChangeNotice, SavingShowsNothingNew) {
  TestProgram test;
  test.TypeRows({{"a", "b"}});
  const std::uint64_t revision = test.program.frmReplacements.changes.revision();
  EXPECT_EQ(SaveReplacementList(test.program, "/l.txt"), ErrorNumber::kNone);
  EXPECT_EQ(test.program.frmReplacements.changes.revision(), revision);
}

TEST(EditorChangeNotice, TheMainWindowGivesItsOwnWhenItIsHiddenAndShown) {
  TestProgram test;
  test.program.frmMorvex.loaded = true;
  test.program.frmMorvex.visible = true;
  int noticed = 0;
  test.program.frmMorvex.changes.on_change = [&] { ++noticed; };
  imList_Click(test.program);
  EXPECT_EQ(noticed, 1);
  cmdOK_Click(test.program);
  EXPECT_EQ(noticed, 2);
}

}  // namespace
}  // namespace morvex::test
