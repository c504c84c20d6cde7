#include "tests/commands/command_scene.h"

#include <filesystem>
#include <string_view>

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
  constexpr std::string_view kMinutes = " min ";
  constexpr std::string_view kSeconds = " sec";
  constexpr const char* kDigits = "0123456789";
  std::string result = text;
  for (std::size_t at = 0; (at = result.find(kMinutes, at)) != std::string::npos;) {
    const std::size_t first = result.find_last_not_of(kDigits, at - 1) + 1;
    const std::size_t end = result.find_first_not_of(kDigits, at + kMinutes.size());
    at += kMinutes.size();
    if (end == std::string::npos || result.compare(end, kSeconds.size(), kSeconds) != 0) continue;
    result.replace(first, end - first, "0 min 0");
  }
  return result;
}

std::string SourceRoot() { return MORVEX_SOURCE_ROOT; }

}  // namespace morvex::commands
