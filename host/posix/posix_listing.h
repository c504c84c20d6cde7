// What a folder holds.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/host/file_service.h"

namespace morvex::posix {

// What a name in a folder stands for; `kind` is empty when it is gone since it was listed.
struct Examined {
  std::optional<EntryKind> kind;
  bool is_link = false;
};

// Looks at `name` in the open folder as far as `type`, the type that came with it (DT_REG, ...,
// DT_UNKNOWN), does not say what it is.
Result<Examined> ExamineEntry(int folder, const char* name, unsigned char type);

// As FileService::ListFolder.
Result<std::vector<FolderEntry>> ReadFolder(const std::string& path);
// As FileService::LinkText.
Result<std::string> ReadLinkText(const std::string& path);

}  // namespace morvex::posix
