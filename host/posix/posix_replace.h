// Replaces a file's content, or appends a record to it.
#pragma once

#include <string>
#include <string_view>

#include "core/host/file_service.h"

namespace morvex::posix {

// As FileService::ReplaceFile. A file that the user may not write returns an error, even if the
// folder would allow replacing it.
ErrorNumber ReplaceContent(const std::string& path, std::string_view bytes);

// As FileService::AppendToFile. Records of several threads or processes do not mix. `looked_up`:
// the last append to this path succeeded, so the path is opened without a look-up.
ErrorNumber AppendRecord(const std::string& path, std::string_view bytes, bool looked_up = false);

}  // namespace morvex::posix
