#include "core/list/list_file.h"

#include <utility>

#include "core/list/editor.h"
#include "core/list/grid.h"
#include "core/list/list_line.h"
#include "core/program/paths.h"
#include "core/program/text_file.h"

namespace morvex {
namespace {

void SetUpDialog(FileDialog& dialog) { dialog = FileDialog{"txt", "Text (*.txt)|*.txt", "", ""}; }

// Reads the lines of one list file into the grid.
class ListImport {
 public:
  explicit ListImport(Program& program)
      : program_(program), grid_(program.frmReplacements), parser_(program.settings.gSeparator) {
    grid_.importing = true;
  }
  ~ListImport() { grid_.importing = false; }
  ListImport(const ListImport&) = delete;
  ListImport& operator=(const ListImport&) = delete;

  // The editor was closed, or the program ended, while the windows were alive.
  bool Abandoned() const { return !grid_.loaded || program_.Beeindigd; }

  // Takes one line; false when it ends the reading.
  bool TakeLine(const std::string& line) {
    const ListLine parsed = parser_.Parse(line);
    if (parsed.kind == ListLine::Kind::kNoRow) return true;
    if (parsed.kind == ListLine::Kind::kEnd) {
      RemoveAppendedRow();
      return false;
    }
    // A line fell on a row that does not exist, so it is lost and reading ends.
    if (!grid_.HasRow(row_)) return false;
    SetCellText(grid_, {Column::kLeft, row_}, parsed.left);
    SetCellText(grid_, {Column::kRight, row_}, parsed.right);
    if (!parser_.final_row_seen()) EnterInCell(program_, {Column::kLeft, row_});
    YieldToWindows(program_);
    ++row_;
    return true;
  }

 private:
  // The end of the list: the row that the Enter before appended goes again.
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
  ListLineParser parser_;
  std::int64_t row_ = 0;
};

}  // namespace

ErrorNumber SaveReplacementList(Program& program, const std::string& path) {
  // Rows that were written without a separator could not be read back.
  if (program.settings.gSeparator.empty()) program.settings.gSeparator = kDefaultSeparator;
  const ReplacementsForm& grid = program.frmReplacements;
  const std::string& separator = program.settings.gSeparator;
  std::string content;
  for (std::size_t i = 0; i < grid.rows.size(); ++i) {
    const std::string& left = grid.rows[i].txtLinks.text;
    const std::string& right = grid.rows[i].txtRechts.text;
    const bool last = i + 1 == grid.rows.size();
    if (!last && left.empty() && right.empty()) continue;
    content.append(left).append(separator).append(right);
    if (last) content.append(separator).append(separator);
    content.append("\r\n");
  }
  return program.host.files.ReplaceFile(path, content);
}

void ImportReplacementList(Program& program, std::string GetF) {
  LoadGrid(program);
  LineReader reader;
  reader.Open(program.host.files, GetF);
  ListImport import(program);
  std::string line;
  while (!import.Abandoned() && reader.Next(line) && import.TakeLine(line)) {
  }
  program.settings.list_file_error = reader.error();
  program.settings.SubstitutieFile = std::move(GetF);
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
  // A failed writing ends without a message; the list is the chosen file's all the same.
  SaveReplacementList(program, choice.path);
  program.settings.SubstitutieFile = choice.path;
}

}  // namespace morvex
