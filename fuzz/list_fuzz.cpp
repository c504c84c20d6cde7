// Fuzz target: a separator and a list file are made of the fuzzer's bytes. The file is imported,
// applied, saved and imported again. Checks that the grid keeps its shape, that the tables have no
// more rows than the grid, and that with a separator of one byte (neither CR nor LF) the rows that
// are not empty come back unchanged.
#include "core/list/grid.h"
#include "core/list/list_file.h"
#include "core/list/list_operations.h"
#include "core/run/start_up.h"
#include "fuzz/fuzz_bytes.h"
#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

Rows FilledRows(const Rows& all) {
  Rows rows;
  for (const auto& row : all) {
    if (!row.first.empty() || !row.second.empty()) rows.push_back(row);
  }
  return rows;
}

std::string Shown(const Rows& rows) {
  std::string text;
  for (const auto& [left, right] : rows) {
    text += "[" + test::Shown(left) + "] [" + test::Shown(right) + "]\n";
  }
  return text;
}

void CheckGrid(const TestProgram& test) {
  const ReplacementsForm& grid = test.program.frmReplacements;
  Require(!grid.rows.empty(), "the grid has no row");
  Require(grid.LastRow == static_cast<std::int64_t>(grid.rows.size()) - 1, "LastRow is another");
}

void Import(TestProgram& test, const std::string& path, const std::string& separator) {
  test.program.settings.gSeparator = separator;
  ImportReplacementList(test.program, path);
  CheckGrid(test);
  Require(test.program.settings.SubstitutieFile == path, "the list's path is not kept");
}

}  // namespace

void FuzzList(const std::uint8_t* data, std::size_t size) {
  FuzzBytes bytes(data, size);
  const std::string separator = bytes.Take(bytes.Next() % 4);
  const auto joker = bytes.Next();
  TestProgram test;
  const std::string file = bytes.TakeAll();
  test.files.AddFile("/list", file);
  Import(test, "/list", separator);
  const Rows rows = test.GridRows();
  test.program.settings.gJoker = joker;
  cmdOK_Click(test.program);
  const SubstitutionTables& tables = test.program.tables;
  Require(tables.LeftTexts.size() == tables.RightTexts.size(), "the tables have two lengths");
  for (std::size_t i = 0; i < tables.LeftTexts.size(); ++i) {
    Require(i < rows.size(), "the tables have more rows than the grid");
  }
  cmdDeleteEmpty_Click(test.program);
  CheckGrid(test);

  if (separator.size() != 1 || separator == "\r" || separator == "\n") return;
  TestProgram saving;
  saving.files.AddFile("/list", file);
  Import(saving, "/list", separator);
  const Rows before = FilledRows(saving.GridRows());
  Require(SaveReplacementList(saving.program, "/saved") == ErrorNumber::kNone, "not saved");
  TestProgram again;
  again.files.AddFile("/saved", saving.files.Bytes("/saved"));
  Import(again, "/saved", separator);
  const Rows after = FilledRows(again.GridRows());
  Require(after == before, "read anew:\n" + Shown(after) + "instead of:\n" + Shown(before) +
                               "saved as: " + test::Shown(saving.files.Bytes("/saved")));
}

}  // namespace morvex::test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  morvex::test::FuzzList(data, size);
  return 0;
}
