// "Import" and "Save": dialogs, questions, and the path in SubstitutieFile afterwards.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/list/list_file.h"
#include "core/list/list_operations.h"
#include "tests/core/list/grid_fixture.h"

namespace morvex::test {
namespace {

class ImportCommand : public GridTest {
 protected:
  void Choose(const std::string& path) { test_.user.choices.push_back({0, path}); }
};

TEST_F(ImportCommand, ReplacesTheRowsByThoseOfTheChosenFile) {
  test_.files.AddFile("/new.txt", "a|b\r\nc|d||\r\n");
  test_.TypeRows({{"old", "old"}, {"old", "old"}, {"old", "old"}});
  Choose("/new.txt");
  cmdImport_Click(test_.program);
  EXPECT_EQ(test_.GridRows(), (Rows{{"a", "b"}, {"c", "d"}}));
  EXPECT_EQ(test_.program.settings.SubstitutieFile, "/new.txt");
  EXPECT_TRUE(test_.user.messages.empty());
}

TEST_F(ImportCommand, AsksForTextFilesWithoutAPreset) {
  test_.program.settings.SubstitutieFile = "/lists/l.txt";
  grid_.cdSaveList = FileDialog{"dat", "filter", "/lists", "l.txt"};
  cmdImport_Click(test_.program);
  ASSERT_EQ(test_.user.opened.size(), 1u);
  EXPECT_TRUE(test_.user.saved.empty());
  const FileDialog& shown = test_.user.opened[0];
  EXPECT_EQ(shown.default_extension, "txt");
  EXPECT_EQ(shown.filter, "Text (*.txt)|*.txt");
  EXPECT_EQ(shown.initial_folder, "");
  EXPECT_EQ(shown.file_name, "");
}

TEST_F(ImportCommand, CancelledItLeavesTheEditorEmptyAndTheTablesAsTheyWere) {
  test_.ApplyRows({{"applied", "x"}});
  imList_Click(test_.program);
  Type(Column::kLeft, 0, "typed since");
  test_.program.settings.SubstitutieFile = "/lists/l.txt";
  cmdImport_Click(test_.program);
  EXPECT_EQ(test_.GridRows(), (Rows{{"", ""}}));
  EXPECT_EQ(test_.program.tables.LeftTexts, (std::vector<std::string>{"applied"}));
  EXPECT_EQ(test_.program.settings.SubstitutieFile, "/lists/l.txt");
  EXPECT_EQ(test_.user.events_handled, 0) << "the caption was never changed";
  EXPECT_TRUE(test_.user.messages.empty());
}

TEST_F(ImportCommand, ShowsItsCaptionWhileItReads) {
  const std::string caption = grid_.caption;
  test_.files.AddFile("/new.txt", "a|b||\r\n");
  Choose("/new.txt");
  test_.system.step = std::chrono::milliseconds(20);
  std::vector<std::string> seen;
  test_.user.on_events = [&] { seen.push_back(grid_.caption); };
  cmdImport_Click(test_.program);
  EXPECT_EQ(seen, (std::vector<std::string>{"         one moment please ...",
                                            "         one moment please ..."}));
  EXPECT_EQ(grid_.caption.get(), caption);
}

TEST_F(ImportCommand, TheCaptionIsShownEvenForAShortList) {
  test_.files.AddFile("/new.txt", "");
  Choose("/new.txt");
  test_.program.last_yield = test_.system.steady;
  cmdImport_Click(test_.program);
  EXPECT_EQ(test_.user.events_handled, 1);
}

TEST_F(ImportCommand, ClearingEmptyRowsDoesNotShowThatCaption) {
  test_.TypeRows({{"a", "b"}, {"", ""}, {"c", "d"}});
  const std::string caption = grid_.caption;
  test_.system.step = std::chrono::milliseconds(20);
  std::vector<std::string> seen;
  test_.user.on_events = [&] { seen.push_back(grid_.caption); };
  cmdDeleteEmpty_Click(test_.program);
  EXPECT_EQ(seen, (std::vector<std::string>{caption, caption}));
}

TEST_F(ImportCommand, WhileTheSettingsAreReadItAsksNothing) {
  test_.files.AddFile("/lists/l.txt", "a|b||\r\n");
  test_.program.settings.SubstitutieFile = "/lists/l.txt";
  test_.program.settings.ReadingInitFile = true;
  cmdImport_Click(test_.program);
  EXPECT_TRUE(test_.user.opened.empty());
  EXPECT_EQ(test_.GridRows(), (Rows{{"a", "b"}}));
  EXPECT_EQ(test_.program.settings.SubstitutieFile, "/lists/l.txt");
}

TEST_F(ImportCommand, AChosenFileThatCannotBeReadIsRecorded) {
  const std::string caption = grid_.caption;
  Choose("/none.txt");
  cmdImport_Click(test_.program);
  EXPECT_EQ(test_.GridRows(), (Rows{{"", ""}}));
  EXPECT_EQ(test_.program.settings.SubstitutieFile, "/none.txt");
  EXPECT_EQ(grid_.caption.get(), caption);
  EXPECT_TRUE(test_.user.messages.empty());
}

TEST_F(ImportCommand, AppliesNothing) {
  test_.ApplyRows({{"applied", "x"}});
  test_.files.AddFile("/new.txt", "a|b||\r\n");
  Choose("/new.txt");
  imList_Click(test_.program);
  cmdImport_Click(test_.program);
  EXPECT_EQ(test_.program.tables.LeftTexts, (std::vector<std::string>{"applied"}));
  EXPECT_TRUE(grid_.visible.get());
}

const ShownMessage kReplaceQuestion = {"File already exists, replace ?", MessageButtons::kOkCancel,
                                       MessageIcon::kNone};

class SaveCommand : public GridTest {
 protected:
  SaveCommand() {
    Type(Column::kLeft, 0, "a");
    Type(Column::kRight, 0, "b");
    test_.program.settings.SubstitutieFile = "/lists/old.txt";
  }
  void Choose(const std::string& path) { test_.user.choices.push_back({0, path}); }
};

TEST_F(SaveCommand, WritesTheListAndRemembersTheFile) {
  Choose("/new.txt");
  cmdSaveList_Click(test_.program);
  EXPECT_EQ(test_.files.Bytes("/new.txt"), "a|b||\r\n");
  EXPECT_EQ(test_.program.settings.SubstitutieFile, "/new.txt");
  EXPECT_TRUE(test_.user.messages.empty());
  EXPECT_EQ(test_.GridRows(), (Rows{{"a", "b"}}));
}

TEST_F(SaveCommand, CancelledItWritesNothing) {
  cmdSaveList_Click(test_.program);
  EXPECT_EQ(test_.user.saved.size(), 1u);
  EXPECT_TRUE(test_.user.opened.empty());
  EXPECT_TRUE(test_.user.messages.empty());
  EXPECT_EQ(test_.program.settings.SubstitutieFile, "/lists/old.txt");
  EXPECT_TRUE(test_.files.Below("/program").empty());
}

TEST_F(SaveCommand, AsksBeforeAFileIsReplaced) {
  test_.files.AddFile("/new.txt", "old");
  Choose("/new.txt");
  test_.user.answers = {Answer::kOk};
  cmdSaveList_Click(test_.program);
  EXPECT_EQ(test_.user.messages, (std::vector<ShownMessage>{kReplaceQuestion}));
  EXPECT_EQ(test_.files.Bytes("/new.txt"), "a|b||\r\n");
  EXPECT_EQ(test_.program.settings.SubstitutieFile, "/new.txt");
}

TEST_F(SaveCommand, WithoutAnOkTheFileStays) {
  test_.files.AddFile("/new.txt", "old");
  Choose("/new.txt");
  test_.user.answers = {Answer::kCancel};
  cmdSaveList_Click(test_.program);
  EXPECT_EQ(test_.user.messages, (std::vector<ShownMessage>{kReplaceQuestion}));
  EXPECT_EQ(test_.files.Bytes("/new.txt"), "old");
  EXPECT_EQ(test_.program.settings.SubstitutieFile, "/lists/old.txt");
}

TEST_F(SaveCommand, AFailureIsNotSpokenOfAndTheFileIsRememberedAllTheSame) {
  Choose("/new.txt");
  test_.files.fail = [](const std::string& call, const std::string&) {
    return call == "ReplaceFile" ? ErrorNumber::kDiskFull : ErrorNumber::kNone;
  };
  cmdSaveList_Click(test_.program);
  EXPECT_FALSE(test_.files.Has("/new.txt"));
  EXPECT_TRUE(test_.user.messages.empty());
  EXPECT_EQ(test_.program.settings.SubstitutieFile, "/new.txt");
  EXPECT_EQ(test_.GridRows(), (Rows{{"a", "b"}}));
}

struct PresetCase {
  std::string list;
  std::string folder;
  std::string name;
};

void ExpectPresets(TestProgram& test, const std::vector<PresetCase>& cases) {
  for (const PresetCase& preset : cases) {
    test.program.settings.SubstitutieFile = preset.list;
    cmdSaveList_Click(test.program);
    const FileDialog& shown = test.user.saved.back();
    EXPECT_EQ(shown.default_extension, "txt");
    EXPECT_EQ(shown.filter, "Text (*.txt)|*.txt");
    EXPECT_EQ(shown.initial_folder, preset.folder) << preset.list;
    EXPECT_EQ(shown.file_name, preset.name) << preset.list;
  }
}

TEST_F(SaveCommand, PresetsFolderAndNameOfTheCurrentList) {
  ExpectPresets(test_, {{"/lists/old.txt", "/lists", "old.txt"},
                        {"/a/b c/old.list.txt", "/a/b c", "old.list.txt"},
                        {"/old.txt", "/", "old.txt"},
                        {"x:/old.txt", "x:", "old.txt"},
                        {"lists/old.txt", "lists", "old.txt"},
                        {"old.txt", "", "old.txt"},
                        {"back\\slash.txt", "", "back\\slash.txt"},
                        {"", "", ""}});
}

TEST_F(SaveCommand, PresetsFolderAndNameWithTheOtherSeparator) {
  TestProgram test('\\');
  imList_Click(test.program);
  ExpectPresets(test, {{"C:\\Data\\list.txt", "C:\\Data", "list.txt"},
                       {"C:\\list.txt", "C:\\", "list.txt"},
                       {"\\\\server\\share\\list.txt", "\\\\server\\share", "list.txt"},
                       {"\\list.txt", "\\", "list.txt"},
                       {"list.txt", "", "list.txt"}});
}

}  // namespace
}  // namespace morvex::test
