// The two kinds of open file that the core holds.
#pragma once

#include <memory>
#include <string>

#include "core/host/file_service.h"
#include "host/posix/posix_write_behind.h"

namespace morvex::posix {

// `looked_up`: a look-up has just shown that the path is an ordinary file.
Result<std::unique_ptr<InputFile>> OpenInput(const std::string& path, bool looked_up = false);

// As FileService::CreateWorkFile. With `behind` a large file is written by its thread; null: every
// write is done before WriteAt returns.
Result<std::unique_ptr<WorkFile>> CreateWorkFile(const std::string& path, std::uint32_t permissions,
                                                 std::shared_ptr<WriteBehind> behind = nullptr);

}  // namespace morvex::posix
