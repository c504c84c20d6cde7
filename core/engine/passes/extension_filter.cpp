#include "core/engine/passes/extension_filter.h"

#include <algorithm>

namespace morvex {
namespace {

constexpr std::size_t kComparedInWalk = 4;

std::string ComparedPart(std::string_view name, FolderPassKind pass) {
  if (pass == FolderPassKind::kPrepass) return "." + std::string(FileExtension(name));
  return std::string(name.substr(name.size() - std::min(name.size(), kComparedInWalk)));
}

}  // namespace

std::string_view FileExtension(std::string_view name) {
  const std::size_t point = name.find('.');
  return point == std::string_view::npos ? std::string_view() : name.substr(point + 1);
}

bool IsSelectedExtension(const Program& program, std::string_view name, FolderPassKind pass) {
  const RunRequest& request = program.request;
  if (request.all_files) return true;
  const std::string part = ComparedPart(name, pass);
  return std::find(request.extensions.begin(), request.extensions.end(), part) !=
         request.extensions.end();
}

}  // namespace morvex
