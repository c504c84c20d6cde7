// A scene that runs the console program for Windows. In its log, Init.dat and output it changes
// Windows paths to paths as the model writes them. The environment variable MORVEX_CLI names the
// console program; MORVEX_UNDER names the program that runs Windows programs on this system.
#pragma once

#include <string>
#include <vector>

#include "program_run.h"
#include "tests/windows/windows_case.h"

namespace morvex::whole_run {

class WindowsScene : public Scene {
 public:
  WindowsScene() : Scene("morvex-cli.exe") {}

  // Runs the program; its settings file must already hold Windows paths. Then changes the Windows
  // paths in the log, in Init.dat and in the output to paths as the model writes them.
  ProgramResult RunInModelText(const std::vector<std::string>& arguments) const;

  // Predicts the run on Windows; the settings file must hold paths as the model writes them. The
  // prediction leaves the permission bits open.
  RunOutcome Predict(const std::string& settings_name, const std::string& settings_argument,
                     int delay_ms) const;
};

}  // namespace morvex::whole_run
