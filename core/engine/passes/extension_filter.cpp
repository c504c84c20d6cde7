#include "core/engine/passes/extension_filter.h"

#include <algorithm>

namespace morvex {
namespace {

constexpr std::size_t kWalkKeyLength = 4;

std::string LookUpKey(std::string_view name, FolderPassKind pass) {
  if (pass == FolderPassKind::kPrepass) return "." + std::string(FileExtension(name));
  return std::string(name.substr(name.size() - std::min(name.size(), kWalkKeyLength)));
}

}  // namespace

std::string_view FileExtension(std::string_view name) {
  const std::size_t point = name.find('.');
  return point == std::string_view::npos ? std::string_view() : name.substr(point + 1);
}

bool IsSelectedExtension(const Program& program, std::string_view name, FolderPassKind pass) {
  if (program.settings.AllFilesSelected) return true;
  const std::string key = LookUpKey(name, pass);
  const std::vector<ListEntry>& entries = program.frmOpties.lstExtensie.entries;
  return std::any_of(entries.begin(), entries.end(),
                     [&](const ListEntry& entry) { return entry.selected && entry.text == key; });
}

}  // namespace morvex
