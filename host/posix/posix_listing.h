// What a folder holds.
#pragma once

#include <string>
#include <vector>

#include "core/host/file_service.h"

namespace morvex::posix {

// As FileService::ListFolder.
Result<std::vector<FolderEntry>> ReadFolder(const std::string& path);

}  // namespace morvex::posix
