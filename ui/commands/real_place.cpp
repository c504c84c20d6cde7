#include "ui/commands/real_place.h"

#include "core/program/paths.h"

namespace morvex {

std::string RealPlace(const Program& program, const std::string& path) {
  const Result<std::string> real = program.host.files.RealPath(path);
  if (real) return real.value;
  const std::string name = NameIn(program, path);
  std::string folder = FolderOf(program, path);
  if (folder == path || path.empty()) return path;  // a root that does not exist
  folder = RealPlace(program, folder);
  if (name.empty() || name == ".") return folder;
  if (name == "..") return FolderOf(program, folder);
  const bool is_root = folder.ends_with(program.host.files.Separator());
  return is_root ? folder + name : JoinPath(program, folder, name);
}

std::optional<std::string> WayFrom(const Program& program, const std::string& folder,
                                   const std::string& place) {
  if (folder.empty() || place.empty()) return std::nullopt;
  const FileService& files = program.host.files;
  std::string from = RealPlace(program, folder);
  const std::string to = RealPlace(program, place);
  if (from.ends_with(files.Separator())) from.pop_back();
  if (!files.IsSameName(to.substr(0, from.size()), from)) return std::nullopt;
  if (to.size() == from.size()) return "";
  if (to[from.size()] != files.Separator()) return std::nullopt;
  return to.substr(from.size() + 1);
}

bool IsSamePlace(const Program& program, const std::string& one, const std::string& other) {
  if (one.empty() || other.empty()) return false;
  const Result<bool> same = IsSameFile(program, one, other);
  if (same && same.value) return true;
  return program.host.files.IsSameName(RealPlace(program, one), RealPlace(program, other));
}

}  // namespace morvex
