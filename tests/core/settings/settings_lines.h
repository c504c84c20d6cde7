// Settings files in tests, line by line.
#pragma once

#include <string>
#include <vector>

#include "core/settings/settings_file.h"
#include "tests/support/test_program.h"

namespace morvex::test {

inline const std::string kInitFile = "/program/Init.dat";

// Returns the lines, each followed by CR LF.
inline std::string InitLines(const std::vector<std::string>& lines) {
  std::string content;
  for (const std::string& line : lines) content += line + "\r\n";
  return content;
}

// Makes the program read these lines as its own settings file.
inline void ReadInitLines(TestProgram& test, const std::vector<std::string>& lines) {
  test.files.AddFile(kInitFile, InitLines(lines));
  ReadInitFile(test.program);
}

// Returns the lines of a settings file; every line but the one at `index` (from 0) is empty or has
// the default.
inline std::vector<std::string> InitLinesWith(std::size_t index, const std::string& line) {
  std::vector<std::string> lines = {"", "", "", "log=0", "sep=|", "jok="};
  lines.at(index) = line;
  return lines;
}

// Returns the lines of all extension entries, as a settings file holds them: "1" for a selected
// entry or "0" for another, then the entry's text.
inline std::vector<std::string> ExtensionLines(const TestProgram& test) {
  std::vector<std::string> lines;
  for (const ListEntry& entry : test.program.frmOpties.lstExtensie.entries.get()) {
    lines.push_back((entry.selected ? "1" : "0") + entry.text);
  }
  return lines;
}

}  // namespace morvex::test
