// What a settings file and a replacement-list file say, read the slow and obvious way. Both are
// positional text files; the rules for short, long and odd lines are what the tests are after.

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
  int logging_box = 0;  // 0, 1 or 2, as the check box holds it
  std::string separator = "|";
  unsigned char joker = 0;  // 0: none
  std::vector<ExtensionEntry> extensions;
};

// One row of the editor's grid, as read, with "[CRLF]" still a token.
struct Row {
  std::string left;
  std::string right;
};

// The lines of a text file. A line ends at LF and loses one CR before it; what stands after the
// last LF is a line when it holds anything.
std::vector<std::string> TextLines(std::string_view bytes);

Settings ReadSettings(std::string_view bytes);

// The bytes of Init.dat after a run was armed with these settings.
std::string InitDatBytes(const Settings& settings);

// The grid after a list was read into an empty editor. There is always at least one row.
std::vector<Row> ReadGrid(std::string_view list_bytes, const std::string& separator);

}  // namespace morvex::whole_run

#endif  // MORVEX_TESTS_WHOLE_RUN_SETTINGS_MODEL_H_
