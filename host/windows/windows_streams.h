// The two kinds of open file that the core holds.
#pragma once

#include <memory>
#include <string>

#include "core/host/file_service.h"
#include "host/windows/windows_handle.h"

namespace morvex::windows {

Result<std::unique_ptr<InputFile>> OpenInput(const std::string& path);

// `claim` becomes the open file, see windows_claim.h, which stays open as long as either is kept.
Result<std::unique_ptr<OutputFile>> CreateOutput(const std::string& path, std::uint32_t permissions,
                                                 std::shared_ptr<Handle>& claim);

}  // namespace morvex::windows
