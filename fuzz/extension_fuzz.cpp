// Fuzz target: texts made of the fuzzer's bytes are typed into the field for extensions, added and
// removed again. Checks that every entry of the list has one ".", at its start, and is in the
// list once; that the counts agree with the list; and that a file is selected if and only if one
// selected entry equals what the pass compares: "." and the extension for a file directly in the
// source folder, the last four bytes of the name for a file in a sub-folder.
#include <set>

#include "core/engine/passes/extension_filter.h"
#include "core/forms/keys.h"
#include "core/run/run_driver.h"
#include "core/run/start_up.h"
#include "core/settings/options.h"
#include "fuzz/fuzz_bytes.h"
#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

void CheckList(const Program& program) {
  const std::vector<ListEntry>& entries = program.frmOpties.lstExtensie.entries;
  std::set<std::string> texts;
  std::int64_t selected = 0;
  for (const ListEntry& entry : entries) {
    Require(entry.text.starts_with('.'), "no point at the start: " + Shown(entry.text));
    Require(entry.text.find('.', 1) == std::string::npos, "a second point: " + Shown(entry.text));
    Require(texts.insert(entry.text).second, "twice in the list: " + Shown(entry.text));
    selected += entry.selected ? 1 : 0;
  }
  Require(program.settings.N_Extension_Total == static_cast<std::int64_t>(entries.size()),
          "another total");
  Require(program.settings.N_Extension_Selected == selected, "another number of selected ones");
  const int current = program.frmOpties.lstExtensie.current;
  Require(current < static_cast<int>(entries.size()), "the current entry is not there");
}

bool IsSelected(const Program& program, const std::string& key) {
  for (const ListEntry& entry : program.frmOpties.lstExtensie.entries.get()) {
    if (entry.selected && entry.text == key) return true;
  }
  return false;
}

void CheckFilter(Program& program, const std::string& name) {
  program.request = RequestFromForms(program);
  const std::size_t point = name.find('.');
  const std::string top = point == std::string::npos ? "." : name.substr(point);
  const std::string below = name.size() < 4 ? name : name.substr(name.size() - 4);
  Require(IsSelectedExtension(program, name, FolderPassKind::kPrepass) == IsSelected(program, top),
          "at the top: " + Shown(name));
  Require(IsSelectedExtension(program, name, FolderPassKind::kWalk) == IsSelected(program, below),
          "below: " + Shown(name));
}

}  // namespace

void FuzzExtensions(const std::uint8_t* data, std::size_t size) {
  FuzzBytes bytes(data, size);
  TestProgram test;
  Program& program = test.program;
  imOpties_Click(program);
  while (bytes.left() > 0) {
    const std::uint8_t what = bytes.Next();
    const std::string text = bytes.Take(bytes.Next() % 12);
    ListBox& list = program.frmOpties.lstExtensie;
    switch (what % 5) {
      case 0:
      case 1:
        program.frmOpties.txtExtensie.text = text;
        txtExtensie_KeyDown(program, kKeyEnter, kShiftControl);
        break;
      case 2:
        txtExtensie_KeyDown(program, kKeyDelete, kShiftControl);
        break;
      case 3:
        lstExtensie_Select(program, text.size(), what % 2 == 0);
        break;
      default:
        list.current =
            std::min(static_cast<int>(text.size()), static_cast<int>(list.entries.get().size())) -
            1;
        lstExtensie_KeyDown(program, kKeyDelete, kShiftControl);
        break;
    }
    CheckList(program);
    CheckFilter(program, text);
    if (!list.entries.get().empty()) CheckFilter(program, "name" + list.entries.get().front().text);
  }
}

}  // namespace morvex::test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  morvex::test::FuzzExtensions(data, size);
  return 0;
}
