// Opens source files and creates work files.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "core/host/file_service.h"

namespace morvex::windows {

Result<std::unique_ptr<InputFile>> OpenInput(const std::string& path);

// As FileService::CreateWorkFile.
Result<std::unique_ptr<WorkFile>> CreateWorkFile(const std::string& path,
                                                 std::uint32_t permissions);

}  // namespace morvex::windows
