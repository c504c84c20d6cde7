// What a run is to do, as data. The main window's Go makes a request from the forms; the command
// "run" makes one from its options. The passes over the files read only `extensions` and
// `all_files`.
#pragma once

#include <string>
#include <vector>

namespace morvex {

struct RunRequest {
  std::string source;  // a file or a folder
  std::string target;
  std::string list;           // path; used only to name the list in the log and the report
  std::string settings_file;  // the settings file, as the log names it
  std::vector<std::string> extensions;  // with their "."; files with one of these are processed
  bool all_files = false;               // every file is processed, whatever its extension
  bool logging = false;
};

}  // namespace morvex
