#include "core/program/paths.h"

namespace morvex {
namespace {

// The errors of a path that leads to no file: no such name, no such folder, a loop of links.
bool LeadsNowhere(ErrorNumber error) {
  return error == ErrorNumber::kFileNotFound || error == ErrorNumber::kPathNotFound ||
         error == ErrorNumber::kPathFileAccess;
}

}  // namespace

bool IsWorkFileName(const Program& program, const std::string& name) {
  return program.host.files.IsSameName(name, kWorkFileName);
}

std::string JoinPath(const Program& program, std::string_view folder, std::string_view name) {
  std::string path;
  path.reserve(folder.size() + 1 + name.size());
  return path.append(folder).append(1, program.host.files.Separator()).append(name);
}

std::string InProgramFolder(const Program& program, std::string_view name) {
  return JoinPath(program, program.host.system.ProgramFolder(), name);
}

std::string FolderOf(const Program& program, const std::string& path) {
  const char separator = program.host.files.Separator();
  const std::size_t end = path.rfind(separator);
  if (end == std::string::npos) return ".";
  const bool drive_root = separator == '\\' && end == 2 && path[1] == ':';
  return path.substr(0, end == 0 || drive_root ? end + 1 : end);
}

std::string NameIn(const Program& program, const std::string& path) {
  return path.substr(path.rfind(program.host.files.Separator()) + 1);
}

bool IsWithin(const Program& program, std::string_view path, std::string_view folder) {
  if (folder.empty() || !path.starts_with(folder)) return false;
  const char separator = program.host.files.Separator();
  return path.size() == folder.size() || folder.ends_with(separator) ||
         path[folder.size()] == separator;
}

std::string Normaliseer(const Program& program, const std::string& StringIn) {
  if (program.Beeindigd) return "";
  if (StringIn.size() < 4 || StringIn[3] != '\\') return StringIn;
  return StringIn.substr(0, 3) + StringIn.substr(4);
}

std::string FolderPathClean(const Program& program, std::string_view path) {
  const char separator = program.host.files.Separator();
  const bool leading_pair = path.size() >= 2 && path[0] == separator && path[1] == separator;
  std::string clean(leading_pair ? 1 : 0, separator);
  bool after_separator = false;
  for (const char character : path) {
    if (character != separator || !after_separator) clean += character;
    after_separator = character == separator;
  }
  return clean;
}

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  for (char& character : upper) {
    if (character >= 'a' && character <= 'z') character = static_cast<char>(character - 'a' + 'A');
  }
  return upper;
}

bool FileExists(const Program& program, const std::string& path) {
  return static_cast<bool>(program.host.files.LookUpFile(path));
}

bool FolderExists(const Program& program, const std::string& path) {
  return path.empty() || program.host.files.LookUpFolder(path);
}

Result<bool> IsSameFile(const Program& program, const std::string& one, const std::string& other) {
  const Result<FileInfo> first = program.host.files.LookUpFile(one);
  if (LeadsNowhere(first.error)) return false;
  if (!first) return first.error;
  return IsSameFile(program, first.value, other);
}

Result<bool> IsSameFile(const Program& program, const FileInfo& one, const std::string& other) {
  const Result<FileInfo> second = program.host.files.LookUpFile(other);
  if (LeadsNowhere(second.error)) return false;
  if (!second) return second.error;
  return one.identity == second.value.identity;
}

ErrorNumber MakeFolder(const Program& program, const std::string& path) {
  return program.host.files.CreateFolder(path);
}

std::string MakeFolderTree(const Program& program, const std::string& path) {
  const char separator = program.host.files.Separator();
  for (std::size_t end = path.find(separator, 1); end != std::string::npos;
       end = path.find(separator, end + 1)) {
    const std::string parent = path.substr(0, end);
    if (!FolderExists(program, parent)) MakeFolder(program, parent);
  }
  if (!FolderExists(program, path)) MakeFolder(program, path);
  return FolderExists(program, path) ? path : std::string();
}

}  // namespace morvex
