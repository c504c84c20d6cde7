#include "core/list/list_file.h"

#include "core/list/editor.h"
#include "core/list/grid.h"
#include "core/program/paths.h"

namespace morvex {
namespace {

// While a list file is read, window events are handled once in this many lines.
constexpr std::int64_t kLinesPerYield = 256;

void SetUpDialog(FileDialog& dialog) { dialog = FileDialog{"txt", "Text (*.txt)|*.txt", "", ""}; }

// While this object exists, the editor's commands do nothing.
class ImportingMark {
 public:
  explicit ImportingMark(ReplacementsForm& grid) : grid_(grid) { grid_.importing = true; }
  ~ImportingMark() { grid_.importing = false; }
  ImportingMark(const ImportingMark&) = delete;
  ImportingMark& operator=(const ImportingMark&) = delete;

 private:
  ReplacementsForm& grid_;
};

// Puts what was read of one list file into the grid.
class GridImport {
 public:
  explicit GridImport(Program& program)
      : program_(program), grid_(program.frmReplacements), mark_(grid_) {}

  // Returns false if the grid lacked a row for a row of the list, or if the import was abandoned.
  bool TakeAll(const ListReading& reading) {
    const std::vector<ListRow>& rows = reading.list.rows;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const bool is_final = reading.has_final_row && i + 1 == rows.size();
      if (!TakeRow(rows[i], !is_final)) return false;
    }
    for (const ListRow& row : reading.rows_behind_final) {
      if (!TakeRow(row, false)) return false;
    }
    if (IsAbandoned()) return false;
    if (reading.end_line != 0) RemoveAppendedRow();
    return true;
  }

 private:
  // Whether the editor is not loaded (a window event may have closed it) or the program is to stop.
  bool IsAbandoned() const { return !grid_.loaded || program_.Beeindigd; }

  bool TakeRow(const ListRow& row, bool appends) {
    if (IsAbandoned() || !grid_.HasRow(row_)) return false;
    SetCellText(grid_, {Column::kLeft, row_}, row.left);
    SetCellText(grid_, {Column::kRight, row_}, row.right);
    if (appends) EnterInCell(program_, {Column::kLeft, row_});
    YieldToWindows(program_);
    ++row_;
    return true;
  }

  // Removes the row behind the last filled one. Usually TakeRow has appended it for a further row
  // of the list, but the list has ended.
  void RemoveAppendedRow() {
    if (!RemoveRow(grid_, row_)) return;
    --grid_.LastRow;
    if (static_cast<std::int64_t>(grid_.rows.size()) - 1 < kRowsInBand - 1) {
      GrowWindow(grid_, -1);
    } else {
      ShiftRows(grid_, -1);
    }
  }

  Program& program_;
  ReplacementsForm& grid_;
  const ImportingMark mark_;
  std::int64_t row_ = 0;
};

}  // namespace

ErrorNumber SaveReplacementList(Program& program, const std::string& path) {
  // Rows that are written without a separator could not be read back.
  if (program.settings.gSeparator.empty()) program.settings.gSeparator = kDefaultSeparator;
  ReplacementList list = ListInGrid(program.frmReplacements);
  list.path = path;
  return WriteListFile(program.host.files, list, program.settings.gSeparator);
}

void ImportReplacementList(Program& program, const std::string& GetF) {
  LoadGrid(program);
  const auto grid_rows = static_cast<std::int64_t>(program.frmReplacements.rows.size());
  FillGrid(program, ReadListForGrid(program, GetF, grid_rows));
}

ListReading ReadListForGrid(Program& program, const std::string& path, std::int64_t grid_rows) {
  const ReplacementsForm& grid = program.frmReplacements;
  const ImportingMark mark(program.frmReplacements);
  const bool was_loaded = grid.loaded;
  std::int64_t lines = 0;
  const KeepGoing keep_going = [&] {
    if (++lines % kLinesPerYield == 0) YieldToWindows(program);
    return !program.Beeindigd && (grid.loaded || !was_loaded);
  };
  return ReadListFile(program.host.files, path, program.settings.gSeparator, OddLines::kDrop,
                      grid_rows, keep_going);
}

void FillGrid(Program& program, const ListReading& reading) {
  const bool took_all = GridImport(program).TakeAll(reading);
  // If the reading failed, it failed behind all rows that it returned. If the filling ended before
  // the last of them, rows are missing for another reason.
  const bool was_reached = took_all || reading.list.rows.empty();
  program.settings.list_file_error = was_reached ? reading.error : ErrorNumber::kNone;
  program.settings.SubstitutieFile = reading.list.path;
}

std::string UnreadListText(const std::string& path, ErrorNumber error) {
  return "The replacement list could not be read to its end: " + path + ": " + ErrorLine(error);
}

void cmdImport_Click(Program& program) {
  if (IsBusy(program)) return;
  RefreshFormReplacements(program);
  ReplacementsForm& grid = program.frmReplacements;
  SetUpDialog(grid.cdSaveList);
  std::string path = program.settings.SubstitutieFile;
  if (!program.settings.ReadingInitFile) {
    const FileChoice choice = program.host.user.ChooseFileToOpen(grid.cdSaveList);
    if (choice.error == kDialogCancelled) return;
    path = choice.path;
  }
  const std::string caption = grid.caption;
  grid.caption = std::string(9, ' ') + "one moment please ...";
  program.host.user.HandlePendingEvents();
  ImportReplacementList(program, path);
  grid.caption = caption;
}

void cmdSaveList_Click(Program& program) {
  if (IsBusy(program)) return;
  FileDialog& dialog = program.frmReplacements.cdSaveList;
  SetUpDialog(dialog);
  const std::string& current = program.settings.SubstitutieFile;
  dialog.file_name = NameIn(program, current);
  if (dialog.file_name != current) dialog.initial_folder = FolderOf(program, current);

  const FileChoice choice = program.host.user.ChooseFileToSave(dialog);
  if (choice.error == kDialogCancelled) return;
  if (FileExists(program, choice.path)) {
    const Answer answer = program.host.user.ShowMessage(
        "File already exists, replace ?", MessageButtons::kOkCancel, MessageIcon::kNone);
    if (answer != Answer::kOk) return;
  }
  // A failure to write is not reported, and the chosen file is the list's file even then.
  SaveReplacementList(program, choice.path);
  program.settings.SubstitutieFile = choice.path;
}

}  // namespace morvex
