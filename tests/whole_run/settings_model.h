// Reads settings files and list files in a slow and obvious way. The rules for short, long and odd
// lines matter most to the tests.

#ifndef MORVEX_TESTS_WHOLE_RUN_SETTINGS_MODEL_H_
#define MORVEX_TESTS_WHOLE_RUN_SETTINGS_MODEL_H_

#include <string>
#include <string_view>
#include <vector>

namespace morvex::whole_run {

struct ExtensionEntry {
  std::string text;
  bool selected = false;
};

struct Settings {
  std::string source;
  std::string target;
  std::string list_path;
  int logging_box = 0;  // state of the check box: 0 empty, 1 checked, 2 greyed
  std::string separator = "|";
  unsigned char joker = 0;  // 0 if there is none
  std::vector<ExtensionEntry> extensions;
};

// A row of the editor's grid. In its texts, "[CRLF]" stands for a line break.
struct Row {
  std::string left;
  std::string right;
};

// Returns the lines of a text file. A line ends at LF. If a CR stands directly in front of the LF,
// the line is returned without this CR. Bytes behind the last LF are a line too.
std::vector<std::string> TextLines(std::string_view bytes);

Settings ReadSettings(std::string_view bytes);

// Returns the bytes of Init.dat after a run was armed with these settings.
std::string InitDatBytes(const Settings& settings);

// Returns the rows of the editor after it has read a list. There is always at least one row.
std::vector<Row> ReadGrid(std::string_view list_bytes, const std::string& separator);

}  // namespace morvex::whole_run

#endif  // MORVEX_TESTS_WHOLE_RUN_SETTINGS_MODEL_H_
