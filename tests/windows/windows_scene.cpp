#include "tests/windows/windows_scene.h"

namespace morvex::whole_run {

ProgramResult WindowsScene::RunInModelText(const std::vector<std::string>& arguments) const {
  ProgramResult result = Run(arguments);
  result.output = ModelText(result.output);
  result.errors = ModelText(result.errors);
  for (const std::string& name : ProgramFolderNames()) {
    const std::string path = program_folder() + "/" + name;
    const std::string bytes = ReadWholeFile(path);
    if (name == "Morvex.log") WriteWholeFile(path, ModelText(bytes));
    if (name == "Init.dat") WriteWholeFile(path, ModelSettings(bytes));
  }
  return result;
}

RunOutcome WindowsScene::Predict(const std::string& settings_name,
                                 const std::string& settings_argument, int delay_ms) const {
  RunInput input = Input(settings_name);
  input.disk.SortListings(ComesBefore);
  input.settings_path = settings_argument;
  input.executable_name = "morvex-cli";
  input.delay_ms = delay_ms;
  RunOutcome outcome = PredictRun(input);
  outcome.disk.ForgetPermissions();
  return outcome;
}

}  // namespace morvex::whole_run
