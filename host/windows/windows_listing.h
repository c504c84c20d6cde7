// What a folder holds.
#pragma once

#include <string>
#include <vector>

#include "core/host/file_service.h"

namespace morvex::windows {

// As FileService::ListFolder. A name that the code page cannot spell is listed with "?" for what is
// missing; no file goes by such a path, so every call on it gives 52.
Result<std::vector<FolderEntry>> ReadFolder(const std::string& path);
// As FileService::LinkText.
Result<std::string> ReadLinkText(const std::string& path);

}  // namespace morvex::windows
