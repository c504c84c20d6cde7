// A scene in which the console program for Windows runs, and its results as the model writes them.
// MORVEX_CLI names that program, MORVEX_UNDER the one that runs it here.
#pragma once

#include <string>
#include <vector>

#include "program_run.h"
#include "tests/windows/windows_case.h"

namespace morvex::whole_run {

class WindowsScene : public Scene {
 public:
  WindowsScene() : Scene("morvex-cli.exe") {}

  // Runs the settings file of that name below the work folder, which holds Windows paths by now,
  // and rewrites log, Init.dat and output into the model's spelling.
  ProgramResult RunInModelText(const std::vector<std::string>& arguments) const;

  // What the model predicts for settings in its own spelling, as it must come out on Windows: the
  // permission bits of the copies are the system's.
  RunOutcome Predict(const std::string& settings_name, const std::string& settings_argument,
                     int delay_ms) const;
};

}  // namespace morvex::whole_run
