// A scene that runs the console program for Windows and changes its results to the model's
// spelling. MORVEX_CLI names this program, MORVEX_UNDER the program that runs it here.
#pragma once

#include <string>
#include <vector>

#include "program_run.h"
#include "tests/windows/windows_case.h"

namespace morvex::whole_run {

class WindowsScene : public Scene {
 public:
  WindowsScene() : Scene("morvex-cli.exe") {}

  // Runs the program, whose settings file must already hold Windows paths. Changes the log,
  // Init.dat and the output to the model's spelling.
  ProgramResult RunInModelText(const std::vector<std::string>& arguments) const;

  // Predicts the run on Windows for settings in the model's spelling. The copies may have any
  // permission bits.
  RunOutcome Predict(const std::string& settings_name, const std::string& settings_argument,
                     int delay_ms) const;
};

}  // namespace morvex::whole_run
