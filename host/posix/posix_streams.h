// Opens source files and creates work files.
#pragma once

#include <memory>
#include <string>

#include "core/host/file_service.h"
#include "host/posix/posix_write_behind.h"

namespace morvex::posix {

// Opens an ordinary file for reading. `looked_up`: a look-up has just shown that `path` is an
// ordinary file.
Result<std::unique_ptr<InputFile>> OpenInput(const std::string& path, bool looked_up = false);

// As FileService::CreateWorkFile. `behind` writes large files on its own thread; if it is null,
// every WriteAt returns after the bytes are written.
Result<std::unique_ptr<WorkFile>> CreateWorkFile(const std::string& path, std::uint32_t permissions,
                                                 std::shared_ptr<WriteBehind> behind = nullptr);

}  // namespace morvex::posix
