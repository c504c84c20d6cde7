// Lists folders.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/host/file_service.h"

namespace morvex::posix {

// What an entry of a folder is; `kind` is empty if the entry was deleted after it was listed.
struct Examined {
  std::optional<EntryKind> kind;
  bool is_link = false;
};

// Examines `name` in the open folder. `type` is the type from the listing (DT_REG, ...,
// DT_UNKNOWN); the file itself is examined only if `type` does not suffice.
Result<Examined> ExamineEntry(int folder, const char* name, unsigned char type);

// As FileService::ListFolder.
Result<std::vector<FolderEntry>> ReadFolder(const std::string& path);
// As FileService::LinkText.
Result<std::string> ReadLinkText(const std::string& path);

}  // namespace morvex::posix
