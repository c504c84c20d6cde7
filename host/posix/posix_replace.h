// Changing a file's content: all of it, or by a record at its end.
#pragma once

#include <string>
#include <string_view>

#include "core/host/file_service.h"

namespace morvex::posix {

// As FileService::ReplaceFile. A file that the user may not write is refused, although the folder
// might allow putting another in its place.
ErrorNumber ReplaceContent(const std::string& path, std::string_view bytes);

// As FileService::AppendToFile. Records of several threads or processes do not mix.
ErrorNumber AppendRecord(const std::string& path, std::string_view bytes, bool looked_up = false);

}  // namespace morvex::posix
