// Changing a file's content: all of it, or by a record at its end.
#pragma once

#include <string>
#include <string_view>

#include "core/host/file_service.h"

namespace morvex::windows {

// As FileService::ReplaceFile.
ErrorNumber ReplaceContent(const std::string& path, std::string_view bytes);

// As FileService::AppendToFile. Records of several threads or processes do not mix.
ErrorNumber AppendRecord(const std::string& path, std::string_view bytes);

// Where `path`, in the form of SystemPath, leads when every link in it is followed, in that form.
Result<std::wstring> FollowLinks(const std::wstring& path);

}  // namespace morvex::windows
