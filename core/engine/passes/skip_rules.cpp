#include "core/engine/passes/skip_rules.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "core/engine/passes/extension_filter.h"
#include "core/program/paths.h"

namespace morvex {
namespace {

constexpr std::string_view kProgramName = "Morvex";

// Returns the name without its extension and without the character before the extension. A name
// without a "." thus loses its last character.
std::string_view BaseName(std::string_view name) {
  const std::size_t extension = FileExtension(name).size() + 1;
  return name.substr(0, name.size() - std::min(name.size(), extension));
}

bool InLeftOutFolder(const std::string& folder) {
  // The path is compared in upper case, so the mixed-case word never matches. Only FolderWalk
  // leaves out that folder.
  constexpr std::array<std::string_view, 4> kWords = {"RECYCLED", "RECYCLER",
                                                      "System Volume Information", "_RESTORE"};
  const std::string path = UpperCase(folder);
  return std::any_of(kWords.begin(), kWords.end(),
                     [&](std::string_view word) { return path.find(word) != std::string::npos; });
}

}  // namespace

PassedOver WhyPassedOver(const Program& program, const std::string& name, const std::string& folder,
                         const std::optional<WallTime>& modified) {
  // For example "Morvex.exe" and the run log, "Morvex.log".
  if (BaseName(name) == kProgramName) return PassedOver::kOwnFile;
  if (name == program.host.system.ExecutableName() + ".exe") return PassedOver::kOwnFile;
  if (InLeftOutFolder(folder)) return PassedOver::kRecycleBin;
  if (modified && *modified >= program.run.ArmedAt) return PassedOver::kChangedMeanwhile;
  if (name.ends_with("cle")) return PassedOver::kNameEnding;
  return PassedOver::kNo;
}

}  // namespace morvex
