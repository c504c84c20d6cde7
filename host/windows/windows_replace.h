// Replaces a file's content, or appends a record to it.
#pragma once

#include <string>
#include <string_view>

#include "core/host/file_service.h"

namespace morvex::windows {

// As FileService::ReplaceFile.
ErrorNumber ReplaceContent(const std::string& path, std::string_view bytes);

// As FileService::AppendToFile. Records of several threads or processes do not mix.
ErrorNumber AppendRecord(const std::string& path, std::string_view bytes);

// Returns `path` with every link in it followed. Both paths are in the form of SystemPath.
Result<std::wstring> FollowLinks(const std::wstring& path);

}  // namespace morvex::windows
