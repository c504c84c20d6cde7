#include "tests/commands/command_scene.h"

#include <filesystem>
#include <regex>

namespace morvex::commands {
namespace {

constexpr int kLimitSeconds = 300;

}  // namespace

CommandScene::CommandScene() {
  namespace fs = std::filesystem;
  const fs::path examples = fs::path(SourceRoot()) / "examples";
  scene_.Write("replacements.txt",
               whole_run::ReadWholeFile((examples / "replacements.txt").string()));
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(examples / "case")) {
    if (!entry.is_regular_file()) continue;
    scene_.Write(fs::relative(entry.path(), examples).string(),
                 whole_run::ReadWholeFile(entry.path().string()));
  }
}

ProgramResult CommandScene::Shell(const std::string& script) const {
  return whole_run::RunProgram("/bin/sh",
                               {"-c", "PATH=" + scene_.program_folder() + ":$PATH\n" + script},
                               scene_.work(), kLimitSeconds);
}

std::string WithoutTimes(const std::string& text) {
  return std::regex_replace(text, std::regex("\\d+ min \\d+ sec"), "0 min 0 sec");
}

std::string SourceRoot() { return MORVEX_SOURCE_ROOT; }

}  // namespace morvex::commands
