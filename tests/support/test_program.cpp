#include "tests/support/test_program.h"

#include "core/forms/keys.h"
#include "core/list/editor.h"
#include "core/list/grid.h"
#include "core/list/list_operations.h"

namespace morvex::test {

void TestProgram::TypeRows(const Rows& rows) {
  imList_Click(program);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto row = static_cast<std::int64_t>(i);
    Cell_Change(program, {Column::kLeft, row}, rows[i].first);
    Cell_Change(program, {Column::kRight, row}, rows[i].second);
    if (i + 1 < rows.size()) Cell_KeyDown(program, {Column::kLeft, row}, kKeyEnter);
  }
}

void TestProgram::ApplyRows(const Rows& rows, std::uint8_t joker) {
  program.settings.gJoker = joker;
  TypeRows(rows);
  cmdOK_Click(program);
}

Rows TestProgram::GridRows() const {
  Rows rows;
  for (const GridRow& row : program.frmReplacements.rows) {
    rows.emplace_back(row.txtLinks.text, row.txtRechts.text);
  }
  return rows;
}

std::vector<std::string> TestProgram::LogMessages() const {
  const std::string path = system.program_folder + files.Separator() + std::string("Morvex.log");
  std::vector<std::string> messages;
  if (!files.Has(path)) return messages;
  const std::string& log = files.Bytes(path);
  const std::string start = "\"" + system.time_text + " ";
  const std::string end = "\"\r\n";
  for (std::size_t from = 0; from < log.size();) {
    const std::size_t stop = log.find(end, from);
    if (stop == std::string::npos || log.compare(from, start.size(), start) != 0) {
      messages.push_back("malformed record: " + log.substr(from));
      break;
    }
    from += start.size();
    messages.push_back(log.substr(from, stop - from));
    from = stop + end.size();
  }
  return messages;
}

}  // namespace morvex::test
