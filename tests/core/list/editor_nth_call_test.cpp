// Each command of the list editor is repeated while the N-th call on the file system fails, for N =
// 1, 2, 3, ... until the command finishes without a failed call. After each failure the list file
// has its old or its new content, and no row of the grid is lost.
#include <gtest/gtest.h>

#include <iostream>

#include "core/list/editor.h"
#include "core/list/grid.h"
#include "core/list/list_file.h"
#include "core/list/list_operations.h"
#include "tests/support/failing_files.h"
#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

constexpr const char* kOld = "old|list\r\na|b||\r\n";
constexpr const char* kNew = "x|1\r\ny|2\r\n|||\r\n";

class Editor {
 public:
  explicit Editor(const Fault& fault) {
    host_.files.AddFile("/list.txt", kOld);
    program_.settings.gSeparator = "|";
    imList_Click(program_);
    for (const auto& [left, right] : Rows{{"x", "1"}, {"", ""}, {"y", "2"}}) {
      const std::int64_t row = program_.frmReplacements.LastRow;
      Cell_Change(program_, {Column::kLeft, row}, left);
      Cell_Change(program_, {Column::kRight, row}, right);
      Cell_KeyDown(program_, {Column::kLeft, row}, 13);
    }
    host_.user.answers = {Answer::kOk};
    host_.user.choices = {{0, "/list.txt"}};
    files_.Set(fault);
  }

  Rows FilledRows() const {
    Rows rows;
    for (const GridRow& row : program_.frmReplacements.rows) {
      if (!row.txtLinks.text.empty()) rows.emplace_back(row.txtLinks.text, row.txtRechts.text);
    }
    return rows;
  }

  Program& program() { return program_; }
  const FailingFiles& files() const { return files_; }
  const MemoryFiles& disk() const { return host_.files; }
  const ScriptedUser& user() const { return host_.user; }

 private:
  TestProgram host_;
  FailingFiles files_{host_.files};
  Program program_{Host{files_, host_.system, host_.user}};
};

const Rows kRows = {{"x", "1"}, {"y", "2"}};

class EditorNthCall : public ::testing::Test {
 protected:
  // Runs `check` on a new editor whose first call of the file service fails, then on one whose
  // second call fails, and so on, until no call fails. Does so for each of the errors below, first
  // with that call failing alone, then with all later calls failing, too.
  template <class Check>
  static void ForEachCall(Check check) {
    int runs = 0;
    for (const ErrorNumber error :
         {ErrorNumber::kDiskFull, ErrorNumber::kDeviceIo, ErrorNumber::kPermissionDenied,
          ErrorNumber::kPathFileAccess, ErrorNumber::kFileNotFound}) {
      for (const bool from_then_on : {false, true}) {
        for (int call = 1;; ++call) {
          ASSERT_LT(call, 100);
          Editor editor({FaultKind::kError, call, error, from_then_on});
          check(editor);
          if (editor.files().failed().empty()) break;
          ++runs;
          EXPECT_FALSE(::testing::Test::HasFailure()) << editor.files().Description();
        }
      }
    }
    EXPECT_GT(runs, 0);
    std::cout << "editor: " << runs << " runs with failed calls\n";
  }
};

TEST_F(EditorNthCall, SavingLeavesTheOldListOrTheNewOne) {
  ForEachCall([](Editor& editor) {
    cmdSaveList_Click(editor.program());
    const std::string& saved = editor.disk().Bytes("/list.txt");
    EXPECT_TRUE(saved == kOld || saved == kNew) << saved;
    EXPECT_EQ(editor.FilledRows(), kRows);
    EXPECT_EQ(editor.program().settings.SubstitutieFile, "/list.txt");
  });
}

TEST_F(EditorNthCall, ClearingEmptyRowsKeepsTheOthersOrSaysWhyNot) {
  ForEachCall([](Editor& editor) {
    const Rows before = editor.FilledRows();
    cmdDeleteEmpty_Click(editor.program());
    EXPECT_EQ(editor.FilledRows(), before);
    const bool failed = !editor.files().failed().empty();
    EXPECT_EQ(!editor.user().messages.empty(), failed);
  });
}

}  // namespace
}  // namespace morvex::test
