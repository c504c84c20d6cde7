#include "core/list/list_operations.h"

#include <optional>
#include <string>

#include "core/list/editor.h"
#include "core/list/grid.h"
#include "core/list/list_file.h"
#include "core/program/paths.h"
#include "core/program/text_file.h"
#include "core/tables/substitution_tables.h"

namespace morvex {
namespace {

constexpr const char* kScratchFile = "temp.dat";
constexpr const char* kTooLongLeft = "invoer te lang (>2147483647)";
constexpr const char* kTooLongRight = "input too long (>2147483647)";

// Behind the selection that the cell had; a caret behind the cell's text, of a text that is gone by
// now, leaves the cell as it is.
void InsertAtCaret(Program& program, CellAddress cell, const std::string& inserted) {
  ReplacementsForm& grid = program.frmReplacements;
  std::string text = grid.At(cell).text;
  if (grid.CaretPos > text.size()) return;
  text.insert(grid.CaretPos, inserted);
  SetCellText(grid, cell, text);
  Cell_SelectionChange(program, cell, text.size());
  FocusOnCell(program, cell);
}

bool Contains(const std::string& text, const std::string& joker) {
  return !joker.empty() && text.find(joker) != std::string::npos;
}

void ShowFailure(Program& program, const std::string& path, ErrorNumber error) {
  program.host.user.ShowMessage(path + "\r\n" + ErrorLine(error), MessageButtons::kOk,
                                MessageIcon::kNone);
}

}  // namespace

void cmdJoker_Click(Program& program) {
  if (IsBusy(program)) return;
  const std::optional<CellAddress> cell = RememberedCell(program.frmReplacements);
  if (!cell || cell->column != Column::kLeft) return;
  InsertAtCaret(program, *cell, program.frmReplacements.cmdJoker.caption);
}

void cmdCRLF_Click(Program& program) {
  if (IsBusy(program)) return;
  const std::optional<CellAddress> cell = RememberedCell(program.frmReplacements);
  if (cell) InsertAtCaret(program, *cell, "[CRLF]");
}

void cmdMirror_Click(Program& program) {
  if (IsBusy(program)) return;
  ReplacementsForm& grid = program.frmReplacements;
  for (GridRow& row : grid.rows) {
    row.txtLinks.text.swap(row.txtRechts.text);
    row.txtLinks.selection_end = 0;
    row.txtRechts.selection_end = 0;
    MarkTooLong(grid, row.txtLinks, kTooLongLeft);
    MarkTooLong(grid, row.txtRechts, kTooLongRight);
  }
  grid.changes.Changed();
}

void cmdReset_Click(Program& program) {
  if (IsBusy(program)) return;
  RefreshFormReplacements(program);
  program.frmReplacements.SavedLinks.assign(1, "");
  program.frmReplacements.SavedRechts.assign(1, "");
}

void cmdDeleteEmpty_Click(Program& program) {
  if (IsBusy(program)) return;
  const std::string path = InProgramFolder(program, kScratchFile);
  ErrorNumber error = SaveReplacementList(program, path);
  // What cannot be read back must not cost the rows.
  if (error == ErrorNumber::kNone) error = LineReader().Open(program.host.files, path);
  if (error != ErrorNumber::kNone) return ShowFailure(program, path, error);
  const std::vector<GridRow> rows = program.frmReplacements.rows;
  const std::string list = program.settings.SubstitutieFile;
  RefreshFormReplacements(program);
  ImportReplacementList(program, path);
  error = program.settings.list_file_error;
  if (error == ErrorNumber::kNone) return;
  RefreshFormReplacements(program);
  FillRows(program, 0, rows);
  program.settings.SubstitutieFile = list;
  ShowFailure(program, path, error);
}

void cmdOK_Click(Program& program) {
  if (IsBusy(program)) return;
  ReplacementsForm& grid = program.frmReplacements;
  const std::string joker = grid.cmdJoker.caption;
  for (std::size_t i = 0; i < grid.rows.size(); ++i) {
    const auto row = static_cast<std::int64_t>(i);
    Set_Joker(program.tables, "Left", row, Contains(grid.rows[i].txtLinks.text, joker));
    Set_Joker(program.tables, "Right", row, Contains(grid.rows[i].txtRechts.text, joker));
  }
  // Every row has its flag, so the tables cannot fail.
  FillArrays(grid, program.settings.gJoker, program.tables);
  SnapshotRows(grid);
  grid.visible = false;
  program.frmMorvex.visible = program.frmMorvex.loaded.get();
}

}  // namespace morvex
