#include "core/list/list_operations.h"

#include <cstdint>
#include <optional>
#include <string>

#include "core/list/editor.h"
#include "core/list/grid.h"
#include "core/list/list_file.h"
#include "core/program/paths.h"
#include "core/tables/substitution_tables.h"

namespace morvex {
namespace {

constexpr const char* kScratchFile = "temp.dat";
constexpr std::int64_t kFreshRows = 1;  // rows of an emptied grid
constexpr const char* kTooLongLeft = "invoer te lang (>2147483647)";
constexpr const char* kTooLongRight = "input too long (>2147483647)";

// Inserts at CaretPos, the end of the selection that the cell had when it lost the focus. Does
// nothing if the text has become shorter than CaretPos.
void InsertAtCaret(Program& program, CellAddress cell, const std::string& inserted) {
  ReplacementsForm& grid = program.frmReplacements;
  std::string text = grid.At(cell).text;
  if (grid.CaretPos > text.size()) return;
  text.insert(grid.CaretPos, inserted);
  SetCellText(grid, cell, text);
  Cell_SelectionChange(program, cell, text.size());
  FocusOnCell(program, cell);
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
  const ErrorNumber error = SaveReplacementList(program, path);
  if (error != ErrorNumber::kNone) return ShowFailure(program, path, error);
  const bool was_loaded = program.frmReplacements.loaded;
  const ListReading reading = ReadListForGrid(program, path, kFreshRows);
  // The grid is emptied only when all rows can be put back.
  if (reading.error != ErrorNumber::kNone) return ShowFailure(program, path, reading.error);
  // An editor that the user closed meanwhile stays closed.
  const bool was_closed = was_loaded && !program.frmReplacements.loaded;
  if (!was_closed) RefreshFormReplacements(program);
  FillGrid(program, reading);
}

void cmdOK_Click(Program& program) {
  if (IsBusy(program)) return;
  ReplacementsForm& grid = program.frmReplacements;
  ReplacementList list = ListInGrid(grid);
  FlagWildcards(list, grid.cmdJoker.caption.get());
  MakeTables(list, program.settings.gJoker, program.tables);
  SnapshotRows(grid);
  grid.visible = false;
  program.frmMorvex.visible = program.frmMorvex.loaded.get();
}

}  // namespace morvex
