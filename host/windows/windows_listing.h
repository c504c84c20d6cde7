// Lists folders.
#pragma once

#include <string>
#include <vector>

#include "core/host/file_service.h"

namespace morvex::windows {

// As FileService::ListFolder. A name that the code page cannot spell is listed with "?" for each
// missing character. No file name can contain "?", so every call on such a name returns 52.
Result<std::vector<FolderEntry>> ReadFolder(const std::string& path);
// As FileService::LinkText.
Result<std::string> ReadLinkText(const std::string& path);

}  // namespace morvex::windows
