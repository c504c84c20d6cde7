// The two kinds of open file that the core holds.
#pragma once

#include <memory>
#include <string>

#include "core/host/file_service.h"

namespace morvex::posix {

Result<std::unique_ptr<InputFile>> OpenInput(const std::string& path);
Result<std::unique_ptr<OutputFile>> CreateOutput(const std::string& path,
                                                 std::uint32_t permissions);

}  // namespace morvex::posix
